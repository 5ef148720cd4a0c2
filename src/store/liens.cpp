#include "store/liens.h"

#include "kinship/numeros.h"
#include "store/pack.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/utf8.h"

#include <algorithm>
#include <cctype>

namespace sylvane {

namespace {

constexpr int kMaxListe = 200;

std::vector<std::uint32_t> Enfants(Base& b, std::uint32_t n) {
    std::vector<std::uint32_t> r;
    for (int i = 1; i <= kMaxListe; ++i) {
        std::uint32_t k = b.EnfantNo(n, i);
        if (k == 0) break;
        r.push_back(k);
    }
    return r;
}

std::uint32_t Parent(Base& b, std::uint32_t c, Cote cote) {
    return cote == Cote::Pere ? b.LitPere(c) : b.LitMere(c);
}

// A person of the base that hasn't been deleted (a deleted record keeps
// no identity text).
bool Vivante(Base& b, std::uint32_t n) {
    return n != 0 && n <= b.Tete().maxPersonne && !b.LitIdentite(n).empty();
}

char Sexe(Base& b, std::uint32_t n) {
    std::string s = b.LitSexe(n);
    return s.empty() ? ' ' : s[0];
}

// The spouse of n in marriage m.
std::uint32_t Conjoint(Base& b, std::uint32_t m, std::uint32_t n) {
    const std::uint32_t mari = b.LitMari(m);
    return mari == n ? b.LitFemme(m) : mari;
}

// Why P can't take a spouse: no sex (634), no name (627); 0 when it can.
int RefusConjoint(Base& b, std::uint32_t p) {
    const char sexe = Sexe(b, p);
    if (sexe != 'H' && sexe != 'F') return 634;
    if (p == 0 || (Trim(b.LitNom(p)).empty() && Trim(b.LitPrenom(p)).empty())) return 627;
    return 0;
}

std::string Annee4(const std::string& annee) {
    std::string a = Trim(annee);
    if (a.size() < 4) a.insert(0, 4 - a.size(), ' ');
    return a;
}

} // namespace

std::string TexteBoite(const Boite& b) {
    std::string t = Message(b.message);
    if (b.suite) return t + " " + b.nom + Message(b.suite);
    auto p = t.find("&1");
    if (p != std::string::npos) t.replace(p, 2, b.nom);
    return t;
}

void DialogueLiens::Avertit(int message, const std::string& titre) const {
    if (boite) boite(Boite{Boite::Genre::Avertissement, message, {}, titre, 0});
}

void DecoupeNoms(std::string& nom, std::string& prenom, std::string& autres) {
    if (auto p = PointVirgule(nom); p != std::string::npos) {
        std::string reste = nom.substr(p + 1);
        nom.erase(p);
        prenom = Trim(prenom).empty() ? reste : prenom + ";" + reste;
    }
    if (auto p = PointVirgule(prenom); p != std::string::npos) {
        std::string reste = prenom.substr(p + 1);
        prenom.erase(p);
        autres = Trim(autres).empty() ? reste : autres + " " + reste;
    }
    // The rest may itself hold a ";" (DUPONT;Jean;Marie;Louis).
    for (auto p = PointVirgule(autres); p != std::string::npos; p = PointVirgule(autres, p + 1))
        autres[p] = ' ';
    nom = Trim(nom);
    prenom = Trim(prenom);
    autres = Trim(autres);
}

std::string DateRubrique(const std::string& jour, const std::string& annee) {
    const std::string j = Trim(jour);
    if (j.empty()) return Annee4(annee);
    const std::string texte = Conv_DateSaisie(j);
    if (std::isdigit(static_cast<unsigned char>(j[0])) && !Trim(annee).empty()) {
        const std::string date = texte + "/" + Trim(annee);
        if (Conv_DateValide(date)) return date;
    }
    return texte + " " + Annee4(annee);
}

std::string LignesRubriques(const std::array<SlotRubrique, 10>& slots,
                            const std::array<ValeurRubrique, 10>& valeurs) {
    std::string r;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const SlotRubrique& s = slots[i];
        if (s.symbole == ' ' || s.symbole == '\0') break;
        const bool date = s.drapeau == '1';
        const std::string jour = date ? Trim(valeurs[i].jourMois) : "";
        const std::string an = date ? Trim(valeurs[i].annee) : "";
        const std::string valeur = Trim(valeurs[i].valeur);
        if (jour.empty() && an.empty() && valeur.empty()) continue;
        r += "\r\n" + s.tag;
        if (!jour.empty() || !an.empty()) r += " " + DateRubrique(jour, an);
        if (!valeur.empty()) r += std::string(" ") + s.symbole + VersPoints(valeur);
    }
    return r;
}

