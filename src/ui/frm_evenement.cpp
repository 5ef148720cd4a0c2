#include "ui/frm_evenement.h"

#include "ui/frm_impression.h"
#include "ui/frm_misajour.h"

#include "publish/impression_evenements.h"

#include "store/pack.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/rtf.h"
#include "text/tags.h"

#include <algorithm>
#include <memory>
#include <numeric>

namespace sylvane {

namespace {

constexpr int kMaxListe = 200;
constexpr int kTexteSeul = 3899; // "&1": a box of a text already made

// The role tags a drop may give to a man, and to a woman.
bool RoleMasculin(const std::string& libelle) {
    for (int n : {850, 681, 937, 749})
        if (libelle == Message(n)) return true;
    return false;
}
bool RoleFeminin(const std::string& libelle) {
    for (int n : {851, 683, 938, 751})
        if (libelle == Message(n)) return true;
    return false;
}

} // namespace

DemandeEvt& DemandeEvenement() {
    static DemandeEvt d;
    return d;
}

bool OuvreEvenement(MDIForm1& f, std::uint32_t evenement, std::uint32_t proprietaire) {
    Fenetres& fen = f.services().fenetres;
    if (!fen.Disponible("FrmDesEvt")) return false;
    DemandeEvenement() = {evenement, proprietaire};
    fen.OuvreNumero("FrmDesEvt", evenement);
    return true;
}

std::uint32_t EvenementDeFiche(MDIForm1& f, std::uint32_t personne, const std::string& tag,
                               const std::string& jour, const std::string& annee,
                               const std::string& lieu, std::uint32_t mariage) {
    Base* b = f.base();
    if (!b || personne == 0) return 0;
    std::uint32_t e = mariage ? EvenementMariage(*b, personne, mariage, tag)
                              : EvenementPrincipal(*b, personne, tag);
    if (e) return e;
    // The day typed on the sheet (held day first) and its year; a year
    // alone dates the event on its first day.
    long date = 0;
    const std::string j = Trim(jour), a = Trim(annee);
    if (!a.empty() || !j.empty()) {
        const std::string texte = (j.empty() ? std::string("1/1") : Conv_DateSaisie(j)) + "/" + a;
        if (a.empty() || !Conv_DateValide(texte, "dd/mm/yyyy")) {
            f.services().boites.Information(931);
            return 0;
        }
        date = Conv_DateSerie(texte, "dd/mm/yyyy");
    }
    if (mariage) {
        e = b->CreeEvtMariage(mariage, date, tag, lieu);
    } else {
        e = Creer_Evenement(*b, personne, tag, date, lieu);
    }
    return e;
}

namespace {

// The marriage selected on the sheet, 0 for none.
std::uint32_t MariageDeFiche(MDIForm1& f, const FrmMisajour& fiche) {
    const int rang = fiche.MariageSelectionne();
    return rang < 0 || !f.base() ? 0 : f.base()->MariageNo(fiche.Personne(), rang + 1);
}

} // namespace

namespace {

// What a sheet's event button asks for: the tag, the day, year and place
// typed on the sheet, and the marriage for a marriage's event.
struct EvtDeFiche {
    std::string tag, jour, annee, lieu;
    bool mariage = false;
};

bool OuvreEvtFiche(MDIForm1& f, FrmMisajour& fiche, const EvtDeFiche& d) {
    const std::uint32_t n = fiche.Personne();
    if (!f.base() || n == 0 || f.Occupe()) return false;
    const std::uint32_t m = d.mariage ? MariageDeFiche(f, fiche) : 0;
    if (d.mariage && m == 0) return false;
    const std::uint32_t e = EvenementDeFiche(f, n, d.tag, d.jour, d.annee, d.lieu, m);
    if (e == 0) return false;
    f.Aller(f.PersonneEnCours());
    return OuvreEvenement(f, e, n);
}

bool MarqueEvt(MDIForm1& f, const FrmMisajour& fiche, const std::string& tag, bool mariage) {
    Base* b = f.base();
    const std::uint32_t n = fiche.Personne();
    if (!b || n == 0) return false;
    if (mariage) {
        const std::uint32_t m = MariageDeFiche(f, fiche);
        return m && EvenementMariage(*b, n, m, tag);
    }
    return EvenementPrincipal(*b, n, tag) != 0;
}

const RangRubrique* RangDeFiche(const FrmMisajour& fiche, bool mariage, int rang) {
    const auto& rangs = mariage ? fiche.RubriquesMariage() : fiche.RubriquesPersonne();
    return rang >= 0 && rang < static_cast<int>(rangs.size()) ? &rangs[static_cast<std::size_t>(rang)]
                                                               : nullptr;
}

} // namespace

bool CmdEvFiche(MDIForm1& f, FrmMisajour& fiche, const std::string& tag) {
    if (tag == "MARR")
        return OuvreEvtFiche(f, fiche, {tag, fiche.Valeur(Champ::JMar), fiche.Valeur(Champ::Dmar),
                                        fiche.Valeur(Champ::LieuMar), true});
    const bool naissance = tag == "BIRT";
    return OuvreEvtFiche(f, fiche,
                         {tag, fiche.Valeur(naissance ? Champ::JNaiss : Champ::JDeces),
                          fiche.Valeur(naissance ? Champ::Naiss : Champ::Deces),
                          fiche.Valeur(naissance ? Champ::LieuNaiss : Champ::LieuDeces), false});
}

bool MarqueEvFiche(MDIForm1& f, const FrmMisajour& fiche, const std::string& tag) {
    return MarqueEvt(f, fiche, tag, tag == "MARR");
}

bool RubriqueEvenement(MDIForm1& f, const FrmMisajour& fiche, bool mariage, int rang) {
    const RangRubrique* r = RangDeFiche(fiche, mariage, rang);
    Base* b = f.base();
    if (!b || !r || r->tag.empty()) return false;
    for (const GenreEvt& g : b->Temoins().genres)
        if (g.tag == r->tag) return true;
    return false;
}

bool CmdRubEvt(MDIForm1& f, FrmMisajour& fiche, bool mariage, int rang) {
    if (!RubriqueEvenement(f, fiche, mariage, rang)) return false;
    const RangRubrique& r = *RangDeFiche(fiche, mariage, rang);
    // A rubric without a date gives its place only.
    return OuvreEvtFiche(f, fiche,
                         {r.tag, r.date ? r.jour : "", r.date ? r.annee : "", r.lieu, mariage});
}

bool MarqueRubEvt(MDIForm1& f, const FrmMisajour& fiche, bool mariage, int rang) {
    return RubriqueEvenement(f, fiche, mariage, rang) &&
           MarqueEvt(f, fiche, RangDeFiche(fiche, mariage, rang)->tag, mariage);
}

std::optional<DemandeMot> DemandeMotRubrique(MDIForm1& f, const FrmMisajour& fiche, bool mariage,
                                             int rang) {
    const RangRubrique* r = RangDeFiche(fiche, mariage, rang);
    if (!r) return std::nullopt;
    DemandeMot d{mariage, r->symbole, r->tag, r->libelle, r->date, r->jour, r->annee, r->lieu};
    d.personne = fiche.Personne();
    d.numeroMariage = mariage ? MariageDeFiche(f, fiche) : 0;
    return d;
}

std::function<void(std::uint32_t, const std::string&, const std::string&, const std::string&)>
EditeurFiche(MDIForm1& f, ChoixFiche& choix) {
    return [&f, &choix](std::uint32_t e, const std::string& jour, const std::string& annee,
                        const std::string& lieu) {
        if (!f.base() || e == 0) return;
        FrmDesEvt forme(f, choix, e, f.personneFiche);
        const std::string date = Trim(jour) + "/" + Trim(annee);
        if (!Trim(jour).empty() && Conv_DateValide(date, "dd/mm/yyyy"))
            forme.Modifie(ChampEvt::Date, TexteDateEvenement(Conv_DateSerie(date, "dd/mm/yyyy")));
        if (!Trim(lieu).empty()) forme.Modifie(ChampEvt::Lieu, lieu);
        if (forme.CmdMaj()) OuvreEvenement(f, e, f.personneFiche);
    };
}

// --- FrmLstEvt --------------------------------------------------------------------------------

FrmLstEvt::FrmLstEvt(MDIForm1& f) : f_(f) {}

void FrmLstEvt::Change() {
    if (vue_) vue_->ListeChangee();
}

std::size_t FrmLstEvt::Nombre() {
    Base* b = B();
    if (!b) return 0;
    return ordre_ == OrdreEvt::Date ? b->TableEvenements().taille() : ordonnes_.size();
}

std::uint32_t FrmLstEvt::Numero(std::size_t rang) {
    Base* b = B();
    const std::size_t n = Nombre();
    if (!b || rang >= n) return 0;
    const std::size_t i = descendant_ ? n - 1 - rang : rang;
    return ordre_ == OrdreEvt::Date ? b->TriEvt(i + 1) : ordonnes_[i];
}

std::array<std::string, 5> FrmLstEvt::Ligne(std::size_t rang) {
    const std::uint32_t e = Numero(rang);
    if (e == 0) return {};
    return LigneEvenement(*B(), e);
}

void FrmLstEvt::Trie(OrdreEvt ordre, bool descendant) {
    Base* b = B();
    if (!b) return;
    ordre_ = ordre;
    descendant_ = descendant;
    ordonnes_.clear();
    if (ordre != OrdreEvt::Date) {
        ordonnes_ = b->TableEvenements().versVecteur();
        if (ordre == OrdreEvt::Numero) {
            std::sort(ordonnes_.begin(), ordonnes_.end());
        } else {
            // Each key is read once; events of equal keys stay in date order.
            std::vector<std::string> cles(ordonnes_.size());
            for (std::size_t i = 0; i < ordonnes_.size(); ++i)
                cles[i] = CleMot(ordre == OrdreEvt::Lieu ? b->LieuEvt(ordonnes_[i])
                                                         : b->LibelleEvt(ordonnes_[i]));
            std::vector<std::size_t> rangs(ordonnes_.size());
            std::iota(rangs.begin(), rangs.end(), 0);
            std::stable_sort(rangs.begin(), rangs.end(),
                             [&cles](std::size_t x, std::size_t y) { return cles[x] < cles[y]; });
            std::vector<std::uint32_t> v(rangs.size());
            for (std::size_t i = 0; i < rangs.size(); ++i) v[i] = ordonnes_[rangs[i]];
            ordonnes_ = std::move(v);
        }
    }
    Change();
}

std::optional<std::size_t> FrmLstEvt::Position(const std::string& annee) {
    Base* b = B();
    const std::string a = Trim(annee);
    if (!b || a.empty() || a.size() > 5) return std::nullopt;
    int an = 0;
    for (char c : a) {
        if (c < '0' || c > '9') return std::nullopt;
        an = an * 10 + (c - '0');
    }
    if (ordre_ != OrdreEvt::Date || descendant_) Trie(OrdreEvt::Date, false);
    // The first event dated in that year or later, by bisection on the
    // date table; undated events (day 0) sort among the dates of 1899.
    std::size_t bas = 0, haut = b->TableEvenements().taille();
    while (bas < haut) {
        const std::size_t m = (bas + haut) / 2;
        if (AnneeEvenement(b->DateEvt(b->TriEvt(m + 1))) < an && b->DateEvt(b->TriEvt(m + 1)) != 0)
            bas = m + 1;
        else if (b->DateEvt(b->TriEvt(m + 1)) == 0 && 1899 < an)
            bas = m + 1;
        else
            haut = m;
    }
    if (bas >= b->TableEvenements().taille()) {
        if (bas == 0) return std::nullopt;
        bas -= 1;
    }
    return bas;
}

std::optional<std::size_t> FrmLstEvt::RangDe(std::uint32_t e) {
    Base* b = B();
    if (!b || e == 0) return std::nullopt;
    if (ordre_ == OrdreEvt::Date) {
        const std::uint32_t place = b->TrouvePlaceEvt(e);
        if (place == 0) return std::nullopt;
        return descendant_ ? Nombre() - place : place - 1;
    }
    auto it = std::find(ordonnes_.begin(), ordonnes_.end(), e);
    if (it == ordonnes_.end()) return std::nullopt;
    const std::size_t i = static_cast<std::size_t>(it - ordonnes_.begin());
    return descendant_ ? Nombre() - 1 - i : i;
}

void FrmLstEvt::CmdAjout() {
    if (f_.Occupe() || !B()) return;
    OuvreEvenement(f_, 0, 0);
}

void FrmLstEvt::CmdMaj(std::size_t rang) {
    if (f_.Occupe()) return;
    if (const std::uint32_t e = Numero(rang)) OuvreEvenement(f_, e, 0);
}

bool FrmLstEvt::CmdSupp(std::size_t rang) {
    if (f_.Occupe()) return false;
    const std::uint32_t e = Numero(rang);
    if (e == 0) return false;
    Boites& boites = f_.services().boites;
    if (boites.Question(617) != Reponse::Oui) return false;
    SupprimeEvenement(*B(), e);
    if (ordre_ != OrdreEvt::Date) ordonnes_.erase(std::find(ordonnes_.begin(), ordonnes_.end(), e));
    f_.Aller(f_.PersonneEnCours());
    Change();
    return true;
}

void FrmLstEvt::Actualise() {
    if (ordre_ != OrdreEvt::Date && B() && ordonnes_.size() != B()->TableEvenements().taille())
        Trie(ordre_, descendant_);
    else
        Change();
}

int FrmLstEvt::Rectification() {
    Base* b = B();
    if (!b || f_.Occupe()) return 0;
    OperationLongue op(f_.services().panneau, f_.services().boites, Message(504), Message(505));
    const int n = RectifieLiens(*b, [&op](std::uint32_t e) {
        op.Texte(MessageAvec(msg_evt::Correction, std::to_string(e)));
        return !op.Arrete();
    });
    Change();
    return n;
}

bool FrmLstEvt::CmdImprimer() {
    if (!B() || f_.Occupe() || Nombre() == 0) return false;
    Fenetres& fen = f_.services().fenetres;
    if (!fen.Disponible("FrmPrevisualisation")) return false;
    // The preview draws its pages while it paints, for as long as the base
    // is open: it reads the rows again each time, through a copy of the
    // list in its present order. Its first layout runs under the panel
    // opened here; a stop there holds every later drawing (the pages shown,
    // printed or written as PDF) to the rows laid out until then.
    struct Etat {
        FrmLstEvt liste;
        std::size_t limite = static_cast<std::size_t>(-1);
        OperationLongue* op = nullptr;
    };
    auto etat = std::make_shared<Etat>(Etat{*this});
    etat->liste.vue_ = nullptr;
    DocumentApercu d;
    d.titre = Message(msg_evt::TitreListe);
    d.papier = ReglagesCourants().Feuille();
    d.dessine = [etat, titre = d.titre, papier = d.papier](Surface& s) {
        FrmLstEvt& l = etat->liste;
        Base* b = l.B();
        if (!b) return FinPages::Arrete;
        OptionsImpression o;
        o.papier = papier;
        if (OperationLongue* op = etat->op) {
            o.arret = [op] { return op->Arrete(); };
            o.progres = [op](const std::string&, const std::string& texte) { op->Texte(texte); };
        }
        LigneEvt entetes;
        for (std::size_t i = 0; i < entetes.size(); ++i)
            entetes[i] = Message(msg_evt::ColDate + static_cast<int>(i));
        const bool arrete = etat->limite != static_cast<std::size_t>(-1);
        std::size_t faits = 0;
        const FinRapport fin = ImprimeListeEvenements(
            *b, s, titre, entetes, std::min(etat->limite, l.Nombre()),
            [&l](std::size_t i) { return l.Ligne(i); }, o, &faits, !arrete);
        if (fin == FinRapport::Arrete) etat->limite = faits;
        // After a stop, the rows laid out until then are the whole document.
        return fin == FinRapport::Termine ? FinPages::Termine : FinPages::Arrete;
    };
    ApercuTransmis() = std::move(d);
    OperationLongue op(f_.services().panneau, f_.services().boites, Message(745),
                       Message(msg_evt::TitreListe));
    etat->op = &op;
    fen.Ouvre("FrmPrevisualisation");
    etat->op = nullptr;
    return true;
}

// --- Rectification of the roles of old captures ---------------------------------------------------

namespace {

// The roles found in a part of a marriage's comment: the spouse first, then
// one for each mark in the order the text gives them.
std::vector<std::string> RolesPartie(const std::string& texte, const char* conjoint,
                                     const char* veuvage, const char* ancien) {
    std::vector<std::string> roles{conjoint};
    std::size_t i = 0;
    for (;;) {
        const std::size_t v = texte.find(veuvage, i);
        const std::size_t p = texte.find("P\xE8re", i);
        const std::size_t m = texte.find("M\xE8re", i);
        const std::size_t suivant = std::min({v, p, m});
        if (suivant == std::string::npos) break;
        // What stands between this mark and the next tells a dead parent.
        const std::size_t fin = std::min({texte.size(), texte.find(veuvage, suivant + 4),
                                          texte.find("P\xE8re", suivant + 4),
                                          texte.find("M\xE8re", suivant + 4)});
        const std::string entre = texte.substr(suivant, fin - suivant);
        if (suivant == v) {
            roles.push_back(ancien);
            i = v + std::string(veuvage).size();
        } else if (suivant == p) {
            const bool feu = entre.find(" feu ") != std::string::npos || entre.find('+') != std::string::npos;
            roles.push_back(feu ? "P\xE8re d\xE9" "c\xE9" "d\xE9" : "FATH");
            i = p + 4;
        } else {
            const bool feue = entre.find(" feue ") != std::string::npos || entre.find('+') != std::string::npos;
            roles.push_back(feue ? "M\xE8re d\xE9" "c\xE9" "d\xE9" "e" : "MOTH");
            i = m + 4;
        }
    }
    return roles;
}

} // namespace

int RectifieLiens(Base& b, const std::function<bool(std::uint32_t)>& progres) {
    int donnes = 0;
    for (std::uint32_t e = 1; e <= b.Tete().maxEvenement; ++e) {
        if (b.PosEvt(e) == 0) continue;
        const std::vector<std::uint32_t> personnes = PersonnesEvenement(b, e);
        std::vector<std::string> roles;
        bool vide = false;
        for (std::uint32_t p : personnes) {
            roles.push_back(RoleDansEvenement(b, p, e));
            vide = vide || roles.back().empty();
        }
        if (!vide) continue;
        if (progres && !progres(e)) break;
        const std::string tag = b.TagEvt(e);
        std::vector<std::string> trouves;
        if (tag == "MARR") {
            const std::string texte = TexteRtf(b.NoteEvt(e));
            const std::size_t epouse = texte.find("Epouse");
            trouves = RolesPartie(texte.substr(0, epouse), "HUSB", "Veuf de",
                                  "Conjointe d\xE9" "c\xE9" "d\xE9" "e");
            if (epouse != std::string::npos) {
                auto f = RolesPartie(texte.substr(epouse), "WIFE", "Veuve de",
                                     "Conjoint d\xE9" "c\xE9" "d\xE9");
                trouves.insert(trouves.end(), f.begin(), f.end());
            }
        } else if (tag == "CHR" || tag == "BURI") {
            trouves = {"CHIL", "FATH", "MOTH"};
        } else {
            continue;
        }
        for (std::size_t i = 0; i < personnes.size() && i < trouves.size(); ++i)
            if (roles[i].empty()) {
                ChangeRole(b, e, personnes[i], trouves[i]);
                ++donnes;
            }
    }
    return donnes;
}

// --- FrmDesEvt --------------------------------------------------------------------------------

FrmDesEvt::FrmDesEvt(MDIForm1& f, ChoixFiche& choix, std::uint32_t evenement,
                     std::uint32_t proprietaire)
    : f_(f), choix_(choix), e_(evenement), proprietaire_(proprietaire),
      documents_(f, OrigineDocument::Genre::Evenement, [this] { return e_; }) {
    Charge();
}

void FrmDesEvt::Change() {
    if (vue_) vue_->EvenementChange();
}

void FrmDesEvt::MarquePendant() { pendant_ = true; }

std::string FrmDesEvt::Titre() const {
    if (e_ == 0) return Message(msg_evt::Nouveau);
    std::string t = MessageAvec(msg_evt::TitreForme, std::to_string(e_));
    if (!type_.empty()) t += " - " + type_;
    if (!titre_.empty()) t += " - " + titre_;
    return t;
}

void FrmDesEvt::Charge() {
    Base* b = B();
    type_.clear(), role_.clear(), date_.clear(), lieu_.clear(), titre_.clear(), note_.clear();
    pendant_ = roleChange_ = false;
    selection_ = -1;
    if (b && e_ != 0 && b->PosEvt(e_) == 0) e_ = 0; // deleted meanwhile
    if (b && e_ != 0) {
        type_ = b->LibelleEvt(e_);
        date_ = TexteDateEvenement(b->DateEvt(e_));
        lieu_ = b->LieuEvt(e_);
        titre_ = b->TitreEvt(e_);
        note_ = b->NoteEvt(e_);
    } else if (b && proprietaire_) {
        titre_ = b->NomComplet(proprietaire_);
    }
    ChargeListes();
    Change();
}

void FrmDesEvt::Actualise() {
    if (!pendant_) {
        Charge();
        return;
    }
    // The changes typed stay; the persons and documents are those stored.
    if (B() && e_ != 0 && B()->PosEvt(e_) == 0) e_ = 0;
    ChargeListes();
    Change();
}

void FrmDesEvt::ChargeListes() {
    personnes_.clear();
    docs_.clear();
    Base* b = B();
    if (!b || e_ == 0) return;
    for (std::uint32_t p : PersonnesEvenement(*b, e_)) {
        LignePersonneEvt l;
        l.numero = p;
        l.nom = b->NomDates(p);
        l.tag = RoleDansEvenement(*b, p, e_);
        l.role = Conv_LibelleTag(l.tag);
        personnes_.push_back(std::move(l));
    }
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t d = b->DocEvtNo(e_, i);
        if (d == 0) break;
        docs_.push_back({d, b->TitreDoc(d), b->FichierDoc(d)});
    }
    if (selection_ >= static_cast<int>(personnes_.size())) selection_ = -1;
}

