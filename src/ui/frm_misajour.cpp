#include "ui/frm_misajour.h"

#include "kinship/numeros.h"
#include "store/pack.h"
#include "text/calendrier.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/phonetique.h"
#include "text/tags.h"
#include "ui/frm_fusion.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>

namespace sylvane {

namespace {

constexpr int kMaxListe = 200;
constexpr std::size_t kHistorique = 10;
const char* const kLettres = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

// A day or a year has no use for "#"; a place or a note keeps it.
std::string SansDiese(std::string s) {
    std::replace(s.begin(), s.end(), '#', ' ');
    return s;
}

// The case rule of the settings: "1" capitals, "2" name case.
std::string Casse(const std::string& texte, const std::string& regle, const Parametres& p) {
    if (regle == "1") {
        std::string r = texte;
        for (char& c : r) c = Majuscule(c);
        return r;
    }
    if (regle == "2") return Conv_NomPropre(texte, 'N', p.particules);
    return texte;
}

std::string JourConverti(const std::string& jour) {
    const std::string j = Trim(jour);
    return j.empty() ? "" : Conv_DateSaisie(j);
}

// The day count of a sheet date, or nothing when the sheet has no full date.
std::optional<long> SerieFiche(const std::string& jour, const std::string& annee) {
    const std::string j = JourConverti(jour), a = Trim(annee);
    if (j.empty() || a.empty()) return std::nullopt;
    const std::string date = j + "/" + a;
    if (!Conv_DateValide(date)) return std::nullopt;
    return Conv_DateSerie(date);
}

std::string TexteSerie(long serie) {
    if (serie == 0) return "";
    const DateCivile d = DepuisJourSerie(serie);
    char t[32];
    std::snprintf(t, sizeof t, "%02d/%02d/%d", d.jour, d.mois, d.annee);
    return t;
}

} // namespace

std::string LibelleRubrique(Base& b, const SlotRubrique& s) {
    const std::uint32_t k = b.RubriqueDeSymbole(s.symbole);
    std::string libelle = k ? b.LibelleRubrique(k) : "";
    // The stored label starts with the rubric's symbol.
    if (!libelle.empty() && libelle[0] == s.symbole) libelle.erase(0, 1);
    if (libelle.empty()) libelle = Conv_LibelleTag(s.tag);
    return libelle;
}

bool ChampMariage(Champ c) {
    switch (c) {
    case Champ::Dmar: case Champ::JMar: case Champ::LieuMar: case Champ::Fmar:
    case Champ::MarJ: case Champ::MarA: case Champ::MarL:
        return true;
    default:
        return false;
    }
}

FrmMisajour::FrmMisajour(MDIForm1& f, ChoixFiche& choix) : f_(f), choix_(choix) {
    f_.valideFiche = [this] { C_Maj_Click(); };
    Charge();
}

FrmMisajour::~FrmMisajour() {
    f_.valideFiche = nullptr;
    f_.fichePendante = f_.mariagePendant = false;
}

// --- Loading ----------------------------------------------------------------------------------

void FrmMisajour::VideChamps() {
    nom_.clear(), prenom_.clear(), autres_.clear();
    sexe_ = 'I';
    naiss_.clear(), jNaiss_.clear(), lieuNaiss_.clear();
    deces_.clear(), jDeces_.clear(), lieuDeces_.clear();
    libJNaiss_.clear(), libJDeces_.clear(), libJMar_.clear();
    note_.clear();
    dmar_.clear(), jMar_.clear(), lieuMar_.clear(), fmar_.clear(), noteMar_.clear();
    texteLien_.clear();
    pere_ = mere_ = LigneFiche{};
    conjoints_.clear(), enfants_.clear(), fratrie_.clear(), liens_.clear(), evts_.clear(),
        docs_.clear();
    rubInd_.clear(), rubMar_.clear();
}

void FrmMisajour::Charge() {
    VideChamps();
    indiceFaux_ = false;
    f_.fichePendante = f_.mariagePendant = false;
    if (!BaseLa()) {
        personne_ = 0;
        Changement();
        return;
    }
    Base& b = B();
    personne_ = f_.personneFiche;
    if (personne_ > b.Tete().maxPersonne) personne_ = f_.personneFiche = 0;
    // One rubric row for each rubric of the base, persons and marriages.
    auto rangs = [&b](const std::array<SlotRubrique, 10>& slots, std::vector<RangRubrique>& out) {
        for (const SlotRubrique& s : slots) {
            if (s.symbole == ' ' || s.symbole == '\0') break;
            RangRubrique r;
            r.tag = s.tag;
            r.symbole = s.symbole;
            r.date = s.drapeau == '1';
            r.libelle = LibelleRubrique(b, s);
            out.push_back(std::move(r));
        }
    };
    rangs(b.Tete().rubriquesPersonne, rubInd_);
    rangs(b.Tete().rubriquesMariage, rubMar_);
    indice_ = personne_ ? std::to_string(personne_) : "";
    if (personne_ == 0) {
        aide_ = 93;
        Changement();
        return;
    }
    const std::uint32_t n = personne_;
    nom_ = b.LitNom(n);
    prenom_ = b.LitPrenom(n);
    autres_ = b.LitAutrePrenom(n);
    const std::string s = b.LitSexe(n);
    sexe_ = !s.empty() && (s[0] == 'H' || s[0] == 'F') ? s[0] : 'I';
    naiss_ = b.LitAnNaiss(n);
    jNaiss_ = b.LitDateNaiss(n);
    lieuNaiss_ = b.LieuNaiss(n);
    deces_ = b.LitAnDeces(n);
    jDeces_ = b.LitDateDeces(n);
    lieuDeces_ = b.LieuDeces(n);
    libJNaiss_ = LibelleJour(jNaiss_);
    libJDeces_ = LibelleJour(jDeces_);
    const TableValeursRubriques v = b.RubriquesNote(n);
    for (std::size_t i = 0; i < rubInd_.size() && i < v.size(); ++i) {
        rubInd_[i].jour = v[i].jourMois;
        rubInd_[i].annee = v[i].annee;
        rubInd_[i].lieu = v[i].valeur;
        rubInd_[i].libelleJour = LibelleJour(v[i].jourMois);
    }
    note_ = b.CorpsNote(n);
    ChargeListes();
    mariage_ = std::min(mariage_, static_cast<int>(conjoints_.size()) - 1);
    if (mariage_ < 0 && !conjoints_.empty()) mariage_ = 0;
    ChargeMariage();
    lien_ = std::min(lien_, static_cast<int>(liens_.size()) - 1);
    if (lien_ >= 0) texteLien_ = liens_[static_cast<std::size_t>(lien_)].texte;
    NoteHistorique(n);
    Changement();
}

void FrmMisajour::ChargeListes() {
    Base& b = B();
    const std::uint32_t n = personne_;
    auto ligne = [&b](std::uint32_t p) {
        LigneFiche l;
        l.numero = p;
        if (p) l.nom = b.NomDates(p);
        return l;
    };
    pere_ = ligne(b.LitPere(n));
    mere_ = ligne(b.LitMere(n));

    const std::vector<std::uint32_t> mariages = b.Mariages(n);
    for (std::uint32_t m : mariages) {
        const std::uint32_t mari = b.LitMari(m);
        LigneFiche l = ligne(mari == n ? b.LitFemme(m) : mari);
        l.rang = static_cast<int>(conjoints_.size()) + 1;
        l.texte = std::to_string(m);
        l.date = Trim(b.LitAnMariage(m));
        conjoints_.push_back(std::move(l));
    }

    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t k = b.EnfantNo(n, i);
        if (k == 0) break;
        LigneFiche l = ligne(k);
        l.rang = i;
        const std::uint32_t pere = b.LitPere(k), mere = b.LitMere(k);
        const std::uint32_t autre = pere == n ? mere : pere;
        std::string code = pere && mere ? "\xA5" : "?";
        for (std::size_t j = 0; autre && j < mariages.size() && j < 52; ++j) {
            const std::uint32_t m = mariages[j];
            if ((b.LitMari(m) == n ? b.LitFemme(m) : b.LitMari(m)) != autre) continue;
            code = mariages.size() == 1 ? "" : std::string(1, kLettres[j]);
            break;
        }
        l.texte = code;
        enfants_.push_back(std::move(l));
    }

