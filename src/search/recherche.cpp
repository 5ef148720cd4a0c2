#include "search/recherche.h"

#include "exchange/selection.h"
#include "store/base.h"
#include "text/parametres.h"
#include "store/pack.h"
#include "store/temoins.h"
#include "text/calendrier.h"
#include "text/dates.h"
#include "text/mots.h"
#include "text/rtf.h"
#include "text/tags.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <set>
#include <utility>

namespace sylvane {

// --- Working set ----------------------------------------------------------------

std::uint32_t EnsemblePersonnes::At(std::size_t i) const {
    return i < Taille() ? Unpack4(octets_, i * 4) : 0;
}

std::size_t EnsemblePersonnes::Rang(std::uint32_t n) const {
    std::size_t bas = 0, haut = Taille();
    while (bas < haut) {
        const std::size_t m = bas + (haut - bas) / 2;
        if (At(m) < n) bas = m + 1;
        else haut = m;
    }
    return bas < Taille() && At(bas) == n ? bas : Taille();
}

bool EnsemblePersonnes::Ajoute(std::uint32_t n) {
    if (n == 0) return false;
    std::size_t bas = 0, haut = Taille();
    while (bas < haut) {
        const std::size_t m = bas + (haut - bas) / 2;
        if (At(m) < n) bas = m + 1;
        else haut = m;
    }
    if (bas < Taille() && At(bas) == n) return false;
    octets_.insert(bas * 4, Pack4(n));
    return true;
}

std::size_t EnsemblePersonnes::Fusionne(std::vector<std::uint32_t> numeros) {
    std::sort(numeros.begin(), numeros.end());
    numeros.erase(std::unique(numeros.begin(), numeros.end()), numeros.end());
    if (!numeros.empty() && numeros.front() == 0) numeros.erase(numeros.begin());
    if (numeros.empty()) return 0;
    const std::vector<std::uint32_t> anciens = Numeros();
    std::vector<std::uint32_t> tous;
    tous.reserve(anciens.size() + numeros.size());
    std::set_union(anciens.begin(), anciens.end(), numeros.begin(), numeros.end(),
                   std::back_inserter(tous));
    std::string o;
    o.reserve(tous.size() * 4);
    for (std::uint32_t n : tous) o += Pack4(n);
    octets_ = std::move(o);
    return tous.size() - anciens.size();
}

bool EnsemblePersonnes::RetireRang(std::size_t i) {
    if (i >= Taille()) return false;
    octets_.erase(i * 4, 4);
    return true;
}

std::vector<std::uint32_t> EnsemblePersonnes::Numeros() const {
    std::vector<std::uint32_t> v;
    v.reserve(Taille());
    for (std::size_t i = 0; i < Taille(); ++i) v.push_back(At(i));
    return v;
}

// --- Shared helpers ----------------------------------------------------------------

std::string BorneAnnee(const std::string& an, bool haute) {
    const std::string t = Trim(an);
    if (t.empty()) return haute ? std::string(4, '\xFF') : std::string();
    return CleAnnee(t);
}

std::string CleCritere(const std::string& texte) { return CleMot(VersPoints(texte)); }

std::string CodeFamille(Base& b, std::uint32_t n) {
    const bool pere = b.LitPere(n) != 0, mere = b.LitMere(n) != 0;
    if (pere && mere) return "";
    if (pere) return "P";
    if (mere) return "M";
    return "*";
}

std::string CodeParents(Base& b, std::uint32_t n) {
    const bool pere = b.LitPere(n) != 0, mere = b.LitMere(n) != 0;
    if (!pere && !mere) return "";
    return std::string(pere ? "x" : "o") + (mere ? "x" : "o");
}

std::string DatesPersonne(Base& b, std::uint32_t n) {
    return Conv_AnneesVie(b.LitDateNaiss(n), Trim(b.LitAnNaiss(n)), b.LitDateDeces(n),
                          Trim(b.LitAnDeces(n)));
}

bool Execute(Balayage& s, const Interaction& i, const std::function<void()>& apres,
             std::size_t pas) {
    for (;;) {
        const bool encore = s.Avance(pas);
        if (apres) apres();
        if (!encore) return true;
        if (i.Arrete()) return false;
    }
}

namespace {

// Folded texts of records, kept from one search to the next on one base so
// that a scan of a million persons reads no file. A record's texts are read
// once; every write of a text to the base moves its end (`ZoneFin`), and
// then all of them are read again. `contexte` names what else they depend
// on (the display of names).
class TextesPlies {
  public:
    void Verifie(Base& b, const std::string& contexte) {
        const Empreinte e{&b,
                          b.Chemins().base,
                          contexte,
                          b.ZoneFin(),
                          b.Tete().maxPersonne,
                          b.Tete().maxEvenement,
                          b.Tete().nbPersonnes,
                          b.Tete().nbEvenements};
        if (e == empreinte_) return;
        empreinte_ = e;
        arene_.clear();
        debut_.clear();
        longueur_.clear();
    }
    template <class Lit> std::string_view Texte(std::uint32_t n, Lit lit) {
        if (n < longueur_.size() && longueur_[n] != 0)
            return std::string_view(arene_).substr(debut_[n], longueur_[n] - 1);
        const std::string t = lit();
        if (n >= longueur_.size()) {
            debut_.resize(std::max<std::size_t>(n + 1, longueur_.size() * 2), 0);
            longueur_.resize(debut_.size(), 0);
        }
        // A text too long to keep is given as it is, and read again.
        if (t.size() >= 0xFFFF || arene_.size() + t.size() > 0xFFFFFFFFu) {
            horsCache_ = t;
            return horsCache_;
        }
        debut_[n] = static_cast<std::uint32_t>(arene_.size());
        longueur_[n] = static_cast<std::uint16_t>(t.size() + 1);
        arene_ += t;
        return std::string_view(arene_).substr(debut_[n], t.size());
    }

