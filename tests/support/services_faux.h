// Scripted services for the form logic: boxes that record what they showed
// and answer from a queue, file dialogs that answer given paths, a progress
// panel that can be told to stop, a picker with a queued answer. With these
// every form's logic runs in a test without a display.
#pragma once

#include "ui/mdiform1.h"
#include "ui/services.h"

#include <deque>
#include <set>
#include <string>
#include <vector>

namespace sylvane::test {

struct BoitesFausses : Boites {
    std::vector<int> informations;     // message numbers shown, in order
    std::vector<std::string> textes;   // program-made texts shown
    std::vector<int> questions;        // questions asked, in order
    std::deque<Reponse> reponses;      // answers; empty: Non
    void Information(int n, const std::string& = {}) override { informations.push_back(n); }
    void Texte(const std::string& t) override { textes.push_back(t); }
    Reponse Question(int n, bool = false, const std::string& = {}) override {
        questions.push_back(n);
        if (reponses.empty()) return Reponse::Non;
        Reponse r = reponses.front();
        reponses.pop_front();
        return r;
    }
};

struct DialoguesFaux : DialoguesFichier {
    std::deque<std::optional<std::string>> chemins; // empty: cancel
    std::vector<int> titres;
    std::optional<std::string> suivant(int titre) {
        titres.push_back(titre);
        if (chemins.empty()) return std::nullopt;
        auto c = chemins.front();
        chemins.pop_front();
        return c;
    }
    std::optional<std::string> Ouvrir(int t, const std::string&, const std::string&) override {
        return suivant(t);
    }
    std::optional<std::string> Enregistrer(int t, const std::string&, const std::string&) override {
        return suivant(t);
    }
    std::optional<std::string> Dossier(int t, const std::string&) override { return suivant(t); }
};

struct PanneauFaux : Panneau {
    bool visible = false;
    int appelsArret = 0;
    int arretApres = -1;               // asks stop at this call of Arret (-1: never)
    std::vector<std::string> titres, textes;
    void Montre(const std::string& titre, const std::string& texte) override {
        if (!visible) appelsArret = 0;
        visible = true;
        titres.push_back(titre);
        textes.push_back(texte);
    }
    void Cache() override { visible = false; }
    bool Visible() const override { return visible; }
    bool Arret() override { return arretApres >= 0 && ++appelsArret > arretApres; }
};

struct FenetresFausses : Fenetres {
    std::set<std::string> disponibles;  // empty: every form is there
    std::vector<std::string> ouvertes;
    bool Disponible(const std::string& f) const override {
        return disponibles.empty() || disponibles.count(f) != 0;
    }
    void Ouvre(const std::string& f) override {
        if (!EstOuverte(f)) ouvertes.push_back(f);
    }
    std::vector<std::pair<std::string, std::uint32_t>> numeros; // OuvreNumero, in order
    void OuvreNumero(const std::string& f, std::uint32_t n) override {
        numeros.emplace_back(f, n);
        Ouvre(f);
    }
    bool EstOuverte(const std::string& f) const override {
        for (const auto& o : ouvertes)
            if (o == f) return true;
        return false;
    }
    void FermeTout() override { ouvertes.clear(); }
    int NombreOuvertes() const override { return static_cast<int>(ouvertes.size()); }
};

struct SelecteurFaux : Selecteur {
    std::deque<std::uint32_t> reponses;
    std::vector<std::uint32_t> departs;
    std::uint32_t ChoisitPersonne(std::uint32_t depart, int = 0) override {
        departs.push_back(depart);
        if (reponses.empty()) return 0;
        auto r = reponses.front();
        reponses.pop_front();
        return r;
    }
};

// All of them, ready to hand to MDIForm1.
struct ServicesFaux {
    BoitesFausses boites;
    DialoguesFaux fichiers;
    PanneauFaux panneau;
    FenetresFausses fenetres;
    SelecteurFaux selecteur;
    ServicesUi ui() { return ServicesUi{boites, fichiers, panneau, fenetres, selecteur}; }
};

} // namespace sylvane::test
