#include "ui/frm_creation.h"

#include "store/base.h"
#include "text/dates.h"
#include "text/mots.h"
#include "text/parametres.h"
#include "text/phonetique.h"
#include "ui/services.h"

namespace sylvane {
namespace {

// A name or a place under its setting of capitals: "1" all capitals, "2"
// the capitals of a name; anything else leaves it as typed.
std::string Casse(const std::string& t, const std::string& mode, const Parametres& p) {
    if (mode == "1") {
        std::string r = t;
        for (char& c : r) c = Majuscule(c);
        return r;
    }
    if (mode == "2") return Conv_NomPropre(t, 'N', p.particules);
    return t;
}

} // namespace

Etiquette LitEtiquette(const std::string& etiquette) {
    Etiquette e;
    std::size_t debut = 0;
    while (debut <= etiquette.size()) {
        std::size_t fin = etiquette.find('/', debut);
        if (fin == std::string::npos) fin = etiquette.size();
        const std::string partie = Trim(etiquette.substr(debut, fin - debut));
        const std::string cle = CleMot(partie);
        if (cle == "HOMME") e.sexe = 'H';
        else if (cle == "FEMME") e.sexe = 'F';
        else if (!partie.empty() && e.nom.empty()) e.nom = partie;
        debut = fin + 1;
    }
    return e;
}

std::string LibelleJour(const std::string& jour) {
    if (jour.empty() || !Conv_DateValide(jour + "/2000")) return "";
    return Trim(Conv_DateLongue(jour));
}

FrmCreation::FrmCreation(Base& base, const Parametres& parametres, const std::string& etiquette,
                         EtatNumerotation* numeros)
    : base_(base), parametres_(parametres), numeros_(numeros) {
    const Etiquette e = LitEtiquette(etiquette);
    fiche_.nom = e.nom;
    if (e.sexe != ' ') {
        fiche_.sexe = e.sexe;
        sexeFixe_ = true;
    }
    // A row for each person rubric of the base; a blank symbol ends them.
    for (const SlotRubrique& s : base_.Tete().rubriquesPersonne) {
        if (s.symbole == ' ' || s.symbole == '\0') break;
        std::string libelle = base_.LibelleRubrique(base_.RubriqueDeSymbole(s.symbole));
        libelle = libelle.empty() ? s.tag : libelle.substr(1);
        rubriques_.push_back({libelle, s.drapeau == '1'});
    }
}

void FrmCreation::ChoisitSexe(char s) {
    if (!sexeFixe_) fiche_.sexe = s == 'H' || s == 'F' ? s : 'I';
}

std::string& FrmCreation::Ref(ChampCreation c, int rang) {
    static std::string vide;
    const bool rub = c == ChampCreation::RubJ || c == ChampCreation::RubA || c == ChampCreation::RubL;
    if (rub && (rang < 0 || rang >= static_cast<int>(rubriques_.size()))) return vide = {};
    switch (c) {
    case ChampCreation::Nom: return fiche_.nom;
    case ChampCreation::Prenom: return fiche_.prenom;
    case ChampCreation::AutresPrenoms: return fiche_.autresPrenoms;
    case ChampCreation::Naiss: return fiche_.anNaiss;
    case ChampCreation::JNaiss: return fiche_.jourNaiss;
    case ChampCreation::LieuNaiss: return fiche_.lieuNaiss;
    case ChampCreation::Deces: return fiche_.anDeces;
    case ChampCreation::JDeces: return fiche_.jourDeces;
    case ChampCreation::LieuDeces: return fiche_.lieuDeces;
    case ChampCreation::RubJ: return fiche_.rubriques[rang].jourMois;
    case ChampCreation::RubA: return fiche_.rubriques[rang].annee;
    case ChampCreation::RubL: break;
    }
    return fiche_.rubriques[rang].valeur;
}

const std::string& FrmCreation::Valeur(ChampCreation c, int rang) const {
    return const_cast<FrmCreation*>(this)->Ref(c, rang);
}

bool FrmCreation::EstJour(ChampCreation c) const {
    return c == ChampCreation::JNaiss || c == ChampCreation::JDeces || c == ChampCreation::RubJ;
}

std::string FrmCreation::Modifie(ChampCreation c, const std::string& texte, int rang) {
    std::string& v = Ref(c, rang);
    v = texte;
    if (c == ChampCreation::Nom) v = Casse(v, parametres_.conversionNom, parametres_);
    if (c == ChampCreation::LieuNaiss || c == ChampCreation::LieuDeces || c == ChampCreation::RubL)
        v = Casse(v, parametres_.conversionLieu, parametres_);
    return v;
}

std::string FrmCreation::Quitte(ChampCreation c, int rang) {
    std::string& v = Ref(c, rang);
    if (EstJour(c) && !Trim(v).empty()) v = Conv_DateSaisie(Trim(v));
    return v;
}

std::string FrmCreation::Libelle(ChampCreation c, int rang) const {
    return EstJour(c) ? LibelleJour(Valeur(c, rang)) : std::string();
}

std::uint32_t FrmCreation::Valide(Boites& boites) {
    if (Trim(fiche_.anNaiss).empty()) {
        boites.Information(620);
        focus_ = ChampCreation::Naiss;
    }
    if (Trim(fiche_.nom).empty() && Trim(fiche_.prenom).empty()) {
        boites.Information(621);
        focus_ = ChampCreation::Nom;
        return 0;
    }
    // The warning is shown already: the creation itself asks nothing.
    FicheCreation f = fiche_;
    for (std::size_t i = rubriques_.size(); i < f.rubriques.size(); ++i) f.rubriques[i] = {};
    const ResultatLien r = Liens(base_, DialogueLiens{}, numeros_).CreePersonne(std::move(f));
    if (r.Refuse()) {
        boites.Information(r.refus);
        focus_ = ChampCreation::Nom;
        return 0;
    }
    personne_ = r.personne;
    return personne_;
}

} // namespace sylvane