Liens::Liens(Base& b, DialogueLiens dialogue, EtatNumerotation* numeros)
    : b_(b), d_(std::move(dialogue)), numeros_(numeros) {}

void Liens::Renumerote() {
    if (numeros_ && !changes_.empty()) {
        for (TableNumeros* t : {&numeros_->deCujus1, &numeros_->deCujus2}) {
            if (!t->Calculee()) continue;
            bool tient = false;
            for (std::uint32_t n : changes_) tient = tient || t->Numerote(n);
            if (!tient) continue;
            if (t == &numeros_->deCujus1) Calcul_Numeros_1(b_, *numeros_);
            else Calcul_Numeros_2(b_, *numeros_);
        }
    }
    changes_.clear();
}

std::uint32_t Liens::Cree(FicheCreation& f, ResultatLien& r) {
    if (Trim(f.anNaiss).empty()) d_.Avertit(620);
    DecoupeNoms(f.nom, f.prenom, f.autresPrenoms);
    if (f.nom.empty() && f.prenom.empty()) {
        r.refus = 621;
        return 0;
    }
    // A text of the base may hold "#"; a year or a date has no use for it.
    for (std::string* t : {&f.anNaiss, &f.anDeces, &f.jourNaiss, &f.jourDeces})
        std::replace(t->begin(), t->end(), '#', ' ');
    const char sexe = f.sexe == 'H' || f.sexe == 'F' ? f.sexe : 'I';
    const std::string jn = Trim(f.jourNaiss).empty() ? "" : Conv_DateSaisie(Trim(f.jourNaiss));
    const std::string jd = Trim(f.jourDeces).empty() ? "" : Conv_DateSaisie(Trim(f.jourDeces));
    const std::uint32_t n = b_.CreePersonne(f.nom, f.prenom, f.autresPrenoms, sexe,
                                            Trim(f.anNaiss), jn, Trim(f.anDeces), jd);
    if (numeros_)
        for (TableNumeros* t : {&numeros_->deCujus1, &numeros_->deCujus2})
            if (t->Calculee() && n >= t->index.size()) t->index.resize(std::size_t{n} + 1, 0);
    // The store wrote the bare key line; the places, rubrics and note follow.
    const std::string ancienne = b_.LitNote(n);
    std::string texte = b_.LigneMotsCles(n, Trim(f.lieuNaiss), Trim(f.lieuDeces)) +
                        LignesRubriques(b_.Tete().rubriquesPersonne, f.rubriques);
    if (!f.note.empty()) texte += "\r\n\r\n" + f.note;
    if (texte != ancienne) {
        b_.MajMots(n, ancienne, texte);
        b_.EcritNote(n, texte);
    }
    r.personne = n;
    r.ecrit = true;
    return n;
}

ResultatLien Liens::CreePersonne(FicheCreation f) {
    ResultatLien r;
    Cree(f, r);
    return r;
}

void Liens::PoseParent(std::uint32_t k, Cote cote, std::uint32_t parent) {
    const std::uint32_t ancien = Parent(b_, k, cote);
    if (ancien == parent) return;
    if (ancien) b_.MajEnfants(ancien, k, 'S');
    if (cote == Cote::Pere) b_.EcritPere(k, parent);
    else b_.EcritMere(k, parent);
    if (parent) b_.MajEnfants(parent, k, 'A');
    // The numbers follow when the table holds the person or either parent.
    changes_.insert(changes_.end(), {k, ancien, parent});
}

void Liens::VerifieDeces(std::uint32_t parent, std::uint32_t enfant, int message,
                         bool siNaissance) {
    if (Trim(b_.LitAnDeces(parent)).empty()) return;
    if (siNaissance && Trim(b_.LitAnNaiss(enfant)).empty()) return;
    if (b_.CleAnDeces(parent) < b_.CleAnNaiss(enfant)) d_.Avertit(message, b_.NomComplet(parent));
}

