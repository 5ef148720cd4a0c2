// The keyword index: for each rubric a list of keyword entries sorted by
// word, and for each entry the persons whose note holds the word, ordered
// by birth key with ties in order of arrival. Updated word by word when a
// note changes, rebuilt for one rubric, or merged from a batch.
#include "store/base.h"

#include "store/pack.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/rtf.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace sylvane {
namespace {

constexpr std::uint32_t kParBloc = 400;

struct Entree {
    std::uint32_t mot = 0, compte = 0, liste = 0;
};

Entree Decode(const std::string& e) {
    return {Unpack4(e, 0), Unpack4(e, 4), Unpack4(e, 8)};
}

std::string Code(const Entree& e) {
    return Pack4(e.mot) + Pack4(e.compte) + Pack4(e.liste);
}

std::vector<std::uint32_t> Nombres(const std::string& l) {
    std::vector<std::uint32_t> v(l.size() / 4);
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = Unpack4(l, i * 4);
    return v;
}

std::string Octets(const std::vector<std::uint32_t>& v) {
    std::string s;
    s.reserve(v.size() * 4);
    for (auto n : v)
        s += Pack4(n);
    return s;
}

} // namespace

// A batch: for each symbol + word, its persons in order of arrival, each
// with the number of its birth key (a million persons share a few
// thousand keys).
struct Base::Lot {
    using Personnes = std::vector<std::pair<std::uint32_t, std::uint32_t>>; // (key, person)
    std::map<std::uint32_t, char> symboles; // rubric number -> symbol
    std::unordered_map<std::string, Personnes> mots;
    std::vector<std::string> cles;
    std::unordered_map<std::string, std::uint32_t> numerosCles;
    std::string mot; // the symbol + word being looked up

    std::uint32_t NumeroCle(const std::string& cle) {
        const auto [it, nouvelle] = numerosCles.try_emplace(cle, static_cast<std::uint32_t>(cles.size()));
        if (nouvelle) cles.push_back(cle);
        return it->second;
    }
};

std::vector<std::string> Base::MotsNote(std::string_view note, char symbole) {
    std::vector<std::string> mots;
    for (std::size_t p = note.find(symbole); p != std::string_view::npos;
         p = note.find(symbole, p + 1)) {
        std::size_t fin = note.find_first_of(" \r", p + 1);
        std::string mot = TrimDroite(
            CleMot(note.substr(p + 1, fin == std::string_view::npos ? fin : fin - p - 1)));
        if (!mot.empty()) mots.push_back(std::move(mot));
    }
    return mots;
}

std::string Base::EntreeMot(std::uint32_t k) {
    if (k == 0) return std::string(12, '\0');
    const std::string& b = BlocPaire(paireMots_, (k - 1) / kParBloc + 1);
    return b.substr(((k - 1) % kParBloc) * 12, 12);
}

void Base::EcritEntreeMot(std::uint32_t k, std::string_view entree) {
    std::string e(entree.substr(0, 12));
    e.resize(12, '\0');
    EcritPosPaire(paireMots_, k, kParBloc, e);
}

std::string Base::LitMot(std::uint32_t k) {
    return LireTexte(Decode(EntreeMot(k)).mot, 50, 32000);
}

std::string Base::PersonnesMot(std::uint32_t k) {
    Entree e = Decode(EntreeMot(k));
    if (e.liste == 0) return "";
    // A count beyond the file is a damaged entry: read what the file holds.
    std::uint64_t n = std::min<std::uint64_t>(std::uint64_t(e.compte) * 4, ZoneFin());
    std::string l = Lire(e.liste, static_cast<std::size_t>(n));
    l.resize(l.size() / 4 * 4);
    return l;
}

// Binary search of a rubric's list by word: the entry number, or 0 with
// `rang` the place where the word would go (0-based).
std::uint32_t Base::ChercheMot(const std::string& liste, const std::string& mot,
                               std::size_t* rang) {
    std::size_t bas = 0, haut = liste.size() / 4; // [bas, haut)
    while (bas < haut) {
        std::size_t m = bas + (haut - bas) / 2;
        std::uint32_t k = Unpack4(liste, m * 4);
        int c = mot.compare(LitMot(k));
        if (c == 0) {
            if (rang) *rang = m;
            return k;
        }
        if (c < 0)
            haut = m;
        else
            bas = m + 1;
    }
    if (rang) *rang = bas;
    return 0;
}

