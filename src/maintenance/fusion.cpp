// The search of doubles compares couples, not persons: two husbands are
// suspects when their first names and their wives' names agree as far as
// the level allows, and the same from the wives' side. Persons are reached
// through the family-name keywords of the index, grouped by phonetic key,
// so that only persons of one key family are ever compared.
//
// The merge writes in the order of the wizard's steps: identity and text of
// the kept person, parents, marriages, children, documents, events, links,
// then the dropped person emptied; the keyword index of every person whose
// texts changed is brought up to date once, from its texts before and after.
#include "maintenance/fusion.h"

#include "store/liens.h"
#include "store/pack.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/phonetique.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace sylvane {
namespace {

constexpr int kMaxListe = 200;
constexpr char kSymboleNom = '|';
// A pairs file holds two short lines a pair: anything larger is no such file.
constexpr std::uint64_t kTaillePairesMax = 64ull << 20;

std::vector<std::uint32_t> Nombres(const std::string& packe) {
    std::vector<std::uint32_t> v;
    for (std::size_t o = 0; o + 4 <= packe.size(); o += 4) v.push_back(Unpack4(packe, o));
    return v;
}

// --- Search -----------------------------------------------------------------------------------

struct Cles {
    std::string prenom, autres, nom;
    char sexe = ' ';
    bool marie = false;
    // The first 200 marriages with their husband and wife, read once.
    struct Mariage {
        std::uint32_t numero, mari, femme;
    };
    std::vector<Mariage> mariages;
    bool mariagesLus = false;
};

class Recherche {
  public:
    Recherche(Base& b, int niveau, TableDoublons& t, const Interaction& io)
        : b_(b), niveau_(niveau), table_(t), io_(io) {}

    ResultatRecherche Lance(std::uint32_t a, std::uint32_t z);

  private:
    Cles& ClesDe(std::uint32_t n);
    const std::vector<Cles::Mariage>& MariagesDe(std::uint32_t n, Cles& c) {
        if (!c.mariagesLus) {
            for (std::uint32_t k : b_.Mariages(n))
                c.mariages.push_back({k, b_.LitMari(k), b_.LitFemme(k)});
            c.mariagesLus = true;
        }
        return c.mariages;
    }
    void Familles();
    bool Anonyme(std::uint32_t n) {
        return Trim(b_.NomComplet(n)) == "?" && Trim(b_.LitPrenom(n)).empty();
    }
    // The person test: C's first and other names against those of the spouse.
    bool PersonneVoisine(const Cles& c, const std::string& f, const std::string& o) const {
        if (niveau_ <= 1) return c.prenom == f;
        return Conv_ClesVoisines(c.prenom, f) || c.prenom == o || c.autres == f;
    }
    bool CoupleMari(const Cles& c, const Cles& h, const Cles& w, const Cles& p) const;
    bool CoupleFemme(const Cles& c, const Cles& h, const Cles& w, const Cles& p) const;
    // One pass: `mari` true for the husbands' side.
    void Passe(std::uint32_t m, std::uint32_t mari, std::uint32_t femme, bool cote);
    void Ajoute(std::uint32_t a, std::uint32_t b) {
        if (table_.Creation_Doublon(a, b)) ++ajoutes_;
    }