bool Liens::DemandeParentAussi(std::uint32_t parent, std::uint32_t k, int message) {
    if (!message) message = Sexe(b_, parent) == 'H' ? 609 : 608;
    return d_.Demande(Boite{Boite::Genre::OuiNon, message, b_.NomComplet(k),
                            b_.NomComplet(parent), 0}) == Reponse::Oui;
}

ResultatLien Liens::AttacheParent(std::uint32_t c, Cote cote, std::uint32_t parent) {
    ResultatLien r;
    if (parent == c || !Vivante(b_, c) || !Vivante(b_, parent)) return r;
    if (Sexe(b_, parent) != (cote == Cote::Pere ? 'H' : 'F')) {
        r.refus = 936;
        return r;
    }
    r.personne = parent;
    if (Parent(b_, c, cote) == parent) return r;
    PoseParent(c, cote, parent);
    r.ecrit = true;

    const Cote autreCote = cote == Cote::Pere ? Cote::Mere : Cote::Pere;
    const std::uint32_t p2 = Parent(b_, c, autreCote);
    if (p2) {
        bool maries = false;
        for (int i = 1; i <= kMaxListe && !maries; ++i) {
            std::uint32_t m = b_.MariageNo(parent, i);
            if (m == 0) break;
            maries = Conjoint(b_, m, parent) == p2;
        }
        if (!maries && d_.Demande(Boite{Boite::Genre::OuiNon, 639, b_.NomComplet(p2), {}, 0}) ==
                           Reponse::Oui) {
            r.mariage = cote == Cote::Pere ? b_.CreeMariage(parent, p2) : b_.CreeMariage(p2, parent);
        }
    }
    VerifieDeces(parent, c, 636, false);
    if (p2) {
        for (std::uint32_t k : Enfants(b_, p2)) {
            if (k == c || Parent(b_, k, cote) != 0) continue;
            if (!DemandeParentAussi(parent, k)) continue;
            PoseParent(k, cote, parent);
            VerifieDeces(parent, k, 636, false);
        }
    }
    Renumerote();
    return r;
}

ResultatLien Liens::CreeParent(std::uint32_t c, Cote cote, FicheCreation f) {
    f.sexe = cote == Cote::Pere ? 'H' : 'F';
    ResultatLien r;
    const std::uint32_t n = Cree(f, r);
    if (!n) return r;
    ResultatLien a = AttacheParent(c, cote, n);
    a.ecrit = true;
    a.personne = n;
    return a;
}

ResultatLien Liens::CoupeParent(std::uint32_t c, Cote cote) {
    ResultatLien r;
    const std::uint32_t parent = Parent(b_, c, cote);
    if (c == 0 || parent == 0) return r;
    if (d_.Demande(Boite{Boite::Genre::OuiNon, 617, {}, {}, 0}) != Reponse::Oui) return r;
    PoseParent(c, cote, 0);
    r.ecrit = true;
    Renumerote();
    return r;
}

ResultatLien Liens::AttacheConjoint(std::uint32_t p, std::uint32_t conjoint, bool recherche) {
    ResultatLien r;
    const char sexe = Sexe(b_, p);
    if ((r.refus = RefusConjoint(b_, p))) return r;
    if (conjoint == p || !Vivante(b_, conjoint)) return r;
    if (Sexe(b_, conjoint) != (sexe == 'H' ? 'F' : 'H')) {
        r.refus = 936;
        return r;
    }
    const Cote coteConjoint = sexe == 'H' ? Cote::Mere : Cote::Pere;
    const Cote coteP = sexe == 'H' ? Cote::Pere : Cote::Mere;
    for (std::uint32_t k : Enfants(b_, p))
        if (k != conjoint && Parent(b_, k, coteConjoint) == 0 && DemandeParentAussi(conjoint, k))
            PoseParent(k, coteConjoint, conjoint);
    if (recherche)
        for (std::uint32_t k : Enfants(b_, conjoint))
            if (k != p && Parent(b_, k, coteP) == 0 && DemandeParentAussi(p, k))
                PoseParent(k, coteP, p);
    r.mariage = sexe == 'H' ? b_.CreeMariage(p, conjoint) : b_.CreeMariage(conjoint, p);
    r.personne = conjoint;
    r.ecrit = true;
    Renumerote();
    return r;
}

