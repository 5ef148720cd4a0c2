// Keyword kinds, sheet rubric rows and the bulk replacement of a keyword.
#include "store/remplacement.h"

#include "store/pack.h"
#include "text/mots.h"
#include "text/rtf.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace sylvane {
namespace {

const std::string kFixes = "|\xB6$~@";

std::vector<std::uint32_t> Nombres(const std::string& l) {
    std::vector<std::uint32_t> v(l.size() / 4);
    for (std::size_t i = 0; i < v.size(); ++i) v[i] = Unpack4(l, i * 4);
    return v;
}

std::string Octets(const std::vector<std::uint32_t>& v) {
    std::string s;
    s.reserve(v.size() * 4);
    for (auto n : v) s += Pack4(n);
    return s;
}

// The work of `f` as one commit: what was pending is committed first, and
// a failure gives the base up so that the file stays at that commit.
template <class F>
void EnUnCommit(Base& b, F&& f) {
    b.ValideBase();
    try {
        f();
        b.ValideBase();
    } catch (...) {
        b.Abandonne();
        throw;
    }
}

// The end of the rich text group that opens at `debut` ("{\rtf1"), braces
// counted, an escaped brace passed over.
std::size_t FinGroupe(const std::string& t, std::size_t debut) {
    int niveau = 0;
    for (std::size_t i = debut; i < t.size(); ++i) {
        if (t[i] == '\\') {
            ++i;
        } else if (t[i] == '{') {
            ++niveau;
        } else if (t[i] == '}' && --niveau == 0) {
            return i + 1;
        }
    }
    return t.size();
}

bool FinMot(const std::string& t, std::size_t i) {
    return i >= t.size() || t[i] == ' ' || t[i] == '\r' || t[i] == '\n';
}

// Keyword changes of many persons gathered per rubric and word, then
// written once per word: removals first, then additions by birth key,
// ties after the persons already there and in order of arrival.
class ChangementsIndex {
  public:
    explicit ChangementsIndex(Base& b) : b_(b) {
        for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
            if (b.PosListeRubrique(k) == 0) continue;
            const std::string r = b.LitRubrique(k);
            if (!r.empty()) rubriques_.emplace_back(k, r[0]);
        }
    }

    // Person n's text went from `ancien` to `nouveau` (both with rich text).
    void Note(std::uint32_t n, const std::string& ancien, const std::string& nouveau) {
        const std::string a = SansRtf(ancien), c = SansRtf(nouveau);
        for (const auto& [k, symbole] : rubriques_) {
            std::vector<std::string> vieux = Base::MotsNote(a, symbole);
            std::vector<std::string> neufs = Base::MotsNote(c, symbole);
            std::vector<bool> pris(neufs.size(), false);
            for (const auto& v : vieux) {
                bool apparie = false;
                for (std::size_t j = 0; j < neufs.size() && !apparie; ++j)
                    if (!pris[j] && neufs[j] == v) pris[j] = apparie = true;
                if (!apparie) mots_[k][v].retraits.push_back(n);
            }
            for (std::size_t j = 0; j < neufs.size(); ++j)
                if (!pris[j]) mots_[k][neufs[j]].ajouts.push_back(n);
        }
    }

    void Ecrit() {
        for (auto& [k, mots] : mots_) {
            const std::string avant = b_.ListeRubrique(k);
            std::string liste = avant;
            for (auto& [mot, ch] : mots) EcritMot(liste, mot, ch);
            if (liste == avant) continue;
            const std::uint32_t pos =
                b_.Ajouter(Pack4(static_cast<std::uint32_t>(liste.size() / 4)) + liste);
            const std::string r = b_.LitRubrique(k);
            b_.EcritRubrique(k, r[0], r.substr(1), pos);
        }
    }

  private:
    struct Changement {
        std::vector<std::uint32_t> retraits, ajouts;
    };