    Base& b_;
    int niveau_;
    TableDoublons& table_;
    const Interaction& io_;
    std::unordered_map<std::uint32_t, Cles> cles_;
    // The married men and women of the family-name keywords of each
    // phonetic key, in the order of the keyword list, with their keys.
    struct Famille {
        std::vector<std::pair<std::uint32_t, Cles*>> hommes, femmes;
    };
    std::unordered_map<std::string, Famille> familles_;
    bool entier_ = false;
    std::size_t ajoutes_ = 0;
};

Cles& Recherche::ClesDe(std::uint32_t n) {
    auto it = cles_.find(n);
    if (it != cles_.end()) return it->second;
    Cles c;
    c.prenom = Conv_ClePhonetique(b_.LitPrenom(n));
    c.autres = Conv_ClePhonetique(b_.LitAutrePrenom(n));
    c.nom = Conv_ClePhonetique(b_.SansParticule(b_.LitNom(n)));
    const std::string s = b_.LitSexe(n);
    c.sexe = s.empty() ? ' ' : s[0];
    c.marie = b_.MariageNo(n, 1) != 0;
    return cles_.emplace(n, std::move(c)).first->second;
}

void Recherche::Familles() {
    const std::uint32_t k = b_.RubriqueDeSymbole(kSymboleNom);
    if (k == 0) return;
    for (std::uint32_t e : Nombres(b_.ListeRubrique(k))) {
        Famille& f = familles_[Conv_ClePhonetique(b_.LitMot(e))];
        for (std::uint32_t p : Nombres(b_.PersonnesMot(e))) {
            if (p == 0 || p > b_.Tete().maxPersonne) continue;
            Cles& c = ClesDe(p);
            if (!c.marie) continue;
            if (c.sexe == 'H') f.hommes.emplace_back(p, &c);
            else if (c.sexe == 'F') f.femmes.emplace_back(p, &c);
        }
    }
}

bool Recherche::CoupleMari(const Cles& c, const Cles& h, const Cles& w, const Cles& p) const {
    const std::string &f = h.prenom, &o = h.autres, &F = w.prenom, &O = w.autres, &W = w.nom;
    const std::string &P = p.prenom, &Q = p.autres, &R = p.nom;
    const bool croises = Conv_ClesVoisines(P, F) || Q == F || P == O;
    switch (niveau_) {
    case 0:
        return R == W && P == F;
    case 1:
        return (R == W && croises) || (Conv_ClesVoisines(R, W) && P == F);
    case 2:
        return (R == W && croises) || (Conv_ClesVoisines(R, W) && P == F) ||
               (c.prenom == f && R == W);
    default:
        return (R == W && (Conv_ClesVoisines(c.prenom, f) || c.autres == f || c.prenom == o)) ||
               (Conv_ClesVoisines(R, W) && croises);
    }
}

bool Recherche::CoupleFemme(const Cles& c, const Cles& h, const Cles& w, const Cles& p) const {
    const std::string &f = h.prenom, &o = h.autres, &N = h.nom, &F = w.prenom, &O = w.autres;
    const std::string &P = p.prenom, &Q = p.autres, &R = p.nom;
    const bool prenoms = Conv_ClesVoisines(P, f) || P == o || Q == f;
    switch (niveau_) {
    case 0:
        return R == N && prenoms;
    case 1:
        return (R == N && prenoms) || (Conv_ClesVoisines(R, N) && P == f);
    case 2:
        return (Conv_ClesVoisines(R, N) && P == f) || (c.prenom == F && R == N) ||
               (R == N && (Conv_ClesVoisines(c.prenom, F) || c.prenom == O || c.autres == F));
    default:
        return Conv_ClesVoisines(R, N) && prenoms;
    }
}

void Recherche::Passe(std::uint32_t m, std::uint32_t mari, std::uint32_t femme, bool cote) {
    const std::uint32_t soi = cote ? mari : femme;
    // References into the key cache stay valid: its nodes never move.
    const Cles& h = ClesDe(mari);
    const Cles& w = ClesDe(femme);
    const Cles& s = cote ? h : w;
    auto fam = familles_.find(s.nom);
    if (fam == familles_.end()) return;
    for (const auto& [personne, pc] : cote ? fam->second.hommes : fam->second.femmes) {
        if (personne == soi) continue;
        Cles& c = *pc;
        if (!PersonneVoisine(c, s.prenom, s.autres)) continue;
        for (const Cles::Mariage& x : MariagesDe(personne, c)) {
            const std::uint32_t k = x.numero;
            // In a scan of every marriage, the later one meets this pair itself.
            if (k == m || (entier_ && k > m)) continue;
            const std::uint32_t autre = cote ? x.femme : x.mari;
            if (autre == 0) continue;
            const Cles& p = ClesDe(autre);
            if (cote ? !CoupleMari(c, h, w, p) : !CoupleFemme(c, h, w, p)) continue;
            const std::uint32_t conjoint = cote ? femme : mari;
            if (autre == conjoint) continue;
            Ajoute(soi, personne);
            Ajoute(conjoint, autre);
        }
    }
}

ResultatRecherche Recherche::Lance(std::uint32_t a, std::uint32_t z) {
    ResultatRecherche r;
    const std::string titre = Message(980);
    io_.Montre(titre, Message(505));
    Familles();
    entier_ = a == 1 && z == b_.Tete().maxMariage;
    for (std::uint32_t m = a; m <= z && m != 0; ++m) {
        if (io_.Arrete()) {
            r.arrete = true;
            break;
        }
        io_.Montre(titre, std::to_string(m) + "/" + std::to_string(z));
        r.dernier = m;
        const std::uint32_t mari = b_.LitMari(m), femme = b_.LitFemme(m);
        if (mari == 0 || femme == 0 || Anonyme(mari) || Anonyme(femme)) continue;
        Passe(m, mari, femme, true);
        Passe(m, mari, femme, false);
    }
    r.ajoutes = ajoutes_;
    return r;
}

// --- Merge ------------------------------------------------------------------------------------

bool Dans(const std::vector<std::uint32_t>& v, std::uint32_t x) {
    return std::find(v.begin(), v.end(), x) != v.end();
}

std::vector<std::uint32_t> Enfants(Base& b, std::uint32_t n) {
    std::vector<std::uint32_t> v;
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t c = b.EnfantNo(n, i);
        if (c == 0) break;
        v.push_back(c);
    }
    return v;
}

std::uint32_t Conjoint(Base& b, std::uint32_t m, std::uint32_t n) {
    const std::uint32_t mari = b.LitMari(m);
    return mari == n ? b.LitFemme(m) : mari;
}

std::string CleFamille(Base& b, std::uint32_t n) { return CleMot(b.SansParticule(b.LitNom(n))); }

// The first value of a list that isn't empty.
std::string Defaut(const std::string& premier, const std::string& second) {
    return Trim(premier).empty() ? second : premier;
}

