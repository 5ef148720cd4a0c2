#include "exchange/communes.h"

#include "store/pack.h"
#include "text/mots.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>

namespace sylvane {
namespace {

constexpr std::size_t kBloc = EntreesParBlocCommunes * 4;
constexpr std::uint32_t kPlaceTable[4] = {9, 269, 529, 789};   // 1-based
constexpr std::uint32_t kPlaceCompte[4] = {0, 265, 525, 785};  // table A's count is at 1
constexpr char kMarque = '\xFF';
enum { TableA, TableB, TableC, TableD };

std::uint32_t Lit4(std::string_view s, std::size_t i) {
    return i + 4 <= s.size() ? Unpack4(s, i) : 0;
}

// A field as the file may hold it: no "#", no marker.
std::string Champ(std::string_view v) {
    std::string s(v);
    for (char& c : s)
        if (c == '#' || c == kMarque) c = '*';
    return s;
}

// The key keeps the ligatures: in a word they are two letters ("Boeuf").
const char* Ligature(char c) {
    if (c == '\x8C') return "OE";
    if (c == '\xC6') return "AE";
    return nullptr;
}

// The words of a name for the word index: its parts of two letters or
// more, in the form "Capital then lower case".
std::vector<std::string> MotsDe(const std::string& nom) {
    std::vector<std::string> mots;
    const std::string cle = CleCommune(nom);
    std::string mot;
    auto fin = [&] {
        if (mot.size() >= 2) {
            std::string m = mot;
            for (std::size_t i = 1; i < m.size(); ++i) m[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(m[i])));
            mots.push_back(m);
        }
        mot.clear();
    };
    for (char c : cle) {
        if (std::isalnum(static_cast<unsigned char>(c))) mot += c;
        else if (const char* l = Ligature(c)) mot += l;
        else fin();
    }
    fin();
    return mots;
}

struct Ecrivain {
    Fichier& f;
    std::uint64_t fin = TailleEnteteCommunes;
    std::uint32_t Ajoute(std::string_view d) {
        f.ecrire(fin, d);
        const auto pos = static_cast<std::uint32_t>(fin + 1);
        fin += d.size();
        return pos;
    }
    // Writes the entries by blocks; the positions of the blocks.
    std::array<std::uint32_t, BlocsCommunes> Blocs(const std::vector<std::uint32_t>& entrees) {
        std::array<std::uint32_t, BlocsCommunes> t{};
        for (std::size_t b = 0; b * EntreesParBlocCommunes < entrees.size(); ++b) {
            std::string bloc(kBloc, '\0');
            for (std::size_t k = 0; k < EntreesParBlocCommunes && b * EntreesParBlocCommunes + k < entrees.size(); ++k)
                bloc.replace(k * 4, 4, Pack4(entrees[b * EntreesParBlocCommunes + k]));
            t[b] = Ajoute(bloc);
        }
        return t;
    }
};

// The whole file from its communes; false when `progres` asked to stop.
bool EcritTout(Fichier& f, const std::vector<Commune>& communes, const FichierCommunes::Progres& progres) {
    if (communes.size() > MaxCommunes) throw std::runtime_error("trop de communes pour un fichier de communes");
    f.tronquer(0);
    f.ecrire(0, std::string(TailleEnteteCommunes, '\0'));
    Ecrivain e{f};
    // The names in order, then the words, so that an agglomeration can
    // point at its name's place.
    std::map<std::string, std::vector<std::uint32_t>> noms, mots;
    std::map<std::string, std::string> affiche;
    for (std::uint32_t n = 1; n <= communes.size(); ++n) {
        const Commune& c = communes[n - 1];
        if (c.nom.empty()) continue;
        const std::string cle = CleCommune(c.nom);
        noms[cle].push_back(n);
        affiche.emplace(cle, Champ(c.nom));
        std::vector<std::string> m = MotsDe(c.nom);
        std::sort(m.begin(), m.end());
        m.erase(std::unique(m.begin(), m.end()), m.end());
        for (const std::string& w : m) mots[w].push_back(n);
    }
    std::map<std::string, std::uint32_t> placeNom;
    std::uint32_t place = 0;
    for (const auto& [cle, _] : noms) placeNom[cle] = ++place;

    std::vector<std::uint32_t> a(communes.size(), 0), b, c(communes.size(), 0), d;
    for (std::uint32_t n = 1; n <= communes.size(); ++n) {
        const Commune& x = communes[n - 1];
        if (progres && n % 100 == 0 && !progres("R\xE9organisation communes", x.nom)) return false;
        if (x.nom.empty()) continue;
        std::string r = Champ(x.numero) + "#" + Champ(x.detail) + "#" + Champ(x.agglomeration);
        if (auto it = placeNom.find(CleCommune(x.agglomeration)); !x.agglomeration.empty() && it != placeNom.end())
            r += kMarque + Pack4(it->second) + "     ";
        r += "#" + Champ(x.principale) + "#" + Champ(x.codesPostaux) + "##" + Pack4(x.population) +
             Pack4(x.superficie);
        a[n - 1] = e.Ajoute(r);
        if (!x.commentaire.empty()) c[n - 1] = e.Ajoute(Champ(x.commentaire) + "#");
    }
    if (progres && !progres("R\xE9organisation Index", "")) return false;
    for (const auto& [cle, liste] : noms) {
        std::string r = affiche[cle] + kMarque;
        for (std::uint32_t n : liste) r += Pack4(n);
        b.push_back(e.Ajoute(r + Pack4(0)));
    }
    for (const auto& [mot, liste] : mots) {
        std::string r = Pack4(static_cast<std::uint32_t>(liste.size())) + mot + "#";
        for (std::uint32_t n : liste) r += Pack4(n);
        d.push_back(e.Ajoute(r + Pack4(0)));
    }
    std::string tete = Pack4(static_cast<std::uint32_t>(communes.size())) + Pack4(static_cast<std::uint32_t>(d.size()));
    const std::uint32_t comptes[4] = {0, static_cast<std::uint32_t>(b.size()),
                                      static_cast<std::uint32_t>(communes.size()), static_cast<std::uint32_t>(d.size())};
    const std::vector<std::uint32_t>* entrees[4] = {&a, &b, &c, &d};
    for (int t = 0; t < 4; ++t) {
        if (t > 0) tete += Pack4(comptes[t]);
        for (std::uint32_t p : e.Blocs(*entrees[t])) tete += Pack4(p);
    }
    f.ecrire(0, tete);
    f.synchroniser();
    return true;
}

} // namespace

