// The merge window's logic: the table and its file, the two labels, and
// the wizard's steps over the choices that the merge itself applies.
#include "ui/frm_fusion.h"

#include "store/liens.h"
#include "text/messages.h"
#include "text/mots.h"
#include "ui/frm_misajour.h"

#include <algorithm>

namespace sylvane {

const std::string& ListeFusion::Valeur() const {
    static const std::string vide;
    return choix >= 0 && static_cast<std::size_t>(choix) < valeurs.size()
               ? valeurs[static_cast<std::size_t>(choix)]
               : vide;
}

void ListeFusion::Choisit(const std::string& v) {
    auto it = std::find(valeurs.begin(), valeurs.end(), v);
    choix = it == valeurs.end() ? 0 : static_cast<int>(it - valeurs.begin());
}

namespace {

ListeFusion Liste(const std::string& a, const std::string& b, const std::string& defaut) {
    ListeFusion l{ListeChoix(a, b), 0};
    l.Choisit(defaut);
    return l;
}

// One row for each rubric slot of the base, the two sides' dates and
// values offered, the chosen ones selected. A row with nothing on either
// side keeps its place without a dates list.
std::vector<RubriqueFusion> Rubriques(Base& b, const std::array<SlotRubrique, 10>& slots,
                                      const TableValeursRubriques& premier,
                                      const TableValeursRubriques& second,
                                      const std::array<ValeurRubrique, 10>& choisies) {
    std::vector<RubriqueFusion> r;
    for (std::size_t i = 0; i < slots.size() && i < premier.size() && i < second.size(); ++i) {
        const ValeurRubrique &a = premier[i], &z = second[i];
        const std::string da = DateEtAn(a.jourMois, a.annee), dz = DateEtAn(z.jourMois, z.annee);
        RubriqueFusion l;
        l.libelle = LibelleRubrique(b, slots[i]);
        l.avecDate = slots[i].drapeau == '1';
        l.dates = Liste(da, dz, DateEtAn(choisies[i].jourMois, choisies[i].annee));
        l.valeurs = Liste(a.valeur, z.valeur, choisies[i].valeur);
        if (da.empty() && dz.empty() && a.valeur.empty() && z.valeur.empty()) l.dates.valeurs.clear();
        r.push_back(std::move(l));
    }
    return r;
}

// The values chosen in the rows, slot by slot.
void RubriquesLues(const std::vector<RubriqueFusion>& lignes, std::array<ValeurRubrique, 10>& c) {
    for (std::size_t i = 0; i < lignes.size() && i < c.size(); ++i) {
        const auto [jour, an] = DecoupeDateAn(lignes[i].dates.Valeur());
        c[i] = {jour, an, lignes[i].valeurs.Valeur()};
    }
}

} // namespace

std::string& FrmFusion::PlageDemandee() {
    static std::string plage;
    return plage;
}

FrmFusion::FrmFusion(MDIForm1& f) : f_(f) {
    plage_ = PlageDemandee();
    PlageDemandee().clear();
    Recharge();
}

void FrmFusion::Recharge() {
    Base* b = B();
    if (!b) return;
    if (plage_.empty()) plage_ = "1/" + std::to_string(b->Tete().maxMariage);
    chemin_ = CheminPaires(b->Chemins().base);
    try {
        table_ = LitPaires(b->Systeme(), chemin_);
    } catch (const ErreurES& e) {
        f_.services().boites.Texte(e.what());
    }
}

void FrmFusion::Sauve() {
    Base* b = B();
    if (!b || chemin_.empty()) return;
    try {
        EcritPaires(b->Systeme(), chemin_, table_);
    } catch (const ErreurES& e) {
        f_.services().boites.Texte(e.what());
    }
}

void FrmFusion::Ferme() { Sauve(); }

bool FrmFusion::OptSeuil_Click(int niveau) {
    Base* b = B();
    if (!b || f_.Occupe()) return false;
    ServicesUi& s = f_.services();
    OperationLongue op(s.panneau, s.boites, Message(980), Message(505));
    RechercheDoublons(*b, niveau, plage_, table_, op.interaction());
    Sauve();
    return true;
}

std::vector<FrmFusion::Ligne> FrmFusion::Grille() {
    std::vector<Ligne> r;
    Base* b = B();
    auto nom = [b](std::uint32_t n) {
        return b && n <= b->Tete().maxPersonne && b->TrouvePlaceFiche(n) ? b->NomDates(n)
                                                                         : std::string();
    };
    for (const auto& l : table_.Lignes())
        if (l.premier) r.push_back({l.premier, l.second, nom(l.premier), nom(l.second)});
    return r;
}

std::string FrmFusion::LblNombre() const {
    return MessageAvec(kFusionNombre, std::to_string(table_.Actives()));
}

void FrmFusion::Grille_Click(std::size_t rang) {
    const auto g = Grille();
    if (rang >= g.size()) return;
    selection_ = static_cast<int>(rang);
    PoseFiche(0, g[rang].premier);
    PoseFiche(1, g[rang].second);
}

bool FrmFusion::Grille_DblClick(std::size_t rang, bool second) {
    const auto g = Grille();
    if (rang >= g.size() || f_.Occupe() || !f_.services().fenetres.Disponible("FrmMisajour"))
        return false;
    const std::uint32_t n = second ? g[rang].second : g[rang].premier;
    if (g[rang].nom1.empty() && !second) return false;
    if (g[rang].nom2.empty() && second) return false;
    f_.Confirme_Fiche_En_Cours();
    f_.personneFiche = n;
    f_.services().fenetres.Ouvre("FrmMisajour");
    return true;
}

void FrmFusion::CmdEcarter() {
    const auto g = Grille();
    if (selection_ < 0 || static_cast<std::size_t>(selection_) >= g.size()) return;
    const Ligne l = g[static_cast<std::size_t>(selection_)];
    table_.Ecarte(l.premier, l.second);
    Sauve();
    if ((fiches_[0] == l.premier && fiches_[1] == l.second) ||
        (fiches_[0] == l.second && fiches_[1] == l.premier))
        fiches_ = {};
    selection_ = -1;
}

std::string FrmFusion::LblFiche(int i) {
    const std::uint32_t n = Fiche(i);
    Base* b = B();
    return n && b && b->TrouvePlaceFiche(n) ? b->NomDates(n) : std::string();
}

void FrmFusion::PoseFiche(int i, std::uint32_t n) {
    if (i < 0 || i > 1) return;
    Base* b = B();
    fiches_[static_cast<std::size_t>(i)] =
        b && n && n <= b->Tete().maxPersonne && b->TrouvePlaceFiche(n) ? n : 0;
}

void FrmFusion::CmdNom(int i) {
    if (!B() || f_.Occupe()) return;
    const std::uint32_t n = f_.services().selecteur.ChoisitPersonne(Fiche(i));
    if (n) PoseFiche(i, n);
}

bool FrmFusion::Depose(int i, const std::string& tag) {
    if (tag.size() < 2 || tag.size() > 11 || tag[0] != 'I') return false;
    std::uint64_t n = 0;
    for (std::size_t k = 1; k < tag.size(); ++k) {
        if (tag[k] < '0' || tag[k] > '9') return false;
        n = n * 10 + static_cast<unsigned>(tag[k] - '0');
    }
    if (n == 0 || n > 0xFFFFFFFFull) return false;
    PoseFiche(i, static_cast<std::uint32_t>(n));
    return Fiche(i) != 0;
}

// --- Wizard ---------------------------------------------------------------------------------

void FrmFusion::RemplitRG() {
    Base& b = *B();
    const std::uint32_t k = fiches_[0], d = fiches_[1];
    const ChoixFusion& c = choix_;
    lstNom = Liste(b.LitNom(k), b.LitNom(d), c.nom);
    lstPrenom = Liste(b.LitPrenom(k), b.LitPrenom(d), c.prenom);
    lstAutPre = Liste(b.LitAutrePrenom(k), b.LitAutrePrenom(d), c.autres);
    lstDNaiss = Liste(DateEtAn(b.LitDateNaiss(k), b.LitAnNaiss(k)),
                      DateEtAn(b.LitDateNaiss(d), b.LitAnNaiss(d)), c.naiss);
    lstLNaiss = Liste(b.LieuNaiss(k), b.LieuNaiss(d), c.lieuNaiss);
    lstDDeces = Liste(DateEtAn(b.LitDateDeces(k), b.LitAnDeces(k)),
                      DateEtAn(b.LitDateDeces(d), b.LitAnDeces(d)), c.deces);
    lstLDeces = Liste(b.LieuDeces(k), b.LieuDeces(d), c.lieuDeces);
    chkAutPreOffert = lstPrenom.valeurs.size() > 1 && !Trim(b.LitPrenom(k)).empty() &&
                      !Trim(b.LitPrenom(d)).empty();
    chkAutPre = chkAutPreOffert && c.autrePrenom;
    rubriques = Rubriques(b, b.Tete().rubriquesPersonne, b.RubriquesNote(k), b.RubriquesNote(d),
                          c.rubriques);
}

bool FrmFusion::CmdFusion_Click() {
    Base* b = B();
    if (!b || !CmdFusionActif() || f_.Occupe()) return false;
    if (fiches_[0] == fiches_[1]) return false;
    if (const int refus = RefusFusion(*b, fiches_[0], fiches_[1])) {
        f_.services().boites.Information(refus);
        return false;
    }
    choix_ = ChoixParDefaut(*b, fiches_[0], fiches_[1]);
    RemplitRG();
    etape_ = Etape::RG;
    return true;
}

bool FrmFusion::EntreTexte() {
    Base& b = *B();
    texte1 = b.CorpsNote(fiches_[0]);
    texte2 = b.CorpsNote(fiches_[1]);
    optTexte = choix_.note;
    return !texte1.empty() && !texte2.empty() && texte1 != texte2;
}

bool FrmFusion::EntreParents() {
    Base& b = *B();
    const std::uint32_t k = fiches_[0], d = fiches_[1];
    peres = {b.NomDates(b.LitPere(k)), b.NomDates(b.LitPere(d))};
    meres = {b.NomDates(b.LitMere(k)), b.NomDates(b.LitMere(d))};
    perePropose = b.LitPere(k) && b.LitPere(d) && b.LitPere(k) != b.LitPere(d);
    merePropose = b.LitMere(k) && b.LitMere(d) && b.LitMere(k) != b.LitMere(d);
    optPere = choix_.pere;
    optMere = choix_.mere;
    return perePropose || merePropose;
}

std::string FrmFusion::LblConjoint() {
    Base* b = B();
    if (!b || mariage_ >= choix_.mariages.size()) return "";
    const std::uint32_t m = choix_.mariages[mariage_].mariage;
    const std::uint32_t s = b->LitMari(m) == fiches_[1] ? b->LitFemme(m) : b->LitMari(m);
    return MessageAvec(kFusionConjoint, b->NomDates(s));
}

std::vector<std::string> FrmFusion::TextesConjoint() {
    std::vector<std::string> r;
    Base& b = *B();
    for (std::uint32_t m : offerts_) {
        if (m == 0) {
            r.push_back(Message(kFusionSansFusion));
            continue;
        }
        const std::uint32_t s = b.LitMari(m) == fiches_[0] ? b.LitFemme(m) : b.LitMari(m);
        r.push_back(b.NomDates(s) + " " + b.LigneMariage(m));
    }
    return r;
}

void FrmFusion::ConjointChoisi(int i) {
    if (i < 0 || static_cast<std::size_t>(i) >= offerts_.size()) return;
    choixConjoint = i;
    Base& b = *B();
    ChoixMariage& cm = choix_.mariages[mariage_];
    const std::uint32_t mk = offerts_[static_cast<std::size_t>(i)], md = cm.mariage;
    lstDMar = lstLMar = {};
    rubriquesMariage.clear();
    texteMar1.clear();
    texteMar2.clear();
    texteMarPropose = false;
    optTxtMar = ChoixTexte::Second;
    // Not merged: the marriage moves as it stands, there is nothing to choose.
    if (!mk) return;
    const std::string dk = DateEtAn(b.DateMariage(mk), b.LitAnMariage(mk));
    const std::string dd = DateEtAn(b.DateMariage(md), b.LitAnMariage(md));
    lstDMar = Liste(dk, dd, Trim(dk).empty() ? dd : dk);
    const std::string lk = b.LieuMariage(mk), ld = b.LieuMariage(md);
    lstLMar = Liste(lk, ld, Trim(lk).empty() ? ld : lk);
    const auto rk = b.RubriquesMariage(mk), rd = b.RubriquesMariage(md);
    rubriquesMariage =
        Rubriques(b, b.Tete().rubriquesMariage, rk, rd, RubriquesChoisies(rk, rd));
    texteMar1 = b.CorpsNoteMariage(mk);
    texteMar2 = b.CorpsNoteMariage(md);
    texteMarPropose = !texteMar1.empty() && !texteMar2.empty() && texteMar1 != texteMar2;
    optTxtMar = ChoixNotes(texteMar1, texteMar2);
}

bool FrmFusion::ProchainMariage() {
    Base& b = *B();
    while (mariage_ < choix_.mariages.size()) {
        ChoixMariage& cm = choix_.mariages[mariage_];
        offerts_ = MariagesOfferts(b, fiches_[0], fiches_[1], cm.mariage);
        offerts_.push_back(0);
        if (offerts_.size() > 1) {
            auto it = std::find(offerts_.begin(), offerts_.end(), cm.avec);
            ConjointChoisi(static_cast<int>(it == offerts_.end() ? offerts_.size() - 1
                                                                 : it - offerts_.begin()));
            return true;
        }
        cm.avec = 0;
        ++mariage_;
    }
    return false;
}

// The choices of the marriage in course, from the lists.
void FrmFusion::NoteMariage() {
    if (mariage_ >= choix_.mariages.size()) return;
    ChoixMariage& cm = choix_.mariages[mariage_];
    cm.avec = choixConjoint >= 0 && static_cast<std::size_t>(choixConjoint) < offerts_.size()
                  ? offerts_[static_cast<std::size_t>(choixConjoint)]
                  : 0;
    if (!cm.avec) return;
    const auto [date, an] = DecoupeDateAn(lstDMar.Valeur());
    cm.date = date;
    cm.an = an;
    cm.lieu = lstLMar.Valeur();
    RubriquesLues(rubriquesMariage, cm.rubriques);
    cm.note = texteMarPropose ? optTxtMar : ChoixNotes(texteMar1, texteMar2);
}

std::string FrmFusion::LblEnfant() {
    Base* b = B();
    if (!b || enfant_ >= aComparer_.size()) return "";
    return MessageAvec(kFusionEnfant, b->NomDates(aComparer_[enfant_]));
}

std::vector<std::string> FrmFusion::TextesEnfant() {
    std::vector<std::string> r;
    for (std::uint32_t e : enfantsOfferts_)
        r.push_back(e ? B()->NomDates(e) : Message(kFusionSansFusion));
    return r;
}

bool FrmFusion::ProchainEnfant() {
    Base& b = *B();
    while (enfant_ < aComparer_.size()) {
        const std::uint32_t e = aComparer_[enfant_];
        enfantsOfferts_ = EnfantsOfferts(b, fiches_[0], e);
        if (!enfantsOfferts_.empty()) {
            enfantsOfferts_.push_back(0);
            choixEnfant = static_cast<int>(enfantsOfferts_.size()) - 1;
            for (const auto& [de, dk] : choix_.enfants)
                if (de == e) {
                    auto it = std::find(enfantsOfferts_.begin(), enfantsOfferts_.end(), dk);
                    if (it != enfantsOfferts_.end())
                        choixEnfant = static_cast<int>(it - enfantsOfferts_.begin());
                }
            return true;
        }
        ++enfant_;
    }
    return false;
}

void FrmFusion::NoteEnfant() {
    if (enfant_ >= aComparer_.size()) return;
    const std::uint32_t e = aComparer_[enfant_];
    auto& v = choix_.enfants;
    v.erase(std::remove_if(v.begin(), v.end(), [e](const auto& p) { return p.first == e; }),
            v.end());
    if (choixEnfant >= 0 && static_cast<std::size_t>(choixEnfant) < enfantsOfferts_.size() &&
        enfantsOfferts_[static_cast<std::size_t>(choixEnfant)])
        v.emplace_back(e, enfantsOfferts_[static_cast<std::size_t>(choixEnfant)]);
}

bool FrmFusion::CmdSuite() {
    if (!B()) return false;
    switch (etape_) {
    case Etape::Liste:
        return false;
    case Etape::RG: {
        ChoixFusion& c = choix_;
        c.nom = lstNom.Valeur();
        c.prenom = lstPrenom.Valeur();
        c.autres = lstAutPre.Valeur();
        c.autrePrenom = chkAutPreOffert && chkAutPre;
        c.naiss = lstDNaiss.Valeur();
        c.deces = lstDDeces.Valeur();
        c.lieuNaiss = lstLNaiss.Valeur();
        c.lieuDeces = lstLDeces.Valeur();
        RubriquesLues(rubriques, c.rubriques);
        etape_ = Etape::TXT;
        if (EntreTexte()) return true;
        [[fallthrough]];
    }
    case Etape::TXT:
        choix_.note = optTexte;
        etape_ = Etape::PARENTS;
        if (EntreParents()) return true;
        [[fallthrough]];
    case Etape::PARENTS:
        choix_.pere = optPere;
        choix_.mere = optMere;
        etape_ = Etape::MARIAGE;
        mariage_ = 0;
        if (ProchainMariage()) return true;
        [[fallthrough]];
    case Etape::MARIAGE:
        if (etape_ == Etape::MARIAGE && mariage_ < choix_.mariages.size()) {
            NoteMariage();
            ++mariage_;
            if (ProchainMariage()) return true;
        }
        etape_ = Etape::ENFT;
        enfant_ = 0;
        aComparer_ = EnfantsAComparer(*B(), fiches_[0], fiches_[1]);
        if (ProchainEnfant()) return true;
        return Applique();
    case Etape::ENFT:
        NoteEnfant();
        ++enfant_;
        if (ProchainEnfant()) return true;
        return Applique();
    }
    return false;
}

bool FrmFusion::Applique() {
    Base& b = *B();
    etape_ = Etape::Liste;
    f_.Confirme_Fiche_En_Cours();
    Boites& boites = f_.services().boites;
    DialogueFusion d;
    d.question = [&boites](int message, const std::string& nom) {
        return boites.Question(message, false, nom);
    };
    const std::uint32_t k = fiches_[0], e = fiches_[1];
    ResultatFusion r;
    try {
        r = Maj_Fusion(b, choix_, table_, d);
    } catch (const ErreurES& err) {
        boites.Texte(err.what());
        return false;
    }
    if (r.refus) boites.Information(r.refus);
    if (!r.fait) return false;
    if (f_.PersonneEnCours() == e) f_.Aller(k);
    if (f_.personneFiche == e) f_.personneFiche = k;
    fiches_ = {};
    selection_ = -1;
    Sauve();
    return true;
}

void FrmFusion::Abandonne() { etape_ = Etape::Liste; }

} // namespace sylvane