std::string NoteChoisie(ChoixTexte c, const std::string& a, const std::string& b) {
    switch (c) {
    case ChoixTexte::Premier: return a;
    case ChoixTexte::Second: return b;
    default: return a == b ? a : JoinsNotes(a, b);
    }
}

// The index of the matching brace of the group opening at `debut`; the
// text's size when it is never closed.
std::size_t FinGroupe(const std::string& t, std::size_t debut) {
    int niveau = 0;
    for (std::size_t i = debut; i < t.size(); ++i) {
        if (t[i] == '\\') {
            ++i;
            continue;
        }
        if (t[i] == '{') ++niveau;
        else if (t[i] == '}' && --niveau == 0) return i;
    }
    return t.size();
}

class Fusion {
  public:
    Fusion(Base& b, const ChoixFusion& c, TableDoublons& t, const DialogueFusion& d)
        : b_(b), c_(c), k_(c.garde), d_(c.ecarte), table_(t), dlg_(d) {}
    void Applique();

  private:
    void Retiens(std::uint32_t p) {
        if (p && p != d_ && !avant_.count(p)) avant_[p] = b_.NoteAvecMariages(p);
    }
    void Identite();
    void Parent(bool pere);
    void Mariages();
    void FusionneMariage(std::uint32_t md, const ChoixMariage& ch);
    void AnneeDesEnfants(std::uint32_t m);
    void EnfantsDeD();
    void DocumentsEvenementsLiens();
    void VideD();
    void Reclasse(std::uint32_t n, const std::function<void()>& ecrit);

    Base& b_;
    const ChoixFusion& c_;
    const std::uint32_t k_, d_;
    TableDoublons& table_;
    const DialogueFusion& dlg_;
    // The texts of the keyword index before the merge, by person.
    std::map<std::uint32_t, std::string> avant_;
    std::string avantD_;
};

// Takes the person out of the sort table, writes, and puts it back at the
// place of its new key; its parents' lists and its keywords follow a new
// birth key.
void Fusion::Reclasse(std::uint32_t n, const std::function<void()>& ecrit) {
    const std::uint32_t place = b_.TrouvePlaceFiche(n);
    const std::string cleNaiss = b_.CleAnNaiss(n);
    if (place) {
        b_.MajTriFiche(place, n, 'S');
        b_.TeteModifiable().nbPersonnes -= 1;
    }
    ecrit();
    b_.MajTriFiche(b_.PlaceFiche(n), n, 'A');
    b_.TeteModifiable().nbPersonnes += 1;
    b_.triPersonnesModifie = true;
    if (b_.CleAnNaiss(n) != cleNaiss) {
        for (std::uint32_t parent : {b_.LitPere(n), b_.LitMere(n)})
            if (parent) {
                b_.MajEnfants(parent, n, 'S');
                b_.MajEnfants(parent, n, 'A');
            }
        b_.RangeMots(n, cleNaiss);
    }
}

void Fusion::Identite() {
    std::string autres = Trim(c_.autres);
    if (c_.autrePrenom) {
        for (std::uint32_t p : {k_, d_}) {
            const std::string prenom = Trim(b_.LitPrenom(p));
            if (!prenom.empty() && CleMot(prenom) != CleMot(Trim(c_.prenom)) &&
                (" " + CleMot(autres) + " ").find(" " + CleMot(prenom) + " ") == std::string::npos)
                autres = Trim(autres + " " + prenom);
        }
    }
    const auto [jn, an] = DecoupeDateAn(c_.naiss);
    const auto [jd, ad] = DecoupeDateAn(c_.deces);
    std::string identite = Trim(c_.nom) + ";" + Trim(c_.prenom) + ";" + autres;
    if (!jn.empty() || !jd.empty()) identite += ";" + jn + ";" + jd;
    const std::string sexeK = b_.LitSexe(k_), sexeD = b_.LitSexe(d_);
    // "I" is the sheet's own word for no sex.
    auto connu = [](const std::string& s) { return s == "H" || s == "F"; };
    if (!connu(sexeK) && connu(sexeD)) b_.EcritSexe(k_, sexeD);
    b_.EcritAnDeces(k_, ad);
    // A structured binding can't be captured by clang's C++20 lambdas.
    const std::string anNaiss = an;
    Reclasse(k_, [&] {
        b_.EcritIdentite(k_, identite);
        b_.EcritAnNaiss(k_, anNaiss);
    });
    // The text: key line with the chosen places, the rubrics, the note.
    const std::string corps =
        NoteChoisie(c_.note, b_.CorpsNote(k_), b_.CorpsNote(d_));
    std::string t = b_.LigneMotsCles(k_, Trim(c_.lieuNaiss), Trim(c_.lieuDeces)) +
                    LignesRubriques(b_.Tete().rubriquesPersonne, c_.rubriques);
    if (!corps.empty()) t += "\r\n\r\n" + corps;
    if (t != b_.LitNote(k_)) b_.EcritNote(k_, t);
}