std::string CleCommune(std::string_view nom) {
    std::string s = Trim(nom);
    std::replace(s.begin(), s.end(), '\'', '.');
    std::replace(s.begin(), s.end(), '\x92', '.');
    return CleMot(s);
}

FichierCommunes::FichierCommunes(SystemeFichiers& fs, std::string chemin, bool lectureSeule)
    : fs_(fs), chemin_(std::move(chemin)) {
    f_ = fs_.ouvrir(chemin_, lectureSeule ? Mode::Lecture : Mode::LectureEcriture);
    LitEntete();
}

void FichierCommunes::LitEntete() {
    blocs_.clear();
    nomDe_.clear();
    derniere_ = 0;
    const std::string t = f_->lire(0, TailleEnteteCommunes);
    const std::uint64_t taille = f_->taille();
    if (t.size() < TailleEnteteCommunes) throw std::runtime_error("fichier de communes trop court");
    nombre_ = Lit4(t, 0);
    mots_ = Lit4(t, 4);
    noms_ = Lit4(t, kPlaceCompte[TableB] - 1);
    for (int k = 0; k < 4; ++k)
        for (std::uint32_t b = 0; b < BlocsCommunes; ++b) {
            const std::uint32_t p = Lit4(t, kPlaceTable[k] - 1 + b * 4);
            // A block must stand whole after the header.
            if (p != 0 && (p <= TailleEnteteCommunes || p - 1 + kBloc > taille))
                throw std::runtime_error("fichier de communes endommag\xC3\xA9");
            tables_[static_cast<std::size_t>(k)][b] = p;
        }
    if (nombre_ > MaxCommunes || mots_ > MaxCommunes || noms_ > MaxCommunes)
        throw std::runtime_error("fichier de communes endommag\xC3\xA9");
}

