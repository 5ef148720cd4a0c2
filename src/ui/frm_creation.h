// `FrmCreation`: a new person from the identity, birth, death and rubric
// fields of the person sheet, with the same field rules. It is opened by a
// tag: a family name, "/", and "Homme" or "Femme" (or the sex word alone),
// which presets the name and presets and fixes the sex.
#pragma once

#include "store/liens.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

class Base;
class Boites;
struct EtatNumerotation;
struct Parametres;

enum class ChampCreation {
    Nom, Prenom, AutresPrenoms,
    Naiss, JNaiss, LieuNaiss,
    Deces, JDeces, LieuDeces,
    RubJ, RubA, RubL, // a rubric row: day and month, year, value
};

class FrmCreation {
  public:
    // One rubric row of the base's person rubrics, in table order.
    struct RangRubrique {
        std::string libelle; // what the row's label shows
        bool date = false;   // day and year shown
    };

    // `base` must be open. `numeros`, when given, grows with the new person.
    FrmCreation(Base& base, const Parametres& parametres, const std::string& etiquette,
                EtatNumerotation* numeros = nullptr);

    // The sex option: 'H', 'F' or 'I'; fixed by the tag's sex word.
    char Sexe() const { return fiche_.sexe; }
    bool SexeFixe() const { return sexeFixe_; }
    void ChoisitSexe(char s);

    const std::vector<RangRubrique>& Rubriques() const { return rubriques_; }

    // A change in a field: names and places take the capitals of the
    // settings. Returns what the field now holds.
    std::string Modifie(ChampCreation c, const std::string& texte, int rang = 0);
    // Leaving a field: a day field is converted, and its label shows the
    // day and month in words when they make a real day.
    std::string Quitte(ChampCreation c, int rang = 0);
    const std::string& Valeur(ChampCreation c, int rang = 0) const;
    // The label beside a day field ("" when none).
    std::string Libelle(ChampCreation c, int rang = 0) const;

    // OK: message 620 when the birth year is empty (a warning: the focus
    // goes to it and creation goes on), message 621 when family name and
    // first name are both empty (the focus goes to the name, nothing is
    // made). Returns the person made, or 0.
    std::uint32_t Valide(Boites& boites);
    // The field the last message pointed at.
    ChampCreation Focus() const { return focus_; }
    std::uint32_t Personne() const { return personne_; }

  private:
    std::string& Ref(ChampCreation c, int rang);
    bool EstJour(ChampCreation c) const;

    Base& base_;
    const Parametres& parametres_;
    EtatNumerotation* numeros_;
    FicheCreation fiche_;
    bool sexeFixe_ = false;
    std::vector<RangRubrique> rubriques_;
    ChampCreation focus_ = ChampCreation::Nom;
    std::uint32_t personne_ = 0;
};

// The tag of FrmCreation read: the family name and the sex word's sex
// ('H', 'F', or ' ' for none).
struct Etiquette {
    std::string nom;
    char sexe = ' ';
};
Etiquette LitEtiquette(const std::string& etiquette);

// The day and month of a day field in words (" 12 mai" without its
// leading blank) when the converted text makes a real day in 2000.
std::string LibelleJour(const std::string& jourConverti);

} // namespace sylvane