void Fusion::Parent(bool pere) {
    auto lit = [&](std::uint32_t n) { return pere ? b_.LitPere(n) : b_.LitMere(n); };
    auto ecrit = [&](std::uint32_t n, std::uint32_t p) {
        if (pere) b_.EcritPere(n, p);
        else b_.EcritMere(n, p);
        if (b_.parentChange_) b_.parentChange_(n, p);
    };
    std::uint32_t pk = lit(k_), pd = lit(d_);
    // A parent that is one of the two can't stay the merged person's parent.
    if (pk == d_ || pk == k_) {
        b_.MajEnfants(pk, k_, 'S');
        ecrit(k_, 0);
        pk = 0;
    }
    if (pd == k_ || pd == d_) {
        b_.MajEnfants(pd, d_, 'S');
        ecrit(d_, 0);
        pd = 0;
    }
    if (pd == 0) return;
    const ChoixTexte choix = pere ? c_.pere : c_.mere;
    b_.MajEnfants(pd, d_, 'S');
    ecrit(d_, 0);
    if (pk == 0 || (pk != pd && choix == ChoixTexte::Second)) {
        if (pk) b_.MajEnfants(pk, k_, 'S');
        ecrit(k_, pd);
        b_.MajEnfants(pd, k_, 'A');
    } else if (pk != pd && choix == ChoixTexte::Fusion) {
        table_.Creation_Doublon(pk, pd);
    }
}

void Fusion::FusionneMariage(std::uint32_t md, const ChoixMariage& ch) {
    const std::uint32_t mk = ch.avec;
    const std::uint32_t sk = Conjoint(b_, mk, k_), sd = Conjoint(b_, md, d_);
    Retiens(sk);
    Retiens(sd);
    if (ch.an != b_.LitAnMariage(mk)) b_.EcritAnMariage(mk, Trim(ch.an));
    std::string t = Trim(ch.date);
    if (!Trim(ch.lieu).empty()) t += " @" + VersPoints(Trim(ch.lieu));
    t += LignesRubriques(b_.Tete().rubriquesMariage, ch.rubriques);
    const std::string corps =
        NoteChoisie(ch.note, b_.CorpsNoteMariage(mk), b_.CorpsNoteMariage(md));
    if (!corps.empty()) t += "\r\n\r\n" + corps;
    if (t != b_.LitNoteMariage(mk)) b_.EcritNoteMariage(mk, t);
    // The dropped marriage is emptied and leaves both lists; its children
    // keep their parents, who now are the kept person and its spouse.
    b_.EcritNoteMariage(md, "");
    b_.EcritAnMariage(md, "");
    b_.EcritMari(md, 0);
    b_.EcritFemme(md, 0);
    b_.MajMariages(sd, md, 'S');
    if (sd && sk && sd != sk) table_.Creation_Doublon(sk, sd);
    AnneeDesEnfants(mk);
}

// A marriage with a year whose children have none: 981 for each of them.
void Fusion::AnneeDesEnfants(std::uint32_t m) {
    const std::string an = Trim(b_.LitAnMariage(m));
    if (an.empty()) return;
    const std::uint32_t mari = b_.LitMari(m), femme = b_.LitFemme(m);
    const std::uint32_t parent = mari ? mari : femme;
    if (!parent) return;
    for (std::uint32_t e : Enfants(b_, parent)) {
        if (b_.LitPere(e) != mari || b_.LitMere(e) != femme) continue;
        if (!Trim(b_.LitAnNaiss(e)).empty()) continue;
        if (dlg_.Demande(981, b_.NomComplet(e)) != Reponse::Oui) continue;
        const std::string date = b_.DateMariage(m);
        Reclasse(e, [&] {
            b_.EcritAnNaiss(e, an);
            std::string id = b_.LitNom(e) + ";" + b_.LitPrenom(e) + ";" + b_.LitAutrePrenom(e) +
                             ";" + date + ";" + b_.LitDateDeces(e);
            b_.EcritIdentite(e, id);
        });
    }
}

void Fusion::Mariages() {
    for (std::uint32_t md : b_.Mariages(d_)) {
        const std::uint32_t s = Conjoint(b_, md, d_);
        const ChoixMariage* ch = nullptr;
        for (const auto& x : c_.mariages)
            if (x.mariage == md) ch = &x;
        if (s == k_) {
            // A marriage of the two with each other can't be kept.
            b_.EcritNoteMariage(md, "");
            b_.EcritAnMariage(md, "");
            b_.EcritMari(md, 0);
            b_.EcritFemme(md, 0);
            b_.MajMariages(k_, md, 'S');
            continue;
        }
        const auto deK = b_.Mariages(k_);
        if (ch && ch->avec && Dans(deK, ch->avec) && Conjoint(b_, ch->avec, k_) != 0 && s) {
            FusionneMariage(md, *ch);
            continue;
        }
        // Moved as it stands.
        Retiens(s);
        if (b_.LitMari(md) == d_) b_.EcritMari(md, k_);
        else b_.EcritFemme(md, k_);
        if (!Dans(deK, md)) b_.MajMariages(k_, md, 'A');
        AnneeDesEnfants(md);
    }
    b_.EcritListeMariages(d_, "");
}