std::string FichierCommunes::Lire(std::uint32_t position, std::size_t n) {
    if (position == 0) return {};
    return f_->lire(position - 1, n);
}

std::uint32_t FichierCommunes::Ajouter(std::string_view donnees) {
    const std::uint64_t fin = f_->taille();
    if (fin + donnees.size() >= 0xFFFFFFFFull) throw ErreurES(chemin_, "fichier de communes trop grand");
    f_->ecrire(fin, donnees);
    return static_cast<std::uint32_t>(fin + 1);
}

std::uint32_t FichierCommunes::Entree(int table, std::uint32_t n) {
    if (n == 0 || n > MaxCommunes) return 0;
    const std::uint32_t bloc = (n - 1) / EntreesParBlocCommunes + 1;
    const std::uint32_t rang = n - (bloc - 1) * EntreesParBlocCommunes;
    const std::uint32_t pos = tables_[static_cast<std::size_t>(table)][bloc - 1];
    if (pos == 0) return 0; // an empty block
    auto [it, neuf] = blocs_.try_emplace({table, bloc});
    if (neuf) it->second = Lire(pos, kBloc);
    return Lit4(it->second, (rang - 1) * 4);
}

void FichierCommunes::EcritEntree(int table, std::uint32_t n, std::uint32_t position) {
    const std::uint32_t bloc = (n - 1) / EntreesParBlocCommunes + 1;
    const std::uint32_t rang = n - (bloc - 1) * EntreesParBlocCommunes;
    std::uint32_t& pos = tables_[static_cast<std::size_t>(table)][bloc - 1];
    std::string donnees = pos ? Lire(pos, kBloc) : std::string(kBloc, '\0');
    donnees.replace((rang - 1) * 4, 4, Pack4(position));
    if (pos) {
        f_->ecrire(pos - 1, donnees);
    } else {
        pos = Ajouter(donnees);
        f_->ecrire(kPlaceTable[table] - 1 + (bloc - 1) * 4, Pack4(pos));
    }
    blocs_[{table, bloc}] = donnees;
    if (n == derniere_) derniere_ = 0;
}

std::string FichierCommunes::Texte(std::uint32_t position) {
    std::string t;
    for (std::uint32_t p = position; p != 0 && t.size() < 64 * 1024;) {
        const std::string m = Lire(p, 400);
        const auto fin = m.find('#');
        t += m.substr(0, fin);
        if (fin != std::string::npos || m.size() < 400) break;
        p += 400;
    }
    return t;
}

void FichierCommunes::CacheNoms() {
    if (!nomDe_.empty() || nombre_ == 0) return;
    nomDe_.assign(nombre_ + 1, 0);
    // Each commune stands in the list of its one name: the lists together
    // hold as many numbers as there are communes. A damaged index that
    // holds more is read no further than that, or every name would read
    // its list whole.
    std::size_t reste = nombre_;
    for (std::uint32_t i = 1; i <= noms_ && reste > 0; ++i) {
        std::vector<std::uint32_t> l;
        LitNomIndex(i, &l, reste);
        reste -= l.size();
        for (std::uint32_t n : l)
            if (n <= nombre_ && nomDe_[n] == 0) nomDe_[n] = i;
    }
}

std::string FichierCommunes::LitNomIndex(std::uint32_t i, std::vector<std::uint32_t>* communes,
                                         std::size_t borne) {
    const std::uint32_t pos = Entree(TableB, i);
    std::string r = Lire(pos, 50);
    const auto m = r.find(kMarque);
    if (m == std::string::npos) return r.substr(0, r.find('#'));
    if (communes) {
        for (std::size_t k = m + 1;; k += 4) {
            if (k + 4 > r.size()) {
                const std::string suite = Lire(pos + static_cast<std::uint32_t>(r.size()), 400);
                if (suite.empty() || r.size() > 64 * 1024) break;
                r += suite;
            }
            const std::uint32_t n = Lit4(r, k);
            if (n == 0 || communes->size() >= borne) break;
            communes->push_back(n);
        }
    }
    return r.substr(0, m);
}

