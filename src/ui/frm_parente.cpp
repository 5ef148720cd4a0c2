// The logic of the relationship, cousinage and branch windows.
#include "ui/frm_parente.h"

#include "publish/impression_parente.h"
#include "store/pack.h"
#include "text/messages.h"
#include "ui/frm_listes.h"

#include <algorithm>

namespace sylvane {
namespace {

// Captions of this window that have no number of their own.
constexpr int kMsgAscendanceBranche = 4500, kMsgDescendanceBranche = 4501;

// The numbers of a text such as "12#34#" or "12/34", in order; what is not
// a number is passed over.
std::vector<std::uint32_t> Nombres(const std::string& texte, char separateur) {
    std::vector<std::uint32_t> r;
    for (std::size_t i = 0; i < texte.size();) {
        const std::size_t fin = std::min(texte.find(separateur, i), texte.size());
        std::uint32_t n = 0;
        for (std::size_t k = i; k < fin && n < 400000000u; ++k)
            if (texte[k] >= '0' && texte[k] <= '9') n = n * 10 + static_cast<std::uint32_t>(texte[k] - '0');
        if (n && std::find(r.begin(), r.end(), n) == r.end()) r.push_back(n);
        i = fin + 1;
    }
    return r;
}

// Asks for the file of a report (`depart` in the work folder) and writes
// it whole, "Sylvane.css" beside a page. The path written, or nothing when
// cancelled or after the error's box.
std::optional<std::string> EcritRapport(MDIForm1& mdi, const std::string& filtre,
                                        const std::string& depart,
                                        const std::function<std::string()>& texte, bool page) {
    Base* b = mdi.base();
    if (!b) return std::nullopt;
    const auto chemin = mdi.services().fichiers.Enregistrer(
        0, filtre, mdi.app().parametres().DossierTravail() + depart);
    if (!chemin) return std::nullopt;
    try {
        const auto f = SortieExport(*b, *chemin);
        f->Sortie().ecrire(0, texte());
        f->Valide();
        if (page) EcritFeuilleStyle(*b, b->Systeme(), DossierDe(*chemin));
    } catch (const ErreurES& e) {
        mdi.services().boites.Texte(e.what());
        return std::nullopt;
    }
    return chemin;
}

// The offer to open a page just written in the browser.
void OffrePage(MDIForm1& mdi, const std::function<void(const std::string&)>& ouvre,
               const std::string& page) {
    if (ouvre && mdi.services().boites.Question(msg_parente::OuvrirPage) == Reponse::Oui)
        ouvre(page);
}

constexpr const char* kFiltreRtf = "Rich Text Format (*.rtf) |*.rtf|";
constexpr const char* kFiltreHtml = "HTML (*.htm) |*.htm|";

} // namespace

void TransmetGraphe(const DemandeGraphe& d) {
    TransfertParente& t = ParenteTransmise();
    t.liste.clear();
    for (std::uint32_t p : d.liste) t.liste += Pack4(p);
    t.mode = d.mode;
    t.generations = d.generations;
    t.personne = d.liste.empty() ? 0 : d.liste.front();
}

std::optional<DemandeGraphe> DemandeTransmise(MDIForm1& mdi) {
    TransfertParente& t = ParenteTransmise();
    if (t.liste.size() < 4) return std::nullopt;
    DemandeGraphe d;
    for (std::size_t i = 0; i + 4 <= t.liste.size(); i += 4) d.liste.push_back(Unpack4(t.liste, i));
    d.mode = t.mode == 'D' ? 'D' : 'A';
    d.generations = t.generations > 0 ? t.generations
                                      : mdi.app().parametres().maximumRechercheParente;
    t = TransfertParente{};
    return d;
}

// --- FrmRechAscendant ---------------------------------------------------------------

FrmRechAscendant::FrmRechAscendant(MDIForm1& mdi)
    : generations(mdi.app().parametres().maximumRechercheParente), mdi_(mdi) {
    if (mdi_.base() && mdi_.PersonneEnCours()) Ajoute(mdi_.PersonneEnCours());
}

bool FrmRechAscendant::Ajoute(std::uint32_t personne) {
    Base* b = mdi_.base();
    if (!b || personne == 0) return false;
    for (const Ligne& l : grille_)
        if (l.personne == personne) {
            mdi_.services().boites.Information(588);
            return false;
        }
    Ligne l;
    l.personne = personne;
    l.nom = b->NomComplet(personne);
    const std::string n = b->LitAnNaiss(personne), d = b->LitAnDeces(personne);
    if (!n.empty() || !d.empty()) l.dates = n + "-" + d;
    grille_.insert(grille_.begin(), l);
    return true;
}

std::size_t FrmRechAscendant::RecoitTransfert() {
    TransfertParente& t = ParenteTransmise();
    const std::string liste = std::move(t.liste);
    t = TransfertParente{};
    std::size_t n = 0;
    for (std::size_t i = 0; i + 4 <= liste.size(); i += 4) {
        const std::uint32_t p = Unpack4(liste, i);
        if (std::none_of(grille_.begin(), grille_.end(),
                         [p](const Ligne& l) { return l.personne == p; }) &&
            Ajoute(p))
            ++n;
    }
    return n;
}

void FrmRechAscendant::CmdRechercher() {
    if (!mdi_.base()) return;
    if (const std::uint32_t p = mdi_.services().selecteur.ChoisitPersonne(mdi_.PersonneEnCours()))
        Ajoute(p);
}

void FrmRechAscendant::CmdEcarter(std::size_t ligne) {
    if (ligne < grille_.size()) grille_.erase(grille_.begin() + static_cast<long>(ligne));
}

void FrmRechAscendant::BasculeMarque(std::size_t ligne) {
    if (ligne < grille_.size()) grille_[ligne].marque = !grille_[ligne].marque;
}

std::vector<std::uint32_t> FrmRechAscendant::Selection() const {
    std::vector<std::uint32_t> r;
    for (const Ligne& l : grille_) r.push_back(l.personne);
    return r;
}

bool FrmRechAscendant::Refuse() {
    if (mdi_.Occupe() || !mdi_.base()) return true;
    if (grille_.empty()) {
        mdi_.services().boites.Information(555);
        return true;
    }
    return false;
}

std::optional<DemandeGraphe> FrmRechAscendant::Recherche(bool descendance) {
    if (Refuse()) return std::nullopt;
    ResultatParente r;
    {
        OperationLongue op(mdi_.services().panneau, mdi_.services().boites, Message(591));
        r = descendance ? DescendanceCommune(*mdi_.base(), Selection(), generations, op.interaction())
                        : AscendanceCommune(*mdi_.base(), Selection(), generations, op.interaction());
    }
    if (r.fin == FinParente::Arrete) return std::nullopt;
    if (r.fin == FinParente::Rien) {
        mdi_.services().boites.Information(descendance ? 696 : 695);
        return std::nullopt;
    }
    return DemandeGraphe{r.liste, descendance ? 'D' : 'A', generations};
}

std::optional<DemandeGraphe> FrmRechAscendant::CmdAscCom() { return Recherche(false); }
std::optional<DemandeGraphe> FrmRechAscendant::CmdDescCom() { return Recherche(true); }

std::optional<DemandeGraphe> FrmRechAscendant::CmdFiliation() {
    if (Refuse()) return std::nullopt;
    return DemandeGraphe{Selection(), 'D', generations};
}

std::optional<std::vector<LigneCousinage>> FrmRechAscendant::CmdAscComMult() {
    if (Refuse()) return std::nullopt;
    std::vector<Selectionne> sel;
    for (const Ligne& l : grille_) sel.push_back({l.personne, l.marque});
    Cousinages c(*mdi_.base());
    {
        OperationLongue op(mdi_.services().panneau, mdi_.services().boites, Message(591));
        if (!c.Analyse(sel, generations, op.interaction())) return std::nullopt;
    }
    std::vector<LigneCousinage> lignes = c.Lignes();
    try {
        EcritFichiersCousinage(mdi_.base()->Systeme(), mdi_.app().parametres().DossierTravail(),
                               lignes);
    } catch (const ErreurES& e) {
        mdi_.services().boites.Texte(e.what());
    }
    return lignes;
}

std::optional<std::vector<PageCousinage>> FrmRechAscendant::CmdSpecial() {
    if (Refuse()) return std::nullopt;
    Base& b = *mdi_.base();
    const std::string dossier = mdi_.app().parametres().DossierTravail();
    std::optional<std::vector<PageCousinage>> pages;
    try {
        OperationLongue op(mdi_.services().panneau, mdi_.services().boites, Message(591));
        pages =
            CousinagesEnPages(b, b.Systeme(), dossier, Selection(), generations, op.interaction());
    } catch (const ErreurES& e) {
        mdi_.services().boites.Texte(e.what());
        return std::nullopt;
    }
    if (pages) mdi_.services().boites.Information(msg_parente::PagesEcrites, dossier);
    return pages;
}

void FrmRechAscendant::EcritListeJs(const std::string& dossier) {
    if (!mdi_.base() || grille_.empty()) return;
    try {
        EcritureAtomique f(mdi_.base()->Systeme(), dossier + "ListeCousins.js");
        f.Sortie().ecrire(0, ListeCousinsJs(*mdi_.base(), Selection()));
        f.Valide();
    } catch (const ErreurES& e) {
        mdi_.services().boites.Texte(e.what());
    }
}

std::vector<std::uint32_t> FrmRechAscendant::Sujets() const {
    std::vector<std::uint32_t> r;
    for (const Ligne& l : grille_)
        if (l.marque) r.push_back(l.personne);
    return r;
}

std::string FrmRechAscendant::Comparaison() const {
    const bool sujets =
        std::any_of(grille_.begin(), grille_.end(), [](const Ligne& l) { return l.marque; });
    std::string r;
    for (const Ligne& l : grille_)
        if (!sujets || !l.marque) r += (r.empty() ? "" : "/") + std::to_string(l.personne);
    return r;
}

// --- FrmParenteVisu -------------------------------------------------------------------

FrmParenteVisu::FrmParenteVisu(MDIForm1& mdi, DemandeGraphe demande)
    : mdi_(mdi), demande_(std::move(demande)) {}

bool FrmParenteVisu::Charge() {
    if (!mdi_.base() || demande_.liste.empty()) return false;
    graphe_ = std::make_unique<GrapheParente>(*mdi_.base(), demande_.liste, demande_.generations);
    OperationLongue op(mdi_.services().panneau, mdi_.services().boites, Message(591));
    if (!graphe_->Construit(op.interaction())) {
        graphe_.reset();
        return false;
    }
    return true;
}

std::optional<std::string> FrmParenteVisu::Refus() const {
    if (!graphe_ || graphe_->Dessinable()) return std::nullopt;
    return Message(589) + " " + std::to_string(graphe_->NbNoeuds()) + "\n" + Message(590);
}

std::string FrmParenteVisu::Titre() const {
    if (!mdi_.base() || demande_.liste.empty()) return {};
    return MessageAvec(768, mdi_.base()->NomComplet(demande_.liste.front()));
}

std::string FrmParenteVisu::EcritGabarit(Papier& papier) const {
    if (!graphe_ || !mdi_.base()) throw ErreurES("", "graphe absent");
    const std::string chemin =
        mdi_.app().parametres().DossierTravail() + mdi_.base()->Chemins().titre + "-parente.svp";
    graphe_->EcritGabarit(mdi_.base()->Systeme(), chemin, papier, Titre());
    return chemin;
}

OptionsPages FrmParenteVisu::Options(const Papier& papier) const {
    OptionsPages o;
    o.papier = papier;
    o.couleur = true;
    o.policeMax = 10;
    Base* b = mdi_.base();
    o.texte = [b](std::uint32_t p, const StyleBoite&) { return b ? TexteNoeudParente(*b, p) : ""; };
    o.sexe = [b](std::uint32_t p) {
        const std::string sx = b ? b->LitSexe(p) : "";
        return sx.empty() ? ' ' : sx[0];
    };
    const Parametres& pa = mdi_.app().parametres();
    o.couleurHomme = pa.couleurCadreHomme;
    o.couleurFemme = pa.couleurCadreFemme;
    o.couleurIndetermine = pa.couleurCadreIndetermine;
    return o;
}

bool FrmParenteVisu::EcritRtf() {
    return Ecrit(false);
}
bool FrmParenteVisu::EcritHtml() {
    return Ecrit(true);
}

bool FrmParenteVisu::Ecrit(bool html) {
    Base* b = mdi_.base();
    if (!graphe_ || !b) return false;
    return EcritRapport(
               mdi_, html ? kFiltreHtml : kFiltreRtf, b->Chemins().titre + (html ? ".htm" : ".rtf"),
               [&] {
                   return html ? HtmlGraphe(*b, *graphe_, Titre())
                               : RtfGraphe(*b, *graphe_, Titre());
               },
               html)
        .has_value();
}

std::vector<FrmParenteVisu::EntreeMenu> FrmParenteVisu::MenuProches(std::size_t noeud) {
    std::vector<EntreeMenu> r;
    if (!graphe_ || !mdi_.base()) return r;
    static constexpr std::pair<Proche::Genre, int> kTetes[] = {
        {Proche::Parent, 592}, {Proche::Conjoint, 579}, {Proche::Enfant, 666}, {Proche::Frere, 910}};
    const std::vector<Proche> proches = graphe_->Proches(noeud);
    for (const auto& [genre, message] : kTetes) {
        bool tete = false;
        for (const Proche& p : proches) {
            if (p.genre != genre) continue;
            if (!tete) r.push_back({Message(message), 0});
            tete = true;
            r.push_back({(p.dansGraphe ? "* " : "") + mdi_.base()->NomComplet(p.personne),
                         p.personne});
        }
    }
    return r;
}

// --- FrmParenteAsc -------------------------------------------------------------------

FrmParenteAsc::Analyse& CousinagesTransmis() {
    static FrmParenteAsc::Analyse a;
    return a;
}

FrmParenteAsc::FrmParenteAsc(MDIForm1& mdi, Analyse analyse) : mdi_(mdi), a_(std::move(analyse)) {}

std::optional<DemandeGraphe> FrmParenteAsc::CmdAfficher(std::size_t ligne) const {
    if (ligne >= a_.lignes.size()) return std::nullopt;
    DemandeGraphe d{Nombres(a_.lignes[ligne].cle, '#'), 'A',
                    mdi_.app().parametres().maximumRechercheParente};
    if (d.liste.empty()) return std::nullopt;
    return d;
}

void FrmParenteAsc::CmdEcarter(std::size_t ligne) {
    if (ligne < a_.lignes.size()) a_.lignes.erase(a_.lignes.begin() + static_cast<long>(ligne));
}

void FrmParenteAsc::CmdTriLieu() {
    std::stable_sort(a_.lignes.begin(), a_.lignes.end(),
                     [](const LigneCousinage& x, const LigneCousinage& y) { return x.lieu < y.lieu; });
}

bool FrmParenteAsc::CmdHtml() {
    Base* b = mdi_.base();
    if (!b || a_.lignes.empty()) return false;
    std::string nom;
    for (std::uint32_t p : Nombres(a_.comparaison, '/')) nom += (nom.empty() ? "" : ", ") + b->NomComplet(p);
    return EcritRapport(
               mdi_, kFiltreHtml, "Cousinages.htm",
               [&] { return PageCousinages(*b, nom, a_.lignes, a_.sujets); }, true)
        .has_value();
}

std::optional<std::vector<PageCousinage>> FrmParenteAsc::CmdCousinage() {
    Base* b = mdi_.base();
    if (!b || a_.lignes.empty() || mdi_.Occupe()) return std::nullopt;
    std::vector<std::uint32_t> personnes = a_.selection;
    if (personnes.empty()) {
        personnes = a_.sujets;
        for (std::uint32_t p : Nombres(a_.comparaison, '/'))
            if (std::find(personnes.begin(), personnes.end(), p) == personnes.end())
                personnes.push_back(p);
    }
    const std::string dossier = mdi_.app().parametres().DossierTravail();
    std::vector<PageCousinage> pages;
    try {
        pages = TableauxCousinages(*b, b->Systeme(), dossier, a_.lignes, personnes, a_.sujets);
    } catch (const ErreurES& e) {
        mdi_.services().boites.Texte(e.what());
        return std::nullopt;
    }
    OffrePage(mdi_, ouvreNavigateur, dossier + "Tableau.htm");
    return pages;
}

bool FicheDe(MDIForm1& mdi, std::uint32_t personne) {
    if (personne == 0 || mdi.Occupe() || !mdi.services().fenetres.Disponible("FrmMisajour"))
        return false;
    mdi.Confirme_Fiche_En_Cours();
    mdi.personneFiche = personne;
    mdi.services().fenetres.Ouvre("FrmMisajour");
    return true;
}

// --- FrmBrancheAsc, FrmBrancheDesc --------------------------------------------------------

FrmBranche::FrmBranche(MDIForm1& mdi, bool descendante) : mdi_(mdi), descendante_(descendante) {
    if (mdi_.base() && mdi_.PersonneEnCours())
        branche_ = std::make_unique<Branche>(*mdi_.base(), descendante, mdi_.PersonneEnCours());
}

std::string FrmBranche::Titre() const {
    if (!branche_ || !mdi_.base()) return {};
    return MessageAvec(descendante_ ? kMsgDescendanceBranche : kMsgAscendanceBranche,
                       mdi_.base()->NomComplet(branche_->Noeud(0).personne));
}

bool FrmBranche::EcritRtf() { return Ecrit(false); }
bool FrmBranche::EcritHtml() { return Ecrit(true); }

bool FrmBranche::Ecrit(bool html) {
    if (!branche_ || !mdi_.base()) return false;
    // The descendance's page keeps the label its filter always had.
    const std::string filtre = !html          ? kFiltreRtf
                               : descendante_ ? "Rich Text Format (*.htm) |*.htm|"
                                              : kFiltreHtml;
    const auto chemin = EcritRapport(
        mdi_, filtre, mdi_.base()->Chemins().titre + (html ? ".htm" : ".rtf"),
        [&] { return html ? branche_->Html(Titre()) : branche_->Rtf(Titre()); }, html);
    if (!chemin) return false;
    if (html) OffrePage(mdi_, ouvreNavigateur, *chemin);
    return true;
}

std::optional<DocumentApercu> FrmBranche::Impression() const {
    if (!branche_ || !mdi_.base()) return std::nullopt;
    DocumentApercu d;
    d.titre = Titre();
    d.papier = ReglagesCourants().Feuille();
    // The lines are taken now: the preview shows the outline as it was
    // when asked, even once its window has gone.
    d.dessine = [&mdi = mdi_, titre = d.titre, lignes = branche_->Lignes(),
                 papier = d.papier](Surface& s) {
        Base* b = mdi.base();
        if (!b) return FinPages::Arrete;
        OptionsImpression o;
        o.papier = papier;
        return ImprimeLignes(*b, s, titre, lignes, o) == FinRapport::Termine ? FinPages::Termine
                                                                             : FinPages::Arrete;
    };
    return d;
}

} // namespace sylvane