    void EcritMot(std::string& liste, const std::string& mot, Changement& ch) {
        std::size_t rang = 0;
        const std::uint32_t e = Cherche(liste, mot, rang);
        std::vector<std::uint32_t> l = e ? Nombres(b_.PersonnesMot(e)) : std::vector<std::uint32_t>{};
        const std::vector<std::uint32_t> avant = l;
        if (!ch.retraits.empty()) {
            // Each removal takes one occurrence; a person not found is passed.
            std::unordered_map<std::uint32_t, std::size_t> compte;
            for (auto n : ch.retraits) ++compte[n];
            std::vector<std::uint32_t> reste;
            reste.reserve(l.size());
            for (auto n : l) {
                auto it = compte.find(n);
                if (it != compte.end() && it->second > 0)
                    --it->second;
                else
                    reste.push_back(n);
            }
            l.swap(reste);
        }
        if (!ch.ajouts.empty()) {
            std::vector<std::pair<std::string, std::uint32_t>> neufs;
            neufs.reserve(ch.ajouts.size());
            for (auto n : ch.ajouts) neufs.emplace_back(b_.CleAnNaiss(n), n);
            std::stable_sort(neufs.begin(), neufs.end(),
                             [](const auto& x, const auto& y) { return x.first < y.first; });
            std::vector<std::uint32_t> fusion;
            fusion.reserve(l.size() + neufs.size());
            std::size_t i = 0, j = 0;
            while (i < l.size() || j < neufs.size()) {
                if (j >= neufs.size() || (i < l.size() && !(b_.CleAnNaiss(l[i]) > neufs[j].first)))
                    fusion.push_back(l[i++]);
                else
                    fusion.push_back(neufs[j++].second);
            }
            l.swap(fusion);
        }
        if (l == avant) return;
        if (l.empty()) {
            // The keyword leaves its rubric; its number stays unused.
            liste.erase(rang * 4, 4);
            b_.EcritEntreeMot(e, std::string(12, '\0'));
            return;
        }
        const std::string personnes = Octets(l);
        if (e) {
            const std::string entree = b_.EntreeMot(e);
            b_.EcritEntreeMot(e, entree.substr(0, 4) + Pack4(static_cast<std::uint32_t>(l.size())) +
                                     Pack4(b_.Ajouter(personnes)));
            return;
        }
        const std::uint32_t k = ++b_.TeteModifiable().nbMots;
        const std::uint32_t posMot = b_.AjouteTexte(mot, true);
        const std::uint32_t posListe = b_.Ajouter(personnes);
        b_.EcritEntreeMot(k, Pack4(posMot) + Pack4(static_cast<std::uint32_t>(l.size())) +
                                 Pack4(posListe));
        liste.insert(rang * 4, Pack4(k));
    }

    // Binary search of a rubric list by word; `rang` is the word's place.
    std::uint32_t Cherche(const std::string& liste, const std::string& mot, std::size_t& rang) {
        std::size_t bas = 0, haut = liste.size() / 4;
        while (bas < haut) {
            const std::size_t m = bas + (haut - bas) / 2;
            const std::uint32_t e = Unpack4(liste, m * 4);
            const int c = mot.compare(b_.LitMot(e));
            if (c == 0) {
                rang = m;
                return e;
            }
            if (c < 0)
                haut = m;
            else
                bas = m + 1;
        }
        rang = bas;
        return 0;
    }

    Base& b_;
    std::vector<std::pair<std::uint32_t, char>> rubriques_;
    std::map<std::uint32_t, std::map<std::string, Changement>> mots_;
};

// The person and marriage blocks about to be written in place get their
// copies in the journal at once: one sync for all of them, instead of one
// for each block the caches give back on the way.
void JournaliseBlocs(Base& b, const std::vector<std::uint32_t>& personnes,
                     const std::vector<std::uint32_t>& mariages) {
    auto copie = [&b](Table t, const std::vector<std::uint32_t>& numeros, std::uint32_t taille) {
        std::uint32_t precedent = 0;
        for (auto n : numeros) {
            const std::uint32_t bloc = (n - 1) / 100 + 1;
            if (n == 0 || bloc == precedent) continue;
            precedent = bloc;
            if (const std::uint32_t pos = b.PositionBloc(t, bloc)) b.SauveAvant(pos, taille);
        }
    };
    copie(Table::Personnes, personnes, 6000);
    copie(Table::Mariages, mariages, 3000);
}

// Every note of the base (persons in sort order, then marriages) passed
// through `f`, which answers whether it changed the text.
template <class F>
void PourChaqueNote(Base& b, F&& f) {
    const std::size_t nb = b.TablePersonnes().taille();
    for (std::size_t i = 1; i <= nb; ++i) {
        const std::uint32_t n = b.TriFiche(i);
        std::string t = b.LitNote(n);
        if (f(t)) b.EcritNote(n, t);
    }
    for (std::uint32_t m = 1; m <= b.Tete().maxMariage; ++m) {
        std::string t = b.LitNoteMariage(m);
        if (f(t)) b.EcritNoteMariage(m, t);
    }
}

