// The branch outlines: what a node's children are, on each side, and the
// writers of what is open.
#include "kinship/branches.h"

#include "kinship/parente.h"
#include "publish/html_texte.h"
#include "publish/rtf_rapports.h"

namespace sylvane {
namespace {

// Marriages of the father scanned for the one with the mother.
constexpr int kMariagesPere = 100;

} // namespace

std::string LettreRang(int rang) {
    static constexpr std::string_view kLettres = "abcdefghijklmonpqstuvvwxyz";
    if (rang < 1 || rang > static_cast<int>(kLettres.size())) return {};
    return std::string(1, kLettres[static_cast<std::size_t>(rang - 1)]);
}

Branche::Branche(Base& b, bool descendante, std::uint32_t racine)
    : b_(b), descendante_(descendante) {
    Ajoute(0, racine, 0, b_.NomDates(racine), descendante ? ImageDesc(racine) : ImageAsc(racine));
}

std::size_t Branche::Ajoute(std::size_t parent, std::uint32_t personne, std::uint32_t mariage,
                            std::string texte, int image) {
    NoeudBranche n;
    n.cle = "I" + std::to_string(++compte_);
    n.personne = personne;
    n.mariage = mariage;
    n.texte = std::move(texte);
    n.image = image;
    n.parent = parent;
    noeuds_.push_back(std::move(n));
    const std::size_t i = noeuds_.size() - 1;
    if (parent) noeuds_[parent - 1].enfants.push_back(i);
    return i;
}

int Branche::ImageAsc(std::uint32_t p) {
    const bool pere = b_.LitPere(p) != 0, mere = b_.LitMere(p) != 0;
    return pere && mere ? ImageDeuxParents : pere ? ImagePere : mere ? ImageMere : ImageFin;
}

int Branche::ImageDesc(std::uint32_t p) {
    return b_.MariageNo(p, 1) || b_.EnfantNo(p, 1) ? ImageDeuxParents : ImageEnfantSeul;
}

bool Branche::AEnfants(std::size_t i) {
    const NoeudBranche& n = noeuds_[i];
    if (n.charge) return !n.enfants.empty();
    if (n.personne == 0) return false;
    if (descendante_) return b_.MariageNo(n.personne, 1) || b_.EnfantNo(n.personne, 1);
    return b_.LitPere(n.personne) || b_.LitMere(n.personne);
}

void Branche::Ouvre(std::size_t i) {
    if (i >= noeuds_.size() || noeuds_[i].ecarte) return;
    if (!noeuds_[i].charge) {
        noeuds_[i].charge = true;
        if (noeuds_[i].personne) {
            if (descendante_)
                ChargeDescendance(i);
            else
                ChargeAscendance(i);
        }
    }
    noeuds_[i].ouvert = true;
}

void Branche::ChargeAscendance(std::size_t i) {
    const std::uint32_t p = noeuds_[i].personne;
    const std::uint32_t pere = b_.LitPere(p), mere = b_.LitMere(p);
    std::string mariage;
    if (pere && mere)
        for (int k = 1; k <= kMariagesPere; ++k) {
            const std::uint32_t m = b_.MariageNo(pere, k);
            if (m == 0) break;
            if (b_.LitFemme(m) == mere || b_.LitMari(m) == mere) {
                mariage = " " + b_.LigneMariage(m);
                break;
            }
        }
    if (pere) Ajoute(i + 1, pere, 0, b_.NomDates(pere) + mariage, ImageAsc(pere));
    if (mere) Ajoute(i + 1, mere, 0, b_.NomDates(mere), ImageAsc(mere));
}

void Branche::ChargeDescendance(std::size_t i) {
    const std::uint32_t p = noeuds_[i].personne;
    const bool homme = b_.LitSexe(p) == "H";
    const std::vector<std::uint32_t> mariages = b_.Mariages(p);
    std::vector<std::uint32_t> enfants;
    for (int k = 1; k <= kEnfantsParente; ++k) {
        const std::uint32_t e = b_.EnfantNo(p, k);
        if (e == 0) break;
        enfants.push_back(e);
    }
    auto autreParent = [&](std::uint32_t e) {
        const std::uint32_t pere = b_.LitPere(e), mere = b_.LitMere(e);
        return pere == p ? mere : pere;
    };
    std::vector<char> place(enfants.size(), 0);
    for (std::size_t r = 0; r < mariages.size(); ++r) {
        const std::uint32_t m = mariages[r];
        const std::uint32_t conjoint = homme ? b_.LitFemme(m) : b_.LitMari(m);
        std::string texte = mariages.size() == 1 ? "." : LettreRang(static_cast<int>(r + 1)) + ".";
        texte += " " + b_.LigneMariage(m);
        if (conjoint) texte += " " + b_.NomDates(conjoint);
        const std::size_t noeud = Ajoute(i + 1, 0, m, texte, ImageMariage);
        noeuds_[noeud].rang = static_cast<int>(r + 1);
        noeuds_[noeud].charge = true;
        noeuds_[noeud].ouvert = true;
        for (std::size_t k = 0; k < enfants.size(); ++k)
            if (!place[k] && conjoint && autreParent(enfants[k]) == conjoint) {
                place[k] = 1;
                Ajoute(noeud + 1, enfants[k], 0, b_.NomDates(enfants[k]), ImageDesc(enfants[k]));
            }
    }
    // The children of no known marriage come last, under the person.
    for (std::size_t k = 0; k < enfants.size(); ++k)
        if (!place[k]) Ajoute(i + 1, enfants[k], 0, b_.NomDates(enfants[k]), ImageDesc(enfants[k]));
}

void Branche::Developpe(std::size_t i, int niveau) {
    std::vector<std::pair<std::size_t, int>> pile{{i, niveau}};
    while (!pile.empty()) {
        auto [n, niv] = pile.back();
        pile.pop_back();
        Ouvre(n);
        // A marriage node is not a generation: its children are opened at
        // the level of the person above it.
        for (std::size_t e : noeuds_[n].enfants) {
            if (noeuds_[e].ecarte) continue;
            if (noeuds_[e].personne == 0)
                pile.push_back({e, niv});
            else if (niv > 1)
                pile.push_back({e, niv - 1});
        }
    }
}

void Branche::Ecarte(std::size_t i) {
    if (i == 0 || i >= noeuds_.size()) return;
    std::vector<std::size_t> pile{i};
    while (!pile.empty()) {
        const std::size_t n = pile.back();
        pile.pop_back();
        noeuds_[n].ecarte = true;
        for (std::size_t e : noeuds_[n].enfants) pile.push_back(e);
    }
    auto& freres = noeuds_[noeuds_[i].parent - 1].enfants;
    std::erase(freres, i);
}

std::vector<std::pair<std::size_t, int>> Branche::Visibles() const {
    std::vector<std::pair<std::size_t, int>> r;
    std::vector<std::pair<std::size_t, int>> pile{{0, 1}};
    while (!pile.empty()) {
        auto [n, niv] = pile.back();
        pile.pop_back();
        r.push_back({n, niv});
        if (!noeuds_[n].ouvert) continue;
        const auto& e = noeuds_[n].enfants;
        for (auto it = e.rbegin(); it != e.rend(); ++it) pile.push_back({*it, niv + 1});
    }
    return r;
}

std::vector<std::string> Branche::Lignes() const {
    std::vector<std::string> r;
    for (const auto& [n, niv] : Visibles()) {
        const NoeudBranche& x = noeuds_[n];
        if (descendante_) {
            r.push_back(std::string(static_cast<std::size_t>(niv), x.personne ? '.' : ' ') +
                        x.texte);
        } else {
            r.push_back(std::string(static_cast<std::size_t>(niv), '.') + x.cle.substr(1) +
                        " - " + x.texte);
        }
    }
    return r;
}

std::string Branche::Rtf(const std::string& titre) const {
    std::string r = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\r\n";
    r += "{\\plain \\f0\\fs24\\b " + EchappeRTF(titre) + "}{ \\plain \\f0\\fs16 \\par }\r\n";
    for (const std::string& l : Lignes())
        r += "{\\plain \\f0\\fs16 " + EchappeRTF(l) + "}{ \\plain \\f0\\fs16 \\par }\r\n";
    return r + "}\r\n";
}

void Branche::Html(std::size_t i, std::string& r) const {
    const NoeudBranche& x = noeuds_[i];
    const bool ouverts = x.ouvert && !x.enfants.empty();
    if (!descendante_) {
        r += "<LI>" + x.cle.substr(1) + " - " + EntiteHTML(x.texte) + "\r\n";
        if (ouverts) {
            r += "<UL>\r\n";
            for (std::size_t e : x.enfants) Html(e, r);
            r += "</UL>\r\n";
        }
        return;
    }
    if (x.personne == 0) {
        r += "<LI>" + EntiteHTML(x.texte) + "\r\n";
    } else if (i != 0 && noeuds_[x.parent - 1].personne == 0) {
        r += "<BR>" + EntiteHTML(x.texte) + "\r\n";
    } else {
        r += "<LI>" + EntiteHTML(x.texte) + "\r\n";
    }
    if (ouverts) {
        r += x.personne == 0 ? "<OL TYPE=1>\r\n" : "<UL>\r\n";
        for (std::size_t e : x.enfants) Html(e, r);
        r += x.personne == 0 ? "</OL>\r\n" : "</UL>\r\n";
    }
}

std::string Branche::Html(const std::string& titre) const {
    std::string r = EnteteHTMLSimple(titre) + "<H2>" + EntiteHTML(titre) + "</H2>\r\n<UL>\r\n";
    Html(0, r);
    return r + "</UL>\r\n</BODY></HTML>\r\n";
}

} // namespace sylvane