// A new keyword entry: the word and its person list at the file end.
std::uint32_t Base::NouvelleEntree(const std::string& mot, const std::string& personnes,
                                   bool motDabord) {
    const std::uint32_t k = ++entete_.nbMots;
    Entree e;
    e.compte = static_cast<std::uint32_t>(personnes.size() / 4);
    if (motDabord) {
        e.mot = AjouteTexte(mot, true);
        e.liste = Ajouter(personnes);
    } else {
        e.liste = Ajouter(personnes);
        e.mot = AjouteTexte(mot, true);
    }
    EcritEntreeMot(k, Code(e));
    return k;
}

void Base::EcritPersonnesMot(std::uint32_t k, const std::string& personnes) {
    Entree e = Decode(EntreeMot(k));
    e.compte = static_cast<std::uint32_t>(personnes.size() / 4);
    e.liste = Ajouter(personnes);
    EcritEntreeMot(k, Code(e));
}

// The entry of a word in a rubric's list; a missing word gets a new entry
// with person n alone, put in its place in the list, and the answer is 0.
std::uint32_t Base::EntreeOuNouvelle(std::string& liste, const std::string& mot, std::uint32_t n) {
    std::size_t rang = 0;
    std::uint32_t e = ChercheMot(liste, mot, &rang);
    if (e != 0) return e;
    liste.insert(rang * 4, Pack4(NouvelleEntree(mot, Pack4(n), true)));
    return 0;
}

// A rubric's list changed: written as a counted list, and the record follows.
void Base::MajListeRubrique(std::uint32_t k, const std::string& ancienne,
                            const std::string& nouvelle) {
    if (nouvelle == ancienne) return;
    std::uint32_t pos = Ajouter(Pack4(static_cast<std::uint32_t>(nouvelle.size() / 4)) + nouvelle);
    std::string r = LitRubrique(k);
    EcritRubrique(k, r.empty() ? ' ' : r[0], r.empty() ? "" : r.substr(1), pos);
}

// Person n goes into a list ordered by birth key: from the end, it passes
// every person whose key is greater, so that equal keys keep their order
// of arrival.
static void Range(Base& b, std::vector<std::uint32_t>& l, std::uint32_t n) {
    const std::string cle = b.CleAnNaiss(n);
    l.push_back(n);
    for (std::size_t j = l.size() - 1; j > 0 && b.CleAnNaiss(l[j - 1]) > cle; --j)
        std::swap(l[j], l[j - 1]);
}

void Base::MajMots(std::uint32_t n, std::string_view ancienne, std::string_view nouvelle) {
    if (n == 0) return;
    const std::string a = SansRtf(ancienne), b = SansRtf(nouvelle);
    for (std::uint32_t k = 1; k <= entete_.nbRubriques; ++k) {
        if (PosListeRubrique(k) == 0) continue;
        const std::string r = LitRubrique(k);
        if (r.empty()) continue;
        std::vector<std::string> vieux = MotsNote(a, r[0]), neufs = MotsNote(b, r[0]);
        // Unchanged words cancel out, occurrence by occurrence.
        std::vector<bool> pris(neufs.size(), false);
        std::vector<std::string> retires, ajoutes;
        for (const auto& v : vieux) {
            bool apparie = false;
            for (std::size_t j = 0; j < neufs.size() && !apparie; ++j)
                if (!pris[j] && neufs[j] == v) pris[j] = apparie = true;
            if (!apparie) retires.push_back(v);
        }
        for (std::size_t j = 0; j < neufs.size(); ++j)
            if (!pris[j]) ajoutes.push_back(neufs[j]);
        if (retires.empty() && ajoutes.empty()) continue;

        const std::string avant = ListeRubrique(k);
        std::string liste = avant;
        for (const auto& mot : retires) {
            std::size_t rang = 0;
            std::uint32_t e = ChercheMot(liste, mot, &rang);
            if (e == 0) continue;
            if (Decode(EntreeMot(e)).compte == 1) {
                // The keyword disappears; its number stays unused.
                liste.erase(rang * 4, 4);
                EcritEntreeMot(e, std::string(12, '\0'));
                continue;
            }
            std::vector<std::uint32_t> p = Nombres(PersonnesMot(e));
            auto it = std::find(p.begin(), p.end(), n);
            if (it == p.end()) continue;
            p.erase(it);
            EcritPersonnesMot(e, Octets(p));
        }
        for (const auto& mot : ajoutes) {
            std::uint32_t e = EntreeOuNouvelle(liste, mot, n);
            if (e == 0) continue;
            std::vector<std::uint32_t> p = Nombres(PersonnesMot(e));
            Range(*this, p, n);
            EcritPersonnesMot(e, Octets(p));
        }
        MajListeRubrique(k, avant, liste);
    }
}

