// The rubric table and its 40-byte records.
#include "store/base.h"

#include "store/pack.h"
#include "text/tags.h"

namespace sylvane {
namespace {

// A record: symbol, tag, then optionally 0xFF and the packed list position,
// then "#". The position may itself hold "#" or 0xFF bytes, so the marker
// is the 0xFF that has a "#" five bytes further on, or the end of the
// record: a tag of 34 characters with a list leaves no room for the "#".
void Decoupe(const std::string& r, std::string& texte, std::uint32_t& liste) {
    texte.clear();
    liste = 0;
    for (std::size_t i = 1; i < r.size(); ++i) {
        if (r[i] == '#') {
            texte = r.substr(0, i);
            return;
        }
        if (static_cast<unsigned char>(r[i]) == 0xFF && i + 5 <= r.size() &&
            (i + 5 == r.size() || r[i + 5] == '#')) {
            texte = r.substr(0, i);
            liste = Unpack4(r, i + 1);
            return;
        }
    }
    texte = r.substr(0, r.empty() ? 0 : 1); // no end mark: a damaged record
}

} // namespace

std::string Base::LitRubrique(std::uint32_t k) {
    if (k == 0 || k > 50) return "";
    if (rubriqueCache_ == k) return rubriqueTexte_;
    std::uint32_t pos = rubriques_[k - 1];
    std::string texte;
    std::uint32_t liste = 0;
    if (pos) Decoupe(Lire(pos, 40), texte, liste);
    rubriqueCache_ = k;
    rubriqueTexte_ = texte;
    rubriqueListe_ = liste;
    return texte;
}

std::uint32_t Base::PosListeRubrique(std::uint32_t k) {
    LitRubrique(k);
    return rubriqueCache_ == k ? rubriqueListe_ : 0;
}

void Base::EcritRubrique(std::uint32_t k, char symbole, std::string_view tag,
                         std::uint32_t position) {
    if (k == 0 || k > 50) return;
    std::string t = Conv_TagLibelle(tag.substr(0, 34));
    if (t.size() > 34) t.resize(34);
    std::string r(1, symbole);
    r += t;
    if (position) {
        r += '\xFF';
        r += Pack4(position);
    }
    r += '#';
    r.resize(40, ' ');
    rubriques_[k - 1] = Ajouter(r);
    rubriqueCache_ = k;
    rubriqueTexte_ = std::string(1, symbole) + t;
    rubriqueListe_ = position;
    marqueModif_ = true;
}

std::string Base::LibelleRubrique(std::uint32_t k) {
    std::string r = LitRubrique(k);
    if (r.empty()) return "";
    return r.substr(0, 1) + Conv_LibelleTag(r.substr(1));
}

std::string Base::ListeRubrique(std::uint32_t k) {
    std::uint32_t pos = PosListeRubrique(k);
    if (pos == 0) return "";
    std::string c = Lire(pos, 100);
    const std::uint64_t compte = Unpack4(c, 0);
    // A count beyond the file is a damaged list: it is read to the file end.
    const std::uint64_t voulu = compte * 4;
    std::string l = c.size() > 4 ? c.substr(4) : std::string();
    std::uint32_t p = pos + static_cast<std::uint32_t>(c.size());
    while (l.size() < voulu) {
        std::string suite = Lire(p, 100);
        if (suite.empty()) break;
        l += suite;
        p += static_cast<std::uint32_t>(suite.size());
    }
    if (l.size() > voulu) l.resize(static_cast<std::size_t>(voulu));
    l.resize(l.size() / 4 * 4);
    return l;
}

std::uint32_t Base::RubriqueDeSymbole(char symbole) {
    for (std::uint32_t k = 1; k <= entete_.nbRubriques; ++k) {
        std::string r = LitRubrique(k);
        if (!r.empty() && r[0] == symbole) return k;
    }
    return 0;
}

void Base::RazStores() {
    RazPaire(paireMots_);
    RazDocs();
    RazEvts();
    rubriqueCache_ = 0;
    lot_.reset();
}

void Base::EcritPaireMots() { EcritPaire(paireMots_); }
void Base::EcritPaireDocuments() { EcritDocs(); }
void Base::EcritPaireEvenements() { EcritEvts(); }

} // namespace sylvane
