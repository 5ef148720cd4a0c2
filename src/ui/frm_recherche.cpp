#include "ui/frm_recherche.h"

#include "ui/frm_evenement.h"

#include "store/base.h"
#include "store/pack.h"
#include "text/messages.h"
#include "text/mots.h"
#include "ui/frm_listes.h"

#include <algorithm>

namespace sylvane {

std::uint32_t& EvenementTransmis() {
    static std::uint32_t e = 0;
    return e;
}

namespace {

// Rows taken from a scan at each step of the panel.
constexpr std::size_t kPas = 2000;

} // namespace

// --- Shared shape ---------------------------------------------------------------

FrmRechercheCommun::FrmRechercheCommun(MDIForm1& f) : f_(f), base_(f.base()) {}

Base* FrmRechercheCommun::B() {
    Base* b = f_.base();
    if (b != base_) {
        base_ = b;
        Vide();
        Change();
    }
    return b;
}

void FrmRechercheCommun::Vide() { lignes_.clear(); }

std::string FrmRechercheCommun::Cellule(std::size_t i, int c) const {
    if (i >= lignes_.size() || c < 0 || c >= static_cast<int>(lignes_[i].cellules.size()))
        return "";
    return lignes_[i].cellules[c];
}

std::uint32_t FrmRechercheCommun::PersonneLigne(std::size_t i, bool conjoint) const {
    if (i >= lignes_.size()) return 0;
    return conjoint && lignes_[i].conjoint ? lignes_[i].conjoint : lignes_[i].personne;
}

std::string FrmRechercheCommun::TagGlisser(std::size_t i) const {
    const std::uint32_t p = PersonneLigne(i);
    return p ? "I" + std::to_string(p) : "";
}

std::string FrmRechercheCommun::Nombre() const {
    return MessageAvec(msg_rech::Nombre, std::to_string(NombreLignes()));
}

void FrmRechercheCommun::Trie(int c) {
    if (c < 0 || c >= NombreColonnes()) return;
    triInverse_ = c == triColonne_ ? !triInverse_ : false;
    triColonne_ = c;
    // Numbers sort as numbers; the hidden year column sorts the names.
    auto cle = [c](const Ligne& l) {
        const std::string& t = c < static_cast<int>(l.cellules.size()) ? l.cellules[c] : "";
        const bool nombre = !t.empty() && t.find_first_not_of("0123456789") == std::string::npos;
        return nombre ? std::string(12 - std::min<std::size_t>(12, t.size()), '0') + t : CleMot(t);
    };
    std::stable_sort(lignes_.begin(), lignes_.end(), [&](const Ligne& a, const Ligne& b) {
        return triInverse_ ? cle(b) < cle(a) : cle(a) < cle(b);
    });
    Change();
}

bool FrmRechercheCommun::C_Maj(std::size_t i, bool conjoint) {
    const std::uint32_t p = PersonneLigne(i, conjoint);
    if (p == 0 || f_.Occupe() || !f_.services().fenetres.Disponible("FrmMisajour")) return false;
    f_.Confirme_Fiche_En_Cours();
    f_.personneFiche = p;
    f_.services().fenetres.Ouvre("FrmMisajour");
    return true;
}

bool FrmRechercheCommun::C_Affichage(std::size_t i, bool conjoint) {
    const std::uint32_t p = PersonneLigne(i, conjoint);
    if (p == 0 || f_.Occupe()) return false;
    f_.Aller(p);
    return true;
}

bool FrmRechercheCommun::CmdEcarter(std::size_t i) {
    if (i >= lignes_.size()) return false;
    lignes_.erase(lignes_.begin() + static_cast<std::ptrdiff_t>(i));
    Change();
    return true;
}

std::vector<std::uint32_t> FrmRechercheCommun::Personnes() const {
    std::vector<std::uint32_t> v;
    for (const Ligne& l : lignes_) {
        if (l.personne) v.push_back(l.personne);
        if (l.conjoint) v.push_back(l.conjoint);
    }
    return v;
}

bool FrmRechercheCommun::Transmet(const char* formulaire, std::size_t minimum) {
    if (f_.Occupe() || !B() || !f_.services().fenetres.Disponible(formulaire)) return false;
    const std::string liste = ListePaquet(Personnes());
    if (liste.size() / 4 < minimum) {
        f_.services().boites.Information(msg_recherche::MoinsDeDeux);
        return false;
    }
    TransfertParente& t = ParenteTransmise();
    t.liste = liste;
    t.mode = 'D';
    t.generations = 0;
    t.personne = Unpack4(liste);
    f_.services().fenetres.Ouvre(formulaire);
    return true;
}

bool FrmRechercheCommun::CmdImprimer() { return Transmet("FrmImpression", 1); }
bool FrmRechercheCommun::CmdParente() { return Transmet("FrmRechAscendant", 1); }

bool FrmRechercheCommun::CmdStats() {
    if (f_.Occupe()) return false;
    if (f_.services().fenetres.EstOuverte("FrmStats")) {
        f_.services().boites.Texte(Message(msg_recherche::StatsOuverte) +
                                   Message(msg_recherche::StatsOuverte2));
        return false;
    }
    return Transmet("FrmStats", 1);
}

bool FrmRechercheCommun::CmdExporter() {
    Base* b = B();
    if (f_.Occupe() || !b || !f_.services().fenetres.Disponible("FrmExporter")) return false;
    const std::vector<std::uint32_t> personnes = Personnes();
    if (personnes.empty()) {
        f_.services().boites.Information(msg_recherche::MoinsDeDeux);
        return false;
    }
    f_.services().fenetres.Ouvre("FrmExporter");
    Selection* sel = marquesExport ? marquesExport() : nullptr;
    if (sel == nullptr) return false;
    MarqueExport(*b, personnes, *sel);
    return true;
}

bool FrmRechercheCommun::Balaye(Balayage& s, const std::function<std::size_t()>& prend) {
    auto& services = f_.services();
    OperationLongue op(services.panneau, services.boites, Message(Titre()));
    std::size_t trouves = 0;
    return Execute(
        s, op.interaction(),
        [&] {
            const std::size_t n = prend();
            trouves += n;
            if (n) Change();
            op.Texte(MessageAvec(msg_rech::Trouves, std::to_string(trouves)) + " (" +
                     std::to_string(s.Fait()) + "/" + std::to_string(s.Total()) + ")");
        },
        kPas);
}

// --- Name search --------------------------------------------------------------------

int FrmRecherche::Entete(int c) const {
    static const int e[] = {msg_rech::ColNumero, msg_rech::ColNom, msg_rech::ColFamille,
                            msg_rech::ColDates};
    return c >= 0 && c < 4 ? e[c] : 0;
}

std::uint32_t FrmRecherche::PersonneLigne(std::size_t i, bool) const { return ensemble_.At(i); }

std::string FrmRecherche::TagGlisser(std::size_t i) const {
    const std::uint32_t p = ensemble_.At(i);
    return p ? "I" + std::to_string(p) : "";
}

std::string FrmRecherche::Cellule(std::size_t i, int c) const {
    const std::uint32_t n = ensemble_.At(i);
    Base* b = f_.base();
    if (n == 0 || b == nullptr || b != base_) return "";
    switch (c) {
    case 0: return std::to_string(n);
    case 1: return b->NomComplet(n);
    case 2: return CodeFamille(*b, n);
    case 3: return DatesPersonne(*b, n);
    default: return "";
    }
}

bool FrmRecherche::C_Recherche() {
    if (f_.Occupe()) return false;
    Base* b = B();
    if (b == nullptr) return false;
    if (Trim(texte).empty()) {
        f_.services().boites.Information(msg_recherche::CriteresVides);
        return false;
    }
    texte = Plie(texte);
    CriteresNom c;
    c.texte = texte;
    RechercheNom r(*b, c);
    std::size_t vus = 0;
    Balaye(r, [&] {
        auto v = r.Prend();
        // Without cumul the earlier result goes at the first hit: a search
        // that finds nothing leaves it.
        if (vus == 0 && !v.empty() && !cumul) ensemble_.Vide_();
        vus += v.size();
        return ensemble_.Fusionne(std::move(v));
    });
    if (vus == 0) f_.services().boites.Information(msg_recherche::RienTrouve);
    Change();
    return vus > 0;
}

bool FrmRecherche::CmdEcarter(std::size_t i) {
    if (!ensemble_.RetireRang(i)) return false;
    Change();
    return true;
}

bool FrmRecherche::CmdAjouter() {
    if (f_.Occupe() || !B()) return false;
    const std::uint32_t n = f_.services().selecteur.ChoisitPersonne(f_.PersonneEnCours());
    return RecoitGlisser('I', n);
}

bool FrmRecherche::RecoitGlisser(char genre, std::uint32_t numero) {
    Base* b = B();
    if (b == nullptr || numero == 0) return false;
    std::uint32_t n = numero;
    if (genre == 'E') n = PersonneEvt(*b, numero);
    else if (genre != 'I') return false;
    if (n == 0 || b->TrouvePlaceFiche(n) == 0) return false;
    if (!ensemble_.Ajoute(n)) return false;
    Change();
    return true;
}

// --- Keyword search -------------------------------------------------------------------

std::vector<std::pair<char, std::string>> FrmRechTexte::Genres() {
    std::vector<std::pair<char, std::string>> v;
    Base* b = B();
    if (b == nullptr) return v;
    for (std::uint32_t k = 1; k <= b->Tete().nbRubriques; ++k) {
        const std::string r = b->LibelleRubrique(k);
        if (r.empty() || r[0] == ' ') continue;
        v.emplace_back(r[0], r.substr(1));
    }
    return v;
}

int FrmRechTexte::Entete(int c) const {
    static const int e[] = {msg_rech::ColCle,       msg_rech::ColDetail,    msg_rech::ColNom,
                            msg_rech::ColParents,   msg_rech::ColSansMariage,
                            msg_rech::ColSansEnfant, msg_rech::ColNumero,   msg_rech::ColAnnee,
                            msg_rech::ColAnnee};
    return c >= 0 && c < 9 ? e[c] : 0;
}

bool FrmRechTexte::C_Recherche() {
    if (f_.Occupe()) return false;
    Base* b = B();
    if (b == nullptr) return false;
    if (criteres.Vides()) {
        f_.services().boites.Information(msg_recherche::CriteresMotsVides);
        return false;
    }
    for (auto& l : criteres.lignes) l.texte = CleMot(l.texte);
    RechercheMots r(*b, criteres);
    if (!r.ParIndex() &&
        f_.services().boites.Question(msg_recherche::BalayageLong) != Reponse::Oui)
        return false;
    if (!cumul) {
        lignes_.clear();
        Change();
    }
    Balaye(r, [&] {
        auto v = r.Prend();
        for (LigneMot& l : v)
            lignes_.push_back({l.personne, l.personne, 0,
                               {l.cle, l.detail, l.nom, l.parents, l.sansMariage, l.sansEnfant,
                                std::to_string(l.personne), Trim(b->LitAnNaiss(l.personne)),
                                l.annee}});
        return v.size();
    });
    Change();
    return true;
}

// --- Couple search --------------------------------------------------------------------

int FrmRechCouple::Entete(int c) const {
    static const int e[] = {msg_rech::ColMari,    msg_rech::ColFemme,   msg_rech::ColMarque,
                            msg_rech::ColNomMari, msg_rech::ColNomFemme, msg_rech::ColDate,
                            msg_rech::ColLieu,    msg_rech::ColParents, msg_rech::ColEnfants,
                            msg_rech::ColMariage};
    return c >= 0 && c < 10 ? e[c] : 0;
}

bool FrmRechCouple::C_Recherche() {
    if (f_.Occupe()) return false;
    Base* b = B();
    if (b == nullptr) return false;
    if (criteres.Vides()) {
        f_.services().boites.Information(msg_recherche::CriteresCoupleVides);
        return false;
    }
    RechercheCouple r(*b, criteres);
    if (!r.ParIndex() &&
        f_.services().boites.Question(msg_recherche::BalayageLong) != Reponse::Oui)
        return false;
    lignes_.clear();
    Change();
    Balaye(r, [&] {
        auto v = r.Prend();
        for (LigneCouple& l : v)
            lignes_.push_back({l.mariage, l.mari, l.femme,
                               {std::to_string(l.mari), l.femme ? std::to_string(l.femme) : "",
                                " M ", l.nomMari, l.nomFemme, l.date, l.lieu, l.parents,
                                std::to_string(l.enfants), std::to_string(l.mariage)}});
        return v.size();
    });
    Change();
    return true;
}

// --- Event search ---------------------------------------------------------------------

int FrmRechEvt::Entete(int c) const {
    static const int e[] = {msg_rech::ColDate, msg_rech::ColType, msg_rech::ColLieu,
                            msg_rech::ColDescription, msg_rech::ColEvenement};
    return c >= 0 && c < 5 ? e[c] : 0;
}

std::uint32_t FrmRechEvt::PersonneLigne(std::size_t i, bool) const {
    if (i >= lignes_.size() || f_.base() == nullptr || f_.base() != base_) return 0;
    return PersonneEvt(*f_.base(), lignes_[i].numero);
}

std::string FrmRechEvt::TagGlisser(std::size_t i) const {
    return i < lignes_.size() ? "E" + std::to_string(lignes_[i].numero) : "";
}

void FrmRechEvt::Trie(int c) {
    // The date column sorts on the day number, kept in the hidden cell.
    if (c != 0) return FrmRechercheCommun::Trie(c);
    triInverse_ = c == triColonne_ ? !triInverse_ : false;
    triColonne_ = c;
    std::stable_sort(lignes_.begin(), lignes_.end(), [&](const Ligne& a, const Ligne& b) {
        const long x = std::stol(a.cellules[5]), y = std::stol(b.cellules[5]);
        return triInverse_ ? y < x : x < y;
    });
    Change();
}

bool FrmRechEvt::C_Recherche() {
    if (f_.Occupe()) return false;
    Base* b = B();
    if (b == nullptr) return false;
    champErrone = 0;
    if (const int refus = criteres.Refus()) {
        if (refus == msg_recherche::AnneeNonNumerique)
            champErrone = CriteresEvt{"", "", criteres.anDebut, ""}.Refus() ==
                                  msg_recherche::AnneeNonNumerique
                              ? 1
                              : 2;
        f_.services().boites.Information(refus);
        return false;
    }
    lignes_.clear();
    Change();
    RechercheEvt r(*b, criteres, JourAujourdhui());
    Balaye(r, [&] {
        auto v = r.Prend();
        for (LigneEvt& l : v)
            lignes_.push_back({l.evt, 0, 0,
                               {l.date, l.tag, l.lieu, l.description, std::to_string(l.evt),
                                std::to_string(l.jour)}});
        return v.size();
    });
    Change();
    return true;
}

bool FrmRechEvt::C_Maj(std::size_t i, bool) {
    if (i >= lignes_.size() || f_.Occupe() || !f_.services().fenetres.Disponible("FrmDesEvt"))
        return false;
    EvenementTransmis() = lignes_[i].numero;
    return OuvreEvenement(f_, lignes_[i].numero);
}

} // namespace sylvane