// Every occurrence of a mark outside rich text groups becomes another.
bool ChangeMarque(std::string& t, char ancienne, char nouvelle) {
    bool change = false;
    for (std::size_t i = 0; i < t.size();) {
        if (t.compare(i, 6, "{\\rtf1") == 0) {
            i = FinGroupe(t, i);
        } else {
            if (t[i] == ancienne) t[i] = nouvelle, change = true;
            ++i;
        }
    }
    return change;
}

int MarqueEmployee(Base& b, char marque, std::uint32_t sauf) {
    for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
        const std::string r = b.LitRubrique(k);
        if (k != sauf && !r.empty() && CleCar(r[0]) == CleCar(marque)) return msg_mots::RepereUtilise;
    }
    return 0;
}

bool SlotDe(const std::array<SlotRubrique, 10>& slots, char marque) {
    for (const auto& s : slots) {
        if (s.symbole == ' ' || s.symbole == '\0') break;
        if (s.symbole == marque) return true;
    }
    return false;
}

} // namespace

bool MarqueFixe(char marque) { return kFixes.find(marque) != std::string::npos; }

char MarqueSaisie(const std::string& texte) {
    const std::string t = Trim(texte);
    if (t.size() != 1) return 0;
    const char c = CleCar(t[0]);
    static const std::string permis = "-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    return permis.find(c) == std::string::npos ? 0 : c;
}

std::vector<GenreMot> GenresMots(Base& b) {
    std::vector<GenreMot> v;
    for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
        const std::string r = b.LitRubrique(k);
        GenreMot g;
        if (!r.empty()) {
            g.marque = r[0];
            g.tag = r.substr(1);
            g.libelle = b.LibelleRubrique(k).substr(1);
            g.indexe = b.PosListeRubrique(k) != 0;
        }
        v.push_back(std::move(g));
    }
    return v;
}

int AjouteGenre(Base& b, const std::string& marque, const std::string& libelle, bool indexe) {
    const char m = MarqueSaisie(marque);
    if (m == 0) return msg_mots::RepereRefuse;
    if (Trim(libelle).empty()) return msg_mots::LibelleVide;
    if (int r = MarqueEmployee(b, m, 0)) return r;
    if (b.Tete().nbRubriques >= 50) return msg_mots::TropDeGenres;
    EnUnCommit(b, [&] {
        const std::uint32_t k = ++b.TeteModifiable().nbRubriques;
        b.EcritRubrique(k, m, Trim(libelle), 0);
        if (indexe) b.RefaitRubrique(m);
    });
    return 0;
}

int ModifieGenre(Base& b, std::uint32_t k, const std::string& marque, const std::string& libelle,
                 bool indexe) {
    if (k == 0 || k > b.Tete().nbRubriques) return 0;
    const std::string t = Trim(marque);
    if (t.size() != 1 || t[0] == '#') return msg_mots::RepereRefuse;
    if (Trim(libelle).empty()) return msg_mots::LibelleVide;
    const std::string r = b.LitRubrique(k);
    const char ancienne = r.empty() ? ' ' : r[0];
    const char nouvelle = t[0];
    if (nouvelle != ancienne) {
        if (MarqueFixe(ancienne)) return msg_mots::RepereFixe;
        if (int e = MarqueEmployee(b, nouvelle, k)) return e;
    }
    const bool etait = b.PosListeRubrique(k) != 0;
    EnUnCommit(b, [&] {
        if (nouvelle != ancienne) {
            // The mark stands in the notes: they all follow.
            PourChaqueNote(b, [&](std::string& s) { return ChangeMarque(s, ancienne, nouvelle); });
            auto& e = b.TeteModifiable();
            for (auto* slots : {&e.rubriquesPersonne, &e.rubriquesMariage})
                for (auto& s : *slots)
                    if (s.symbole == ancienne) s.symbole = nouvelle;
        }
        const std::uint32_t pos = indexe && etait ? b.PosListeRubrique(k) : 0;
        b.EcritRubrique(k, nouvelle, Trim(libelle), pos);
        if (indexe && !etait) b.RefaitRubrique(nouvelle);
        auto& e = b.TeteModifiable();
        for (auto* slots : {&e.rubriquesPersonne, &e.rubriquesMariage})
            for (auto& s : *slots)
                if (s.symbole == nouvelle) s.tag = b.LitRubrique(k).substr(1);
    });
    return 0;
}