    // Brothers and sisters: the father's children, then the mother's; one
    // only of the mother is a half sibling placed by birth year.
    const std::uint32_t pere = pere_.numero, mere = mere_.numero;
    for (int i = 1; pere && i <= kMaxListe; ++i) {
        const std::uint32_t k = b.EnfantNo(pere, i);
        if (k == 0) break;
        if (k == n) continue;
        LigneFiche l = ligne(k);
        l.texte = Message(2000);
        l.date = b.CleAnNaiss(k);
        fratrie_.push_back(std::move(l));
    }
    for (int i = 1; mere && i <= kMaxListe; ++i) {
        const std::uint32_t k = b.EnfantNo(mere, i);
        if (k == 0) break;
        if (k == n) continue;
        auto it = std::find_if(fratrie_.begin(), fratrie_.end(),
                               [k](const LigneFiche& l) { return l.numero == k; });
        if (it != fratrie_.end()) {
            it->texte.clear();
            continue;
        }
        LigneFiche l = ligne(k);
        l.texte = Message(2001);
        l.date = b.CleAnNaiss(k);
        auto place = std::find_if(fratrie_.begin(), fratrie_.end(),
                                  [&l](const LigneFiche& x) { return x.date > l.date; });
        fratrie_.insert(place, std::move(l));
    }
    for (LigneFiche& l : fratrie_) l.date.clear();

    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t p = b.LienNo(n, i);
        if (p == 0 && b.TexteLienBrutNo(n, i).empty()) break;
        if (p == 0 || b.LitIdentite(p).empty()) continue;
        LigneFiche l = ligne(p);
        l.rang = i;
        l.texte = Conv_LibelleTag(b.TexteLienBrutNo(n, i));
        liens_.push_back(std::move(l));
    }

    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t e = b.EvtNo(n, i);
        if (e == 0) break;
        LigneFiche l;
        l.numero = e;
        l.rang = i;
        l.nom = b.LibelleEvt(e);
        l.texte = Conv_LibelleTag(b.RoleEvtNo(n, i));
        l.date = TexteSerie(b.DateEvt(e));
        l.lieu = b.LieuEvt(e);
        evts_.push_back(std::move(l));
    }
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t d = b.DocNo(n, i);
        if (d == 0) break;
        LigneFiche l;
        l.numero = d;
        l.rang = i;
        l.nom = b.TitreDoc(d);
        docs_.push_back(std::move(l));
    }
}