void Fusion::EnfantsDeD() {
    const auto deK = Enfants(b_, k_);
    for (std::uint32_t e : Enfants(b_, d_)) {
        b_.MajEnfants(d_, e, 'S');
        for (bool pere : {true, false}) {
            const std::uint32_t p = pere ? b_.LitPere(e) : b_.LitMere(e);
            if (p != d_) continue;
            const std::uint32_t autre = pere ? b_.LitMere(e) : b_.LitPere(e);
            // K its own child, or both parents of one child: the field goes.
            const std::uint32_t nouveau = (e == k_ || autre == k_) ? 0 : k_;
            if (pere) b_.EcritPere(e, nouveau);
            else b_.EcritMere(e, nouveau);
            if (b_.parentChange_) b_.parentChange_(e, nouveau);
        }
        if (e != k_ && (b_.LitPere(e) == k_ || b_.LitMere(e) == k_) && !Dans(deK, e))
            b_.MajEnfants(k_, e, 'A');
        for (const auto& [de, dk] : c_.enfants)
            if (de == e && dk && dk != e) table_.Creation_Doublon(dk, e);
    }
    b_.EcritListeEnfants(d_, "");
}

void Fusion::DocumentsEvenementsLiens() {
    // Documents: they hold no list of their owners.
    const auto docsK = Nombres(b_.ListeDocs(k_));
    int i = 0;
    for (std::uint32_t doc : Nombres(b_.ListeDocs(d_))) {
        if (++i > kMaxListe) break;
        if (!Dans(docsK, doc)) b_.MajDocs(k_, doc, 'A');
    }
    b_.EcritListeDocs(d_, "");

    // Events: K takes D's role, and D's number in the event becomes K's.
    for (int j = 1; j <= kMaxListe; ++j) {
        const std::uint32_t e = b_.EvtNo(d_, j);
        if (e == 0) break;
        const std::string role = b_.RoleEvtNo(d_, j);
        std::vector<std::uint32_t> p = Nombres(b_.ListePersonnesEvt(e));
        const bool dejaK = Dans(p, k_);
        std::vector<std::uint32_t> nouvelle;
        for (std::size_t x = 0; x < p.size(); ++x) {
            if (p[x] == d_ && x < static_cast<std::size_t>(kMaxListe)) {
                if (!dejaK && !Dans(nouvelle, k_)) nouvelle.push_back(k_);
            } else {
                nouvelle.push_back(p[x]);
            }
        }
        if (nouvelle != p) {
            // The list rebuilt through the store's own updates: each "A"
            // goes in front, so the entries go back last first.
            for (std::uint32_t x : p) b_.MajPersonnesEvt(e, x, 'S');
            for (auto it = nouvelle.rbegin(); it != nouvelle.rend(); ++it)
                b_.MajPersonnesEvt(e, *it, 'A');
        }
        bool aDeja = false;
        for (int q = 1; q <= kMaxListe && !aDeja; ++q) {
            const std::uint32_t x = b_.EvtNo(k_, q);
            if (x == 0) break;
            aDeja = x == e;
        }
        if (!aDeja) b_.MajEvts(k_, e, role, 'A');
    }
    b_.EcritListeEvts(d_, {});

    // Links: each person D pointed to now points back to K.
    std::vector<std::pair<std::uint32_t, std::string>> liensK;
    for (int j = 1; j <= kMaxListe; ++j) {
        const std::uint32_t x = b_.LienNo(k_, j);
        if (x == 0) break;
        liensK.emplace_back(x, b_.TexteLienBrutNo(k_, j));
    }
    bool changeK = false;
    for (int j = 1; j <= kMaxListe; ++j) {
        const std::uint32_t x = b_.LienNo(d_, j);
        if (x == 0) break;
        const std::string texte = b_.TexteLienBrutNo(d_, j);
        if (x == k_ || x == d_) {
            // A link between the two: K's entry back to D goes.
            auto it = std::find_if(liensK.begin(), liensK.end(),
                                   [&](const auto& l) { return l.first == d_; });
            if (it != liensK.end()) {
                liensK.erase(it);
                changeK = true;
            }
            continue;
        }
        std::vector<std::pair<std::uint32_t, std::string>> lx;
        bool changeX = false;
        for (int q = 1; q <= kMaxListe; ++q) {
            const std::uint32_t y = b_.LienNo(x, q);
            if (y == 0) break;
            lx.emplace_back(y == d_ ? k_ : y, b_.TexteLienBrutNo(x, q));
            changeX |= y == d_;
        }
        if (changeX) b_.EcritListeLiens(x, lx);
        liensK.emplace_back(x, texte);
        changeK = true;
    }
    if (changeK) b_.EcritListeLiens(k_, liensK);
    b_.EcritListeLiens(d_, {});
}