  private:
    struct Empreinte {
        const Base* base = nullptr;
        std::string chemin, contexte;
        std::uint32_t zoneFin = 0, maxPersonne = 0, maxEvenement = 0, nbPersonnes = 0,
                      nbEvenements = 0;
        bool operator==(const Empreinte&) const = default;
    };
    Empreinte empreinte_;
    std::string arene_, horsCache_;
    std::vector<std::uint32_t> debut_;
    std::vector<std::uint16_t> longueur_; // 0: not read yet; else length + 1
};

// The three folded forms of a person's name, joined by \x01: the display
// name, the family name, the first names.
TextesPlies& NomsPlies() {
    static TextesPlies t;
    return t;
}
// An event's folded tag and place, joined by \x01.
TextesPlies& EvtsPlies() {
    static TextesPlies t;
    return t;
}

// A display of names made of identity fields only; parents' names and
// rubrics change without a text written, and are read each time.
bool AffichageIdentite(const Parametres& p, std::string& contexte) {
    for (const std::string& tag : p.affichageNom) {
        if (tag != "FNAM" && tag != "BIRN" && tag != "OFNM") return false;
        contexte += tag + ' ';
    }
    return true;
}

std::string_view Partie(std::string_view t, int i) {
    for (; i > 0; --i) {
        const auto p = t.find('\x01');
        if (p == std::string_view::npos) return {};
        t.remove_prefix(p + 1);
    }
    return t.substr(0, t.find('\x01'));
}

bool Contient(std::string_view dans, const std::string& quoi) {
    return quoi.empty() || dans.find(quoi) != std::string_view::npos;
}

bool Commence(const std::string& texte, const std::string& debut) {
    return texte.compare(0, debut.size(), debut) == 0;
}

// Whether a birth (or marriage) year key lies in [debut, fin]; an empty
// year passes only when no bound is given.
bool DansAnnees(const std::string& cle, const std::string& debut, const std::string& fin) {
    return cle >= debut && cle <= fin;
}

} // namespace

// --- Name search --------------------------------------------------------------------

bool CriteresNom::Vides() const {
    for (const std::string* t : {&texte, &nom, &prenom, &anDebut, &anFin})
        if (!Trim(*t).empty()) return false;
    return sexe == ' ';
}

RechercheNom::RechercheNom(Base& b, const CriteresNom& c)
    : b_(b), texte_(CleMot(Trim(c.texte))), nom_(CleMot(Trim(c.nom))),
      prenom_(CleMot(Trim(c.prenom))), debut_(BorneAnnee(c.anDebut, false)),
      fin_(BorneAnnee(c.anFin, true)), sexe_(c.sexe) {
    total_ = b.Tete().nbPersonnes;
}

bool RechercheNom::Avance(std::size_t pas) {
    const bool annees = !debut_.empty() || fin_ != std::string(4, '\xFF');
    std::string contexte;
    const bool cache = AffichageIdentite(b_.Params(), contexte);
    TextesPlies& plies = NomsPlies();
    if (cache) plies.Verifie(b_, contexte);
    std::string lu;
    for (std::size_t k = 0; k < pas && fait_ < total_; ++k) {
        const std::uint32_t n = b_.TriFiche(++fait_);
        if (n == 0) continue;
        auto lit = [&] {
            return CleMot(b_.NomComplet(n)) + '\x01' + CleMot(b_.LitNom(n)) + '\x01' +
                   CleMot(b_.LitPrenom(n) + " " + b_.LitAutrePrenom(n));
        };
        std::string_view noms;
        if (cache) {
            noms = plies.Texte(n, lit);
        } else {
            lu = lit();
            noms = lu;
        }
        if (!Contient(Partie(noms, 0), texte_) || !Contient(Partie(noms, 1), nom_) ||
            !Contient(Partie(noms, 2), prenom_))
            continue;
        if (sexe_ != ' ') {
            const std::string s = b_.LitSexe(n);
            if (s.empty() || s[0] != sexe_) continue;
        }
        if (annees && (Trim(b_.LitAnNaiss(n)).empty() ||
                       !DansAnnees(b_.CleAnNaiss(n), debut_, fin_)))
            continue;
        trouves_.push_back(n);
    }
    return fait_ < total_;
}

std::vector<std::uint32_t> RechercheNom::Prend() { return std::exchange(trouves_, {}); }

// --- Keyword search ---------------------------------------------------------------------

bool CriteresMots::Vides() const {
    for (const auto& l : lignes)
        if (!Trim(l.texte).empty()) return false;
    return Trim(anDebut).empty() && Trim(anFin).empty() && !orphelines;
}

char SymboleRubrique(Base& b, const std::string& genre) {
    if (genre.size() == 1 && b.RubriqueDeSymbole(genre[0]) != 0) return genre[0];
    const std::string tag = CleMot(Conv_TagLibelle(genre));
    for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
        const std::string r = b.LitRubrique(k);
        if (r.size() < 2) continue;
        if (CleMot(r.substr(1)) == tag || CleMot(b.LibelleRubrique(k).substr(1)) == CleMot(genre))
            return r[0];
    }
    return ' ';
}