void FrmMisajour::ChargeMariage() {
    dmar_.clear(), jMar_.clear(), lieuMar_.clear(), fmar_.clear(), noteMar_.clear();
    libJMar_.clear();
    for (RangRubrique& r : rubMar_) r.jour.clear(), r.annee.clear(), r.lieu.clear(), r.libelleJour.clear();
    if (mariage_ < 0 || mariage_ >= static_cast<int>(conjoints_.size())) return;
    Base& b = B();
    const std::uint32_t m = static_cast<std::uint32_t>(std::stoul(conjoints_[mariage_].texte));
    dmar_ = b.LitAnMariage(m);
    fmar_ = b.LitAnFin(m);
    jMar_ = b.DateMariage(m);
    lieuMar_ = b.LieuMariage(m);
    libJMar_ = LibelleJour(jMar_);
    noteMar_ = b.CorpsNoteMariage(m);
    const TableValeursRubriques v = b.RubriquesMariage(m);
    for (std::size_t i = 0; i < rubMar_.size() && i < v.size(); ++i) {
        rubMar_[i].jour = v[i].jourMois;
        rubMar_[i].annee = v[i].annee;
        rubMar_[i].lieu = v[i].valeur;
        rubMar_[i].libelleJour = LibelleJour(v[i].jourMois);
    }
}

void FrmMisajour::Actualise() {
    if (f_.personneFiche == personne_ && f_.fichePendante) return;
    Charge();
}

void FrmMisajour::Montre(std::uint32_t n) {
    f_.Confirme_Fiche_En_Cours();
    f_.personneFiche = n;
    mariage_ = lien_ = -1;
    Charge();
}

void FrmMisajour::NoteHistorique(std::uint32_t n) {
    histo_.erase(std::remove(histo_.begin(), histo_.end(), n), histo_.end());
    histo_.insert(histo_.begin(), n);
    if (histo_.size() > kHistorique) histo_.resize(kHistorique);
}

void FrmMisajour::Changement() {
    if (vue_) vue_->FicheChangee();
}

void FrmMisajour::FocusSur(Champ c) {
    if (vue_) vue_->Focus(c);
}

std::string FrmMisajour::LibelleJour(const std::string& jour) const {
    const std::string j = JourConverti(jour);
    if (j.empty() || !Conv_DateValide(j + "/2000")) return "";
    return Trim(Conv_DateLongue(j));
}

// --- Fields -----------------------------------------------------------------------------------

std::string& FrmMisajour::Ref(Champ c, int rang) {
    auto rubrique = [this, rang](std::vector<RangRubrique>& v) -> RangRubrique* {
        if (rang < 0 || rang >= static_cast<int>(v.size())) return nullptr;
        return &v[static_cast<std::size_t>(rang)];
    };
    switch (c) {
    case Champ::Nom: return nom_;
    case Champ::Prenom: return prenom_;
    case Champ::AutresPrenoms: return autres_;
    case Champ::Naiss: return naiss_;
    case Champ::JNaiss: return jNaiss_;
    case Champ::LieuNaiss: return lieuNaiss_;
    case Champ::Deces: return deces_;
    case Champ::JDeces: return jDeces_;
    case Champ::LieuDeces: return lieuDeces_;
    case Champ::Dmar: return dmar_;
    case Champ::JMar: return jMar_;
    case Champ::LieuMar: return lieuMar_;
    case Champ::Fmar: return fmar_;
    case Champ::Lien: return texteLien_;
    case Champ::Indice: return indice_;
    case Champ::IndJ: case Champ::IndA: case Champ::IndL:
    case Champ::MarJ: case Champ::MarA: case Champ::MarL: {
        const bool mar = ChampMariage(c);
        RangRubrique* r = rubrique(mar ? rubMar_ : rubInd_);
        if (!r) break;
        if (c == Champ::IndJ || c == Champ::MarJ) return r->jour;
        if (c == Champ::IndA || c == Champ::MarA) return r->annee;
        return r->lieu;
    }
    }
    vide_.clear();
    return vide_;
}

const std::string& FrmMisajour::Valeur(Champ c, int rang) const {
    return const_cast<FrmMisajour*>(this)->Ref(c, rang);
}

void FrmMisajour::MarquePendante(bool mariage) {
    if (mariage) f_.mariagePendant = true;
    f_.fichePendante = true;
}

std::string FrmMisajour::Modifie(Champ c, const std::string& texte, int rang) {
    std::string& v = Ref(c, rang);
    if (&v == &vide_) return {};
    std::string t = texte;
    const Parametres& p = f_.app().parametres();
    if (c == Champ::Nom) t = Casse(t, p.conversionNom, p);
    if (c == Champ::LieuNaiss || c == Champ::LieuDeces || c == Champ::LieuMar ||
        c == Champ::IndL || c == Champ::MarL)
        t = Casse(t, p.conversionLieu, p);
    if (c == Champ::Indice) indiceFaux_ = false;
    if (t == v) return v;
    v = t;
    if (c != Champ::Indice) MarquePendante(ChampMariage(c));
    return v;
}