std::string FichierCommunes::LitMotIndex(std::uint32_t k, std::vector<std::uint32_t>* communes) {
    const std::uint32_t pos = Entree(TableD, k);
    std::string r = Lire(pos, 400);
    const auto diese = r.find('#', 4);
    if (r.size() < 4 || diese == std::string::npos) return {};
    if (communes) {
        const std::uint32_t compte = std::min<std::uint32_t>(Lit4(r, 0), MaxCommunes);
        const std::size_t besoin = diese + 1 + std::size_t{compte} * 4;
        if (r.size() < besoin) r += Lire(pos + static_cast<std::uint32_t>(r.size()), besoin - r.size());
        for (std::size_t i = diese + 1; i + 4 <= r.size(); i += 4) {
            const std::uint32_t n = Lit4(r, i);
            if (n == 0) break;
            communes->push_back(n);
        }
    }
    return r.substr(4, diese - 4);
}

Commune FichierCommunes::Lit(std::uint32_t n) {
    if (n == derniere_ && n != 0) return cache_;
    Commune c;
    const std::uint32_t pos = Entree(TableA, n);
    if (pos != 0) {
        const std::string r = Lire(pos, 300);
        std::array<std::string, 5> champs;
        std::size_t i = 0;
        for (std::size_t k = 0; k < champs.size() && i < r.size(); ++k) {
            while (i < r.size() && r[i] != '#') {
                if (k == 2 && r[i] == kMarque) {
                    i += 1 + 4 + 5; // the link to the name, and five characters passed over
                    continue;
                }
                champs[k] += r[i++];
            }
            ++i;
        }
        if (i < r.size() && r[i] == '#') ++i; // the one more "#"
        c.numero = champs[0];
        c.detail = champs[1];
        c.agglomeration = champs[2];
        c.principale = champs[3];
        c.codesPostaux = champs[4];
        c.population = Lit4(r, i);
        c.superficie = Lit4(r, i + 4);
        CacheNoms();
        if (n < nomDe_.size() && nomDe_[n]) c.nom = LitNomIndex(nomDe_[n], nullptr);
        c.commentaire = Texte(Entree(TableC, n));
    }
    derniere_ = n;
    cache_ = c;
    return c;
}

std::string FichierCommunes::NomIndex(std::uint32_t i) { return LitNomIndex(i, nullptr); }

std::vector<std::uint32_t> FichierCommunes::CommunesNom(std::uint32_t i) {
    std::vector<std::uint32_t> l;
    LitNomIndex(i, &l, nombre_);
    return l;
}

std::string FichierCommunes::Mot(std::uint32_t k) { return LitMotIndex(k, nullptr); }

std::vector<std::uint32_t> FichierCommunes::CommunesMot(std::uint32_t k) {
    std::vector<std::uint32_t> l;
    LitMotIndex(k, &l);
    return l;
}

std::uint32_t FichierCommunes::ChercheNom(std::string_view nom, bool& exact) {
    exact = false;
    if (noms_ == 0) return 0;
    const std::string cle = CleCommune(nom);
    std::uint32_t bas = 1, haut = noms_ + 1;
    while (bas < haut) {
        const std::uint32_t milieu = bas + (haut - bas) / 2;
        if (CleCommune(NomIndex(milieu)) < cle) bas = milieu + 1;
        else haut = milieu;
    }
    if (bas > noms_) return noms_;
    exact = CleCommune(NomIndex(bas)) == cle;
    return bas;
}

std::uint32_t FichierCommunes::ChercheMot(std::string_view mot) {
    if (mots_ == 0) return 0;
    std::string cle;
    for (char c : CleCommune(mot)) {
        const char* l = Ligature(c);
        cle += l ? std::string(l) : std::string(1, c);
    }
    for (std::size_t i = 1; i < cle.size(); ++i) cle[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(cle[i])));
    std::uint32_t bas = 1, haut = mots_ + 1;
    while (bas < haut) {
        const std::uint32_t milieu = bas + (haut - bas) / 2;
        if (Mot(milieu) < cle) bas = milieu + 1;
        else haut = milieu;
    }
    return std::min(bas, mots_);
}