int SupprimeGenre(Base& b, std::uint32_t k) {
    const std::uint32_t nb = b.Tete().nbRubriques;
    if (k == 0 || k > nb) return 0;
    const std::string r = b.LitRubrique(k);
    const char marque = r.empty() ? ' ' : r[0];
    if (MarqueFixe(marque)) return msg_mots::RepereFixe;
    if (SlotDe(b.Tete().rubriquesPersonne, marque) || SlotDe(b.Tete().rubriquesMariage, marque))
        return msg_mots::GenreEmploye;
    if (k != nb) {
        const std::string dernier = b.LitRubrique(nb);
        const std::uint32_t pos = b.PosListeRubrique(nb);
        b.EcritRubrique(k, dernier.empty() ? ' ' : dernier[0],
                        dernier.empty() ? "" : dernier.substr(1), pos);
    }
    b.TableRubriques()[nb - 1] = 0;
    b.TeteModifiable().nbRubriques = nb - 1;
    b.LitRubrique(1); // the one-entry cache may hold the place just emptied
    return 0;
}

void EchangeGenres(Base& b, std::uint32_t i, std::uint32_t j) {
    const std::uint32_t nb = b.Tete().nbRubriques;
    if (i == j || i == 0 || j == 0 || i > nb || j > nb) return;
    const std::string ri = b.LitRubrique(i);
    const std::uint32_t pi = b.PosListeRubrique(i);
    const std::string rj = b.LitRubrique(j);
    const std::uint32_t pj = b.PosListeRubrique(j);
    if (ri.empty() || rj.empty()) return;
    b.EcritRubrique(i, rj[0], rj.substr(1), pj);
    b.EcritRubrique(j, ri[0], ri.substr(1), pi);
}

std::vector<SlotRubrique> RangsRubriques(const Base& b, bool mariage) {
    std::vector<SlotRubrique> v;
    for (const auto& s : mariage ? b.Tete().rubriquesMariage : b.Tete().rubriquesPersonne) {
        if (s.symbole == ' ' || s.symbole == '\0') break;
        v.push_back(s);
    }
    return v;
}

int EcritRangsRubriques(Base& b, const std::vector<SlotRubrique>& personnes,
                        const std::vector<SlotRubrique>& mariages) {
    if (personnes.size() > 10 || mariages.size() > 10) return msg_mots::TropDeRubriques;
    std::array<SlotRubrique, 10> p{}, m{};
    auto remplit = [&b](const std::vector<SlotRubrique>& de, std::array<SlotRubrique, 10>& vers) {
        for (std::size_t i = 0; i < de.size(); ++i) {
            const std::uint32_t k = b.RubriqueDeSymbole(de[i].symbole);
            if (k == 0) return false;
            vers[i] = {de[i].symbole, de[i].drapeau == '1' ? '1' : ' ', b.LitRubrique(k).substr(1)};
        }
        return true;
    };
    if (!remplit(personnes, p) || !remplit(mariages, m)) return msg_mots::RepereRefuse;
    auto& e = b.TeteModifiable();
    e.rubriquesPersonne = p;
    e.rubriquesMariage = m;
    return 0;
}

// --- Replacement ----------------------------------------------------------------------------

std::string CleMotSaisi(const std::string& texte) {
    return TrimDroite(CleMot(VersPoints(texte)));
}

std::uint32_t EntreeDuMot(Base& b, std::uint32_t k, const std::string& cle) {
    const std::string liste = b.ListeRubrique(k);
    std::size_t bas = 0, haut = liste.size() / 4;
    while (bas < haut) {
        const std::size_t m = bas + (haut - bas) / 2;
        const std::uint32_t e = Unpack4(liste, m * 4);
        const int c = cle.compare(b.LitMot(e));
        if (c == 0) return e;
        if (c < 0)
            haut = m;
        else
            bas = m + 1;
    }
    return 0;
}