std::string FrmMisajour::Quitte(Champ c, int rang) {
    std::string& v = Ref(c, rang);
    auto jour = [this, &v](std::string& libelle) {
        const std::string conv = JourConverti(v);
        if (conv != v) v = conv;
        libelle = LibelleJour(v);
    };
    switch (c) {
    case Champ::JNaiss: jour(libJNaiss_); break;
    case Champ::JDeces: jour(libJDeces_); break;
    case Champ::JMar: jour(libJMar_); break;
    case Champ::IndJ:
    case Champ::MarJ: {
        auto& tab = c == Champ::IndJ ? rubInd_ : rubMar_;
        if (rang >= 0 && rang < static_cast<int>(tab.size()))
            jour(tab[static_cast<std::size_t>(rang)].libelleJour);
        break;
    }
    default: break;
    }
    return v;
}

void FrmMisajour::ChoisitSexe(char s) {
    if (s != 'H' && s != 'F') s = 'I';
    if (s == sexe_) return;
    sexe_ = s;
    MarquePendante(false);
}

std::vector<std::string> FrmMisajour::MotsUsuels(bool mariage, int rang) {
    std::vector<std::string> r;
    const auto& tab = mariage ? rubMar_ : rubInd_;
    if (!BaseLa() || rang < 0 || rang >= static_cast<int>(tab.size())) return r;
    const RangRubrique& rub = tab[static_cast<std::size_t>(rang)];
    Base& b = B();
    const std::uint32_t k = b.RubriqueDeSymbole(rub.symbole);
    if (!k) return r;
    const std::string l = b.ListeRubrique(k);
    for (std::size_t o = 0; o + 4 <= l.size(); o += 4) r.push_back(b.LitMot(Unpack4(l, o)));
    return r;
}

void FrmMisajour::C_Texte() {
    if (personne_ == 0) return;
    if (auto t = choix_.EditeTexte(note_, B().NomComplet(personne_))) {
        if (*t != note_) {
            note_ = *t;
            MarquePendante(false);
        }
        Changement();
    }
}

void FrmMisajour::CmdTxtMar() {
    if (mariage_ < 0) return;
    if (auto t = choix_.EditeTexte(noteMar_, conjoints_[static_cast<std::size_t>(mariage_)].nom)) {
        if (*t != noteMar_) {
            noteMar_ = *t;
            MarquePendante(true);
        }
        Changement();
    }
}

std::string FrmMisajour::LibelleEnfants() const {
    return Message(666) + " (" + std::to_string(enfants_.size()) + ")";
}

void FrmMisajour::SelectionneMariage(int rang) {
    if (rang == mariage_) return;
    if (f_.mariagePendant) f_.Confirme_Fiche_En_Cours();
    if (rang < -1 || rang >= static_cast<int>(conjoints_.size())) rang = -1;
    mariage_ = rang;
    // A validation reloads and keeps its own row: show the one clicked.
    ChargeMariage();
    Changement();
}

void FrmMisajour::SelectionneLien(int rang) {
    if (rang < -1 || rang >= static_cast<int>(liens_.size())) rang = -1;
    lien_ = rang;
    texteLien_ = rang >= 0 ? liens_[static_cast<std::size_t>(rang)].texte : "";
    Changement();
}

// --- Validation -------------------------------------------------------------------------------

std::string FrmMisajour::TextePersonne() {
    std::array<ValeurRubrique, 10> v{};
    for (std::size_t i = 0; i < rubInd_.size() && i < v.size(); ++i)
        v[i] = {SansDiese(rubInd_[i].jour), SansDiese(rubInd_[i].annee), rubInd_[i].lieu};
    std::string t = B().LigneMotsCles(personne_, Trim(lieuNaiss_), Trim(lieuDeces_)) +
                    LignesRubriques(B().Tete().rubriquesPersonne, v);
    if (!note_.empty()) t += "\r\n\r\n" + note_;
    return t;
}

std::string FrmMisajour::TexteMariage() {
    std::string t = JourConverti(SansDiese(jMar_));
    const std::string lieu = Trim(lieuMar_);
    if (!lieu.empty()) t += " @" + VersPoints(lieu);
    std::array<ValeurRubrique, 10> v{};
    for (std::size_t i = 0; i < rubMar_.size() && i < v.size(); ++i)
        v[i] = {SansDiese(rubMar_[i].jour), SansDiese(rubMar_[i].annee), rubMar_[i].lieu};
    t += LignesRubriques(B().Tete().rubriquesMariage, v);
    if (!noteMar_.empty()) t += "\r\n\r\n" + noteMar_;
    return t;
}

// Takes the person out of the sort table (from `place`, 0 when it wasn't
// in it) and puts it back at the place of its new key.
void FrmMisajour::Reclasse(std::uint32_t place) {
    Base& b = B();
    if (place) {
        b.MajTriFiche(place, personne_, 'S');
        b.TeteModifiable().nbPersonnes -= 1;
    }
    const std::uint32_t nouvelle = b.PlaceFiche(personne_);
    b.MajTriFiche(nouvelle, personne_, 'A');
    b.TeteModifiable().nbPersonnes += 1;
    b.triPersonnesModifie = true;
}