std::vector<std::uint32_t> PersonnesMotsCommencant(Base& b, char symbole, const std::string& mot) {
    std::vector<std::uint32_t> v;
    const std::uint32_t k = b.RubriqueDeSymbole(symbole);
    if (k == 0 || mot.empty()) return v;
    const std::string liste = b.ListeRubrique(k);
    const std::size_t nb = liste.size() / 4;
    // The first word at or after the text; the list is ordered by word.
    std::size_t bas = 0, haut = nb;
    while (bas < haut) {
        const std::size_t m = bas + (haut - bas) / 2;
        if (b.LitMot(Unpack4(liste, m * 4)) < mot) bas = m + 1;
        else haut = m;
    }
    const std::string limite = mot + '\xFF';
    for (std::size_t i = bas; i < nb; ++i) {
        const std::uint32_t e = Unpack4(liste, i * 4);
        const std::string w = b.LitMot(e);
        if (w > limite || !Commence(w, mot)) break;
        const std::string p = b.PersonnesMot(e);
        for (std::size_t o = 0; o + 4 <= p.size(); o += 4) v.push_back(Unpack4(p, o));
    }
    return v;
}

RechercheMots::RechercheMots(Base& b, const CriteresMots& c) : b_(b), c_(c) {
    for (auto& l : c_.lignes) l.texte = CleCritere(l.texte);
    debut_ = BorneAnnee(c.anDebut, false);
    fin_ = BorneAnnee(c.anFin, true);
    for (int i = 0; i < 4; ++i) {
        const auto& l = c_.lignes[i];
        if (l.texte.empty()) continue;
        if (l.marque != ' ' && b.RubriqueDeSymbole(l.marque) != 0) {
            indexLigne_ = i;
            parIndex_ = true;
            candidats_ = PersonnesMotsCommencant(b, l.marque, l.texte);
        }
        break;
    }
    if (!parIndex_) indexLigne_ = -1;
    total_ = parIndex_ ? candidats_.size() : b.Tete().nbPersonnes;
}

