#include "ui/frm_impression.h"

#include "store/pack.h"
#include "text/messages.h"
#include "ui/frm_listes.h"

#include <algorithm>
#include <array>

namespace sylvane {

ReglagesImpression& ReglagesCourants() {
    static ReglagesImpression r;
    return r;
}

DocumentApercu& ApercuTransmis() {
    static DocumentApercu d;
    return d;
}

// --- FrmImpression --------------------------------------------------------------

FrmImpression::FrmImpression(MDIForm1& f) : f_(f) {}

void FrmImpression::Charge() {
    TransfertParente& t = ParenteTransmise();
    liste.clear();
    if (!t.liste.empty()) {
        // A list or a search hands its persons over once.
        for (std::size_t i = 0; i + 4 <= t.liste.size(); i += 4)
            liste.push_back(Unpack4(t.liste, i));
        personne = t.personne;
        if (t.generations > 0) niveaux = t.generations;
        if (t.mode == 'A' || t.mode == 'D') {
            type = TypeImpression::Fiches;
            choix = t.mode == 'A' ? 2 : 3;
        }
        if (t.generations == 0) choix = -1; // a search: its list
        t = TransfertParente{};
    } else {
        personne = f_.PersonneEnCours();
    }
}

void FrmImpression::DefinitPersonne(std::uint32_t n) {
    if (n == 0) return;
    personne = n;
    liste.clear();
}

bool FrmImpression::ChoisitPersonne() {
    const std::uint32_t n = f_.services().selecteur.ChoisitPersonne(personne);
    DefinitPersonne(n);
    return n != 0;
}

std::string FrmImpression::LibellePersonne() const {
    Base* b = f_.base();
    std::string nom;
    if (!liste.empty() && choix < 0) nom = Message(770) + " (" + std::to_string(liste.size()) + ")";
    else if (b && personne) nom = b->NomComplet(personne);
    return MessageAvec(msg_impression::Personne, nom);
}

std::vector<std::string> FrmImpression::Choix() const {
    using namespace msg_impression;
    std::vector<int> n;
    switch (type) {
    case TypeImpression::Tableau: n = {4102, 4103}; break;
    case TypeImpression::Fiches:
        n = {FicheIndividuelle, FicheFamille, FichesAscendants, FichesDescendants};
        break;
    case TypeImpression::Graphe:
        n = {GrapheAscendants, GrapheDescendants, GrapheMixte, GrapheMixteCouple};
        break;
    }
    std::vector<std::string> r;
    for (int x : n) r.push_back(Message(x));
    return r;
}

std::uint32_t FrmImpression::MariageDuCouple() {
    Base& b = *f_.base();
    const std::vector<std::uint32_t> mariages = b.Mariages(personne);
    if (mariages.empty()) {
        f_.services().boites.Information(941);
        return 0;
    }
    if (mariages.size() == 1) return mariages[0];
    // Each spouse in turn: the first one accepted is drawn.
    for (std::uint32_t m : mariages) {
        const std::uint32_t c = b.LitMari(m) == personne ? b.LitFemme(m) : b.LitMari(m);
        if (f_.services().boites.Question(942, false, b.NomComplet(c)) == Reponse::Oui) return m;
    }
    return 0;
}

std::optional<TravailImpression> FrmImpression::Prepare(const Metrique& m) {
    if (f_.Occupe()) return std::nullopt;
    Base* b = f_.base();
    if (!b) return std::nullopt;
    const ReglagesImpression& r = ReglagesCourants();
    TravailImpression t;
    t.personne = personne;
    // A list handed over prints as a list when no report is chosen.
    if (choix < 0 && !liste.empty() && type == TypeImpression::Fiches) {
        t.rapport = Rapport::Liste;
        t.liste = liste;
    } else if (choix < 0 || type == TypeImpression::Tableau) {
        f_.services().boites.Information(581);
        return std::nullopt;
    } else if (personne == 0) {
        return std::nullopt;
    }
    if (type == TypeImpression::Graphe) {
        if (r.autre && r.autreDonnee.empty()) {
            f_.services().boites.Information(580);
            return std::nullopt;
        }
        OptionsGraphe og;
        og.direction = direction;
        og.detaille = detaille;
        og.dates = r.dates;
        og.sansImplexe = !implexe;
        og.autreDonnee = r.autre ? r.autreDonnee : std::string();
        og.feuillesH = r.feuillesH;
        og.feuillesV = r.feuillesV;
        og.papier = r.Feuille();
        og.policeMax = r.policeMax;
        t.graphe = true;
        t.gabarit = f_.app().parametres().DossierTravail() + b->Chemins().titre + ".svp";
        const int asc = std::clamp(genAsc, 0, 99), desc = std::clamp(genDesc, 0, 99);
        if (choix == 3) {
            const std::uint32_t mariage = MariageDuCouple();
            if (!mariage) return std::nullopt;
            GrapheCouple(*b, f_.app().fs(), t.gabarit, mariage, asc, desc, og, m);
        } else {
            GrapheIndividu(*b, f_.app().fs(), t.gabarit, personne, choix == 1 ? 0 : asc,
                           choix == 0 ? 0 : desc, og, m);
        }
        const Parametres& p = f_.app().parametres();
        t.pages.papier = og.papier;
        t.pages.couleur = r.couleur;
        t.pages.policeMax = og.policeMax;
        t.pages.texte = [b, og](std::uint32_t n, const StyleBoite& st) {
            return TexteBoite(*b, n, st, og);
        };
        t.pages.sexe = [b](std::uint32_t n) {
            const std::string sx = b->LitSexe(n);
            return sx.empty() ? ' ' : sx[0];
        };
        t.pages.couleurHomme = p.couleurCadreHomme;
        t.pages.couleurFemme = p.couleurCadreFemme;
        t.pages.couleurIndetermine = p.couleurCadreIndetermine;
        t.pages.libelleFeuille = Message(4107);
        t.titre = Choix()[static_cast<std::size_t>(choix)] + " - " + b->NomComplet(personne);
        return t;
    }
    if (t.rapport != Rapport::Liste) {
        constexpr std::array<Rapport, 4> kRapports = {
            Rapport::FicheIndividuelle, Rapport::FicheFamille, Rapport::FichesAscendants,
            Rapport::FichesDescendants};
        t.rapport = kRapports[static_cast<std::size_t>(std::clamp(choix, 0, 3))];
    }
    OptionsImpression& o = t.options;
    o.Contenu(contenu, partielles);
    if (t.rapport == Rapport::Liste) o.listeRapide = true;
    o.fichesConjoints = conjoints;
    o.annexeEvenements = evenements;
    o.annexeDocuments = documents;
    o.couple = couple;
    o.implexe = implexe;
    o.niveaux = std::clamp(niveaux, 1, 99);
    o.modeTri = ModeTriDeSequence(sequence);
    o.papier = r.Feuille();
    t.titre = TitreRapport(*b, t.rapport, personne);
    return t;
}

FinRapport FrmImpression::Imprime(MDIForm1& f, const TravailImpression& t, Surface& s,
                                  bool panneau) {
    Base* b = f.base();
    if (!b) return FinRapport::Vide;
    std::optional<OperationLongue> op;
    if (panneau) op.emplace(f.services().panneau, f.services().boites, Message(745), t.titre);
    auto arret = [&op] { return op && op->Arrete(); };
    if (t.graphe) {
        OptionsPages o = t.pages;
        o.arret = arret;
        const FinPages fin = ImprimePages(f.app().fs(), t.gabarit, s, o);
        return fin == FinPages::Termine ? FinRapport::Termine : FinRapport::Arrete;
    }
    OptionsImpression o = t.options;
    o.arret = arret;
    if (op) o.progres = [&op](const std::string&, const std::string& texte) { op->Texte(texte); };
    return ImprimeRapport(*b, f.app().fs(), s, t.rapport, t.personne, o, t.liste);
}

DocumentApercu FrmImpression::Apercu(const TravailImpression& t) {
    DocumentApercu d;
    d.titre = t.titre;
    d.papier = t.graphe ? t.pages.papier : t.options.papier;
    d.gabarit = t.graphe ? t.gabarit : std::string();
    d.dessine = [&f = f_, t](Surface& s) {
        const FinRapport fin = Imprime(f, t, s, false);
        return fin == FinRapport::Termine ? FinPages::Termine : FinPages::Arrete;
    };
    return d;
}

// --- The preview -------------------------------------------------------------------

namespace {

// Counts the pages without drawing them.
class SurfaceComptage : public Surface {
  public:
    explicit SurfaceComptage(const Metrique& m) : m_(m) {}
    std::vector<std::pair<int, int>> pages;
    const Metrique& Mesure() const override { return m_; }
    void DebutPage(int l, int c, double, double) override { pages.emplace_back(l, c); }
    void FinPage() override {}
    void Trait(double, double, double, double, Plume) override {}
    void Boite(double, double, double, double, std::int32_t) override {}
    void Texte(double, double, std::string_view, const Police&, std::int32_t) override {}

