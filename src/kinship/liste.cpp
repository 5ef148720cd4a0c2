// The walk, the keys, the sort and the work files of the ascendant and
// descendant lists.
#include "kinship/liste.h"

#include "store/pack.h"
#include "text/mots.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace sylvane {
namespace {

constexpr int kTailleCrit = 18;
constexpr int kTailleSuit = 12;
constexpr int kEnfantsLus = 200;

void Ecrit16(std::string& s, std::int32_t v) {
    auto u = static_cast<std::uint16_t>(v);
    s += static_cast<char>(u & 0xFF);
    s += static_cast<char>(u >> 8);
}

void Ecrit32(std::string& s, std::int32_t v) {
    char b[4];
    EcritBrut(b, v);
    s.append(b, 4);
}

// Decimal digits, left-padded with "0" to at least `largeur`.
std::string Chiffres(std::int64_t v, std::size_t largeur) {
    std::string s = std::to_string(v);
    if (s.size() < largeur) s.insert(0, largeur - s.size(), '0');
    return s;
}

// The number of child i (from 1) of a descendant whose number is `parent`:
// " 1" to " 9", "10" ... at the top; below, "-" before 1 to 9 and the soft
// hyphen before 10 and more, so that the strings sort in tree order.
std::string NumeroEnfant(const std::string& parent, int i) {
    if (parent.empty()) return i < 10 ? " " + std::to_string(i) : std::to_string(i);
    return parent + (i < 10 ? '-' : '\xAD') + std::to_string(i);
}

} // namespace

ListeParente::ListeParente(Base& base, SystemeFichiers& fs) : base_(base), fs_(fs) {}

std::string ListeParente::CheminTravail(const char* souche) const {
    std::string dossier = base_.Params().dossierTravail;
    if (dossier.empty()) dossier = ".";
    if (dossier.back() != '/') dossier += '/';
    return dossier + souche + base_.Chemins().titre + ".tmp";
}

void ListeParente::SupprimeFichiers() {
    fs_.supprimer(CheminCrit());
    fs_.supprimer(CheminSuit());
}

bool ListeParente::ConstruitAscendants(std::uint32_t personne, std::int32_t& nombre, int niveaux,
                                       int modeTriListe) {
    return Construit(false, personne, nombre, niveaux, modeTriListe);
}

bool ListeParente::ConstruitDescendants(std::uint32_t personne, std::int32_t& nombre, int niveaux,
                                        int modeTriListe) {
    return Construit(true, personne, nombre, niveaux, modeTriListe);
}

bool ListeParente::Construit(bool descendante, std::uint32_t personne, std::int32_t& nombre,
                             int niveaux, int modeTriListe) {
    descendante_ = descendante;
    niveauMax_ = static_cast<std::int16_t>(std::clamp(niveaux, 0, 32767));
    modeTriListe_ = static_cast<std::int16_t>(std::clamp(modeTriListe, 0, 3));
    limiteAtteinte_ = false;
    doublon_ = false;
    Abandon = false;
    visites_ = 0;
    crit_.clear();
    suit_.clear();
    impr_.clear();
    longueurCle_.clear();
    numerosDescendance_.clear();
    vusParLien_.clear();
    const std::size_t taille = std::size_t{base_.Tete().maxPersonne} + 1;
    occurrences_.assign(taille, 0);
    premiereSuite_.assign(taille, 0);
    derniereSuite_.assign(taille, 0);
    if (!Valide(personne)) return false;

    const std::string impr = CheminImpr();
    try {
        // Opened as the run starts, so that a folder that refuses them
        // ends the run before the walk.
        fs_.ouvrir(CheminCrit(), Mode::Ecrasement);
        fs_.ouvrir(CheminSuit(), Mode::Ecrasement);
        auto fichierImpr = fs_.ouvrir(impr, Mode::Ecrasement);
        Parcours(Visite{personne, 1, 0, 1, {}});
        if (Abandon) {
            fichierImpr.reset();
            fs_.supprimer(impr);
            crit_.clear();
            return false;
        }
        if (modeTriListe_ != TriParcours) {
            fichierImpr->ecrire(0, impr_);
            TriListe();
        }
        fichierImpr.reset();
        fs_.supprimer(impr);
        EcritFichiers();
    } catch (const ErreurES&) {
        crit_.clear();
        try {
            fs_.supprimer(impr);
        } catch (const ErreurES&) {
            // A folder that refuses everything keeps its stray key file.
        }
        return false;
    }
    nombre = NombreEntrees();
    return true;
}

// --- The walk -------------------------------------------------------------------

bool ListeParente::ArretVisite() {
    if (Abandon || limiteAtteinte_) return true;
    if (++visites_ > kVisitesMax) return Limite();
    // A long run through persons already listed (every path of an implex
    // walked) still lets the interface run, so that Stop is heard.
    if (visites_ % 20000 == 0 && progres) {
        progres(std::to_string(crit_.size()) + (descendante_ ? " Descendants" : " Ascendants"));
        if (Abandon) return true;
    }
    return false;
}