void Base::RangeMots(std::uint32_t n, std::string_view) {
    if (n == 0) return;
    const std::string note = SansRtf(NoteAvecMariages(n));
    const std::string cle = CleAnNaiss(n);
    for (std::uint32_t k = 1; k <= entete_.nbRubriques; ++k) {
        if (PosListeRubrique(k) == 0) continue;
        const std::string r = LitRubrique(k);
        if (r.empty()) continue;
        // Each word once, in the order of the note, with the number of
        // times the note holds it: the lists are rewritten in that order.
        std::vector<std::pair<std::string, std::size_t>> mots;
        for (auto& mot : MotsNote(note, r[0])) {
            auto it = std::find_if(mots.begin(), mots.end(),
                                   [&mot](const auto& m) { return m.first == mot; });
            if (it == mots.end())
                mots.emplace_back(std::move(mot), 1);
            else
                ++it->second;
        }
        if (mots.empty()) continue;
        const std::string avant = ListeRubrique(k);
        std::string liste = avant;
        for (const auto& [mot, fois] : mots) {
            std::uint32_t e = EntreeOuNouvelle(liste, mot, n);
            std::size_t manque = fois - (e == 0 ? 1 : 0);
            if (e == 0 && manque == 0) continue;
            if (e == 0) e = ChercheMot(liste, mot, nullptr);
            const std::vector<std::uint32_t> ancien = Nombres(PersonnesMot(e));
            // The occurrences of n move together, from where the first one
            // stood, by bubbling toward the new key.
            std::vector<std::uint32_t> p;
            std::size_t i = ancien.size(), vus = 0;
            for (std::size_t x = 0; x < ancien.size(); ++x) {
                if (ancien[x] != n)
                    p.push_back(ancien[x]);
                else if (vus++ == 0)
                    i = p.size();
            }
            if (vus > 0) {
                std::size_t j = i;
                while (j > 0 && CleAnNaiss(p[j - 1]) > cle)
                    --j;
                if (j == i)
                    while (j < p.size() && CleAnNaiss(p[j]) < cle)
                        ++j;
                p.insert(p.begin() + static_cast<std::ptrdiff_t>(j), vus, n);
            }
            // Occurrences missing from the list are added: the index is repaired.
            for (std::size_t x = vus; x < manque; ++x)
                Range(*this, p, n);
            if (p != ancien) EcritPersonnesMot(e, Octets(p));
        }
        MajListeRubrique(k, avant, liste);
    }
}

void Base::RefaitRubrique(char symbole) {
    const std::uint32_t k = RubriqueDeSymbole(symbole);
    if (k == 0) return;
    if (progres_) progres_(Message(968), LibelleRubrique(k));
    std::map<std::string, std::vector<std::uint32_t>> mots;
    const std::size_t nb = triPersonnes_.taille();
    for (std::size_t i = 1; i <= nb; ++i) {
        const std::uint32_t n = TriFiche(i);
        for (auto& mot : MotsNote(SansRtf(NoteAvecMariages(n)), symbole))
            mots[std::move(mot)].push_back(n);
    }
    std::string liste;
    std::uint32_t numero = entete_.nbMots;
    for (std::size_t i = 0; i < mots.size(); ++i)
        liste += Pack4(++numero);
    std::uint32_t pos = Ajouter(Pack4(static_cast<std::uint32_t>(mots.size())) + liste);
    const std::string r = LitRubrique(k);
    EcritRubrique(k, symbole, r.substr(1), pos);
    for (const auto& [mot, personnes] : mots)
        NouvelleEntree(mot, Octets(personnes), false);
    marqueModif_ = true;
}

void Base::DebutLot() {
    lot_ = std::make_shared<Lot>();
    for (std::uint32_t k = 1; k <= entete_.nbRubriques; ++k) {
        if (PosListeRubrique(k) == 0) continue;
        std::string r = LitRubrique(k);
        if (!r.empty()) lot_->symboles[k] = r[0];
    }
}

void Base::AjoutLot(std::uint32_t n, std::string_view note) {
    if (!lot_ || n == 0) return;
    const std::string texte = SansRtf(note);
    Lot& lot = *lot_;
    const std::uint32_t cle = lot.NumeroCle(CleAnNaiss(n));
    for (const auto& [k, symbole] : lot.symboles) {
        for (const auto& mot : MotsNote(texte, symbole)) {
            // Ordered by birth key at the end of the batch.
            lot.mot.assign(1, symbole);
            lot.mot += mot;
            auto it = lot.mots.find(lot.mot);
            if (it == lot.mots.end()) it = lot.mots.emplace(lot.mot, Lot::Personnes{}).first;
            it->second.emplace_back(cle, n);
        }
    }
}

