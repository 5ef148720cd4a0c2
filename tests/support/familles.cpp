#include "support/familles.h"

#include "store/pack.h"

#include <algorithm>
#include <map>

namespace sylvane::test {
namespace {

struct Hasard {
    std::uint32_t x;
    std::uint32_t operator()(std::uint32_t n) {
        x = x * 1664525u + 1013904223u;
        return n ? (x >> 8) % n : 0;
    }
};

const char* const kNoms[] = {"Martin", "Bernard", "Dubois", "Thomas", "Robert", "Richard",
                             "Petit",  "Durand",  "Leroy",  "Moreau", "de la Tour", "Lef\xE8vre"};
const char* const kPrenoms[] = {"Jean", "Marie", "Pierre", "Anne", "Louis", "Jeanne",
                                "Fran\xE7ois", "Catherine", "Jacques", "Marguerite"};
const char* const kLieux[] = {"Paris", "Lyon", "Rouen", "Nantes", "Saint-Malo", "Ch\xE2teaudun"};
const char* const kTags[] = {"BIRT", "DEAT", "BAPM", "OCCU", "RESI"};

} // namespace

void EditionsAleatoires(Base& b, int etapes, std::uint32_t graine) {
    Hasard h{graine * 2654435761u + 7u};
    std::vector<std::uint32_t> vivants, hommes, femmes;
    auto un = [&h](const std::vector<std::uint32_t>& v) { return v[h(v.size())]; };
    for (int k = 0; k < etapes; ++k) {
        const std::uint32_t choix = h(100);
        if (choix < 35 || vivants.size() < 4) {
            const char sexe = "HFHFI"[h(5)];
            const std::string an = std::to_string(1600 + h(350));
            const std::uint32_t n = b.CreePersonne(kNoms[h(12)], kPrenoms[h(10)],
                                                   h(3) ? "" : kPrenoms[h(10)], sexe, an,
                                                   "1" + std::to_string(h(9)) + "/03/" + an);
            vivants.push_back(n);
            if (sexe == 'H') hommes.push_back(n);
            if (sexe == 'F') femmes.push_back(n);
            if (!hommes.empty() && h(2) && un(hommes) != n) {
                const std::uint32_t p = un(hommes);
                b.EcritPere(n, p);
                b.MajEnfants(p, n, 'A');
            }
            if (!femmes.empty() && h(2) && un(femmes) != n) {
                const std::uint32_t m = un(femmes);
                b.EcritMere(n, m);
                b.MajEnfants(m, n, 'A');
            }
        } else if (choix < 45 && !hommes.empty() && !femmes.empty()) {
            const std::uint32_t m = b.CreeMariage(un(hommes), un(femmes),
                                                  std::to_string(1700 + h(200)));
            if (h(2)) b.EcritNoteMariage(m, "Contrat chez @Notaire" + std::to_string(h(5)));
        } else if (choix < 60) {
            // A note rewritten: the keyword line, a place, free text.
            const std::uint32_t n = un(vivants);
            const std::string ancienne = b.LitNote(n);
            std::string note = b.LigneMotsCles(n, kLieux[h(6)], h(2) ? kLieux[h(6)] : "");
            note += "\r\nTexte libre " + std::string(h(80), 'x') + " \\Laboureur";
            b.MajMots(n, ancienne, note);
            b.EcritNote(n, note);
        } else if (choix < 68) {
            const std::uint32_t n = un(vivants);
            b.MajLiens(n, un(vivants), h(2) ? "WITN" : "GODP", 'A');
        } else if (choix < 80) {
            const std::uint32_t n = un(vivants);
            const std::uint32_t e = b.CreeEvtPersonne(n, 1000 + h(300000), kTags[h(5)],
                                                      kLieux[h(6)]);
            if (h(3) == 0) b.EcritNoteEvt(e, "Acte " + std::to_string(h(1000)));
            if (h(4) == 0) {
                const std::uint32_t t = un(vivants);
                b.MajEvts(t, e, "WITN", 'A');
                b.MajPersonnesEvt(e, t, 'A');
            }
        } else if (choix < 88) {
            const std::uint32_t d = b.CreeDoc("Acte " + std::to_string(h(500)),
                                              "acte" + std::to_string(k) + ".jpg",
                                              h(2) ? "Image" : "", h(2) ? "Registre" : "");
            b.MajDocs(un(vivants), d, 'A');
            // The document may also stand behind an event.
            if (b.Tete().nbEvenements && h(2)) {
                const std::uint32_t e = b.TriEvt(1 + h(b.Tete().nbEvenements));
                b.MajDocsEvt(e, d, 'A');
            }
        } else if (choix < 92) {
            // A person created by mistake and deleted at once.
            const std::uint32_t n = b.CreePersonne("Erreur", "Saisie", "", 'I', "1900");
            b.SupprimePersonne(n);
        } else if (choix < 95 && b.Tete().nbEvenements) {
            b.SupprimeEvt(b.TriEvt(1 + h(b.Tete().nbEvenements)));
        } else if (choix < 97 && b.Tete().nbDocuments) {
            // A document is taken off its persons first, as the document
            // editor does.
            const std::uint32_t d = b.TriDoc(1 + h(b.Tete().nbDocuments));
            for (std::uint32_t n : vivants)
                for (int i = 1; b.DocNo(n, i); ++i)
                    if (b.DocNo(n, i) == d) b.MajDocs(n, d, 'S');
            for (std::size_t i = 1; i <= b.Tete().nbEvenements; ++i) {
                const std::uint32_t e = b.TriEvt(i);
                for (int j = 1; b.DocEvtNo(e, j); ++j)
                    if (b.DocEvtNo(e, j) == d) b.MajDocsEvt(e, d, 'S');
            }
            b.SupprimeDoc(d);
        } else {
            // Years and identity rewritten: the person moves in the sort table.
            const std::uint32_t n = un(vivants);
            b.EcritAnDeces(n, std::to_string(1700 + h(250)));
            if (h(3) == 0) {
                const std::uint32_t place = b.TrouvePlaceFiche(n);
                if (place) b.MajTriFiche(place, n, 'S');
                b.EcritIdentite(n, std::string(kNoms[h(12)]) + ";" + b.LitPrenom(n) + ";;" +
                                       b.LitDateNaiss(n) + ";");
                b.MajTriFiche(b.PlaceFiche(n), n, 'A');
                b.triPersonnesModifie = true;
            }
        }
        if (k % 500 == 499) b.MnuEnregistrer();
    }
}

namespace {

class Marques {
  public:
    explicit Marques(const std::string& f) : f_(f) {}
    std::uint32_t U4(std::uint64_t pos) const { return pos ? Unpack4(f_, pos - 1) : 0; }
    std::uint32_t Brut(std::uint64_t pos) const {
        if (pos == 0 || pos + 3 > f_.size()) return 0;
        auto v = LitBrut(f_.data() + pos - 1);
        return v < 0 ? 0 : static_cast<std::uint32_t>(v);
    }
    void Marque(std::uint64_t pos, std::uint64_t n) {
        if (pos && n) zones_.emplace_back(pos, pos + n);
    }
    void Texte(std::uint64_t pos) {
        if (!pos) return;
        auto d = f_.find('#', pos - 1);
        Marque(pos, (d == std::string::npos ? f_.size() : d) - (pos - 1) + 1);
    }
    // A list ended by a 0 in its first member, of `pas`-byte entries.
    void Liste(std::uint64_t pos, std::uint64_t pas, bool textes) {
        if (!pos) return;
        std::uint64_t p = pos;
        while (p + 3 <= f_.size() && U4(p) != 0) {
            if (textes) Texte(U4(p + 4));
            p += pas;
        }
        Marque(pos, p - pos + 4);
    }
    // A table of `n` block positions, each block `taille` bytes.
    std::vector<std::uint32_t> Table(std::uint64_t place, std::uint32_t n, std::uint32_t taille) {
        std::vector<std::uint32_t> v;
        if (!place || !n) return v;
        Marque(place, 4ull * n);
        for (std::uint32_t i = 0; i < n; ++i) {
            v.push_back(U4(place + 4ull * i));
            Marque(v.back(), taille);
        }
        return v;
    }
    std::vector<std::pair<std::uint64_t, std::uint64_t>> Fusion() {
        std::sort(zones_.begin(), zones_.end());
        std::vector<std::pair<std::uint64_t, std::uint64_t>> r;
        for (auto z : zones_) {
            if (!r.empty() && z.first <= r.back().second)
                r.back().second = std::max(r.back().second, z.second);
            else
                r.push_back(z);
        }
        return r;
    }