FicheCreation FrmMisajour::FicheDepuisChamps() const {
    FicheCreation fc;
    fc.nom = nom_, fc.prenom = prenom_, fc.autresPrenoms = autres_;
    fc.sexe = sexe_;
    fc.anNaiss = naiss_, fc.jourNaiss = jNaiss_, fc.lieuNaiss = lieuNaiss_;
    fc.anDeces = deces_, fc.jourDeces = jDeces_, fc.lieuDeces = lieuDeces_;
    for (std::size_t i = 0; i < rubInd_.size() && i < fc.rubriques.size(); ++i)
        fc.rubriques[i] = {rubInd_[i].jour, rubInd_[i].annee, rubInd_[i].lieu};
    fc.note = note_;
    return fc;
}

bool FrmMisajour::C_Maj_Click() {
    if (!BaseLa()) return false;
    Base& b = B();
    Boites& boites = f_.services().boites;

    if (personne_ == 0) {
        if (Trim(naiss_).empty()) FocusSur(Champ::Naiss);
        const ResultatLien r = Routines().CreePersonne(FicheDepuisChamps());
        if (r.Refuse()) {
            boites.Information(r.refus);
            FocusSur(Champ::Nom);
            f_.fichePendante = true;
            return false;
        }
        f_.personneFiche = r.personne;
        mariage_ = lien_ = -1;
        Charge();
        aide_ = 626;
        Changement();
        return true;
    }

    const std::uint32_t n = personne_;
    const std::uint32_t place = b.TrouvePlaceFiche(n);
    const std::string cleAvant = b.CleTriFiche(n);
    if (Trim(naiss_).empty()) {
        boites.Information(620);
        FocusSur(Champ::Naiss);
    }
    DecoupeNoms(nom_, prenom_, autres_);
    if (nom_.empty() && prenom_.empty()) {
        boites.Information(621);
        FocusSur(Champ::Nom);
        f_.fichePendante = true;
        Changement();
        return false;
    }
    const std::string sexeStocke = b.LitSexe(n);
    const char stocke = !sexeStocke.empty() && (sexeStocke[0] == 'H' || sexeStocke[0] == 'F')
                            ? sexeStocke[0] : 'I';
    if (sexe_ != stocke) {
        if (b.MariageNo(n, 1) || b.EnfantNo(n, 1)) {
            boites.Information(622);
            sexe_ = stocke;
            f_.fichePendante = true;
            Changement();
            return false;
        }
        b.EcritSexe(n, std::string(1, sexe_));
    }

    // Identity text, written at every validation.
    const std::string jn = JourConverti(SansDiese(jNaiss_)), jd = JourConverti(SansDiese(jDeces_));
    std::string identite = Trim(nom_) + ";" + Trim(prenom_) + ";" + Trim(autres_);
    if (!jn.empty() || !jd.empty()) identite += ";" + jn + ";" + jd;
    b.EcritIdentite(n, identite);
    const char mode = b.Tete().modeTri;
    bool reclasse = mode == '2' && b.CleTriFiche(n) != cleAvant;

    // Years.
    const std::string anNaissAvant = b.LitAnNaiss(n);
    const std::string cleNaissAvant = b.CleAnNaiss(n);
    const std::string naiss = Trim(SansDiese(naiss_)), deces = Trim(SansDiese(deces_));
    if (deces != b.LitAnDeces(n)) b.EcritAnDeces(n, deces);
    if (naiss != anNaissAvant) b.EcritAnNaiss(n, naiss);
    const bool naissChangee = b.CleAnNaiss(n) != cleNaissAvant;
    if (mode == '1' && (naissChangee || naiss.empty())) reclasse = true;
    if (reclasse) Reclasse(place);

    // Text of the person, through the keyword index.
    const std::string avant = b.LitNote(n);
    const std::string texte = TextePersonne();
    if (texte != avant) {
        b.MajMots(n, avant, texte);
        b.EcritNote(n, texte);
    }

    // A new birth year moves the person in its parents' lists and in the
    // lists of the keyword index.
    if (naissChangee) {
        for (std::uint32_t parent : {b.LitPere(n), b.LitMere(n)})
            if (parent) {
                b.MajEnfants(parent, n, 'S');
                b.MajEnfants(parent, n, 'A');
            }
        b.RangeMots(n, cleNaissAvant);
    }

    // The selected marriage.
    const int mariageAvant = mariage_;
    if (mariage_ >= 0 && mariage_ < static_cast<int>(conjoints_.size())) {
        const std::uint32_t m =
            static_cast<std::uint32_t>(std::stoul(conjoints_[static_cast<std::size_t>(mariage_)].texte));
        const std::string an = Trim(SansDiese(dmar_)), fin = Trim(SansDiese(fmar_));
        if (an != b.LitAnMariage(m)) b.EcritAnMariage(m, an);
        if (fin != b.LitAnFin(m)) b.EcritAnFin(m, fin);
        const std::string tm = TexteMariage();
        if (tm != b.LitNoteMariage(m)) {
            const std::uint32_t mari = b.LitMari(m), femme = b.LitFemme(m);
            const std::string avantMari = b.NoteAvecMariages(mari);
            const std::string avantFemme = b.NoteAvecMariages(femme);
            b.EcritNoteMariage(m, tm);
            if (mari) b.MajMots(mari, avantMari, b.NoteAvecMariages(mari));
            if (femme) b.MajMots(femme, avantFemme, b.NoteAvecMariages(femme));
        }
    }

    // The selected link.
    if (lien_ >= 0 && lien_ < static_cast<int>(liens_.size())) {
        const LigneFiche& l = liens_[static_cast<std::size_t>(lien_)];
        const std::string t = Trim(SansDiese(texteLien_));
        if (t.empty()) {
            boites.Information(631);
            FocusSur(Champ::Lien);
            f_.fichePendante = true;
            Changement();
            return false;
        }
        if (Conv_TagLibelle(t) != b.TexteLienBrutNo(n, l.rang))
            b.MajLiens(n, static_cast<std::uint32_t>(l.rang), t, 'M');
    }

    VerifieEvenements();

    mariage_ = conjoints_.empty() ? -1 : std::max(mariageAvant, 0);
    Charge();
    aide_ = 623;
    Changement();
    return true;
}

