// The rubric table and its 40-byte records.
#include "store/base.h"

#include "store/pack.h"
#include "text/tags.h"

namespace sylvane {
namespace {

// A record: symbol, tag, then optionally 0xFF and the packed list position,
// then "#". The position may itself hold "#" or 0xFF bytes, so the marker
// is the 0xFF that has a "#" five bytes further on.
void Decoupe(const std::string& r, std::string& texte, std::uint32_t& liste) {
    texte.clear();
    liste = 0;
    for (std::size_t i = 1; i < r.size(); ++i) {
        if (r[i] == '#') {
            texte = r.substr(0, i);
            return;
        }
        if (static_cast<unsigned char>(r[i]) == 0xFF && i + 5 < r.size() && r[i + 5] == '#') {
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

// --- Stores still to come -------------------------------------------------------
// The keyword index and the event and document caches plug in here.

void Base::MajMots(std::uint32_t, std::string_view, std::string_view) {}
void Base::EcritPaireMots() {}
void Base::EcritPaireDocuments() {}
void Base::EcritPaireEvenements() {}

long Base::ValeurDateEvt(std::uint32_t e) {
    if (e == 0) return 0;
    std::uint32_t bloc = (e - 1) / 1000 + 1;
    std::uint32_t pos = PositionBloc(Table::Evenements, bloc);
    if (!pos) return 0;
    std::uint32_t tete = Unpack4(Lire(pos + ((e - 1) % 1000) * 4, 4));
    if (!tete) return 0;
    return static_cast<long>(Unpack4(Lire(tete, 4))) - 1000000;
}

} // namespace sylvane