std::vector<std::string> FrmDesEvt::Types() const {
    std::vector<std::string> v;
    Base* b = f_.base();
    if (!b) return v;
    for (const GenreEvt& g : b->Temoins().genres) v.push_back(Conv_LibelleTag(g.tag));
    return v;
}

std::string FrmDesEvt::TagType() const { return Conv_TagLibelle(Trim(type_)); }
std::string FrmDesEvt::TagRole() const { return Conv_TagLibelle(Trim(role_)); }

void FrmDesEvt::ChoisitType(const std::string& libelle) {
    if (libelle == type_) return;
    type_ = libelle;
    if (selection_ < 0) role_.clear();
    MarquePendant();
    Change();
}

std::vector<std::string> FrmDesEvt::Roles() const {
    std::vector<std::string> v;
    Base* b = f_.base();
    if (!b) return v;
    for (const CelluleRole& c : CellulesRoles(b->Temoins(), TagType()))
        v.push_back(Conv_LibelleTag(c.tag));
    return v;
}

void FrmDesEvt::ChoisitRole(const std::string& libelle) {
    if (libelle == role_) return;
    role_ = libelle;
    if (selection_ >= 0) {
        roleChange_ = true;
        MarquePendant();
    }
    Change();
}

void FrmDesEvt::Modifie(ChampEvt c, const std::string& texte) {
    std::string& v = c == ChampEvt::Date ? date_ : c == ChampEvt::Lieu ? lieu_ : titre_;
    if (v == texte) return;
    // A value of the event never holds a NUL, which separates its fields.
    v = texte;
    v.erase(std::remove(v.begin(), v.end(), '\0'), v.end());
    MarquePendant();
}