bool RechercheMots::Passe(std::uint32_t n) {
    if (n == 0) return false;
    if (!DansAnnees(b_.CleAnNaiss(n), debut_, fin_)) return false;
    if (c_.orphelines && (b_.LitPere(n) != 0 || b_.LitMere(n) != 0)) return false;
    std::string note;
    bool lue = false;
    for (int i = 0; i < 4; ++i) {
        const auto& l = c_.lignes[i];
        if (i == indexLigne_ || l.texte.empty()) continue;
        if (!lue) {
            note = CleMot(SansRtf(b_.NoteAvecMariages(n)));
            lue = true;
        }
        const std::string quoi = l.marque == ' ' ? l.texte : std::string(1, l.marque) + l.texte;
        if (note.find(quoi) == std::string::npos) return false;
    }
    return true;
}

namespace {

std::string AvecDate(const std::string& lieu, const std::string& jourMois, const std::string& an) {
    std::string d = Trim(Conv_DateLongue(jourMois) + " " + Trim(an));
    return Trim(d + (lieu.empty() ? "" : " " + lieu));
}

} // namespace

std::string RechercheMots::Detail(std::uint32_t n) {
    // The row that found the person: the index row, else the first filled.
    const LigneCritereMot* l = nullptr;
    if (indexLigne_ >= 0) l = &c_.lignes[indexLigne_];
    else
        for (const auto& x : c_.lignes)
            if (!x.texte.empty() && x.marque != ' ') { l = &x; break; }
    if (l == nullptr) return "";
    switch (l->marque) {
    case kMarqueNom:
    case kMarquePrenom: return "";
    case kMarqueNaissance: return AvecDate(b_.LieuNaiss(n), b_.LitDateNaiss(n), b_.LitAnNaiss(n));
    case kMarqueDeces: return AvecDate(b_.LieuDeces(n), b_.LitDateDeces(n), b_.LitAnDeces(n));
    case kMarqueMariage:
        for (std::uint32_t m : b_.Mariages(n))
            if (Commence(CleCritere(b_.LieuMariage(m)), l->texte))
                return AvecDate(b_.LieuMariage(m), b_.DateMariage(m), b_.LitAnMariage(m));
        return "";
    default: break;
    }
    // A rubric: the line that holds the match, without its tag.
    const std::string note = SansRtf(b_.NoteAvecMariages(n));
    const std::string pli = CleMot(note);
    const auto p = pli.find(std::string(1, l->marque) + l->texte);
    if (p == std::string::npos) return "";
    const auto debut = note.rfind('\n', p);
    std::string ligne = note.substr(debut == std::string::npos ? 0 : debut + 1);
    ligne = ligne.substr(0, ligne.find_first_of("\r\n"));
    const auto blanc = ligne.find(' ');
    if (blanc != std::string::npos && ligne[0] != l->marque) ligne = ligne.substr(blanc + 1);
    std::string r;
    for (char ch : ligne)
        if (ch != l->marque) r += ch;
    return DesPoints(Trim(r));
}

