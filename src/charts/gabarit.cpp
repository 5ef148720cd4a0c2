#include "charts/gabarit.h"

#include "text/utf8.h"

#include <charconv>
#include <vector>

namespace sylvane {
namespace {

constexpr char kGuillemetFermant = '\x94'; // the closing quotation mark of the code page

std::string Chiffre(std::int64_t v) { return std::to_string(v); }

// A field of a record line: a quoted text or a bare number.
struct Champ {
    bool texte = false;
    std::string valeur;
};

// Splits a line into its fields; false when a quote is left open or a
// field is neither quoted nor bare.
bool Champs(const std::string& l, std::vector<Champ>& champs) {
    champs.clear();
    std::size_t i = 0;
    while (true) {
        Champ c;
        if (i < l.size() && l[i] == '"') {
            const std::size_t fin = l.find('"', i + 1);
            if (fin == std::string::npos) return false;
            c.texte = true;
            c.valeur = l.substr(i + 1, fin - i - 1);
            i = fin + 1;
        } else {
            const std::size_t fin = std::min(l.find(',', i), l.size());
            c.valeur = l.substr(i, fin - i);
            if (c.valeur.find('"') != std::string::npos) return false;
            i = fin;
        }
        champs.push_back(std::move(c));
        if (champs.size() > 8) return false;
        if (i == l.size()) return true;
        if (l[i] != ',') return false;
        ++i;
    }
}

} // namespace

ErreurGabarit::ErreurGabarit(const std::string& chemin, std::uint64_t ligne,
                             const std::string& raison)
    : std::runtime_error(ErreurES::CheminLisible(chemin) + ", ligne " + std::to_string(ligne) +
                         " : " + raison) {}

std::string TexteGabarit(const std::string& texte) {
    std::string r = texte;
    for (char& c : r) {
        if (c == '"') c = kGuillemetFermant;
        else if (c == '\r' || c == '\n') c = ' ';
    }
    return r;
}

// --- Writing -------------------------------------------------------------

EcrivainGabarit::EcrivainGabarit(SystemeFichiers& fs, std::string chemin,
                                 const EnteteGabarit& entete)
    : fs_(fs), chemin_(std::move(chemin)), entete_(entete) {}

EcrivainGabarit::~EcrivainGabarit() = default;

void EcrivainGabarit::Ligne(const std::string& l) {
    if (!sortie_) {
        sortie_ = std::make_unique<EcritureAtomique>(fs_, chemin_);
        tampon_ = Chiffre(entete_.feuillesH) + "," + Chiffre(entete_.feuillesV) + "," +
                  Chiffre(entete_.largeurTotale) + "," + Chiffre(entete_.hauteurTotale) + "\r\n";
    }
    tampon_ += l;
    tampon_ += "\r\n";
    ++nombre_;
    if (tampon_.size() >= (1u << 18)) Vide();
}

void EcrivainGabarit::Vide() {
    if (!sortie_ || tampon_.empty()) return;
    sortie_->Sortie().ecrire(offset_, tampon_);
    offset_ += tampon_.size();
    tampon_.clear();
}

void EcrivainGabarit::BoiteGraphe(std::int64_t x, std::int64_t y, std::int64_t demiLargeur,
                                  std::int64_t demiHauteur, std::int32_t style,
                                  std::uint32_t personne) {
    Ligne("\"C\"," + Chiffre(x) + "," + Chiffre(y) + "," + Chiffre(demiLargeur) + "," +
          Chiffre(demiHauteur) + "," + Chiffre(style) + "," + Chiffre(personne));
    dernierX_ = x;
    dernierY_ = y;
}

void EcrivainGabarit::TraitGraphe(std::int64_t x1, std::int64_t y1, std::int64_t x2,
                                  std::int64_t y2, std::int32_t style) {
    Ligne("\"L\"," + Chiffre(x1) + "," + Chiffre(y1) + "," + Chiffre(x2) + "," + Chiffre(y2) + "," +
          Chiffre(style));
}

void EcrivainGabarit::TexteGraphe(const std::string& texte, std::int64_t x, std::int64_t y,
                                  std::int32_t style) {
    Ligne("\"T\",\"" + TexteGabarit(texte) + "\"," + Chiffre(x) + "," + Chiffre(y) + "," +
          Chiffre(style));
}

void EcrivainGabarit::Ecrit(const EnregGabarit& e) {
    switch (e.type) {
    case 'C': BoiteGraphe(e.x1, e.y1, e.x2, e.y2, e.style, e.personne); break;
    case 'L': TraitGraphe(e.x1, e.y1, e.x2, e.y2, e.style); break;
    default: TexteGraphe(e.texte, e.x1, e.y1, e.style); break;
    }
}

bool EcrivainGabarit::Termine() {
    if (!sortie_) return false;
    Vide();
    sortie_->Valide();
    sortie_.reset();
    return true;
}

// --- Reading -------------------------------------------------------------

LecteurGabarit::LecteurGabarit(SystemeFichiers& fs, const std::string& chemin)
    : chemin_(chemin), f_(fs.ouvrir(chemin, Mode::Lecture)) {
    std::string l;
    if (!LigneSuivante(l)) Erreur("fichier vide, ce n'est pas un graphe");
    std::vector<Champ> c;
    std::int64_t v[4];
    if (!Champs(l, c) || c.size() != 4) Erreur("la premi\xC3\xA8re ligne doit porter 4 nombres");
    for (int k = 0; k < 4; ++k) {
        const auto& s = c[k].valeur;
        auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), v[k]);
        if (c[k].texte || ec != std::errc() || p != s.data() + s.size())
            Erreur("la premi\xC3\xA8re ligne doit porter 4 nombres");
    }
    if (v[0] < 1 || v[0] > kFeuillesMax || v[1] < 1 || v[1] > kFeuillesMax ||
        v[0] * v[1] > kFeuillesTotalMax)
        Erreur("nombre de feuilles impossible");
    if (v[2] < 1 || v[2] > kCoordonneeMax || v[3] < 1 || v[3] > kCoordonneeMax)
        Erreur("taille du graphe impossible");
    entete_ = {static_cast<std::int32_t>(v[0]), static_cast<std::int32_t>(v[1]), v[2], v[3]};
}