const std::string& FrmDesEvt::Valeur(ChampEvt c) const {
    return c == ChampEvt::Date ? date_ : c == ChampEvt::Lieu ? lieu_ : titre_;
}

std::string FrmDesEvt::JourEvt() const {
    const std::optional<long> d = LitDateEvenement(date_);
    if (!d || *d == 0) return "";
    return JourSemaineEvenement(*d) + " " + TexteDateEvenement(*d);
}

void FrmDesEvt::SelectionnePersonne(int rang) {
    selection_ = rang >= 0 && rang < static_cast<int>(personnes_.size()) ? rang : -1;
    roleChange_ = false;
    if (selection_ >= 0) role_ = personnes_[static_cast<std::size_t>(selection_)].role;
    Change();
}

std::string FrmDesEvt::LibelleOnglet(int onglet) const {
    static const int messages[3] = {msg_evt::OngletRoles, msg_evt::OngletDocuments,
                                    msg_evt::OngletCommentaire};
    if (onglet < 0 || onglet > 2) return "";
    const bool plein = onglet == 0 ? !personnes_.empty() : onglet == 1 ? !docs_.empty() : !note_.empty();
    return Message(messages[onglet]) + (plein ? Message(849) : "");
}

// --- Validation -----------------------------------------------------------------------------------