bool ListeParente::Limite() {
    limiteAtteinte_ = true;
    if (avertit)
        avertit(descendante_ ? "Recherche limit\xE9"
                               "e - Plus de 32.000 Descendants"
                             : "Recherche limit\xE9"
                               "e - Plus de 32.000 Ascendants");
    return true;
}

// Depth first, over an explicit stack so that a deep base cannot exhaust the
// call stack: a person, then the father's branch, then the mother's
// (ascendants), or the children in their stored order (descendants).
void ListeParente::Parcours(Visite depart) {
    std::vector<Visite> pile;
    // The line from the reference person down (up) to the visit: a person
    // met again on its own line is a loop of damaged parent links, which
    // would be walked round until the limits with ever longer numbers.
    std::vector<std::uint32_t> ligne;
    std::vector<bool> surLaLigne(occurrences_.size(), false);
    bool boucleDite = false;
    pile.push_back(std::move(depart));
    while (!pile.empty()) {
        Visite v = std::move(pile.back());
        pile.pop_back();
        if (ArretVisite()) return;
        while (ligne.size() >= static_cast<std::size_t>(v.generation)) {
            surLaLigne[ligne.back()] = false;
            ligne.pop_back();
        }
        // A list that walks no person twice needs no such care.
        if (surLaLigne[v.personne] && ArretDoublon != 1) {
            if (!boucleDite && avertit)
                avertit("Boucle dans les liens : " + base_.NomDates(v.personne) +
                        (descendante_ ? " est son propre descendant" : " est son propre anc\xEAtre"));
            boucleDite = true;
            continue;
        }
        surLaLigne[v.personne] = true;
        ligne.push_back(v.personne);
        if (descendante_)
            AjouteDescendant(v);
        else
            AjouteAscendant(v);
        if (limiteAtteinte_) return;
        if (doublon_ && ArretDoublon == 1) continue;
        if (v.generation >= niveauMax_) continue;
        const auto suivante = static_cast<std::int16_t>(v.generation + 1);
        if (!descendante_) {
            // Doubling stops at generation 30: beyond, a parent keeps the
            // number of its child.
            const bool double_ = v.generation < 30;
            const std::uint32_t pere = base_.LitPere(v.personne);
            const std::uint32_t mere = base_.LitMere(v.personne);
            if (Valide(mere))
                pile.push_back({mere, suivante, v.personne, double_ ? v.sosa * 2 + 1 : v.sosa, {}});
            if (Valide(pere))
                pile.push_back({pere, suivante, v.personne, double_ ? v.sosa * 2 : v.sosa, {}});
            continue;
        }
        const std::string enfants = base_.ListeEnfants(v.personne);
        const int nb = std::min<int>(kEnfantsLus, static_cast<int>(enfants.size() / 4));
        const std::size_t haut = pile.size();
        for (int i = 1; i <= nb; ++i) {
            const std::uint32_t enfant = Unpack4(enfants, static_cast<std::size_t>(i - 1) * 4);
            if (enfant == 0) break;
            if (Valide(enfant))
                pile.push_back({enfant, suivante, v.personne, 0, NumeroEnfant(v.numero, i)});
        }
        std::reverse(pile.begin() + static_cast<std::ptrdiff_t>(haut), pile.end());
    }
}

void ListeParente::AjouteEntree(const Visite& v, std::int32_t numero, const std::string& cle) {
    const auto position = static_cast<std::int32_t>(impr_.size() + 1);
    if (modeTriListe_ != TriParcours) {
        const std::size_t longueur = std::min<std::size_t>(cle.size(), 0xFFFF);
        impr_.append(cle, 0, longueur);
        longueurCle_.push_back(static_cast<std::uint16_t>(longueur));
    }
    crit_.push_back({position, v.personne, v.lien, numero, v.generation});
    doublon_ = false;
    occurrences_[v.personne] = 1;
    premiereSuite_[v.personne] = 0;
    derniereSuite_[v.personne] = 0;
    if (progres)
        progres(std::to_string(crit_.size()) + (descendante_ ? " Descendants" : " Ascendants"));
}

std::uint32_t ListeParente::AjouteSuite(std::uint32_t personne, const Occurrence& occ) {
    suit_.push_back({occ, 0});
    const auto k = static_cast<std::uint32_t>(suit_.size());
    if (premiereSuite_[personne] == 0)
        premiereSuite_[personne] = k;
    else
        suit_[derniereSuite_[personne] - 1].suivant = k;
    derniereSuite_[personne] = k;
    return k;
}

void ListeParente::AjouteAscendant(const Visite& v) {
    if (NombreEntrees() >= kLimiteListe) {
        Limite();
        return;
    }
    if (occurrences_[v.personne] != 0) {
        ++occurrences_[v.personne];
        AjouteSuite(v.personne, {v.generation, v.lien, v.sosa});
        doublon_ = true;
        return;
    }
    AjouteEntree(v, v.sosa, CleTri(v));
}

