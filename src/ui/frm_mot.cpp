// The keyword and rubric forms: their state and rules over the core.
#include "ui/frm_mot.h"

#include "publish/recapitulation.h"
#include "store/evenement_edition.h"
#include "store/pack.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/tags.h"
#include "ui/commandes_communes.h"
#include "ui/frm_evenement.h"

#include <algorithm>

namespace sylvane {
namespace {

const std::string kListeRubriques = "Liste Rubriques";
const std::string kRubrique = "Rubrique ";

// Runs a change of the base with the progress panel up. A file failure has
// given the base up: it is shown, and the base opened again at its last
// commit. Returns the refusal of the change (0 when done), -1 on failure.
int ChangeBase(MDIForm1& f, int titre, const std::function<int(OperationLongue&)>& action) {
    Base& b = *f.base();
    const std::string chemin = b.Chemins().base;
    int refus = 0;
    bool ok = false;
    {
        OperationLongue op(f.services().panneau, f.services().boites, Message(titre));
        b.progres_ = [&op](const std::string& t, const std::string& x) {
            op.Texte(t.empty() ? x : t + " " + x);
        };
        ok = Protege(f.services().boites, [&] { refus = action(op); });
        b.progres_ = nullptr;
    }
    if (!ok && !f.app().BaseOuverte())
        Protege(f.services().boites, [&] { f.app().OuvreBase(chemin); });
    f.Aller(f.PersonneEnCours());
    if (ok && refus) f.services().boites.Information(refus);
    return ok ? refus : -1;
}

bool SansDiese(const std::string& t) { return t.find('#') == std::string::npos; }

} // namespace

// --- ListeMotsCles ---------------------------------------------------------------------------

ListeMotsCles::ListeMotsCles(Base& b, char marque) : b_(&b), marque_(marque) {
    const std::uint32_t k = b.RubriqueDeSymbole(marque);
    indexee_ = k != 0 && b.PosListeRubrique(k) != 0;
    if (indexee_) liste_ = b.ListeRubrique(k);
}

std::vector<LigneMotCle> ListeMotsCles::Page(std::size_t debut, std::size_t n) const {
    std::vector<LigneMotCle> v;
    for (std::size_t i = debut; i < Taille() && v.size() < n; ++i) {
        const std::uint32_t e = Unpack4(liste_, i * 4);
        v.push_back({e, b_->LitMot(e), Unpack4(b_->EntreeMot(e), 4)});
    }
    return v;
}

std::size_t ListeMotsCles::Rang(const std::string& texte) const {
    const std::string cle = CleMotSaisi(texte);
    std::size_t bas = 0, haut = Taille();
    while (bas < haut) {
        const std::size_t m = bas + (haut - bas) / 2;
        if (b_->LitMot(Unpack4(liste_, m * 4)) < cle)
            bas = m + 1;
        else
            haut = m;
    }
    return bas;
}

std::uint32_t ListeMotsCles::Exact(const std::string& texte) const {
    const std::string cle = CleMotSaisi(texte);
    if (cle.empty()) return 0;
    const std::size_t r = Rang(texte);
    if (r >= Taille()) return 0;
    const std::uint32_t e = Unpack4(liste_, r * 4);
    return b_->LitMot(e) == cle ? e : 0;
}

// --- FrmMotCle --------------------------------------------------------------------------------

FrmMotCle::FrmMotCle(MDIForm1& f) : f_(f) {
    Relit();
    if (B()) {
        ind_ = RangsRubriques(*B(), false);
        mar_ = RangsRubriques(*B(), true);
    }
}

void FrmMotCle::Relit() {
    genres_ = B() ? GenresMots(*B()) : std::vector<GenreMot>{};
    if (selection >= static_cast<int>(genres_.size())) selection = -1;
}

bool FrmMotCle::Refus(int message) {
    f_.services().boites.Information(message);
    return false;
}

template <class F>
bool FrmMotCle::Change(F&& f) {
    if (f_.Occupe() || !B()) return false;
    const int r = ChangeBase(f_, msg_mots::TitreMotCle, [&](OperationLongue&) { return f(*B()); });
    Relit();
    return r == 0;
}

void FrmMotCle::Selectionne(int rang) {
    if (rang < 0 || rang >= static_cast<int>(genres_.size())) {
        selection = -1;
        return;
    }
    selection = rang;
    const GenreMot& g = genres_[static_cast<std::size_t>(rang)];
    libelle = g.libelle;
    marque.assign(1, g.marque);
    index = g.indexe;
}

bool FrmMotCle::C_Ajout() {
    if (!SansDiese(libelle)) return Refus(msg_mots::LibelleVide);
    if (!Change([this](Base& b) { return AjouteGenre(b, marque, libelle, index); })) return false;
    Selectionne(static_cast<int>(genres_.size()) - 1);
    return true;
}

bool FrmMotCle::C_Maj() {
    if (selection < 0) return false;
    if (!SansDiese(libelle)) return Refus(msg_mots::LibelleVide);
    const char avant = genres_[static_cast<std::size_t>(selection)].marque;
    const auto k = static_cast<std::uint32_t>(selection + 1);
    if (!Change([&](Base& b) { return ModifieGenre(b, k, marque, libelle, index); })) return false;
    const char apres = genres_[static_cast<std::size_t>(selection)].marque;
    for (auto* rangs : {&ind_, &mar_})
        for (auto& s : *rangs)
            if (s.symbole == avant) s.symbole = apres;
    Selectionne(selection);
    return true;
}

bool FrmMotCle::C_Supp() {
    if (selection < 0) return false;
    const char m = genres_[static_cast<std::size_t>(selection)].marque;
    for (const auto* rangs : {&ind_, &mar_})
        for (const auto& s : *rangs)
            if (s.symbole == m) return Refus(msg_mots::GenreEmploye);
    const auto k = static_cast<std::uint32_t>(selection + 1);
    if (!Change([k](Base& b) { return SupprimeGenre(b, k); })) return false;
    Selectionne(std::min(selection, static_cast<int>(genres_.size()) - 1));
    return true;
}

bool FrmMotCle::CmdMotUp() {
    if (selection <= 0 || f_.Occupe() || !B()) return false;
    EchangeGenres(*B(), static_cast<std::uint32_t>(selection), static_cast<std::uint32_t>(selection + 1));
    Relit();
    Selectionne(selection - 1);
    return true;
}

bool FrmMotCle::CmdMotDown() {
    if (selection < 0 || selection + 1 >= static_cast<int>(genres_.size()) || f_.Occupe() || !B())
        return false;
    EchangeGenres(*B(), static_cast<std::uint32_t>(selection + 1), static_cast<std::uint32_t>(selection + 2));
    Relit();
    Selectionne(selection + 1);
    return true;
}

char FrmMotCle::C_Liste() const {
    return selection < 0 ? ' ' : genres_[static_cast<std::size_t>(selection)].marque;
}

std::vector<GenreMot> FrmMotCle::Possibles() const {
    std::vector<GenreMot> v;
    for (const auto& g : genres_)
        if (g.marque != ' ' && !MarqueFixe(g.marque)) v.push_back(g);
    return v;
}

bool FrmMotCle::CmdAjtMot(bool mariage, int rang, bool date) {
    const auto p = Possibles();
    if (rang < 0 || rang >= static_cast<int>(p.size())) return false;
    auto& rangs = mariage ? mar_ : ind_;
    const GenreMot& g = p[static_cast<std::size_t>(rang)];
    for (const auto& s : rangs)
        if (s.symbole == g.marque) return false;
    if (rangs.size() >= 10) return Refus(msg_mots::TropDeRubriques);
    rangs.push_back({g.marque, date ? '1' : ' ', g.tag});
    modifie_ = true;
    return true;
}

bool FrmMotCle::CmdSupMot(bool mariage, int rang) {
    auto& rangs = mariage ? mar_ : ind_;
    if (rang < 0 || rang >= static_cast<int>(rangs.size())) return false;
    rangs.erase(rangs.begin() + rang);
    modifie_ = true;
    return true;
}

bool FrmMotCle::CmdMotBouge(bool mariage, int rang, int sens) {
    auto& rangs = mariage ? mar_ : ind_;
    const int autre = rang + sens;
    if (rang < 0 || autre < 0 || rang >= static_cast<int>(rangs.size()) ||
        autre >= static_cast<int>(rangs.size()))
        return false;
    std::swap(rangs[static_cast<std::size_t>(rang)], rangs[static_cast<std::size_t>(autre)]);
    modifie_ = true;
    return true;
}

std::string FrmMotCle::LibelleRang(const SlotRubrique& s) const {
    for (const auto& g : genres_)
        if (g.marque == s.symbole) return g.libelle;
    return Conv_LibelleTag(s.tag);
}

void FrmMotCle::Ferme() {
    if (!modifie_ || !B()) return;
    // The sheet's rows change under it: what it holds is settled first.
    f_.Confirme_Fiche_En_Cours();
    if (const int r = EcritRangsRubriques(*B(), ind_, mar_)) {
        Refus(r);
        return;
    }
    B()->redessiner = true;
    modifie_ = false;
    f_.Aller(f_.PersonneEnCours());
}

// --- FrmLMotCle -------------------------------------------------------------------------------

FrmLMotCle::FrmLMotCle(MDIForm1& f, char marque) : f_(f) {
    if (f.base()) liste_ = ListeMotsCles(*f.base(), marque);
}

std::string FrmLMotCle::Titre() const {
    Base* b = f_.base();
    if (!b) return "";
    const std::string r = b->LibelleRubrique(b->RubriqueDeSymbole(liste_.Marque()));
    return r.empty() ? r : r.substr(1);
}

void FrmLMotCle::Cherche(const std::string& texte) {
    recherche = texte;
    premier = liste_.Rang(texte);
}

std::string FrmLMotCle::Valeur(const LigneMotCle& l) { return DesPoints(l.mot); }

std::vector<GenreRecapitule> FrmLMotCle::Contenu(bool ensemble) {
    Base* b = f_.base();
    if (!b) return {};
    return sylvane::Recapitulation(*b, ensemble ? MarquesIndexees(*b) : std::vector<char>{liste_.Marque()});
}

std::string FrmLMotCle::TitreRecapitulation(bool ensemble) const {
    std::string t = Message(msg_mots::Recapitulation);
    t.erase(std::remove(t.begin(), t.end(), '&'), t.end());
    return ensemble ? t : t + " - " + Titre();
}

std::string FrmLMotCle::Recapitulation(bool ensemble) {
    Base* b = f_.base();
    std::string t;
    for (const GenreRecapitule& g : Contenu(ensemble)) {
        t += g.libelle + "\r\n";
        for (const MotRecapitule& m : g.mots) {
            t += "  " + m.mot + " (" + std::to_string(m.emplois) + ")\r\n";
            for (std::uint32_t p : m.personnes) t += "      " + b->NomDates(p) + "\r\n";
        }
        t += "\r\n";
    }
    return t;
}

std::optional<std::string> FrmLMotCle::EcritRecapitulation(bool html, bool ensemble) {
    Base* b = f_.base();
    if (!b || f_.Occupe()) return std::nullopt;
    const std::string depart = f_.app().parametres().DossierTravail() + Titre() + (html ? ".htm" : ".rtf");
    const auto chemin = html ? f_.services().fichiers.Enregistrer(msg_mots::Recapitulation, "HTML (*.htm)|*.htm|", depart)
                             : f_.services().fichiers.Enregistrer(msg_mots::TitreRTF, "RTF (*.rtf)|*.rtf|", depart);
    if (!chemin) return std::nullopt;
    const std::string titre = TitreRecapitulation(ensemble);
    bool fini = false;
    {
        OperationLongue op(f_.services().panneau, f_.services().boites, titre);
        Protege(f_.services().boites, [&] {
            const auto r = sylvane::Recapitulation(*b, ensemble ? MarquesIndexees(*b) : std::vector<char>{liste_.Marque()},
                                                   op.interaction());
            if (op.interaction().Arrete()) return;
            fini = html ? RecapitulationHTML(*b, f_.app().fs(), r, titre, *chemin, op.interaction())
                        : RecapitulationRTF(*b, f_.app().fs(), r, titre, *chemin, op.interaction());
        });
    }
    if (!fini) return std::nullopt;
    return chemin;
}

// --- FrmMot -----------------------------------------------------------------------------------

FrmMot::FrmMot(MDIForm1& f, DemandeMot d)
    : jour(d.jour), annee(d.annee), valeur(d.valeur), f_(f), d_(std::move(d)), liste_(f, d_.marque) {
    liste_.Cherche(valeur);
}

void FrmMot::Tape(std::string& champ, const std::string& texte) {
    champ = texte;
    champ.erase(std::remove(champ.begin(), champ.end(), '#'), champ.end());
    if (&champ == &valeur) liste_.Cherche(champ);
}

void FrmMot::ChoisitLigne(const LigneMotCle& l) { valeur = FrmLMotCle::Valeur(l); }

std::vector<std::string> FrmMot::Usuels() const {
    return MotsUsuelsTag(f_.app().parametres(), d_.tag);
}

void FrmMot::ChoisitUsuel(const std::string& mot) { Tape(valeur, mot); }

bool FrmMot::CmdValider() {
    if (!liste_.Liste().Indexee()) {
        f_.services().boites.Information(msg_mots::DoitEtreIndexe);
        return false;
    }
    valeur = TrimDroite(valeur);
    nouveau_ = !valeur.empty() && liste_.Liste().Exact(valeur) == 0;
    return true;
}

std::uint32_t FrmMot::Proprietaire() const { return d_.personne ? d_.personne : f_.personneFiche; }

std::uint32_t FrmMot::Mariage() const {
    Base* b = f_.base();
    if (!d_.mariage || !b) return 0;
    return d_.numeroMariage ? d_.numeroMariage : b->MariageNo(Proprietaire(), 1);
}

bool FrmMot::EvenementPossible() const {
    Base* b = f_.base();
    if (!b || Proprietaire() == 0 || (d_.mariage && Mariage() == 0)) return false;
    return !CellulesRoles(b->Temoins(), d_.tag).empty();
}

bool FrmMot::EvenementExiste() const {
    if (!EvenementPossible()) return false;
    Base& b = *f_.base();
    const std::uint32_t m = Mariage();
    return (m ? EvenementMariage(b, Proprietaire(), m, d_.tag) : EvenementPrincipal(b, Proprietaire(), d_.tag)) != 0;
}

std::uint32_t FrmMot::CmdIndEvt() {
    if (!EvenementPossible() || f_.Occupe()) return 0;
    const std::uint32_t p = Proprietaire();
    const std::uint32_t e = EvenementDeFiche(f_, p, d_.tag, d_.date ? jour : "", d_.date ? annee : "",
                                             TrimDroite(valeur), Mariage());
    if (e == 0) return 0;
    f_.Aller(f_.PersonneEnCours());
    OuvreEvenement(f_, e, p);
    return e;
}

// --- FrmUsuels --------------------------------------------------------------------------------

std::vector<std::string> MotsUsuelsTag(const Parametres& p, const std::string& tag) {
    std::vector<std::string> v;
    for (const auto& [liste, mots] : p.rubriques)
        if (liste == tag)
            for (const auto& m : mots) v.push_back(Conv_LibelleTag(m));
    return v;
}

FrmUsuels::FrmUsuels(MDIForm1& f) : f_(f) {
    if (!P().rubriques.empty()) rubrique = 0;
}

std::vector<std::string> FrmUsuels::Rubriques() const {
    std::vector<std::string> v;
    for (const auto& r : P().rubriques) v.push_back(Conv_LibelleTag(r.first));
    return v;
}

std::vector<std::string> FrmUsuels::Mots() const {
    if (rubrique < 0 || rubrique >= static_cast<int>(P().rubriques.size())) return {};
    return MotsUsuelsTag(P(), P().rubriques[static_cast<std::size_t>(rubrique)].first);
}

void FrmUsuels::EcritListe() {
    Reglages& r = f_.app().reglages();
    LotReglages lot(r);
    r.supprimeSection(kListeRubriques);
    for (const auto& [liste, mots] : P().rubriques) r.ecrit(kListeRubriques, liste, liste);
}

void FrmUsuels::EcritMots(std::size_t i) {
    Reglages& r = f_.app().reglages();
    LotReglages lot(r);
    const auto& [liste, mots] = P().rubriques[i];
    r.supprimeSection(kRubrique + liste);
    for (const auto& m : mots) r.ecrit(kRubrique + liste, m, m);
}

bool FrmUsuels::CmdMotNouveau(const std::string& mot) {
    if (rubrique < 0 || rubrique >= static_cast<int>(P().rubriques.size())) return false;
    const std::string t = Conv_TagLibelle(Trim(mot));
    if (t.empty() || t.find_first_of("#\r\n") != std::string::npos) return false;
    auto& mots = P().rubriques[static_cast<std::size_t>(rubrique)].second;
    if (std::find(mots.begin(), mots.end(), t) != mots.end()) return false;
    mots.push_back(t);
    EcritMots(static_cast<std::size_t>(rubrique));
    return true;
}

bool FrmUsuels::CmdMotSup(int rang) {
    if (rubrique < 0 || rubrique >= static_cast<int>(P().rubriques.size())) return false;
    auto& mots = P().rubriques[static_cast<std::size_t>(rubrique)].second;
    if (rang < 0 || rang >= static_cast<int>(mots.size())) return false;
    mots.erase(mots.begin() + rang);
    EcritMots(static_cast<std::size_t>(rubrique));
    return true;
}

bool FrmUsuels::CmdNouvRubr(const std::string& nom) {
    const std::string t = Conv_TagLibelle(Trim(nom));
    if (t.empty() || t.find_first_of("#\r\n") != std::string::npos) return false;
    for (const auto& r : P().rubriques)
        if (r.first == t) return false;
    P().rubriques.emplace_back(t, std::vector<std::string>{});
    EcritListe();
    rubrique = static_cast<int>(P().rubriques.size()) - 1;
    return true;
}

bool FrmUsuels::CmdSupRub() {
    if (rubrique < 0 || rubrique >= static_cast<int>(P().rubriques.size())) return false;
    if (f_.services().boites.Question(msg_mots::Confirmation) != Reponse::Oui) return false;
    const std::string tag = P().rubriques[static_cast<std::size_t>(rubrique)].first;
    P().rubriques.erase(P().rubriques.begin() + rubrique);
    f_.app().reglages().supprimeSection(kRubrique + tag);
    EcritListe();
    rubrique = P().rubriques.empty() ? -1 : 0;
    return true;
}

// --- FrmRemplacement ---------------------------------------------------------------------------

FrmRemplacement::FrmRemplacement(MDIForm1& f) : f_(f) {}

std::vector<GenreMot> FrmRemplacement::Genres() {
    return f_.base() ? GenresMots(*f_.base()) : std::vector<GenreMot>{};
}

bool FrmRemplacement::CmdRemplacer() {
    bilan_ = {};
    if (f_.Occupe() || !f_.base() || CleMotSaisi(ancien).empty()) return false;
    if (!tous) {
        Base& b = *f_.base();
        const std::uint32_t k = b.RubriqueDeSymbole(marque);
        if (k == 0 || b.PosListeRubrique(k) == 0) {
            f_.services().boites.Information(msg_mots::DoitEtreIndexe);
            return false;
        }
    }
    f_.Confirme_Fiche_En_Cours();
    const DemandeRemplacement d{marque, ancien, nouveau, tous};
    const int r = ChangeBase(f_, msg_mots::TitreRemplacement, [&](OperationLongue& op) {
        bilan_ = RemplaceMot(*f_.base(), d, [&op](std::size_t fait, std::size_t total) {
            op.Texte(std::to_string(fait) + " / " + std::to_string(total));
            return op.Arrete();
        });
        return bilan_.refus;
    });
    if (r != 0 || bilan_.arrete) return false;
    f_.services().boites.Information(msg_mots::Remplaces, std::to_string(bilan_.occurrences));
    return true;
}

} // namespace sylvane