// D is left as an empty record, out of the sort table.
void Fusion::VideD() {
    const std::uint32_t place = b_.TrouvePlaceFiche(d_);
    b_.EcritAnNaiss(d_, "");
    b_.EcritAnDeces(d_, "");
    b_.EcritNote(d_, "");
    b_.EcritIdentite(d_, "");
    b_.EcritSexe(d_, " ");
    b_.EcritListeMariages(d_, "");
    b_.EcritListeEnfants(d_, "");
    b_.EcritListeLiens(d_, {});
    b_.EcritListeEvts(d_, {});
    b_.EcritListeDocs(d_, "");
    if (place) {
        b_.MajTriFiche(place, d_, 'S');
        b_.TeteModifiable().nbPersonnes -= 1;
    }
    b_.triPersonnesModifie = true;
}

void Fusion::Applique() {
    avantD_ = b_.NoteAvecMariages(d_);
    Retiens(k_);
    Identite();
    Parent(true);
    Parent(false);
    Mariages();
    EnfantsDeD();
    DocumentsEvenementsLiens();
    VideD();
    // The keyword index follows every text that changed.
    b_.MajMots(d_, avantD_, "");
    for (const auto& [p, avant] : avant_) b_.MajMots(p, avant, b_.NoteAvecMariages(p));
    b_.MarqueModif();
}

} // namespace

// --- Pair table -------------------------------------------------------------------------------

std::uint64_t TableDoublons::Cle(std::uint32_t a, std::uint32_t b) {
    if (a > b) std::swap(a, b);
    return (std::uint64_t(a) << 32) | b;
}

bool TableDoublons::Contient(std::uint32_t a, std::uint32_t b) const {
    return presentes_.count(Cle(a, b)) != 0;
}

bool TableDoublons::Creation_Doublon(std::uint32_t premier, std::uint32_t second) {
    if (premier == 0 || second == 0 || premier == second) return false;
    if (!presentes_.insert(Cle(premier, second)).second) return false;
    lignes_.push_back({premier, second});
    return true;
}

void TableDoublons::Ecarte(std::uint32_t a, std::uint32_t b) {
    if (presentes_.erase(Cle(a, b)) == 0) return;
    for (auto& l : lignes_)
        if (l.premier && Cle(l.premier, l.second) == Cle(a, b)) l.premier = 0;
}

void TableDoublons::Vide() {
    lignes_.clear();
    presentes_.clear();
}

std::string CheminPaires(const std::string& cheminBase) {
    const std::size_t barre = cheminBase.find_last_of("/\\");
    const std::size_t point = cheminBase.rfind('.');
    const bool extension = point != std::string::npos && (barre == std::string::npos || point > barre);
    return (extension ? cheminBase.substr(0, point) : cheminBase) + ".fus";
}

TableDoublons LitPaires(SystemeFichiers& fs, const std::string& chemin) {
    TableDoublons t;
    if (!fs.existe(chemin)) return t;
    auto f = fs.ouvrir(chemin, Mode::Lecture);
    if (f->taille() > kTaillePairesMax)
        throw ErreurES(chemin, "fichier de paires trop grand : ce n'est pas un fichier de paires");
    const std::string texte = f->lire(0, static_cast<std::size_t>(f->taille()));
    std::vector<std::uint32_t> nombres;
    bool valide = true;
    std::size_t debut = 0;
    while (debut < texte.size()) {
        std::size_t fin = texte.find('\n', debut);
        if (fin == std::string::npos) fin = texte.size();
        std::string_view brute = std::string_view(texte).substr(debut, fin - debut);
        debut = fin + 1;
        // The line end the file was written with is no part of the number:
        // a ten-digit number read back as it was written.
        if (!brute.empty() && brute.back() == '\r') brute.remove_suffix(1);
        const std::string ligne = Trim(brute);
        std::uint64_t v = 0;
        bool ok = !ligne.empty() && ligne.size() <= 10;
        for (char ch : ligne) {
            if (ch < '0' || ch > '9') ok = false;
            else v = v * 10 + static_cast<unsigned>(ch - '0');
        }
        if (v > 0xFFFFFFFFull) ok = false;
        nombres.push_back(static_cast<std::uint32_t>(v));
        valide &= ok;
        if (nombres.size() == 2) {
            if (valide) t.Creation_Doublon(nombres[0], nombres[1]);
            nombres.clear();
            valide = true;
        }
    }
    return t;
}

void EcritPaires(SystemeFichiers& fs, const std::string& chemin, const TableDoublons& t) {
    if (t.Actives() == 0) {
        fs.supprimer(chemin);
        return;
    }
    std::string texte;
    for (const auto& l : t.Lignes())
        if (l.premier)
            texte += std::to_string(l.premier) + "\r\n" + std::to_string(l.second) + "\r\n";
    EcritureAtomique e(fs, chemin);
    e.Sortie().ecrire(0, texte);
    e.Valide();
}