bool RechercheMots::Avance(std::size_t pas) {
    for (std::size_t k = 0; k < pas && fait_ < total_; ++k) {
        const std::uint32_t n = parIndex_ ? candidats_[fait_] : b_.TriFiche(fait_ + 1);
        ++fait_;
        if (!Passe(n)) continue;
        // Listed once for each keyword, but two neighbours count as one.
        if (n == precedent_) continue;
        precedent_ = n;
        LigneMot l;
        l.personne = n;
        l.cle = CleMot(b_.SansParticule(b_.LitNom(n)));
        l.detail = Detail(n);
        l.nom = b_.NomComplet(n);
        l.parents = CodeParents(b_, n);
        l.sansMariage = b_.MariageNo(n, 1) == 0 ? "X" : "";
        l.sansEnfant = b_.EnfantNo(n, 1) == 0 ? "X" : "";
        l.annee = b_.CleAnNaiss(n);
        trouves_.push_back(std::move(l));
    }
    return fait_ < total_;
}

std::vector<LigneMot> RechercheMots::Prend() { return std::exchange(trouves_, {}); }

// --- Couple search ------------------------------------------------------------------------

bool CriteresCouple::Vides() const {
    for (const std::string* t : {&epoux, &prEpoux, &epouse, &prEpouse, &lieu, &anDebut, &anFin})
        if (!Trim(*t).empty()) return false;
    return true;
}

RechercheCouple::RechercheCouple(Base& b, const CriteresCouple& c) : b_(b), c_(c) {
    for (std::string* t : {&c_.epoux, &c_.prEpoux, &c_.epouse, &c_.prEpouse, &c_.lieu})
        *t = CleCritere(*t);
    c_.anDebut = Trim(c.anDebut);
    c_.anFin = Trim(c.anFin);
    std::vector<std::uint32_t> personnes;
    if (!c_.epoux.empty() || !c_.epouse.empty()) {
        if (b.RubriqueDeSymbole(kMarqueNom) != 0) {
            parIndex_ = true;
            personnes = PersonnesMotsCommencant(b, kMarqueNom,
                                                c_.epoux.empty() ? c_.epouse : c_.epoux);
        }
    } else if (!c_.lieu.empty() && b.RubriqueDeSymbole(kMarqueMariage) != 0) {
        parIndex_ = true;
        personnes = PersonnesMotsCommencant(b, kMarqueMariage, c_.lieu);
    }
    if (parIndex_) {
        std::set<std::uint32_t> mariages;
        for (std::uint32_t n : personnes)
            for (std::uint32_t m : b.Mariages(n)) mariages.insert(m);
        candidats_.assign(mariages.begin(), mariages.end());
        total_ = candidats_.size();
    } else {
        total_ = b.Tete().maxMariage;
    }
}

bool RechercheCouple::Passe(std::uint32_t m) {
    const std::uint32_t mari = b_.LitMari(m);
    if (mari == 0) return false;
    if (!c_.anDebut.empty() || !c_.anFin.empty()) {
        if (Trim(b_.LitAnMariage(m)).empty()) return false;
        const std::string an = b_.CleAnMariage(m);
        if (!c_.anDebut.empty() && an < CleAnnee(c_.anDebut)) return false;
        if (!c_.anFin.empty() && an > CleAnnee(c_.anFin)) return false;
    }
    const std::uint32_t femme = b_.LitFemme(m);
    auto nom = [&](std::uint32_t p) { return CleMot(b_.SansParticule(b_.LitNom(p))); };
    auto prenom = [&](std::uint32_t p) { return CleCritere(b_.LitPrenom(p)); };
    if (!c_.epoux.empty() && !Commence(nom(mari), c_.epoux)) return false;
    if (!c_.prEpoux.empty() && !Commence(prenom(mari), c_.prEpoux)) return false;
    if (!c_.epouse.empty() && (femme == 0 || !Commence(nom(femme), c_.epouse))) return false;
    if (!c_.prEpouse.empty() && (femme == 0 || !Commence(prenom(femme), c_.prEpouse)))
        return false;
    if (!c_.lieu.empty() && !Commence(CleCritere(b_.LieuMariage(m)), c_.lieu)) return false;
    return true;
}