ResultatLien Liens::CreeConjoint(std::uint32_t p, FicheCreation f) {
    const char sexe = Sexe(b_, p);
    ResultatLien r;
    if ((r.refus = RefusConjoint(b_, p))) return r;
    f.sexe = sexe == 'H' ? 'F' : 'H';
    const std::uint32_t n = Cree(f, r);
    if (!n) return r;
    ResultatLien a = AttacheConjoint(p, n, false);
    a.ecrit = true;
    return a;
}

ResultatLien Liens::SupprimeMariage(std::uint32_t m) {
    ResultatLien r;
    if (m == 0 || m > b_.Tete().maxMariage) return r;
    if (d_.Demande(Boite{Boite::Genre::OuiNon, 617, {}, {}, 0}) != Reponse::Oui) return r;
    const std::uint32_t mari = b_.LitMari(m), femme = b_.LitFemme(m);
    const bool texte = !b_.LitNoteMariage(m).empty();
    const std::string avantMari = texte ? b_.NoteAvecMariages(mari) : "";
    const std::string avantFemme = texte ? b_.NoteAvecMariages(femme) : "";
    if (texte) b_.EcritNoteMariage(m, "");
    b_.EcritMari(m, 0);
    b_.EcritFemme(m, 0);
    b_.EcritAnMariage(m, "");
    b_.EcritAnFin(m, "");
    b_.MajMariages(mari, m, 'S');
    b_.MajMariages(femme, m, 'S');
    if (texte) {
        b_.MajMots(mari, avantMari, b_.NoteAvecMariages(mari));
        b_.MajMots(femme, avantFemme, b_.NoteAvecMariages(femme));
    }
    r.ecrit = true;
    return r;
}

ResultatLien Liens::AttacheEnfant(std::uint32_t p, std::uint32_t k) {
    ResultatLien r;
    const char sexe = Sexe(b_, p);
    if (sexe != 'H' && sexe != 'F') {
        r.refus = 640;
        return r;
    }
    if (k == p || !Vivante(b_, k)) return r;
    const Cote cote = sexe == 'H' ? Cote::Pere : Cote::Mere;
    const std::uint32_t present = Parent(b_, k, cote);
    r.personne = k;
    if (present == p) return r;
    if (present &&
        d_.Demande(Boite{Boite::Genre::NonParDefaut, 628, b_.NomComplet(present), {}, 629}) !=
            Reponse::Oui)
        return r;
    PoseParent(k, cote, p);
    r.ecrit = true;
    VerifieDeces(p, k, 636, true);
    const Cote autre = sexe == 'H' ? Cote::Mere : Cote::Pere;
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t m = b_.MariageNo(p, i);
        if (m == 0) break;
        const std::uint32_t conjoint = Conjoint(b_, m, p);
        if (conjoint == 0) continue;
        if (Parent(b_, k, autre) == conjoint) break;
        if (!DemandeParentAussi(conjoint, k, nouvelEnfant_ ? 637 : 0)) continue;
        PoseParent(k, autre, conjoint);
        VerifieDeces(conjoint, k, 638, false);
        break;
    }
    Renumerote();
    return r;
}

ResultatLien Liens::CreeEnfant(std::uint32_t p, FicheCreation f) {
    ResultatLien r;
    const char sexe = Sexe(b_, p);
    if (sexe != 'H' && sexe != 'F') {
        r.refus = 635;
        return r;
    }
    const std::uint32_t n = Cree(f, r);
    if (!n) return r;
    nouvelEnfant_ = true;
    ResultatLien a = AttacheEnfant(p, n);
    nouvelEnfant_ = false;
    a.ecrit = true;
    return a;
}

ResultatLien Liens::CoupeEnfant(std::uint32_t p, std::uint32_t k) {
    ResultatLien r;
    if (p == 0 || k == 0) return r;
    if (d_.Demande(Boite{Boite::Genre::OuiNon, 617, {}, {}, 0}) != Reponse::Oui) return r;
    const char sexe = Sexe(b_, p);
    if (sexe == 'H' && b_.LitPere(k) == p) b_.EcritPere(k, 0);
    else if (sexe == 'F' && b_.LitMere(k) == p) b_.EcritMere(k, 0);
    b_.MajEnfants(p, k, 'S');
    changes_.insert(changes_.end(), {k, p});
    r.ecrit = true;
    Renumerote();
    return r;
}

