#include "ui/frm_parametre.h"

#include "kinship/numeros.h"
#include "store/base.h"
#include "text/messages.h"
#include "text/reglages.h"
#include "text/tags.h"
#include "ui/application.h"
#include "ui/mdiform1.h"
#include "ui/services.h"

#include <algorithm>

namespace sylvane {
namespace {

using M = OngletParametre;

// Every section the settings write, for comparing two states.
std::vector<std::pair<std::string, std::vector<std::pair<std::string, std::string>>>>
Empreinte(const EtatParametre& e) {
    ReglagesMemoire r;
    SauveParametres(r, e.p);
    SauveParametresBase(r, "Base", e.p);
    r.ecrit("Base", "102", e.premierPrenom ? "1" : "0");
    r.ecrit("Base", "103", e.particulesTri ? "1" : "0");
    std::vector<std::pair<std::string, std::vector<std::pair<std::string, std::string>>>> v;
    for (const auto& s : r.sections()) v.emplace_back(s, r.section(s));
    return v;
}

bool Contient(const std::vector<std::string>& v, const std::string& s) {
    return std::find(v.begin(), v.end(), s) != v.end();
}

bool LigneSimple(const std::string& s) {
    return s.find_first_of("\r\n") == std::string::npos;
}

// A word of a list that is stored as a key: not empty, one line, no "#".
int RefusMot(const std::string& s) {
    if (s.empty()) return MsgParametre::kVide;
    if (s.find('#') != std::string::npos) return MsgParametre::kDiese;
    if (!LigneSimple(s)) return MsgParametre::kLigne;
    return 0;
}

} // namespace

// ---------------------------------------------------------------- helpers

bool MemesParametres(const EtatParametre& a, const EtatParametre& b) {
    return Empreinte(a) == Empreinte(b);
}

std::string LibelleTagParametre(const std::string& tag) {
    std::string l = Conv_LibelleTag(tag);
    return l.empty() ? tag : l;
}

std::string LigneParticule(const Particule& p) {
    return p.texte + " (" + (p.nom ? "N" : "") + (p.prenom ? "P" : "") + ")";
}

int IndexConversion(const std::string& valeur) {
    return valeur == "1" ? 1 : valeur == "2" ? 2 : 0;
}

std::string ValeurConversion(int index, const std::string& ancienne) {
    if (index == IndexConversion(ancienne)) return ancienne;
    return index == 1 ? "1" : index == 2 ? "2" : "0";
}

int OutilDuNumero(int numero) {
    if (numero == 99) return 0;
    if (numero >= 0 && numero < 7) return numero + 2;
    if (numero > 7 && numero <= 35) return numero;
    return -1;
}

int NumeroDeOutil(int outil) {
    if (outil == 0) return 99;
    return outil < 8 ? outil - 2 : outil;
}

std::vector<int> OutilsDisponibles() {
    std::vector<int> v;
    for (int t = 2; t <= 35; ++t) v.push_back(t);
    return v;
}

Role LitRole(const std::string& role) {
    Role r;
    r.obligatoire = !role.empty() && role[0] == 'M';
    r.sexe = role.size() > 1 && (role[1] == 'H' || role[1] == 'F') ? role[1] : ' ';
    r.tag = role.size() > 2 ? role.substr(2) : std::string();
    return r;
}

std::string EcritRole(const Role& r) {
    return std::string(1, r.obligatoire ? 'M' : ' ') + (r.sexe == 'H' || r.sexe == 'F' ? r.sexe : ' ') +
           r.tag;
}

// ---------------------------------------------------------------- form

FrmParametre::FrmParametre(Application& app, Boites& boites, Selecteur& selecteur,
                           std::function<bool(const std::string&)> changeLangue)
    : app_(app), boites_(boites), selecteur_(selecteur), changeLangue_(std::move(changeLangue)) {
    if (!changeLangue_)
        changeLangue_ = [this](const std::string& l) {
            return ChangeLangue(app_.reglages(), app_.parametres(), l, app_.dossierProgramme());
        };
    Charge();
}

void FrmParametre::Charge() {
    etat = EtatParametre{};
    etat.p = app_.parametres();
    etat.baseOuverte = app_.BaseOuverte();
    if (etat.baseOuverte) {
        // The per-base values as the program holds them now.
        etat.p.personneEnCours = static_cast<std::int32_t>(app_.personneEnCours());
        etat.p.deCujus = static_cast<std::int32_t>(app_.numeros().deCujus1.deCujus);
        etat.p.deCujus2 = static_cast<std::int32_t>(app_.numeros().deCujus2.deCujus);
        etat.particulesTri = app_.base().Tete().particules == '1';
        etat.premierPrenom = app_.base().Tete().premierPrenom == '1';
    }
    charge_ = etat;
}

int FrmParametre::Refuse(int message, const std::string& nom) {
    if (message) boites_.Information(message, nom);
    return message;
}

RefusParametre FrmParametre::Valide() const {
    const Parametres& p = etat.p;
    using B = BornesParametre;
    namespace X = MsgParametre;
    auto hors = [](int v, int a, int b) { return v < a || v > b; };

    if (p.dossierTravail.empty()) return {X::kTravailVide, M::General, {}};
    for (const std::string* s : {&p.aide, &p.dossierTravail, &p.fichierCommunes, &p.geneanet,
                                 &p.nomImage})
        if (!LigneSimple(*s)) return {X::kLigne, M::General, *s};
    if (hors(p.frequenceSauvegarde, B::kFrequenceMin, B::kFrequenceMax))
        return {X::kFrequence, M::General, {}};

    if (p.affichageNom.empty()) return {X::kAffichageVide, M::Noms, {}};
    if (p.affichageNom.size() > B::kAffichageMax) return {X::kAffichageTrop, M::Noms, {}};
    for (const auto& t : p.affichageNom) {
        if (int m = RefusMot(t)) return {m, M::Noms, t};
        if (t.find('/') != std::string::npos) return {X::kBarre, M::Noms, t};
    }
    for (const auto& t : p.particules)
        if (t.texte.empty() || t.texte.find_first_of(" #\r\n") != std::string::npos)
            return {X::kParticule, M::Noms, t.texte};

    if (hors(p.maximumRechercheParente, B::kParenteMin, B::kParenteMax))
        return {X::kParente, M::Presentation, {}};
    if (hors(p.typePresentation, B::kTypeMin, B::kTypeMax)) return {X::kType, M::Presentation, {}};
    for (int i = 0; i < 4; ++i) {
        const std::string rang = std::to_string(i + 1);
        if (p.nomPolice[i].empty() || !LigneSimple(p.nomPolice[i]))
            return {X::kPolice, M::Presentation, rang};
        if (hors(p.taillePolice[i], B::kTailleMin, B::kTailleMax))
            return {X::kTaille, M::Presentation, rang};
        if (hors(p.nombreCases[i], B::kCasesMin, B::kCasesMax))
            return {X::kCases, M::Presentation, rang};
    }

    for (const auto& [liste, tags] : p.rubriques)
        for (const auto& t : tags)
            if (int m = RefusMot(t)) return {m, M::Rubriques, t};
    for (const auto& t : p.temoins) {
        if (int m = RefusMot(t.evenement)) return {m, M::Evenements, t.evenement};
        if (t.roles.size() > B::kRolesMax)
            return {X::kRoles, M::Evenements, LibelleTagParametre(t.evenement)};
        for (const auto& r : t.roles)
            if (int m = RefusMot(LitRole(r).tag)) return {m, M::Evenements, t.evenement};
    }
    for (const auto& t : p.typesDocument)
        if (int m = RefusMot(t)) return {m, M::Documents, t};
    for (const auto& [format, ext] : p.graphisme)
        if (RefusMot(format) || ext.empty() || !LigneSimple(ext))
            return {X::kGraphisme, M::Documents, format};

    for (const std::string* s : {&p.auteur, &p.conversionNom, &p.conversionPrenom, &p.conversionLieu})
        if (!LigneSimple(*s)) return {X::kLigne, M::Auteur, *s};
    for (const auto& a : p.adresse)
        if (!LigneSimple(a)) return {X::kLigne, M::Auteur, a};
    return {};
}

bool FrmParametre::Applique() {
    langueChangee = false;
    if (auto refus = Valide()) {
        Refuse(refus.message, refus.nom);
        return false;
    }
    // The work folder is made now: a folder that cannot be made is refused
    // before anything is written.
    try {
        app_.fs().creerDossier(etat.p.dossierTravail);
    } catch (const ErreurES&) {
        Refuse(MsgParametre::kTravailCreation, etat.p.dossierTravail);
        return false;
    }
    Parametres& cible = app_.parametres();
    if (etat.p.langue != cible.langue) {
        const std::string aide = cible.aide;
        if (!changeLangue_(etat.p.langue)) {
            Refuse(MsgParametre::kLangue, etat.p.langue);
            return false;
        }
        langueChangee = true;
        // The help file follows the language unless the user chose another.
        if (etat.p.aide == aide) etat.p.aide = cible.aide;
    }

    const bool particulesChangees = [&] {
        if (etat.p.particules.size() != cible.particules.size()) return true;
        for (std::size_t i = 0; i < etat.p.particules.size(); ++i) {
            const auto &a = etat.p.particules[i], &b = cible.particules[i];
            if (a.texte != b.texte || a.nom != b.nom || a.prenom != b.prenom) return true;
        }
        return false;
    }();

    Historique historique = cible.historique;
    cible = etat.p;
    cible.historique = std::move(historique);

    Base* base = app_.BaseOuverte() ? &app_.base() : nullptr;
    if (base) {
        const bool triAvant = base->Tete().particules == '1';
        const bool premierAvant = base->Tete().premierPrenom == '1';
        if (triAvant != etat.particulesTri) base->TeteModifiable().particules = etat.particulesTri ? '1' : '0';
        if (premierAvant != etat.premierPrenom) {
            base->TeteModifiable().premierPrenom = etat.premierPrenom ? '1' : '0';
            boites_.Information(MsgParametre::kPremierPrenom);
        }
        // Sort keys depend on the particles in force: the table is sorted
        // again when they changed.
        if (triAvant != etat.particulesTri || (etat.particulesTri && particulesChangees)) {
            base->OublieCles();
            base->TriTable();
            boites_.Information(MsgParametre::kTriRefait);
        }
        auto& num = app_.numeros();
        if (num.deCujus1.deCujus != static_cast<std::uint32_t>(std::max(0, etat.p.deCujus))) {
            num.deCujus1.deCujus = static_cast<std::uint32_t>(std::max(0, etat.p.deCujus));
            Calcul_Numeros_1(*base, num);
        }
        if (num.deCujus2.deCujus != static_cast<std::uint32_t>(std::max(0, etat.p.deCujus2))) {
            num.deCujus2.deCujus = static_cast<std::uint32_t>(std::max(0, etat.p.deCujus2));
            Calcul_Numeros_2(*base, num);
        }
        base->redessiner = true;
    }

    Reglages& r = app_.reglages();
    {
        LotReglages lot(r);
        SauveParametres(r, cible);
        if (base) SauveParametresBase(r, base->Chemins().base, cible);
    }
    Charge();
    return true;
}

std::vector<std::string> FrmParametre::Langues() const {
    auto v = ListeLangues(app_.dossierProgramme());
    if (!Contient(v, etat.p.langue)) v.insert(v.begin(), etat.p.langue);
    return v;
}

std::vector<std::string> FrmParametre::VariantesAffichage() const {
    std::vector<std::string> v = {"FNAM", "BIRN", "OFNM", "NUMB", "FATN", "MOTN"};
    if (app_.BaseOuverte())
        for (const auto& slot : app_.base().Tete().rubriquesPersonne) {
            if (slot.symbole == ' ') break;
            if (!slot.tag.empty() && !Contient(v, slot.tag)) v.push_back(slot.tag);
        }
    return v;
}

std::string FrmParametre::NomPersonne(std::uint32_t n) const {
    if (!n || !app_.BaseOuverte()) return {};
    return app_.base().NomDates(n);
}

int FrmParametre::AjouteParticule(const std::string& texte) {
    const std::string t = Trim(texte);
    if (t.empty() || t.size() > BornesParametre::kParticuleMax || t.find_first_of(" #\r\n") != std::string::npos)
        return Refuse(MsgParametre::kParticule, t);
    for (const auto& p : etat.p.particules)
        if (p.texte == t) return Refuse(MsgParametre::kDouble, t);
    etat.p.particules.push_back({t, true, false});
    return 0;
}

int FrmParametre::AjouteAffichage(const std::string& tag) {
    const std::string t = Conv_TagLibelle(Trim(tag));
    if (int m = RefusMot(t)) return Refuse(m, t);
    if (t.find('/') != std::string::npos) return Refuse(MsgParametre::kBarre, t);
    if (Contient(etat.p.affichageNom, t)) return Refuse(MsgParametre::kDouble, LibelleTagParametre(t));
    if (etat.p.affichageNom.size() >= BornesParametre::kAffichageMax)
        return Refuse(MsgParametre::kAffichageTrop);
    etat.p.affichageNom.push_back(t);
    return 0;
}

int FrmParametre::AjouteTagRubrique(std::size_t liste, const std::string& texte) {
    if (liste >= etat.p.rubriques.size()) return 0;
    const std::string t = Conv_TagLibelle(Trim(texte));
    if (int m = RefusMot(t)) return Refuse(m, t);
    auto& tags = etat.p.rubriques[liste].second;
    if (Contient(tags, t)) return Refuse(MsgParametre::kDouble, LibelleTagParametre(t));
    tags.push_back(t);
    return 0;
}

int FrmParametre::AjouteEvenement(const std::string& texte) {
    const std::string t = Conv_TagLibelle(Trim(texte));
    if (int m = RefusMot(t)) return Refuse(m, t);
    for (const auto& e : etat.p.temoins)
        if (e.evenement == t) return Refuse(MsgParametre::kDouble, LibelleTagParametre(t));
    etat.p.temoins.push_back({t, {}});
    return 0;
}

int FrmParametre::AjouteRole(std::size_t evenement, const Role& role) {
    if (evenement >= etat.p.temoins.size()) return 0;
    Role r = role;
    r.tag = Conv_TagLibelle(Trim(r.tag));
    if (int m = RefusMot(r.tag)) return Refuse(m, r.tag);
    auto& roles = etat.p.temoins[evenement].roles;
    if (roles.size() >= BornesParametre::kRolesMax)
        return Refuse(MsgParametre::kRoles, LibelleTagParametre(etat.p.temoins[evenement].evenement));
    for (const auto& x : roles)
        if (LitRole(x).tag == r.tag) return Refuse(MsgParametre::kDouble, LibelleTagParametre(r.tag));
    roles.push_back(EcritRole(r));
    return 0;
}

int FrmParametre::AjouteTypeDocument(const std::string& texte) {
    const std::string t = Trim(texte);
    if (int m = RefusMot(t)) return Refuse(m, t);
    if (Contient(etat.p.typesDocument, t)) return Refuse(MsgParametre::kDouble, t);
    etat.p.typesDocument.push_back(t);
    return 0;
}

int FrmParametre::AjouteGraphisme(const std::string& format, const std::string& extensions) {
    const std::string f = Trim(format), e = Trim(extensions);
    if (RefusMot(f) || e.empty() || !LigneSimple(e)) return Refuse(MsgParametre::kGraphisme, f);
    for (const auto& [x, y] : etat.p.graphisme)
        if (x == f) return Refuse(MsgParametre::kDouble, f);
    etat.p.graphisme.emplace_back(f, e);
    return 0;
}

bool FrmParametre::ChoisitDeCujus(int i) {
    if (!app_.BaseOuverte()) return false;
    std::int32_t& d = i == 2 ? etat.p.deCujus2 : etat.p.deCujus;
    const std::uint32_t depart = d > 0 ? static_cast<std::uint32_t>(d) : app_.personneEnCours();
    const std::uint32_t n = selecteur_.ChoisitPersonne(depart, i == 2 ? 358 : 357);
    if (!n) return false;
    d = static_cast<std::int32_t>(n);
    return true;
}

} // namespace sylvane