bool FrmDesEvt::RoleRefuse(std::uint32_t p, const std::string& tag) {
    Base& b = *B();
    if (SexeConvient(SexeDuRole(b.Temoins(), TagType(), tag), b.LitSexe(p))) return false;
    f_.services().boites.Information(936);
    return true;
}

void FrmDesEvt::RechargeFiche(std::uint32_t p) {
    // The sheet and the other event forms read the store again, unless they
    // hold changes of their own.
    if (p == 0 || f_.personneFiche == p || p == proprietaire_) f_.Aller(f_.PersonneEnCours());
}

bool FrmDesEvt::CmdMaj() {
    Base* pb = B();
    if (!pb || f_.Occupe()) return false;
    Base& b = *pb;
    // 1. The date: the local form, then the tag form.
    const std::optional<long> date = LitDateEvenement(date_);
    if (!date) {
        f_.services().boites.Information(931);
        return false;
    }
    ChampsEvenement c;
    c.date = *date;
    c.lieu = Trim(lieu_);
    c.titre = titre_;
    c.tag = TagType();
    c.note = note_;
    if (e_ != 0) {
        // 2. An existing event takes what differs.
        MajEvenement(b, e_, c);
    } else {
        // 3. A new event, and the roles of its owner (4 and 5).
        e_ = CreeEvenement(b, c);
        if (proprietaire_) {
            if (Trim(role_).empty()) RolesCreation(b, e_, proprietaire_, false);
            else AjouteRole(b, e_, proprietaire_, TagRole());
        }
    }
    // 6. The role changed for the selected person.
    if (roleChange_ && selection_ >= 0 && selection_ < static_cast<int>(personnes_.size())) {
        const LignePersonneEvt& l = personnes_[static_cast<std::size_t>(selection_)];
        const std::string tag = TagRole();
        if (!RoleRefuse(l.numero, tag) && tag != l.tag) ChangeRole(b, e_, l.numero, tag);
    }
    roleChange_ = false;
    // 7. The owner's sheet against the event.
    const std::string type = b.TagEvt(e_);
    if (proprietaire_ && (type == "BIRT" || type == "DEAT" || type == "CHR" || type == "BURI" ||
                          type == "MARR") &&
        DiffereDeFiche(b, e_, proprietaire_) &&
        f_.services().boites.Question(939) == Reponse::Oui)
        MetFicheAJour(b, e_, proprietaire_);
    // 8. The form and the sheet show the stores again.
    const int selection = selection_;
    Charge();
    SelectionnePersonne(selection);
    RechargeFiche(proprietaire_ ? proprietaire_ : f_.personneFiche);
    return true;
}