void ListeParente::AjouteDescendant(const Visite& v) {
    if (NombreEntrees() >= kLimiteListe) {
        Limite();
        return;
    }
    if (occurrences_[v.personne] == 0) {
        numerosDescendance_.push_back(v.numero);
        AjouteEntree(v, static_cast<std::int32_t>(numerosDescendance_.size()), CleTri(v));
        return;
    }
    ++occurrences_[v.personne];
    doublon_ = true;
    // Only one further occurrence per parent and generation is kept.
    if (!vusParLien_.insert({v.personne, v.lien, v.generation}).second) return;
    numerosDescendance_.push_back(v.numero);
    AjouteSuite(v.personne,
                {v.generation, v.lien, static_cast<std::int32_t>(numerosDescendance_.size())});
}

// --- Keys and sort --------------------------------------------------------------

std::string ListeParente::CleTri(const Visite& v) {
    const std::uint32_t p = v.personne;
    std::string cle;
    switch (modeTriListe_) {
    case TriGeneration:
        if (descendante_) return Pack2(static_cast<std::uint32_t>(v.generation)) + v.numero;
        return Chiffres(v.generation, 2) + Chiffres(v.sosa, 16);
    case TriNaissance:
        cle = base_.CleAnNaiss(p);
        break;
    case TriNom:
        cle = CleMot(base_.SansParticule(base_.LitNom(p)) + " " + base_.LitPrenom(p));
        break;
    default:
        return {};
    }
    cle += Pack4(p);
    if (descendante_) return cle + Pack2(static_cast<std::uint32_t>(v.generation)) + v.numero;
    return cle + Pack4(static_cast<std::uint32_t>(v.sosa));
}

// Equal keys keep the order of the walk, as the tree sort of the keys did.
void ListeParente::TriListe() {
    if (progres) progres("Tri en cours");
    std::vector<std::string_view> cles(crit_.size());
    for (std::size_t i = 0; i < crit_.size(); ++i)
        cles[i] = std::string_view(impr_).substr(static_cast<std::size_t>(crit_[i].position - 1),
                                                 longueurCle_[i]);
    std::vector<std::uint32_t> ordre(crit_.size());
    std::iota(ordre.begin(), ordre.end(), 0u);
    std::stable_sort(ordre.begin(), ordre.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return cles[a] < cles[b]; });
    std::vector<EnregCrit> tries;
    tries.reserve(crit_.size());
    for (std::uint32_t i : ordre)
        tries.push_back(crit_[i]);
    crit_ = std::move(tries);
}

void ListeParente::EcritFichiers() {
    std::string crit;
    crit.reserve(crit_.size() * kTailleCrit);
    for (const EnregCrit& e : crit_) {
        Ecrit32(crit, e.position);
        Ecrit32(crit, static_cast<std::int32_t>(e.personne));
        Ecrit32(crit, static_cast<std::int32_t>(e.lien));
        Ecrit32(crit, e.numero);
        Ecrit16(crit, e.generation);
    }
    std::string suit;
    suit.reserve(suit_.size() * kTailleSuit);
    for (const EnregSuit& s : suit_) {
        Ecrit16(suit, s.occ.generation);
        Ecrit32(suit, static_cast<std::int32_t>(s.occ.lien));
        Ecrit32(suit, s.occ.numero);
        // The link is 16 bits wide on disk: a chain past record 32,767
        // cannot be followed in the file (the list in memory can).
        Ecrit16(suit, static_cast<std::int32_t>(s.suivant));
    }
    fs_.ouvrir(CheminCrit(), Mode::Ecrasement)->ecrire(0, crit);
    fs_.ouvrir(CheminSuit(), Mode::Ecrasement)->ecrire(0, suit);
}

// --- Accessors ------------------------------------------------------------------

ListeParente::EnregCrit ListeParente::Entree(std::int32_t n) const {
    if (n < 1 || n > NombreEntrees()) return {};
    return crit_[static_cast<std::size_t>(n - 1)];
}

std::int32_t ListeParente::ListePosition(std::int32_t n) const {
    return Entree(n).position;
}
std::uint32_t ListeParente::ListePersonne(std::int32_t n) const {
    return Entree(n).personne;
}
std::uint32_t ListeParente::ListeLien(std::int32_t n) const {
    return Entree(n).lien;
}
std::int32_t ListeParente::ListeNumero(std::int32_t n) const {
    return Entree(n).numero;
}
std::int16_t ListeParente::ListeGeneration(std::int32_t n) const {
    return Entree(n).generation;
}

std::uint32_t ListeParente::ListeOccurrences(std::uint32_t personne) const {
    return personne < occurrences_.size() ? occurrences_[personne] : 0;
}

std::vector<Occurrence> ListeParente::OccurrencesEntree(std::int32_t n) const {
    std::vector<Occurrence> r;
    const EnregCrit e = Entree(n);
    if (e.personne == 0) return r;
    r.push_back({e.generation, e.lien, e.numero});
    for (std::uint32_t k = premiereSuite_[e.personne]; k != 0; k = suit_[k - 1].suivant)
        r.push_back(suit_[k - 1].occ);
    return r;
}

const std::string& ListeParente::NumerosDescendance(std::int32_t i) const {
    static const std::string vide;
    if (i < 1 || static_cast<std::size_t>(i) > numerosDescendance_.size()) return vide;
    return numerosDescendance_[static_cast<std::size_t>(i - 1)];
}

} // namespace sylvane
