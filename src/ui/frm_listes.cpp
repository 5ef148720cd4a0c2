#include "ui/frm_listes.h"

#include "store/pack.h"
#include "text/messages.h"
#include "text/mots.h"

#include <algorithm>

namespace sylvane {
namespace {

int Index(GenreListe g) { return g == GenreListe::Ascendants ? 0 : 1; }

// The open list form of each kind, and the person handed to a form that
// is about to open.
FrmListe* ouvertes[2] = {nullptr, nullptr};
std::uint32_t remis[2] = {0, 0};

std::string Remplace(std::string s, const std::string& de, const std::string& par) {
    const auto p = s.find(de);
    if (p != std::string::npos) s.replace(p, de.size(), par);
    return s;
}

} // namespace

TransfertParente& ParenteTransmise() {
    static TransfertParente t;
    return t;
}

FrmListe::FrmListe(MDIForm1& f, GenreListe genre) : f_(f), genre_(genre) {
    const int i = Index(genre);
    depart_ = remis[i] != 0 ? remis[i] : f.PersonneEnCours();
    remis[i] = 0;
    ouvertes[i] = this;
}

FrmListe::~FrmListe() {
    if (ouvertes[Index(genre_)] == this) ouvertes[Index(genre_)] = nullptr;
}

const char* FrmListe::NomFormulaire(GenreListe g) {
    return g == GenreListe::Ascendants ? "FrmAscendants" : "FrmDescendants";
}

bool FrmListe::ChangeNiveaux(int niveaux) {
    niveaux = std::clamp(niveaux, kNiveauxMin, kNiveauxMax);
    if (niveaux == niveaux_) return false;
    niveaux_ = niveaux;
    return Rafraichissement();
}

bool FrmListe::ChangePresentation(int mode) {
    if (mode < TriParcours || mode > TriNom || mode == presentation_) return false;
    presentation_ = mode;
    return Rafraichissement();
}

// --- The list ---------------------------------------------------------------------

bool FrmListe::Rafraichissement() {
    if (f_.Occupe()) return false;
    rafraichir = false;
    lignes_.clear();
    Base* b = f_.base();
    if (b != baseListe_) liste_.reset();
    baseListe_ = b;
    if (b == nullptr || depart_ == 0 || depart_ > b->Tete().maxPersonne) {
        if (vue_) vue_->ListeChangee();
        return false;
    }
    personnesListe_ = b->Tete().nbPersonnes;
    if (!liste_) liste_ = std::make_unique<ListeParente>(*b, b->Systeme());
    ListeParente& l = *liste_;
    const bool descendants = genre_ == GenreListe::Descendants;
    bool fait = false;
    {
        ServicesUi& s = f_.services();
        OperationLongue op(s.panneau, s.boites, Message(descendants ? 81 : 80));
        l.ArretDoublon = 1;
        l.progres = [&op, &l](const std::string& texte) {
            op.Texte(texte);
            if (op.Arrete()) l.Abandon = true;
        };
        l.avertit = [&s](const std::string& texte) { s.boites.Texte(texte); };
        std::int32_t nombre = 0;
        fait = descendants ? l.ConstruitDescendants(depart_, nombre, niveaux_, presentation_)
                           : l.ConstruitAscendants(depart_, nombre, niveaux_, presentation_);
        if (fait) Remplit(op);
        l.progres = nullptr;
        l.avertit = nullptr;
    }
    if (vue_) vue_->ListeChangee();
    return fait && !lignes_.empty();
}

// The rows read names and dates from the base; a long list lets the stop
// button be heard between them too.
void FrmListe::Remplit(OperationLongue& op) {
    Base& b = *baseListe_;
    const std::int32_t n = liste_->NombreEntrees();
    lignes_.reserve(static_cast<std::size_t>(n));
    for (std::int32_t i = 1; i <= n; ++i) {
        if (i % 500 == 0 && op.Arrete()) {
            lignes_.clear();
            return;
        }
        lignes_.push_back(LigneEntree(b, i));
    }
}

FrmListe::Ligne FrmListe::LigneEntree(Base& b, std::int32_t n) const {
    const ListeParente& l = *liste_;
    Ligne r;
    r.personne = l.ListePersonne(n);
    const std::string nom = b.NomComplet(r.personne);
    const std::string dates = Trim(std::string_view(b.NomDates(r.personne)).substr(nom.size()));
    const std::string generation = std::to_string(l.ListeGeneration(n));
    const std::string occurrences = std::to_string(l.ListeOccurrences(r.personne));
    if (genre_ == GenreListe::Ascendants) {
        std::string sosa;
        for (const Occurrence& o : l.OccurrencesEntree(n))
            sosa += (sosa.empty() ? "" : "-") + std::to_string(o.numero);
        r.cellules = {generation, sosa, occurrences, std::to_string(b.Mariages(r.personne).size()),
                      nom, dates};
    } else {
        // The separator of children 10 and beyond sorts after "-" but does
        // not show in a grid: it is drawn as "-".
        std::string numero = l.NumerosDescendance(l.ListeNumero(n));
        std::replace(numero.begin(), numero.end(), '\xAD', '-');
        r.cellules = {generation, std::to_string(r.personne), numero, occurrences, nom, dates};
    }
    return r;
}

bool FrmListe::Perimee() {
    Base* b = f_.base();
    return b != baseListe_ || (b != nullptr && b->Tete().nbPersonnes != personnesListe_);
}

bool FrmListe::MetAJour() {
    if (!rafraichir && !Perimee()) return false;
    return Rafraichissement();
}

std::string FrmListe::Entete(int c) const {
    using namespace msg_listes;
    static constexpr int asc[] = {0, ColGeneration, ColSosa, ColOccurrences, ColMariages, ColNom,
                                  ColDates};
    static constexpr int desc[] = {0, ColGeneration, ColPersonne, ColNumero, ColOccurrences,
                                   ColNom, ColDates};
    if (c <= 0 || c >= NombreColonnes()) return "";
    return Message(genre_ == GenreListe::Ascendants ? asc[c] : desc[c]);
}

std::string FrmListe::Gabarit(int c) const {
    if (genre_ == GenreListe::Ascendants) {
        if (c == 4) return "M  ";
        if (c == 6) return "99999999999999";
    } else {
        if (c == 3) return "Asc.     ";
        if (c == 6) return "999999999999";
    }
    return "";
}

std::string FrmListe::Titre() {
    Base* b = f_.base();
    const std::string nom = b && depart_ <= b->Tete().maxPersonne ? b->NomComplet(depart_) : "";
    return Remplace(Message(genre_ == GenreListe::Ascendants ? 575 : 768), "&1", nom);
}

// --- Actions on a row ----------------------------------------------------------------

std::uint32_t FrmListe::PersonneLigne(int i) const {
    if (i < 0 || static_cast<std::size_t>(i) >= lignes_.size()) return 0;
    return lignes_[static_cast<std::size_t>(i)].personne;
}

std::string FrmListe::TagGlisser(int i) const {
    const std::uint32_t p = PersonneLigne(i);
    return p ? "I" + std::to_string(p) : "";
}

bool FrmListe::Choisit(int i) {
    const std::uint32_t p = PersonneLigne(i);
    if (p == 0 || f_.Occupe()) return false;
    f_.Aller(p);
    return true;
}

bool FrmListe::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre != 'I' || numero == 0) return false;
    depart_ = numero;
    rafraichir = true;
    return Rafraichissement();
}