void LecteurGabarit::Erreur(const std::string& raison) const {
    throw ErreurGabarit(chemin_, ligne_, raison);
}

bool LecteurGabarit::LigneSuivante(std::string& l) {
    l.clear();
    while (true) {
        if (i_ == tampon_.size()) {
            if (fin_) {
                if (l.empty()) return false;
                break;
            }
            tampon_ = f_->lire(offset_, 1 << 16);
            offset_ += tampon_.size();
            i_ = 0;
            if (tampon_.empty()) fin_ = true;
            continue;
        }
        const std::size_t nl = tampon_.find('\n', i_);
        const std::size_t fin = nl == std::string::npos ? tampon_.size() : nl;
        l.append(tampon_, i_, fin - i_);
        i_ = nl == std::string::npos ? fin : fin + 1;
        if (l.size() > kLigneGabaritMax) {
            ++ligne_;
            Erreur("ligne trop longue");
        }
        if (nl != std::string::npos) break;
    }
    ++ligne_;
    if (!l.empty() && l.back() == '\r') l.pop_back();
    return true;
}

bool LecteurGabarit::Suivant(EnregGabarit& e) {
    std::string l;
    do {
        if (!LigneSuivante(l)) return false;
    } while (l.empty());
    std::vector<Champ> c;
    if (!Champs(l, c) || c.empty() || !c[0].texte || c[0].valeur.size() != 1)
        Erreur("enregistrement illisible");
    e = EnregGabarit{};
    e.type = c[0].valeur[0];
    const std::size_t attendus = e.type == 'C' ? 7 : e.type == 'L' ? 6 : e.type == 'T' ? 5 : 0;
    if (attendus == 0) Erreur("enregistrement inconnu \"" + AnsiVersUtf8(c[0].valeur) + "\"");
    if (c.size() != attendus) Erreur("nombre de champs incorrect");
    auto nombre = [&](std::size_t k, std::int64_t min, std::int64_t max) {
        const auto& s = c[k].valeur;
        std::int64_t v = 0;
        auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
        if (c[k].texte || s.empty() || ec != std::errc() || p != s.data() + s.size())
            Erreur("nombre attendu au champ " + std::to_string(k + 1));
        if (v < min || v > max) Erreur("valeur hors limites au champ " + std::to_string(k + 1));
        return v;
    };
    const std::size_t base = e.type == 'T' ? 2 : 1;
    if (e.type == 'T') {
        if (!c[1].texte) Erreur("texte attendu au champ 2");
        e.texte = std::move(c[1].valeur);
    }
    e.x1 = nombre(base, -kCoordonneeMax, kCoordonneeMax);
    e.y1 = nombre(base + 1, -kCoordonneeMax, kCoordonneeMax);
    if (e.type == 'T') {
        e.style = static_cast<std::int32_t>(nombre(4, -32768, 32767));
        return true;
    }
    const std::int64_t min2 = e.type == 'C' ? 0 : -kCoordonneeMax;
    e.x2 = nombre(3, min2, kCoordonneeMax);
    e.y2 = nombre(4, min2, kCoordonneeMax);
    e.style = static_cast<std::int32_t>(nombre(5, -32768, 32767));
    if (e.type == 'C') e.personne = static_cast<std::uint32_t>(nombre(6, 0, 0xFFFFFFFFll));
    return true;
}

} // namespace sylvane