bool FrmDesEvt::CmdQuitter() {
    if (pendant_ && f_.services().boites.Question(933) == Reponse::Oui && !CmdMaj()) return false;
    Charge();
    return true;
}

// --- Persons of the event -------------------------------------------------------------------------

DialogueLiens FrmDesEvt::Dialogue() {
    DialogueLiens d;
    d.boite = [this](const Boite& x) {
        Boites& boites = f_.services().boites;
        if (x.genre == Boite::Genre::Avertissement) {
            if (x.suite) boites.Information(kTexteSeul, TexteBoite(x));
            else boites.Information(x.message, x.nom);
            return Reponse::Oui;
        }
        if (x.suite || !x.titre.empty())
            return boites.Question(kTexteSeul, false,
                                   (x.titre.empty() ? "" : x.titre + " : ") + TexteBoite(x));
        return boites.Question(x.message, false, x.nom);
    };
    return d;
}

// The person of the event in this role (the first), 0 when none.
static std::uint32_t PersonneDuRole(const std::vector<LignePersonneEvt>& l, const char* role,
                                    std::uint32_t sauf = 0) {
    for (const LignePersonneEvt& p : l)
        if (p.tag == role && p.numero != sauf) return p.numero;
    return 0;
}

void FrmDesEvt::LiensFamille(std::uint32_t n, const std::string& role) {
    Base& b = *B();
    const std::string type = TagType();
    Liens liens(b, Dialogue(), &f_.app().numeros());
    auto dejaMaries = [&b](std::uint32_t x, std::uint32_t y) {
        for (std::uint32_t m : b.Mariages(x))
            if (b.LitMari(m) == y || b.LitFemme(m) == y) return true;
        return false;
    };
    ChargeListes();
    if ((type == "CHR" || type == "BIRT") && (role == "FATH" || role == "MOTH")) {
        const std::uint32_t enfant = PersonneDuRole(personnes_, "CHIL");
        const Cote cote = role == "FATH" ? Cote::Pere : Cote::Mere;
        if (enfant && (cote == Cote::Pere ? b.LitPere(enfant) : b.LitMere(enfant)) == 0) {
            const ResultatLien r = liens.AttacheParent(enfant, cote, n);
            if (r.Refuse()) f_.services().boites.Information(r.refus);
        }
    } else if (type == "MARR" && (role == "HUSB" || role == "WIFE")) {
        const std::uint32_t autre = PersonneDuRole(personnes_, role == "HUSB" ? "WIFE" : "HUSB", n);
        if (autre && !dejaMaries(n, autre)) {
            const ResultatLien r = liens.AttacheConjoint(n, autre);
            if (r.Refuse()) {
                f_.services().boites.Information(r.refus);
            } else if (r.mariage) {
                const long d = b.DateEvt(e_);
                if (d != 0) b.EcritAnMariage(r.mariage, std::to_string(AnneeEvenement(d)));
                const std::string lieu = Trim(b.LieuEvt(e_));
                if (!lieu.empty()) {
                    const std::uint32_t mari = b.LitMari(r.mariage), femme = b.LitFemme(r.mariage);
                    const std::string am = b.NoteAvecMariages(mari), af = b.NoteAvecMariages(femme);
                    b.EcritNoteMariage(r.mariage, " @" + lieu);
                    b.MajMots(mari, am, b.NoteAvecMariages(mari));
                    b.MajMots(femme, af, b.NoteAvecMariages(femme));
                }
            }
        }
    } else if ((type == "BURI" || type == "DEAT") && (role == "WIDR" || role == "WIDW")) {
        const std::uint32_t defunt = PersonneDuRole(personnes_, "DEAD");
        if (defunt && !dejaMaries(n, defunt) &&
            f_.services().boites.Question(639, false, b.NomComplet(n)) == Reponse::Oui) {
            const ResultatLien r = liens.AttacheConjoint(defunt, n);
            if (r.Refuse()) f_.services().boites.Information(r.refus);
        }
    }
}