namespace {
// The input box until it gives a text; nothing when it was closed.
std::optional<std::string> TexteLien(const DialogueLiens& d) {
    if (!d.saisie) return std::nullopt;
    for (;;) {
        std::optional<std::string> t = d.saisie(633);
        if (!t) return t;
        std::string s = Trim(*t);
        if (!s.empty()) return s;
    }
}
} // namespace

ResultatLien Liens::AjouteLien(std::uint32_t p, std::uint32_t autre) {
    ResultatLien r;
    if (autre == p || !Vivante(b_, p) || !Vivante(b_, autre)) return r;
    const auto texte = TexteLien(d_);
    if (!texte) return r;
    b_.MajLiens(p, autre, *texte, 'A');
    r.ecrit = true;
    r.personne = autre;
    if (d_.Demande(Boite{Boite::Genre::OuiNon, 632, {}, b_.NomComplet(autre), 0}) == Reponse::Oui)
        if (const auto retour = TexteLien(d_)) b_.MajLiens(autre, p, *retour, 'A');
    return r;
}

ResultatLien Liens::CreeLien(std::uint32_t p, FicheCreation f) {
    ResultatLien r;
    const std::uint32_t n = Cree(f, r);
    if (!n) return r;
    ResultatLien a = AjouteLien(p, n);
    a.ecrit = true;
    a.personne = n;
    return a;
}

ResultatLien Liens::SupprimeLien(std::uint32_t p, int rang) {
    ResultatLien r;
    const std::uint32_t autre = b_.LienNo(p, rang);
    if (autre == 0) return r;
    if (d_.Demande(Boite{Boite::Genre::OuiNon, 617, {}, {}, 0}) != Reponse::Oui) return r;
    // Entries of the same person and text are alike: removing the first
    // is removing this one.
    b_.MajLiens(p, autre, b_.TexteLienBrutNo(p, rang), 'S');
    r.ecrit = true;
    return r;
}

bool Liens::Deplace(std::uint32_t p, ListeOrdonnee liste, int rang, bool versLeHaut) {
    const int autre = versLeHaut ? rang - 1 : rang + 1;
    if (p == 0 || rang < 1 || autre < 1) return false;
    const std::size_t pas = liste == ListeOrdonnee::Liens ? 8 : 4;
    std::string l = liste == ListeOrdonnee::Mariages ? b_.ListeMariages(p)
                    : liste == ListeOrdonnee::Liens  ? b_.ListeLiens(p)
                                                     : b_.ListeDocs(p);
    const std::size_t a = static_cast<std::size_t>(std::min(rang, autre) - 1) * pas;
    if (a + 2 * pas > l.size()) return false;
    std::string premier = l.substr(a, pas);
    l.replace(a, pas, l.substr(a + pas, pas));
    l.replace(a + pas, pas, premier);
    if (liste == ListeOrdonnee::Mariages) {
        b_.EcritListeMariages(p, l);
    } else if (liste == ListeOrdonnee::Documents) {
        b_.EcritListeDocs(p, l);
    } else {
        std::vector<std::pair<std::uint32_t, std::string>> paires;
        for (int i = 1; static_cast<std::size_t>(i) * 8 <= l.size(); ++i)
            paires.emplace_back(b_.LienNo(p, i), b_.TexteLienBrutNo(p, i));
        std::swap(paires[static_cast<std::size_t>(std::min(rang, autre) - 1)],
                  paires[static_cast<std::size_t>(std::max(rang, autre) - 1)]);
        b_.EcritListeLiens(p, paires);
    }
    b_.redessiner = true;
    return true;
}

ResultatLien Liens::SupprimePersonne(std::uint32_t n) {
    ResultatLien r;
    if (n == 0 || n > b_.Tete().maxPersonne) return r;
    if ((r.refus = b_.RefusSuppressionPersonne(n))) return r;
    if (d_.Demande(Boite{Boite::Genre::OuiNon, 617, {}, b_.NomComplet(n), 0}) != Reponse::Oui)
        return r;
    const std::uint32_t place = b_.TrouvePlaceFiche(n);
    if ((r.refus = b_.SupprimePersonne(n))) return r;
    r.ecrit = true;
    const std::size_t taille = b_.TablePersonnes().taille();
    if (taille > 0) r.personne = b_.TriFiche(std::min<std::size_t>(std::max<std::uint32_t>(place, 1), taille));
    return r;
}

} // namespace sylvane