std::optional<std::pair<std::uint32_t, std::uint32_t>> LitPlage(const std::string& texte,
                                                                std::uint32_t maxMariage) {
    const std::size_t barre = texte.find('/');
    if (barre == std::string::npos) return std::nullopt;
    auto nombre = [](std::string s) -> std::optional<std::uint32_t> {
        s = Trim(s);
        if (s.empty() || s.size() > 10) return std::nullopt;
        std::uint64_t v = 0;
        for (char c : s) {
            if (c < '0' || c > '9') return std::nullopt;
            v = v * 10 + static_cast<unsigned>(c - '0');
        }
        if (v > 0xFFFFFFFFull) return std::nullopt;
        return static_cast<std::uint32_t>(v);
    };
    const auto a = nombre(texte.substr(0, barre)), z = nombre(texte.substr(barre + 1));
    if (!a || !z) return std::nullopt;
    return std::make_pair(std::max<std::uint32_t>(*a, 1), std::min(*z, maxMariage));
}

ResultatRecherche RechercheDoublons(Base& b, int niveau, const std::string& plage,
                                    TableDoublons& table, const Interaction& io) {
    const auto p = LitPlage(plage, b.Tete().maxMariage);
    if (!p) return {};
    Recherche r(b, std::clamp(niveau, 0, 3), table, io);
    return r.Lance(p->first, p->second);
}

// --- Wizard helpers ---------------------------------------------------------------------------

std::vector<std::string> ListeChoix(const std::string& premier, const std::string& second) {
    std::vector<std::string> l{premier};
    if (second != premier) l.push_back(second);
    if ((premier.empty() || second.empty()) && !(premier.empty() && second.empty()))
        l.emplace_back();
    return l;
}

std::string DateEtAn(const std::string& date, const std::string& an) {
    const std::string d = Trim(date), a = Trim(an);
    if (d.empty()) return a;
    // The year keeps four characters so that it can be cut off again.
    std::string a4 = a;
    while (a4.size() < 4) a4 = " " + a4;
    return d + " " + a4;
}

std::pair<std::string, std::string> DecoupeDateAn(const std::string& texte) {
    const std::string t = TrimDroite(texte);
    if (t.size() <= 4) return {"", Trim(t)};
    return {Trim(t.substr(0, t.size() - 4)), Trim(t.substr(t.size() - 4))};
}

std::string JoinsNotes(const std::string& premier, const std::string& second) {
    if (premier.empty()) return second;
    if (second.empty()) return premier;
    const std::size_t pa = premier.find("{\\rtf1"), pb = second.find("{\\rtf1");
    if (pa == std::string::npos || pb == std::string::npos) {
        // One after the other, on the next line: not a blank line between.
        const bool finLigne = premier.size() >= 2 && premier.ends_with("\r\n");
        return premier + (finLigne ? "" : "\r\n") + second;
    }
    const std::size_t fa = FinGroupe(premier, pa), fb = FinGroupe(second, pb);
    const std::string dedans = second.substr(pb + 6, fb - (pb + 6));
    std::string r = premier.substr(0, fa) + "\\par " + dedans + premier.substr(fa);
    const std::string reste =
        Trim(second.substr(0, pb) + (fb < second.size() ? second.substr(fb + 1) : ""));
    if (!reste.empty()) r += "\r\n" + reste;
    return r;
}

ChoixTexte ChoixNotes(const std::string& a, const std::string& b) {
    if (a.empty()) return ChoixTexte::Second;
    if (b.empty() || a == b) return ChoixTexte::Premier;
    return ChoixTexte::Fusion;
}

std::array<ValeurRubrique, 10> RubriquesChoisies(const TableValeursRubriques& a,
                                                 const TableValeursRubriques& b) {
    std::array<ValeurRubrique, 10> r{};
    for (std::size_t i = 0; i < r.size(); ++i) {
        const ValeurRubrique va = i < a.size() ? a[i] : ValeurRubrique{};
        const ValeurRubrique vb = i < b.size() ? b[i] : ValeurRubrique{};
        // The date and the value are two lists of the wizard: each is taken
        // on its own.
        const bool sansDate = Trim(va.jourMois).empty() && Trim(va.annee).empty();
        r[i].jourMois = sansDate ? vb.jourMois : va.jourMois;
        r[i].annee = sansDate ? vb.annee : va.annee;
        r[i].valeur = Trim(va.valeur).empty() ? vb.valeur : va.valeur;
    }
    return r;
}

int RefusFusion(Base& b, std::uint32_t garde, std::uint32_t ecarte) {
    const std::string s1 = b.LitSexe(garde), s2 = b.LitSexe(ecarte);
    if ((s1 == "H" && s2 == "F") || (s1 == "F" && s2 == "H")) return 956;
    return 0;
}

std::vector<std::uint32_t> MariagesOfferts(Base& b, std::uint32_t garde, std::uint32_t ecarte,
                                           std::uint32_t mariage) {
    const std::uint32_t conjoint = Conjoint(b, mariage, ecarte);
    std::vector<std::uint32_t> tous, memes;
    const std::string cle = conjoint ? CleFamille(b, conjoint) : std::string();
    for (std::uint32_t m : b.Mariages(garde)) {
        const std::uint32_t sk = Conjoint(b, m, garde);
        if (sk == 0) continue;
        tous.push_back(m);
        if (conjoint && CleFamille(b, sk) == cle) memes.push_back(m);
    }
    return memes.empty() ? tous : memes;
}