  private:
    const Metrique& m_;
};

constexpr std::array<double, 9> kZooms = {0.25, 0.35, 0.5, 0.6, 0.75, 1.0, 1.25, 1.5, 2.0};

} // namespace

void Previsualisation::Charge(DocumentApercu d, const Metrique& m) {
    Ferme();
    doc_ = std::move(d);
    pages_.clear();
    page_ = 1;
    if (!doc_.dessine) return;
    SurfaceComptage c(m);
    doc_.dessine(c);
    pages_ = std::move(c.pages);
}

void Previsualisation::Ferme() {
    if (!doc_.gabarit.empty()) fs_.supprimer(doc_.gabarit);
    doc_ = DocumentApercu{};
    pages_.clear();
}

std::pair<int, int> Previsualisation::Position() const {
    if (pages_.empty()) return {0, 0};
    return pages_[static_cast<std::size_t>(page_ - 1)];
}

bool Previsualisation::Suivante() {
    if (page_ >= NombrePages()) return false;
    ++page_;
    return true;
}

bool Previsualisation::Precedente() {
    if (page_ <= 1) return false;
    --page_;
    return true;
}

double Previsualisation::Zoom() const { return kZooms[static_cast<std::size_t>(zoom_)]; }

bool Previsualisation::Agrandir() {
    if (zoom_ + 1 >= static_cast<int>(kZooms.size())) return false;
    ++zoom_;
    return true;
}

bool Previsualisation::Reduire() {
    if (zoom_ == 0) return false;
    --zoom_;
    return true;
}

// --- The print options ------------------------------------------------------------------

std::string FrmPrinter::Chiffres(const std::string& saisie) {
    std::string r;
    for (char c : saisie)
        if (c >= '0' && c <= '9' && r.size() < 3) r += c;
    return r.empty() ? "1" : r;
}

bool FrmPrinter::Valide(Boites& boites, const std::string& horizon, const std::string& vertical) {
    if (graphe_) {
        const int h = std::stoi(Chiffres(horizon)), v = std::stoi(Chiffres(vertical));
        if (h == 0 || v == 0) {
            boites.Information(586);
            return false;
        }
        if (r_.autre && r_.autreDonnee.empty()) {
            boites.Information(580);
            return false;
        }
        r_.feuillesH = h;
        r_.feuillesV = v;
    }
    ReglagesCourants() = r_;
    return true;
}

} // namespace sylvane