std::vector<std::string> FichierCommunes::NomsCommencant(std::string_view debut, std::size_t nombre) {
    std::vector<std::string> r;
    const std::string cle = CleCommune(debut);
    bool exact = false;
    std::uint32_t i = cle.empty() ? 0 : ChercheNom(debut, exact);
    for (; i != 0 && i <= noms_ && r.size() < nombre; ++i) {
        std::string nom = NomIndex(i);
        if (CleCommune(nom).compare(0, cle.size(), cle) != 0) break;
        r.push_back(std::move(nom));
    }
    return r;
}

void FichierCommunes::EcritCommentaire(std::uint32_t n, std::string_view texte) {
    if (n == 0 || n > nombre_) return;
    EcritEntree(TableC, n, texte.empty() ? 0 : Ajouter(Champ(texte) + "#"));
    f_->synchroniser();
}

void FichierCommunes::EcritCommune(std::uint32_t n, const Commune& c) {
    if (n == 0 || n > nombre_) return;
    std::string r = Champ(c.numero) + "#" + Champ(c.detail) + "#" + Champ(c.agglomeration) + "#" +
                    Champ(c.principale) + "#" + Champ(c.codesPostaux) + "##" + Pack4(c.population) +
                    Pack4(c.superficie);
    EcritEntree(TableA, n, Ajouter(r));
    f_->synchroniser();
}

std::vector<Commune> FichierCommunes::Toutes(const Progres& progres, bool& arrete) {
    std::vector<Commune> v;
    arrete = false;
    for (std::uint32_t n = 1; n <= nombre_; ++n) {
        v.push_back(Lit(n));
        if (progres && n % 100 == 0 && !progres("R\xE9organisation communes", v.back().nom)) {
            arrete = true;
            break;
        }
    }
    return v;
}

std::uint32_t FichierCommunes::Ajoute(const Commune& c) {
    bool arrete = false;
    std::vector<Commune> v = Toutes({}, arrete);
    if (v.size() >= MaxCommunes) throw std::runtime_error("le fichier de communes est plein");
    v.push_back(c);
    {
        EcritureAtomique sortie(fs_, chemin_);
        EcritTout(sortie.Sortie(), v, {});
        f_.reset();
        sortie.Valide();
    }
    f_ = fs_.ouvrir(chemin_, Mode::LectureEcriture);
    LitEntete();
    return static_cast<std::uint32_t>(v.size());
}

void FichierCommunes::Retire(std::uint32_t n) {
    if (n == 0 || n > nombre_) return;
    EcritEntree(TableA, n, 0);
    EcritEntree(TableC, n, 0);
    f_->synchroniser();
    Reorganise();
}

bool FichierCommunes::Reorganise(const Progres& progres) {
    bool arrete = false;
    const std::vector<Commune> v = Toutes(progres, arrete);
    if (arrete) return false;
    const auto barre = chemin_.find_last_of('/');
    const std::string reo = (barre == std::string::npos ? std::string() : chemin_.substr(0, barre + 1)) + "Commune.reo";
    {
        auto f = fs_.ouvrir(reo, Mode::Ecrasement);
        bool fini = false;
        try {
            fini = EcritTout(*f, v, progres);
        } catch (...) {
            f.reset();
            fs_.supprimer(reo);
            throw;
        }
        f.reset();
        if (!fini) {
            fs_.supprimer(reo);
            return false;
        }
    }
    f_.reset();
    fs_.renommer(reo, chemin_);
    fs_.synchroniserDossier(chemin_);
    f_ = fs_.ouvrir(chemin_, Mode::LectureEcriture);
    LitEntete();
    return true;
}

void FichierCommunes::Cree(SystemeFichiers& fs, const std::string& chemin, const std::vector<Commune>& communes) {
    EcritureAtomique sortie(fs, chemin);
    EcritTout(sortie.Sortie(), communes, {});
    sortie.Valide();
}

} // namespace sylvane