bool FrmDesEvt::AjoutePersonne(std::uint32_t p) {
    Base* b = B();
    if (!b || p == 0 || f_.Occupe()) return false;
    const std::string role = TagRole();
    if (role.empty()) {
        f_.services().boites.Information(msg_evt::ChoisirRole);
        return false;
    }
    if (RoleRefuse(p, role)) return false;
    if (e_ == 0 && !CmdMaj()) return false;
    AjouteRole(*b, e_, p, role);
    LiensFamille(p, role);
    ChargeListes();
    selection_ = -1;
    RechargeFiche(p);
    Change();
    return true;
}

bool FrmDesEvt::CmdRechLien() {
    if (!B() || f_.Occupe()) return false;
    if (TagRole().empty()) {
        f_.services().boites.Information(msg_evt::ChoisirRole);
        return false;
    }
    const std::uint32_t p = f_.services().selecteur.ChoisitPersonne(f_.PersonneEnCours());
    return p != 0 && AjoutePersonne(p);
}

bool FrmDesEvt::RecoitPersonne(std::uint32_t p) {
    Base* b = B();
    if (!b || p == 0) return false;
    // A role of one sex takes only a person of that sex; no box for a drop.
    const std::string sexe = b->LitSexe(p);
    if (RoleMasculin(role_) && sexe != "H") return false;
    if (RoleFeminin(role_) && sexe != "F") return false;
    return AjoutePersonne(p);
}