std::vector<std::uint32_t> EnfantsOfferts(Base& b, std::uint32_t garde, std::uint32_t enfant) {
    std::vector<std::uint32_t> r;
    const std::string s = b.LitSexe(enfant);
    for (std::uint32_t e : Enfants(b, garde)) {
        const std::string t = b.LitSexe(e);
        if ((s == "H" && t == "F") || (s == "F" && t == "H")) continue;
        r.push_back(e);
    }
    return r;
}

std::vector<std::uint32_t> EnfantsAComparer(Base& b, std::uint32_t garde, std::uint32_t ecarte) {
    const auto deK = Enfants(b, garde);
    std::vector<std::uint32_t> r;
    for (std::uint32_t e : Enfants(b, ecarte))
        if (!Dans(deK, e) && e != garde) r.push_back(e);
    return r;
}

ChoixFusion ChoixParDefaut(Base& b, std::uint32_t k, std::uint32_t d) {
    ChoixFusion c;
    c.garde = k;
    c.ecarte = d;
    c.nom = Defaut(b.LitNom(k), b.LitNom(d));
    c.prenom = Defaut(b.LitPrenom(k), b.LitPrenom(d));
    c.autres = Defaut(b.LitAutrePrenom(k), b.LitAutrePrenom(d));
    c.autrePrenom = CleMot(Trim(b.LitPrenom(k))) != CleMot(Trim(b.LitPrenom(d))) &&
                    !Trim(b.LitPrenom(k)).empty() && !Trim(b.LitPrenom(d)).empty();
    c.naiss = Defaut(DateEtAn(b.LitDateNaiss(k), b.LitAnNaiss(k)),
                     DateEtAn(b.LitDateNaiss(d), b.LitAnNaiss(d)));
    c.deces = Defaut(DateEtAn(b.LitDateDeces(k), b.LitAnDeces(k)),
                     DateEtAn(b.LitDateDeces(d), b.LitAnDeces(d)));
    c.lieuNaiss = Defaut(b.LieuNaiss(k), b.LieuNaiss(d));
    c.lieuDeces = Defaut(b.LieuDeces(k), b.LieuDeces(d));
    c.rubriques = RubriquesChoisies(b.RubriquesNote(k), b.RubriquesNote(d));
    c.note = ChoixNotes(b.CorpsNote(k), b.CorpsNote(d));
    c.pere = c.mere = ChoixTexte::Fusion;
    for (std::uint32_t md : b.Mariages(d)) {
        const std::uint32_t s = Conjoint(b, md, d);
        if (s == 0 || s == k) continue;
        ChoixMariage cm;
        cm.mariage = md;
        const std::string cle = CleFamille(b, s);
        for (std::uint32_t mk : MariagesOfferts(b, k, d, md))
            if (CleFamille(b, Conjoint(b, mk, k)) == cle) {
                cm.avec = mk;
                break;
            }
        const std::uint32_t base = cm.avec ? cm.avec : md;
        cm.an = Defaut(b.LitAnMariage(base), b.LitAnMariage(md));
        cm.date = Defaut(b.DateMariage(base), b.DateMariage(md));
        cm.lieu = Defaut(b.LieuMariage(base), b.LieuMariage(md));
        cm.rubriques = RubriquesChoisies(b.RubriquesMariage(base), b.RubriquesMariage(md));
        cm.note = cm.avec ? ChoixNotes(b.CorpsNoteMariage(cm.avec), b.CorpsNoteMariage(md))
                          : ChoixTexte::Second;
        c.mariages.push_back(std::move(cm));
    }
    for (std::uint32_t e : EnfantsAComparer(b, k, d)) {
        const std::string cle = Conv_ClePhonetique(b.LitPrenom(e));
        for (std::uint32_t o : EnfantsOfferts(b, k, e))
            if (Conv_ClePhonetique(b.LitPrenom(o)) == cle) {
                c.enfants.emplace_back(e, o);
                break;
            }
    }
    return c;
}

ResultatFusion Maj_Fusion(Base& b, const ChoixFusion& c, TableDoublons& table,
                          const DialogueFusion& d) {
    ResultatFusion r;
    if (c.garde == 0 || c.ecarte == 0 || c.garde == c.ecarte) return r;
    if ((r.refus = RefusFusion(b, c.garde, c.ecarte))) return r;
    if (d.Demande(957) != Reponse::Oui) return r;
    // What was pending before is committed apart: the merge is one commit.
    b.ValideBase();
    const std::string chemin = b.Chemins().base;
    try {
        Fusion(b, c, table, d).Applique();
        b.ValideBase();
    } catch (...) {
        // The journal brings the file back to the commit before the merge.
        b.Abandonne();
        try {
            b.Ouvre(chemin);
        } catch (...) {
        }
        throw;
    }
    table.Ecarte(c.garde, c.ecarte);
    r.fait = true;
    return r;
}

} // namespace sylvane