bool RechercheCouple::Avance(std::size_t pas) {
    for (std::size_t k = 0; k < pas && fait_ < total_; ++k) {
        const std::uint32_t m = parIndex_ ? candidats_[fait_] : static_cast<std::uint32_t>(fait_ + 1);
        ++fait_;
        if (!Passe(m)) continue;
        LigneCouple l;
        l.mariage = m;
        l.mari = b_.LitMari(m);
        l.femme = b_.LitFemme(m);
        l.nomMari = b_.NomComplet(l.mari);
        l.nomFemme = b_.NomComplet(l.femme);
        l.date = Trim(b_.TexteDateMariage(m) + " " + Trim(b_.LitAnMariage(m)));
        l.lieu = b_.LieuMariage(m);
        l.parents = CodeParents(b_, l.mari);
        for (int i = 1; i <= 200; ++i) {
            const std::uint32_t e = b_.EnfantNo(l.mari, i);
            if (e == 0) break;
            if (l.femme != 0 && b_.LitMere(e) == l.femme) ++l.enfants;
        }
        trouves_.push_back(std::move(l));
    }
    return fait_ < total_;
}

std::vector<LigneCouple> RechercheCouple::Prend() { return std::exchange(trouves_, {}); }

// --- Event search ----------------------------------------------------------------------------

bool CriteresEvt::Vides() const {
    for (const std::string* t : {&type, &lieu, &anDebut, &anFin})
        if (!Trim(*t).empty()) return false;
    return true;
}