bool FrmDesEvt::CmdCreLien() {
    Base* pb = B();
    if (!pb || f_.Occupe()) return false;
    Base& b = *pb;
    const std::string role = TagRole();
    if (role.empty()) {
        f_.services().boites.Information(msg_evt::ChoisirRole);
        return false;
    }
    if (e_ == 0 && !CmdMaj()) return false;
    const char sexe = SexeDuRole(b.Temoins(), TagType(), role);
    const std::string etiquette = sexe == 'H' ? "Homme" : sexe == 'F' ? "Femme" : "";
    const std::uint32_t n = choix_.Cree(etiquette);
    if (n == 0) return false;
    const std::string type = TagType();
    // The event's date and place go to the birth of a baptised child, or to
    // the death of the deceased.
    if (type == "CHR" && role == "CHIL") EcritNaissanceDeces(b, n, true, b.DateEvt(e_), b.LieuEvt(e_));
    if (role == "DEAD" && (type == "DEAT" || type == "BURI"))
        EcritNaissanceDeces(b, n, false, b.DateEvt(e_), b.LieuEvt(e_));
    AjouteRole(b, e_, n, role);
    LiensFamille(n, role);
    ChargeListes();
    RechargeFiche(n);
    Change();
    return true;
}

bool FrmDesEvt::CmdSupLien() {
    Base* b = B();
    if (!b || f_.Occupe() || selection_ < 0 || selection_ >= static_cast<int>(personnes_.size()))
        return false;
    const std::uint32_t p = personnes_[static_cast<std::size_t>(selection_)].numero;
    RetireRole(*b, e_, p);
    selection_ = -1;
    roleChange_ = false;
    ChargeListes();
    RechargeFiche(p);
    Change();
    return true;
}