std::size_t RemplaceDansTexte(std::string& texte, const std::string& marques,
                              const std::string& cle, const std::string& nouveau) {
    if (cle.empty()) return 0;
    std::size_t compte = 0;
    for (std::size_t i = 0; i < texte.size();) {
        if (texte.compare(i, 6, "{\\rtf1") == 0) {
            i = FinGroupe(texte, i);
            continue;
        }
        if (marques.find(texte[i]) != std::string::npos && i + 1 + cle.size() <= texte.size() &&
            FinMot(texte, i + 1 + cle.size()) &&
            CleMot(std::string_view(texte).substr(i + 1, cle.size())) == cle) {
            texte.replace(i + 1, cle.size(), nouveau);
            i += 1 + nouveau.size();
            ++compte;
            continue;
        }
        ++i;
    }
    return compte;
}

BilanRemplacement RemplaceMot(Base& b, const DemandeRemplacement& d,
                              const std::function<bool(std::size_t, std::size_t)>& progres) {
    BilanRemplacement bilan;
    const std::string cle = CleMotSaisi(d.ancien);
    if (cle.empty()) return bilan;
    const std::string nouveau = VersPoints(d.nouveau);
    if (nouveau.empty() || nouveau.find_first_of(std::string("#\r\n\0", 4)) != std::string::npos) {
        bilan.refus = msg_mots::MotNouveauRefuse;
        return bilan;
    }
    std::string marques;
    std::vector<std::uint32_t> candidats;
    if (d.tous) {
        for (const auto& g : GenresMots(b))
            if (g.marque != ' ') marques += g.marque;
        const std::size_t nb = b.TablePersonnes().taille();
        candidats.reserve(nb);
        for (std::size_t i = 1; i <= nb; ++i) candidats.push_back(b.TriFiche(i));
    } else {
        const std::uint32_t k = b.RubriqueDeSymbole(d.marque);
        if (k == 0 || b.PosListeRubrique(k) == 0) {
            bilan.refus = msg_mots::DoitEtreIndexe;
            return bilan;
        }
        marques.assign(1, d.marque);
        if (const std::uint32_t e = EntreeDuMot(b, k, cle)) candidats = Nombres(b.PersonnesMot(e));
    }
    std::sort(candidats.begin(), candidats.end());
    candidats.erase(std::unique(candidats.begin(), candidats.end()), candidats.end());

    // 1. Read only: the new texts of the persons and marriages that hold the
    //    word, and every person whose indexed text changes with them.
    std::map<std::uint32_t, std::string> notes, notesMariages;
    std::vector<std::uint32_t> touches;
    for (std::size_t i = 0; i < candidats.size(); ++i) {
        if (progres && i % 1024 == 0 && progres(i, candidats.size())) {
            bilan.arrete = true;
            return bilan;
        }
        const std::uint32_t n = candidats[i];
        std::string t = b.LitNote(n);
        bool change = false;
        if (std::size_t c = RemplaceDansTexte(t, marques, cle, nouveau)) {
            bilan.occurrences += c;
            notes.emplace(n, std::move(t));
            change = true;
        }
        for (std::uint32_t m : b.Mariages(n)) {
            if (notesMariages.count(m)) continue;
            std::string tm = b.LitNoteMariage(m);
            if (std::size_t c = RemplaceDansTexte(tm, marques, cle, nouveau)) {
                bilan.occurrences += c;
                notesMariages.emplace(m, std::move(tm));
                for (std::uint32_t conjoint : {b.LitMari(m), b.LitFemme(m)})
                    if (conjoint) touches.push_back(conjoint);
            }
        }
        if (change) touches.push_back(n);
    }
    std::sort(touches.begin(), touches.end());
    touches.erase(std::unique(touches.begin(), touches.end()), touches.end());
    bilan.personnes = notes.size();
    bilan.mariages = notesMariages.size();
    if (touches.empty()) return bilan;

    // 2. The writes, in one commit.
    EnUnCommit(b, [&] {
        std::vector<std::uint32_t> mariages;
        for (const auto& nm : notesMariages) mariages.push_back(nm.first);
        JournaliseBlocs(b, touches, mariages);
        std::vector<std::string> anciens;
        anciens.reserve(touches.size());
        for (auto n : touches) anciens.push_back(b.NoteAvecMariages(n));
        for (auto& [n, t] : notes) b.EcritNote(n, t);
        for (auto& [m, t] : notesMariages) b.EcritNoteMariage(m, t);
        ChangementsIndex index(b);
        for (std::size_t i = 0; i < touches.size(); ++i)
            index.Note(touches[i], anciens[i], b.NoteAvecMariages(touches[i]));
        index.Ecrit();
        b.redessiner = true;
    });
    return bilan;
}

} // namespace sylvane