// Each event of the person that plays the part of a sheet date or place,
// and disagrees with it, is offered to the event editor.
void FrmMisajour::VerifieEvenements() {
    Base& b = B();
    const std::uint32_t n = personne_;
    Boites& boites = f_.services().boites;
    auto rubrique = [this](const char* tag) -> const RangRubrique* {
        for (const RangRubrique& r : rubInd_)
            if (r.tag == tag) return &r;
        return nullptr;
    };
    const bool unMariage = b.MariageNo(n, 1) && !b.MariageNo(n, 2);
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t e = b.EvtNo(n, i);
        if (e == 0) break;
        const std::string tag = b.TagEvt(e), role = b.RoleEvtNo(n, i);
        std::string jour, annee, lieu;
        int message = 0;
        bool plusTard = false; // the sheet's date only counts when later
        if (tag == "BIRT" && role == "CHIL") {
            message = 474, jour = jNaiss_, annee = naiss_, lieu = lieuNaiss_;
        } else if (tag == "DEAT" && role == "DEAD") {
            message = 472, jour = jDeces_, annee = deces_, lieu = lieuDeces_;
        } else if ((tag == "CHR" && role == "CHIL") || (tag == "BURI" && role == "DEAD")) {
            const RangRubrique* r = rubrique(tag.c_str());
            if (!r) continue;
            if (tag == "BURI" && Trim(r->jour).empty() && Trim(r->annee).empty() &&
                Trim(r->lieu).empty())
                continue;
            message = tag == "CHR" ? 470 : 469, jour = r->jour, annee = r->annee, lieu = r->lieu;
            plusTard = tag == "CHR";
        } else if (tag == "MARR" && (role == "WIFE" || role == "HUSB") && unMariage) {
            message = 471, jour = jMar_, annee = dmar_, lieu = lieuMar_;
        } else {
            continue;
        }
        const std::optional<long> date = SerieFiche(jour, annee);
        const long dateEvt = b.DateEvt(e);
        const bool dateDiffere = date && (plusTard ? *date > dateEvt : *date != dateEvt);
        const bool lieuDiffere = !Trim(lieu).empty() && Trim(lieu) != Trim(b.LieuEvt(e));
        if (!dateDiffere && !lieuDiffere) continue;
        const std::string question = Message(473) + Message(message);
        if (boites.Question(msg_fiche::TexteSeul, false, question) != Reponse::Oui) continue;
        if (editeurEvt_) editeurEvt_(e, JourConverti(jour), Trim(annee), Trim(lieu));
    }
}

// --- Deletion and links ---------------------------------------------------------------------

DialogueLiens FrmMisajour::Dialogue() {
    DialogueLiens d;
    d.boite = [this](const Boite& x) {
        Boites& boites = f_.services().boites;
        const bool texte = x.suite != 0;
        if (x.genre == Boite::Genre::Avertissement) {
            if (texte) boites.Information(msg_fiche::TexteSeul, TexteBoite(x));
            else boites.Information(x.message, x.titre);
            return Reponse::Oui;
        }
        if (texte) return boites.Question(msg_fiche::TexteSeul, false, TexteBoite(x));
        // The other person heads the question: "this woman" alone does not
        // tell which of two wives is meant.
        if (!x.titre.empty())
            return boites.Question(msg_fiche::TexteSeul, false, x.titre + " : " + TexteBoite(x));
        return boites.Question(x.message, false, x.nom);
    };
    d.saisie = [this](int message) -> std::optional<std::string> {
        if (!saisie_) return std::nullopt;
        return saisie_(message);
    };
    return d;
}

Liens FrmMisajour::Routines() { return Liens(B(), Dialogue(), &f_.app().numeros()); }

void FrmMisajour::ApresLien(const ResultatLien& r) {
    if (r.Refuse()) {
        f_.services().boites.Information(r.refus);
        return;
    }
    if (!r.ecrit) return;
    if (f_.fichePendante) C_Maj_Click();
    else Charge();
    if (f_.PersonneEnCours() == personne_) f_.Aller(personne_);
}