namespace {

bool EstAnnee(const std::string& t) {
    std::string s = Trim(t);
    if (!s.empty() && s[0] == '-') s.erase(0, 1);
    if (s.empty() || s.size() > 4) return false;
    return std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Day number of a day of a year given as text; years before the era too.
long JourDe(int jour, int mois, const std::string& an) {
    return JourSerie(DateCivile{jour, mois, EstAnnee(an) ? std::atoi(Trim(an).c_str()) : 0});
}

} // namespace

int CriteresEvt::Refus() const {
    if (Vides()) return msg_recherche::CriteresVides;
    if (!Trim(anDebut).empty() && !EstAnnee(anDebut)) return msg_recherche::AnneeNonNumerique;
    if (!Trim(anFin).empty() && !EstAnnee(anFin)) return msg_recherche::AnneeNonNumerique;
    return 0;
}

long JourAujourdhui() {
    const std::time_t t = std::time(nullptr);
    std::tm tm{};
    localtime_r(&t, &tm);
    return JourSerie(DateCivile{tm.tm_mday, tm.tm_mon + 1, tm.tm_year + 1900});
}

RechercheEvt::RechercheEvt(Base& b, const CriteresEvt& c, long aujourdhui)
    : b_(b), type_(CleMot(Trim(c.type))), lieu_(CleMot(Trim(c.lieu))) {
    avecDebut_ = !Trim(c.anDebut).empty();
    avecFin_ = !Trim(c.anFin).empty() || avecDebut_;
    if (avecDebut_) debut_ = JourDe(1, 1, c.anDebut);
    fin_ = Trim(c.anFin).empty() ? aujourdhui : JourDe(31, 12, c.anFin);
    // A label typed in the type combo stands for its tag.
    if (!type_.empty()) {
        const std::string tag = CleMot(Conv_TagLibelle(Trim(c.type)));
        if (!tag.empty()) type_ = tag;
    }
    total_ = b.Tete().nbEvenements;
    // The table is in date order: the scan starts at the first event of
    // the span and ends behind it.
    if (avecDebut_) {
        std::size_t bas = 1, haut = total_ + 1;
        while (bas < haut) {
            const std::size_t m = bas + (haut - bas) / 2;
            if (b.DateEvt(b.TriEvt(m)) < debut_) bas = m + 1;
            else haut = m;
        }
        // An out-of-order table is walked whole.
        if (bas > 1 && b.DateEvt(b.TriEvt(bas - 1)) >= debut_) bas = 1;
        place_ = bas;
        fait_ = bas - 1;
    }
}

bool RechercheEvt::Avance(std::size_t pas) {
    TextesPlies& plies = EvtsPlies();
    const bool textes = !type_.empty() || !lieu_.empty();
    if (textes) plies.Verifie(b_, {});
    for (std::size_t k = 0; k < pas && place_ <= total_; ++k, ++place_, ++fait_) {
        const std::uint32_t e = b_.TriEvt(place_);
        if (e == 0) continue;
        if (avecDebut_ || avecFin_) {
            const long jour = b_.DateEvt(e);
            // In date order, the first event past the span ends the scan.
            if (avecFin_ && jour > fin_) {
                fait_ += total_ + 1 - place_;
                place_ = total_ + 1;
                break;
            }
            if (avecDebut_ && (jour == 0 || jour < debut_)) continue;
        }
        if (textes) {
            const std::string_view t = plies.Texte(
                e, [&] { return CleMot(Trim(b_.TagEvt(e))) + '\x01' + CleMot(Trim(b_.LieuEvt(e))); });
            if (!type_.empty() && Partie(t, 0) != type_) continue;
            if (!lieu_.empty() && Partie(t, 1) != lieu_) continue;
        }
        trouves_.push_back(LigneEvenement(b_, e));
    }
    return place_ <= total_;
}

std::vector<LigneEvt> RechercheEvt::Prend() { return std::exchange(trouves_, {}); }

LigneEvt LigneEvenement(Base& b, std::uint32_t e) {
    LigneEvt l;
    l.evt = e;
    l.jour = b.DateEvt(e);
    if (l.jour != 0) {
        const DateCivile d = DepuisJourSerie(l.jour);
        l.date = std::to_string(d.jour) + "/" + std::to_string(d.mois) + "/" +
                 std::to_string(d.annee);
    }
    l.tag = b.TagEvt(e);
    l.lieu = b.LieuEvt(e);
    l.description = b.TitreEvt(e);
    return l;
}

std::uint32_t PersonneEvt(Base& b, std::uint32_t e) {
    const GenreEvt* genre = b.Temoins().Genre(b.TagEvt(e));
    for (int i = 1; i <= 200 && genre; ++i) {
        const std::uint32_t p = b.PersonneEvtNo(e, i);
        if (p == 0) break;
        const std::string sexe = b.LitSexe(p);
        const auto principaux = genre->RolesPrincipaux(sexe.empty() ? ' ' : sexe[0]);
        for (int k = 1; k <= 200; ++k) {
            const std::uint32_t x = b.EvtNo(p, k);
            if (x == 0) break;
            if (x == e && std::find(principaux.begin(), principaux.end(), b.RoleEvtNo(p, k)) !=
                              principaux.end())
                return p;
        }
    }
    return b.PersonneEvtNo(e, 1);
}

std::vector<std::string> ValeursEvt(Base& b, bool lieux) {
    std::set<std::string> vus;
    for (std::size_t i = 1; i <= b.Tete().nbEvenements; ++i) {
        const std::uint32_t e = b.TriEvt(i);
        if (e == 0) break;
        std::string v = CleMot(Trim(lieux ? b.LieuEvt(e) : b.TagEvt(e)));
        if (!v.empty()) vus.insert(std::move(v));
    }
    return {vus.begin(), vus.end()};
}

// --- Hand-offs ---------------------------------------------------------------------------------

void MarqueExport(Base& b, const std::vector<std::uint32_t>& personnes, Selection& sel) {
    for (std::uint32_t n : personnes) {
        if (n == 0) continue;
        sel.Inclut(n);
        for (int i = 1; i <= 200; ++i) {
            const std::uint32_t m = b.MariageNo(n, i);
            if (m == 0) break;
            const std::uint32_t conjoint = b.LitMari(m) == n ? b.LitFemme(m) : b.LitMari(m);
            if (conjoint) sel.Inclut(conjoint);
        }
    }
    for (std::uint32_t n : personnes) {
        if (n == 0) continue;
        for (int i = 1; i <= 200; ++i) {
            const std::uint32_t e = b.EnfantNo(n, i);
            if (e == 0) break;
            sel.Apparente(e);
        }
        for (int i = 1; i <= 200; ++i) {
            const std::uint32_t l = b.LienNo(n, i);
            if (l == 0) break;
            sel.Apparente(l);
        }
    }
}

std::string ListePaquet(std::vector<std::uint32_t> personnes) {
    std::sort(personnes.begin(), personnes.end());
    personnes.erase(std::unique(personnes.begin(), personnes.end()), personnes.end());
    std::string s;
    for (std::uint32_t n : personnes)
        if (n) s += Pack4(n);
    return s;
}

} // namespace sylvane