void FrmDesEvt::CmdMajInd() {
    if (!B() || f_.Occupe() || selection_ < 0 || selection_ >= static_cast<int>(personnes_.size()))
        return;
    const std::uint32_t p = personnes_[static_cast<std::size_t>(selection_)].numero;
    f_.Confirme_Fiche_En_Cours();
    f_.personneFiche = p;
    f_.Aller(p);
    f_.services().fenetres.Ouvre("FrmMisajour");
}

bool FrmDesEvt::CmdLienUp() {
    Base* b = B();
    if (!b || selection_ < 1 || !EchangePersonnes(*b, e_, selection_)) return false;
    const int s = selection_ - 1;
    ChargeListes();
    SelectionnePersonne(s);
    return true;
}

bool FrmDesEvt::CmdLienDown() {
    Base* b = B();
    if (!b || selection_ < 0 || !EchangePersonnes(*b, e_, selection_ + 1)) return false;
    const int s = selection_ + 1;
    ChargeListes();
    SelectionnePersonne(s);
    return true;
}

void FrmDesEvt::CmdTxtComment() {
    if (!B()) return;
    const std::optional<std::string> t = choix_.EditeTexte(note_, Message(msg_evt::OngletCommentaire));
    if (!t || *t == note_) return;
    note_ = *t;
    MarquePendant();
    Change();
}

bool FrmDesEvt::CmdCreationDoc() {
    if (!B() || f_.Occupe()) return false;
    if (e_ == 0 && !CmdMaj()) return false;
    return documents_.CmdCreImage();
}

bool FrmDesEvt::CmdNouveauDoc() {
    if (!B() || f_.Occupe()) return false;
    if (e_ == 0 && !CmdMaj()) return false;
    return Documents(documents_.CmdLstImage());
}

// A change of the event's documents shows at once, whatever the window.
bool FrmDesEvt::Documents(bool fait) {
    if (fait) {
        ChargeListes();
        Change();
    }
    return fait;
}

bool FrmDesEvt::CmdSuppDoc(int rang) { return Documents(documents_.CmdSuppImage(rang)); }
bool FrmDesEvt::CmdDesImage(int rang) { return documents_.CmdDesImage(rang); }
Visionneuse FrmDesEvt::CmdVisuImage(int rang) { return documents_.CmdVisuImage(rang); }
bool FrmDesEvt::CmdDocUp(int rang) { return Documents(documents_.CmdDocUp(rang)); }
bool FrmDesEvt::CmdDocDown(int rang) { return Documents(documents_.CmdDocDown(rang)); }

bool FrmDesEvt::CmdImprimer() {
    if (!B() || f_.Occupe()) return false;
    if ((e_ == 0 || pendant_) && !CmdMaj()) return false;
    Fenetres& fen = f_.services().fenetres;
    if (!fen.Disponible("FrmPrevisualisation")) return false;
    DocumentApercu d;
    d.titre = Titre();
    d.papier = ReglagesCourants().Feuille();
    // The preview draws its pages while it paints, for as long as the base
    // is open: it reads the event again each time.
    d.dessine = [&f = f_, e = e_, titre = d.titre, papier = d.papier](Surface& s) {
        Base* b = f.base();
        if (!b || b->PosEvt(e) == 0) return FinPages::Arrete;
        OptionsImpression o;
        o.papier = papier;
        Imprimante imp(*b, s, o);
        imp.NouvellePage(titre);
        imp.ImprimeEvenement(e);
        imp.FinImpression();
        return FinPages::Termine;
    };
    ApercuTransmis() = std::move(d);
    fen.Ouvre("FrmPrevisualisation");
    return true;
}

} // namespace sylvane