void FrmMisajour::Supprime() {
    if (!BaseLa() || personne_ == 0) return;
    const std::uint32_t n = personne_;
    const ResultatLien r = Routines().SupprimePersonne(n);
    if (r.Refuse()) {
        f_.services().boites.Information(r.refus);
        return;
    }
    if (!r.ecrit) return;
    f_.fichePendante = f_.mariagePendant = false;
    histo_.erase(std::remove(histo_.begin(), histo_.end(), n), histo_.end());
    if (f_.PersonneEnCours() == n) f_.Aller(r.personne);
    f_.personneFiche = r.personne;
    mariage_ = lien_ = -1;
    Charge();
    aide_ = 619;
    Changement();
}

void FrmMisajour::AttacheParent(Cote cote, bool creer) {
    if (!BaseLa() || personne_ == 0) return;
    const bool pere = cote == Cote::Pere;
    std::uint32_t parent;
    if (creer) parent = choix_.Cree(pere ? B().LitNom(personne_) + "/Homme" : "Femme");
    else parent = choix_.Choisit(Candidats::Pere, personne_, pere ? 'H' : 'F', "");
    if (parent == 0) return;
    ResultatLien r = Routines().AttacheParent(personne_, cote, parent);
    if (creer) r.ecrit = true;
    ApresLien(r);
}

void FrmMisajour::CmdCrePere() { AttacheParent(Cote::Pere, true); }
void FrmMisajour::CmdCreMere() { AttacheParent(Cote::Mere, true); }
void FrmMisajour::C_Rechpere() { AttacheParent(Cote::Pere, false); }
void FrmMisajour::C_Rechmere() { AttacheParent(Cote::Mere, false); }

void FrmMisajour::C_Spere() {
    if (BaseLa() && personne_) ApresLien(Routines().CoupeParent(personne_, Cote::Pere));
}
void FrmMisajour::C_Smere() {
    if (BaseLa() && personne_) ApresLien(Routines().CoupeParent(personne_, Cote::Mere));
}

void FrmMisajour::CmdCreConjoint() {
    if (!BaseLa() || personne_ == 0) return;
    const std::string sexe = B().LitSexe(personne_);
    const char s = sexe.empty() ? ' ' : sexe[0];
    if (s != 'H' && s != 'F') return f_.services().boites.Information(634);
    const std::uint32_t c = choix_.Cree(s == 'H' ? "Femme" : "Homme");
    if (c == 0) return;
    ResultatLien r = Routines().AttacheConjoint(personne_, c, false);
    SelectionneNouveau(r.mariage);
    r.ecrit = true;
    ApresLien(r);
}

// The row of a marriage just made is the one shown after the reload.
void FrmMisajour::SelectionneNouveau(std::uint32_t m) {
    if (m == 0) return;
    const std::vector<std::uint32_t> l = B().Mariages(personne_);
    const auto it = std::find(l.begin(), l.end(), m);
    if (it != l.end()) mariage_ = static_cast<int>(it - l.begin());
}

void FrmMisajour::C_Rechconjoint() {
    if (!BaseLa() || personne_ == 0) return;
    Base& b = B();
    const std::string sexe = b.LitSexe(personne_);
    const char s = sexe.empty() ? ' ' : sexe[0];
    if (s != 'H' && s != 'F') return f_.services().boites.Information(634);
    if (Trim(b.LitNom(personne_)).empty() && Trim(b.LitPrenom(personne_)).empty())
        return f_.services().boites.Information(627);
    const std::uint32_t c = choix_.Choisit(Candidats::Conjoints, personne_, s, "");
    if (c == 0) return;
    const ResultatLien r = Routines().AttacheConjoint(personne_, c, true);
    SelectionneNouveau(r.mariage);
    ApresLien(r);
}

void FrmMisajour::C_Smar() {
    if (!BaseLa() || mariage_ < 0 || mariage_ >= static_cast<int>(conjoints_.size())) return;
    const std::uint32_t m =
        static_cast<std::uint32_t>(std::stoul(conjoints_[static_cast<std::size_t>(mariage_)].texte));
    const ResultatLien r = Routines().SupprimeMariage(m);
    if (!r.ecrit) return;
    f_.mariagePendant = false;
    ApresLien(r);
}

void FrmMisajour::CmdDoublon() {
    if (!BaseLa() || !DoublonPossible() || mariage_ >= static_cast<int>(conjoints_.size())) return;
    const std::string& m = conjoints_[static_cast<std::size_t>(mariage_)].texte;
    FrmFusion::PlageDemandee() = m + "/" + m;
    f_.services().fenetres.Ouvre("FrmFusion");
    // A merge made there may have removed this person or changed its lists.
    Actualise();
}

void FrmMisajour::CmdMarUp() {
    if (BaseLa() && mariage_ > 0 &&
        Routines().Deplace(personne_, ListeOrdonnee::Mariages, mariage_ + 1, true)) {
        --mariage_;
        ApresLien(ResultatLien{0, true, 0, 0});
    }
}

void FrmMisajour::CmdMarDown() {
    if (BaseLa() && MarBasPossible() &&
        Routines().Deplace(personne_, ListeOrdonnee::Mariages, mariage_ + 1, false)) {
        ++mariage_;
        ApresLien(ResultatLien{0, true, 0, 0});
    }
}