  private:
    const std::string& f_;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> zones_;
};

std::uint32_t Blocs(std::uint32_t compte, std::uint32_t par) {
    return compte ? (compte - 1) / par + 1 : 0;
}

} // namespace

std::vector<std::pair<std::uint64_t, std::uint64_t>> OctetsAtteints(const std::string& f) {
    Marques m(f);
    m.Marque(1, 500);
    const std::uint32_t nbP = m.U4(35), maxM = m.U4(43), nbMots = m.U4(53), maxD = m.U4(57),
                        nbD = m.U4(61), maxE = m.U4(65), nbE = m.U4(69);
    // Rubrics and their keyword lists.
    const std::uint32_t posR = m.U4(104);
    m.Marque(posR, 200);
    for (int k = 0; k < 50 && posR; ++k) {
        const std::uint32_t p = m.U4(posR + 4u * k);
        if (!p) continue;
        m.Marque(p, 40);
        const std::string r = f.substr(p - 1, 40);
        for (std::size_t i = 1; i < r.size(); ++i) {
            if (r[i] == '#') break;
            if (static_cast<unsigned char>(r[i]) == 0xFF && i + 5 <= r.size() &&
                (i + 5 == r.size() || r[i + 5] == '#')) {
                const std::uint32_t l = Unpack4(r, i + 1);
                m.Marque(l, 4 + 4ull * m.U4(l));
                break;
            }
        }
    }
    // Keyword entries.
    for (std::uint32_t bloc : m.Table(m.U4(154), Blocs(nbMots, 400), 4800))
        for (std::uint32_t j = 0; j < 400 && bloc; ++j) {
            const std::uint64_t e = bloc + 12ull * j;
            m.Texte(m.U4(e));
            m.Marque(m.U4(e + 8), 4ull * m.U4(e + 4));
        }
    // Persons and their texts and lists.
    for (std::uint32_t bloc : m.Table(m.U4(73), nbP ? Blocs(m.U4(39), 100) : 0, 6000))
        for (std::uint32_t j = 0; j < 100 && bloc; ++j) {
            const std::uint64_t r = bloc + 60ull * j;
            m.Texte(m.Brut(r + 21));
            m.Texte(m.Brut(r + 25));
            m.Liste(m.Brut(r + 29), 4, false);
            m.Liste(m.Brut(r + 33), 4, false);
            m.Liste(m.Brut(r + 37), 8, true);
            m.Liste(m.Brut(r + 41), 8, true);
            m.Liste(m.Brut(r + 45), 4, false);
        }
    m.Table(m.U4(81), Blocs(nbP, 1000), 4000);
    for (std::uint32_t bloc : m.Table(m.U4(77), Blocs(maxM, 100), 3000))
        for (std::uint32_t j = 0; j < 100 && bloc; ++j) m.Texte(m.Brut(bloc + 30ull * j + 16));
    for (std::uint32_t bloc : m.Table(m.U4(85), nbD ? Blocs(maxD, 1000) : 0, 4000))
        for (std::uint32_t j = 0; j < 1000 && bloc; ++j) {
            const std::uint32_t tete = m.U4(bloc + 4ull * j);
            if (!tete) continue;
            m.Texte(m.U4(tete));
            m.Marque(tete, 4);
            m.Texte(tete + 4);
        }
    m.Table(m.U4(89), Blocs(nbD, 1000), 4000);
    for (std::uint32_t bloc : m.Table(m.U4(93), nbE ? Blocs(maxE, 1000) : 0, 4000))
        for (std::uint32_t j = 0; j < 1000 && bloc; ++j) {
            const std::uint32_t tete = m.U4(bloc + 4ull * j);
            if (!tete) continue;
            m.Marque(tete, 20);
            m.Texte(m.U4(tete + 4));
            m.Liste(m.U4(tete + 8), 4, false);
            m.Liste(m.U4(tete + 12), 4, false);
            m.Texte(m.U4(tete + 16));
        }
    m.Table(m.U4(97), Blocs(nbE, 1000), 4000);
    return m.Fusion();
}

} // namespace sylvane::test
