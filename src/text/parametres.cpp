#include "text/parametres.h"

#include "text/messages.h"
#include "text/reglages.h"
#include "text/tags.h"
#include "text/utf8.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <type_traits>

namespace sylvane {
namespace {

const std::string kDefaut = "Defaut";
const std::string kParticule = "Particule";
const std::string kListeRubriques = "Liste Rubriques";
const std::string kGraphisme = "Graphisme";
const std::string kListeEvenements = "Liste Ev\xE9nements";
const std::string kEvenements = "Ev\xE9nements\\";
const std::string kTypeDocument = "Type Document ";

std::string Texte(const std::string& s) { return s; }
std::string Texte(int v) { return std::to_string(v); }
std::string Texte(bool v) { return v ? "1" : "0"; }

// Numbers are read by value: leading blanks, a sign and digits; a text that
// is no number keeps the old value.
void Valeur(const std::string& t, std::string& v) { v = t; }
void Valeur(const std::string& t, int& v) {
    char* fin = nullptr;
    const long x = std::strtol(t.c_str(), &fin, 10);
    if (fin != t.c_str() && x >= INT32_MIN && x <= INT32_MAX) v = static_cast<int>(x);
}
void Valeur(const std::string& t, bool& v) { v = t == "1"; }

std::string Numero(const char* cle, int i) { return std::string(cle) + " " + std::to_string(i); }

// The presentation values that a base keeps for itself.
template <class P, class F> void ParcoursBase(P& p, F&& f) {
    f("Couleur Fond", p.couleurFond);
    f("D\xE9grad\xE9", p.degrade);
    f("Couleur Cadre Homme", p.couleurCadreHomme);
    f("Couleur Cadre Femme", p.couleurCadreFemme);
    f("Couleur Cadre Ind\xE9termin\xE9", p.couleurCadreIndetermine);
    f("Couleur Police Homme", p.couleurPoliceHomme);
    f("Couleur Police Femme", p.couleurPoliceFemme);
    f("Couleur Police Ind\xE9termin\xE9", p.couleurPoliceIndetermine);
    f("Type Pr\xE9sentation", p.typePresentation);
    for (int i = 0; i < 4; ++i) {
        f(Numero("Nom Police", i + 1), p.nomPolice[i]);
        f(Numero("Taille Police", i + 1), p.taillePolice[i]);
        f(Numero("Nombre Cases", i + 1), p.nombreCases[i]);
        f(Numero("Proportionnel", i + 1), p.proportionnel[i]);
    }
    f("Personne en cours", p.personneEnCours);
    f("De Cujus", p.deCujus);
    f("De Cujus 2", p.deCujus2);
}

// Every single-valued key of "Defaut". "Langue" comes first: "Aide"
// follows it.
template <class P, class F> void Parcours(P& p, F&& f) {
    f("Langue", p.langue);
    f("Aide", p.aide);
    f("Travail", p.dossierTravail);
    f("Fichier Communes", p.fichierCommunes);
    f("G\xE9n\xE9" "anet", p.geneanet);
    f("Maximum Recherche Parent\xE9", p.maximumRechercheParente);
    ParcoursBase(p, f);
    f("Assistant", p.assistant);
    f("Barre de menus", p.barreMenus);
    f("Barre de fen\xEAtres", p.barreFenetres);
    f("Fr\xE9quence Sauvegarde", p.frequenceSauvegarde);
    f("Mot cl\xE9 Pr\xE9nom", p.motClePrenom);
    f("Mot cl\xE9 Nom", p.motCleNom);
    f("Conversion nom", p.conversionNom);
    f("Conversion pr\xE9nom", p.conversionPrenom);
    f("Conversion lieu", p.conversionLieu);
    f("Nom Image", p.nomImage);
    f("Auteur", p.auteur);
    for (int i = 0; i < 8; ++i) f(Numero("Adresse", i + 1), p.adresse[i]);
}

std::vector<std::string> Decoupe(const std::string& s, char sep) {
    std::vector<std::string> r;
    std::size_t debut = 0;
    while (debut <= s.size()) {
        auto fin = s.find(sep, debut);
        if (fin == std::string::npos) fin = s.size();
        if (fin > debut) r.push_back(s.substr(debut, fin - debut));
        debut = fin + 1;
    }
    return r;
}

std::string AffichageNom(const std::vector<std::string>& tags) {
    std::string r;
    for (const auto& t : tags) r += t + "/";
    return r;
}

std::string Icones(const std::vector<int>& v) {
    std::string r;
    for (std::size_t i = 0; i < v.size(); ++i) r += (i ? "," : "") + std::to_string(v[i]);
    return r;
}

std::vector<int> LitIcones(const std::string& s) {
    std::vector<int> r;
    for (const auto& x : Decoupe(s, ',')) {
        int v = -1;
        Valeur(x, v);
        if (v >= 0) r.push_back(v);
    }
    return r;
}

std::string Drapeaux(const Particule& p) {
    return std::string(p.nom ? "1" : "0") + " " + (p.prenom ? "1" : "0");
}

void EcritParticules(Reglages& r, const std::vector<Particule>& liste) {
    r.supprimeSection(kParticule);
    for (const auto& p : liste) r.ecrit(kParticule, p.texte, Drapeaux(p));
}

void EcritRubriques(Reglages& r, const Parametres& p) {
    r.supprimeSection(kListeRubriques);
    for (const auto& [liste, tags] : p.rubriques) {
        r.ecrit(kListeRubriques, liste, liste);
        r.supprimeSection("Rubrique " + liste);
        for (const auto& t : tags) r.ecrit("Rubrique " + liste, t, t);
    }
}

void EcritGraphisme(Reglages& r, const Parametres& p) {
    r.supprimeSection(kGraphisme);
    for (const auto& [format, ext] : p.graphisme) r.ecrit(kGraphisme, format, ext);
}

// Tags and roles are stored through Conv_TagLibelle, so that a word typed in
// the form goes back to its tag.
void EcritTemoins(Reglages& r, const std::vector<Temoin>& temoins) {
    r.supprimeSection(kListeEvenements);
    for (const auto& t : temoins) {
        const std::string tag = Conv_TagLibelle(t.evenement);
        r.ecrit(kListeEvenements, tag, tag);
        r.supprimeSection(kEvenements + tag);
        for (const auto& role : t.roles) {
            const std::string drapeaux = role.substr(0, 2);
            const std::string roleTag = Conv_TagLibelle(role.size() > 2 ? role.substr(2) : "");
            r.ecrit(kEvenements + tag, roleTag, drapeaux + roleTag);
        }
    }
}

void EcritTypesDocument(Reglages& r, const std::vector<std::string>& types) {
    int i = 1;
    for (const auto& t : types) r.ecrit(kDefaut, kTypeDocument + std::to_string(i++), t);
    // A shorter list must not leave the old tail behind.
    while (r.lit(kDefaut, kTypeDocument + std::to_string(i)))
        r.ecrit(kDefaut, kTypeDocument + std::to_string(i++), "");
}

} // namespace

// ---------------------------------------------------------------- Historique

void Historique::ajoute(const std::string& chemin) {
    int place = kEntrees - 1;
    for (int i = 0; i < kEntrees; ++i)
        if (entrees_[i] == chemin) {
            place = i;
            break;
        }
    for (int i = place; i > 0; --i) entrees_[i] = entrees_[i - 1];
    entrees_[0] = chemin;
}

std::string Historique::Libelle(const std::string& chemin) {
    const auto sep = chemin.find_last_of("/\\");
    std::string nom = sep == std::string::npos ? chemin : chemin.substr(sep + 1);
    return nom.size() > 4 ? nom.substr(0, nom.size() - 4) : std::string();
}

std::string Historique::Cle(int i) { return "Historique " + std::to_string(i); }

void Historique::lit(const Reglages& r) {
    for (int i = 0; i < kEntrees; ++i) entrees_[i] = r.lit(kDefaut, Cle(i + 1), "");
}

void Historique::sauve(Reglages& r) const {
    for (int i = 0; i < kEntrees; ++i)
        if (!entrees_[i].empty() || r.lit(kDefaut, Cle(i + 1))) r.ecrit(kDefaut, Cle(i + 1), entrees_[i]);
}

// ---------------------------------------------------------------- defaults

std::string DossierProgramme() {
    std::error_code ec;
    auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return Utf8VersAnsi(std::filesystem::current_path(ec).string());
    return Utf8VersAnsi(exe.parent_path().string());
}

const std::vector<Temoin>& TemoinsParDefaut() {
    static const std::vector<Temoin> table = [] {
        const std::vector<std::string> enfant = {"M CHIL", " HFATH", " FMOTH"};
        const std::vector<std::string> deces = {"M DEAD", " HWIDR", " FWIDW", " HSON", " FDAUG",
                                                "  WITN"};
        const std::vector<std::string> couple = {"MHHUSB", "MFWIFE"};
        std::vector<Temoin> t = {
            {"BIRT", {"M CHIL", " HFATH", " FMOTH", "  WITN"}},
            {"CHR", {"M CHIL", " HFATH", " FMOTH", " HGODF", " FGODM"}},
            {"MARR", {"MHHUSB", "MFWIFE", " HFATH", " FMOTH", "  WITN"}},
            {"DEAT", deces},
            {"BURI", deces},
            {"ADOP", enfant},
            {"BARM", {"MHCHIL", " HFATH", " FMOTH"}},
            {"BASM", {"MFCHIL", " HFATH", " FMOTH"}},
        };
        for (const char* e : {"ORDN", "CENS", "EMIG", "GRAD", "IMMI", "NATU", "RETI", "PROB"})
            t.push_back({e, {"M MAIN"}});
        t.push_back({"FCOM", enfant});
        t.push_back({"CONF", enfant});
        t.push_back({"CREM", {"M DEAD", " HWIDR", " FWIDW"}});
        t.push_back({"WILL", {"M DEAD", " HWIDR", " FWIDW", " HSON", " FDAUG"}});
        for (const char* e : {"ANUL", "DIV", "DIVF", "ENGA", "MARC", "MARL"})
            t.push_back({e, couple});
        return t;
    }();
    return table;
}

std::string Parametres::DossierTravail() const {
    std::string d = dossierTravail;
    if (d.empty()) {
        std::error_code ec;
        d = CheminInterne(std::filesystem::temp_directory_path(ec).string());
        if (ec || d.empty()) d = "/tmp";
    }
    if (d.back() != '/' && d.back() != '\\') d += '/';
    return d;
}

Parametres ParametresParDefaut(const std::string& dossierProgramme) {
    Parametres p;
    const std::string d = Utf8VersAnsi(dossierProgramme);
    p.aide = d + "/" + p.langue + ".chm";
    p.dossierTravail = d + "/Temp";
    p.fichierCommunes = d + "/France.svx";
    p.geneanet = d + "/geneanet";
    p.typesDocument = {"Acte", "Photographie", "Lettre", "Carte", "Page Web", "E-Mail"};
    p.rubriques = {
        {"TITL", {"IMPR", "IMPE", "KING", "QUEN", "DUKE", "DUCH", "EARL", "COUN", "SIRE", "LADY"}},
        {"RELA", {"CHIL", "FATH", "MOTH", "HUSB", "WIFE", "DEAD", "WIDW", "WIDR", "SON",  "DAUG",
                  "WITN", "GODF", "GODM", "GODC", "WARD", "GUAR", "AUNT", "BINL", "BROT", "DINL",
                  "FINL", "GFAT", "GMOT", "HEIR", "HEIS", "MINL", "SIIL", "SINL", "SIST", "SUCC",
                  "UNCL"}},
        {"EVEN", {"BIRT", "BURI", "CHR",  "DEAT", "MARR", "ADOP", "ANUL", "BARM", "BASM", "BLES",
                  "CENS", "CONF", "CREM", "DIV",  "DIVF", "EMIG", "ENDL", "ENGA", "FCOM", "IMMI",
                  "MARB", "MARC", "MARL", "NATU", "ORDN", "PROB", "RETI", "WILL", "GRAD"}},
    };
    for (const char* f : {"BMP", "DIB", "EMF", "WMF", "GIF", "JPG", "CUT", "GEM", "IFF", "IMG",
                          "LBM", "MAC", "MSP", "PCX", "PIC", "RLE", "TGA", "TIF", "WPG"}) {
        std::string ext = "*.";
        for (const char* c = f; *c; ++c) ext += static_cast<char>(*c - 'A' + 'a');
        p.graphisme.emplace_back(f, ext);
    }
    p.temoins = TemoinsParDefaut();
    return p;
}

// ---------------------------------------------------------------- read, save

void LitParametres(Reglages& r, Parametres& p, const std::string& dossierProgramme) {
    LotReglages lot(r);
    const Parametres d = ParametresParDefaut(dossierProgramme);
    p = d;
    Parcours(p, [&](const std::string& cle, auto& v) {
        if constexpr (std::is_same_v<std::decay_t<decltype(v)>, std::string>)
            if (cle == "Aide") v = Utf8VersAnsi(dossierProgramme) + "/" + p.langue + ".chm";
        Valeur(r.litOuEcrit(kDefaut, cle, Texte(v)), v);
    });
    p.affichageNom = Decoupe(r.litOuEcrit(kDefaut, "Affichage Nom", AffichageNom(d.affichageNom)), '/');
    p.icones = LitIcones(r.litOuEcrit(kDefaut, "Icones", Icones(d.icones)));

    if (!r.lit(kDefaut, kTypeDocument + "1")) EcritTypesDocument(r, d.typesDocument);
    p.typesDocument.clear();
    for (int i = 1;; ++i) {
        auto t = r.lit(kDefaut, kTypeDocument + std::to_string(i));
        if (!t || t->empty()) break;
        p.typesDocument.push_back(*t);
    }

    auto particules = r.section(kParticule);
    if (particules.empty()) EcritParticules(r, d.particules);
    p.particules.clear();
    for (const auto& [texte, drapeaux] : r.section(kParticule)) {
        const auto f = Decoupe(drapeaux, ' ');
        p.particules.push_back({texte, !f.empty() && f[0] == "1", f.size() > 1 && f[1] == "1"});
    }

    if (r.section(kListeRubriques).empty()) EcritRubriques(r, d);
    p.rubriques.clear();
    for (const auto& [liste, v] : r.section(kListeRubriques)) {
        std::vector<std::string> tags;
        for (const auto& [tag, x] : r.section("Rubrique " + liste)) tags.push_back(tag);
        p.rubriques.emplace_back(liste, std::move(tags));
    }

    if (r.section(kGraphisme).empty()) EcritGraphisme(r, d);
    p.graphisme = r.section(kGraphisme);

    if (r.section(kListeEvenements).empty()) EcritTemoins(r, d.temoins);
    p.temoins.clear();
    for (const auto& [tag, v] : r.section(kListeEvenements)) {
        Temoin t{tag, {}};
        for (const auto& [role, texte] : r.section(kEvenements + tag)) t.roles.push_back(texte);
        p.temoins.push_back(std::move(t));
    }

    p.historique.lit(r);
}

void SauveParametres(Reglages& r, const Parametres& p) {
    LotReglages lot(r);
    Parcours(p, [&](const std::string& cle, const auto& v) { r.ecrit(kDefaut, cle, Texte(v)); });
    r.ecrit(kDefaut, "Affichage Nom", AffichageNom(p.affichageNom));
    r.ecrit(kDefaut, "Icones", Icones(p.icones));
    EcritTypesDocument(r, p.typesDocument);
    EcritParticules(r, p.particules);
    EcritRubriques(r, p);
    EcritGraphisme(r, p);
    EcritTemoins(r, p.temoins);
    p.historique.sauve(r);
}

void LitParametresBase(const Reglages& r, const std::string& cheminBase, Parametres& p) {
    ParcoursBase(p, [&](const std::string& cle, auto& v) {
        if (auto t = r.lit(cheminBase, cle)) Valeur(*t, v);
    });
}

void SauveParametresBase(Reglages& r, const std::string& cheminBase, const Parametres& p) {
    LotReglages lot(r);
    ParcoursBase(p, [&](const std::string& cle, const auto& v) { r.ecrit(cheminBase, cle, Texte(v)); });
}

bool ChangeLangue(Reglages& r, Parametres& p, const std::string& langue,
                  const std::string& dossierProgramme) {
    if (!ChoisirLangue(langue, dossierProgramme)) return false;
    LotReglages lot(r);
    p.langue = langue;
    p.aide = Utf8VersAnsi(dossierProgramme) + "/" + langue + ".chm";
    r.ecrit(kDefaut, "Langue", p.langue);
    r.ecrit(kDefaut, "Aide", p.aide);
    return true;
}

bool OuvreLangueDemarrage(Reglages& r, Parametres& p, const std::string& dossierProgramme) {
    if (ChoisirLangue(p.langue, dossierProgramme)) return true;
    std::vector<std::string> essais = {"Fran\xE7" "ais"};
    for (const auto& l : ListeLangues(dossierProgramme)) essais.push_back(l);
    for (const auto& l : essais)
        if (ChangeLangue(r, p, l, dossierProgramme)) return true;
    return false;
}

} // namespace sylvane