void FrmMisajour::CmdCreEnfant() {
    if (!BaseLa() || personne_ == 0) return;
    Base& b = B();
    const std::string sexe = b.LitSexe(personne_);
    const char s = sexe.empty() ? ' ' : sexe[0];
    if (s != 'H' && s != 'F') return f_.services().boites.Information(635);
    const std::uint32_t k = choix_.Cree(s == 'H' ? b.LitNom(personne_) + "/" : "");
    if (k == 0) return;
    ResultatLien r = Routines().AttacheEnfant(personne_, k);
    r.ecrit = true;
    ApresLien(r);
}

void FrmMisajour::CmdRechEnft() {
    if (!BaseLa() || personne_ == 0) return;
    Base& b = B();
    const std::string sexe = b.LitSexe(personne_);
    const char s = sexe.empty() ? ' ' : sexe[0];
    if (s != 'H' && s != 'F') return f_.services().boites.Information(640);
    const std::uint32_t k =
        choix_.Choisit(Candidats::Enfants, personne_, s, s == 'H' ? b.LitNom(personne_) : "");
    if (k == 0 || k == personne_) return;
    ApresLien(Routines().AttacheEnfant(personne_, k));
}

void FrmMisajour::CmdSupEnft(int rang) {
    if (!BaseLa() || rang < 0 || rang >= static_cast<int>(enfants_.size())) return;
    ApresLien(Routines().CoupeEnfant(personne_, enfants_[static_cast<std::size_t>(rang)].numero));
}

void FrmMisajour::CmdCreLien() {
    if (!BaseLa() || personne_ == 0) return;
    const std::uint32_t p = choix_.Cree("");
    if (p == 0) return;
    ResultatLien r = Routines().AjouteLien(personne_, p);
    r.ecrit = true;
    ApresLien(r);
}

void FrmMisajour::CmdRechLien() {
    if (!BaseLa() || personne_ == 0) return;
    const std::uint32_t p = choix_.Choisit(Candidats::Liens, personne_, ' ', "");
    if (p == 0 || p == personne_) return;
    ApresLien(Routines().AjouteLien(personne_, p));
}

void FrmMisajour::CmdSupLien() {
    if (!BaseLa() || lien_ < 0 || lien_ >= static_cast<int>(liens_.size())) return;
    const ResultatLien r =
        Routines().SupprimeLien(personne_, liens_[static_cast<std::size_t>(lien_)].rang);
    if (r.ecrit) lien_ = -1;
    ApresLien(r);
}

void FrmMisajour::CmdLienUp() {
    if (!BaseLa() || lien_ <= 0 || lien_ >= static_cast<int>(liens_.size())) return;
    const int rang = liens_[static_cast<std::size_t>(lien_)].rang;
    if (Routines().Deplace(personne_, ListeOrdonnee::Liens, rang, true)) {
        --lien_;
        ApresLien(ResultatLien{0, true, 0, 0});
    }
}

void FrmMisajour::CmdLienDown() {
    if (!BaseLa() || lien_ < 0 || lien_ + 1 >= static_cast<int>(liens_.size())) return;
    const int rang = liens_[static_cast<std::size_t>(lien_)].rang;
    if (Routines().Deplace(personne_, ListeOrdonnee::Liens, rang, false)) {
        ++lien_;
        ApresLien(ResultatLien{0, true, 0, 0});
    }
}

void FrmMisajour::CmdImgUp(int rang) {
    if (BaseLa() && rang > 0 && Routines().Deplace(personne_, ListeOrdonnee::Documents, rang + 1, true))
        ApresLien(ResultatLien{0, true, 0, 0});
}

void FrmMisajour::CmdImgDown(int rang) {
    if (BaseLa() && rang >= 0 &&
        Routines().Deplace(personne_, ListeOrdonnee::Documents, rang + 1, false))
        ApresLien(ResultatLien{0, true, 0, 0});
}

// --- Navigation and status ----------------------------------------------------------------------

void FrmMisajour::C_Nom() {
    if (!BaseLa()) return;
    f_.Confirme_Fiche_En_Cours();
    const std::uint32_t n = f_.services().selecteur.ChoisitPersonne(personne_);
    if (n) Montre(n);
    else Changement();
}

bool FrmMisajour::AllerIndice(const std::string& texte) {
    const std::string t = Trim(texte);
    std::uint64_t n = 0;
    const auto [fin, err] = std::from_chars(t.data(), t.data() + t.size(), n);
    const bool bon = BaseLa() && !t.empty() && err == std::errc{} && fin == t.data() + t.size() &&
                     n >= 1 && n <= B().Tete().maxPersonne;
    if (!bon) {
        indiceFaux_ = true;
        indice_.clear();
        Changement();
        return false;
    }
    Montre(static_cast<std::uint32_t>(n));
    return true;
}

std::vector<std::string> FrmMisajour::TextesHistorique() {
    std::vector<std::string> r;
    if (!BaseLa()) return r;
    for (std::uint32_t n : histo_) r.push_back(B().NomDates(n));
    return r;
}

void FrmMisajour::ChoisitHistorique(int rang) {
    if (rang < 0 || rang >= static_cast<int>(histo_.size())) return;
    Montre(histo_[static_cast<std::size_t>(rang)]);
}

std::string FrmMisajour::Statut() {
    if (!BaseLa() || personne_ == 0) return {};
    return StatutNumeros(f_.app().numeros(), personne_) + B().NomDates(personne_);
}

} // namespace sylvane