void Base::RetireLot(std::uint32_t n, std::string_view note) {
    if (!lot_ || n == 0) return;
    const std::string texte = SansRtf(note);
    for (const auto& [k, symbole] : lot_->symboles) {
        for (const auto& mot : MotsNote(texte, symbole)) {
            lot_->mot.assign(1, symbole);
            lot_->mot += mot;
            auto it = lot_->mots.find(lot_->mot);
            if (it == lot_->mots.end()) continue;
            auto& personnes = it->second;
            // The latest entry of n: the one its AjoutLot made.
            for (auto p = personnes.rbegin(); p != personnes.rend(); ++p)
                if (p->second == n) {
                    personnes.erase(std::next(p).base());
                    break;
                }
            if (personnes.empty()) lot_->mots.erase(it);
        }
    }
}

void Base::FinLot() {
    if (!lot_) return;
    auto lot = std::move(lot_);
    // The birth keys by rank, so that persons compare by number.
    std::vector<std::uint32_t> ordre(lot->cles.size()), rang(lot->cles.size());
    for (std::uint32_t c = 0; c < ordre.size(); ++c) ordre[c] = c;
    std::sort(ordre.begin(), ordre.end(),
              [&](std::uint32_t a, std::uint32_t b) { return lot->cles[a] < lot->cles[b]; });
    for (std::uint32_t r = 0; r < ordre.size(); ++r) rang[ordre[r]] = r;
    // Each word's persons by birth key, ties in order of arrival; the
    // words in order.
    std::vector<std::pair<const std::string*, const Lot::Personnes*>> mots;
    mots.reserve(lot->mots.size());
    for (auto& [mot, personnes] : lot->mots) {
        std::stable_sort(personnes.begin(), personnes.end(),
                         [&](const auto& a, const auto& b) { return rang[a.first] < rang[b.first]; });
        mots.emplace_back(&mot, &personnes);
    }
    std::sort(mots.begin(), mots.end(), [](const auto& a, const auto& b) { return *a.first < *b.first; });
    for (const auto& [k, symbole] : lot->symboles) {
        const std::string avant = ListeRubrique(k);
        std::string sortie;
        const char sym = symbole; // a lambda may not name a structured binding (clang 14)
        auto j = std::lower_bound(mots.begin(), mots.end(), std::string(1, sym),
                                  [](const auto& m, const std::string& p) { return *m.first < p; });
        auto finLot = [&] { return j == mots.end() || (*j->first)[0] != sym; };
        std::size_t i = 0;
        const std::size_t nb = avant.size() / 4;
        while (i < nb || !finLot()) {
            std::uint32_t e = i < nb ? Unpack4(avant, i * 4) : 0;
            int c;
            if (i >= nb)
                c = 1;
            else if (finLot())
                c = -1;
            else
                c = LitMot(e).compare(j->first->substr(1));
            if (c < 0) {
                sortie += Pack4(e);
                ++i;
                continue;
            }
            const auto& neufs = *j->second;
            if (c > 0) {
                const std::string mot = j->first->substr(1);
                if (progres_) progres_("", "Ajout " + mot);
                std::string l;
                for (const auto& p : neufs)
                    l += Pack4(p.second);
                sortie += Pack4(NouvelleEntree(mot, l, true));
                ++j;
                continue;
            }
            if (progres_) progres_("", "Mise \xE0 jour " + j->first->substr(1));
            // Merge of two lists sorted by birth key; on a tie the old first.
            std::vector<std::uint32_t> vieux = Nombres(PersonnesMot(e));
            std::string l;
            std::size_t a = 0, b = 0;
            std::string cleA = a < vieux.size() ? CleAnNaiss(vieux[a]) : "";
            while (a < vieux.size() || b < neufs.size()) {
                if (b >= neufs.size() || (a < vieux.size() && !(cleA > lot->cles[neufs[b].first]))) {
                    l += Pack4(vieux[a++]);
                    if (a < vieux.size()) cleA = CleAnNaiss(vieux[a]);
                } else {
                    l += Pack4(neufs[b++].second);
                }
            }
            EcritPersonnesMot(e, l);
            sortie += Pack4(e);
            ++i;
            ++j;
        }
        MajListeRubrique(k, avant, sortie);
    }
    marqueModif_ = true;
}

} // namespace sylvane