bool FrmListe::VersListe(GenreListe cible, int i) {
    const std::uint32_t p = PersonneLigne(i);
    if (p == 0 || f_.Occupe()) return false;
    if (cible == genre_) return RecoitGlisser('I', p);
    const char* nom = NomFormulaire(cible);
    if (!Disponible(nom)) return false;
    FrmListe* autre = ouvertes[Index(cible)];
    if (autre != nullptr) {
        autre->RecoitGlisser('I', p);
    } else {
        remis[Index(cible)] = p;
    }
    f_.services().fenetres.Ouvre(nom);
    remis[Index(cible)] = 0;
    return true;
}

bool FrmListe::CmdMaj(int i) {
    const std::uint32_t p = PersonneLigne(i);
    if (p == 0 || f_.Occupe() || !Disponible("FrmMisajour")) return false;
    f_.Confirme_Fiche_En_Cours();
    f_.personneFiche = p;
    f_.services().fenetres.Ouvre("FrmMisajour");
    return true;
}

bool FrmListe::Transmet(const char* formulaire, bool deuxAuMoins) {
    if (f_.Occupe() || !Disponible(formulaire)) return false;
    if (deuxAuMoins && lignes_.size() < 2) {
        f_.services().boites.Information(555);
        return false;
    }
    std::vector<std::uint32_t> personnes;
    personnes.reserve(lignes_.size());
    for (const Ligne& l : lignes_)
        personnes.push_back(l.personne);
    std::sort(personnes.begin(), personnes.end());
    TransfertParente& t = ParenteTransmise();
    t.liste.clear();
    for (std::uint32_t p : personnes)
        t.liste += Pack4(p);
    t.mode = genre_ == GenreListe::Ascendants ? 'A' : 'D';
    t.generations = niveaux_;
    t.personne = depart_;
    f_.services().fenetres.Ouvre(formulaire);
    return true;
}

bool FrmListe::CmdArbre() { return Transmet("FrmParenteVisu", true); }
bool FrmListe::CmdStats() { return Transmet("FrmStats", true); }
bool FrmListe::CmdImpression() { return Transmet("FrmImpression", false); }

bool FrmListe::Disponible(const std::string& formulaire) const {
    return f_.services().fenetres.Disponible(formulaire);
}

} // namespace sylvane
