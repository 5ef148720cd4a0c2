// The document and event sort tables (by title key and by date), and the
// change of the person sort mode.
#include "store/base.h"
#include "store/recherche_tri.h"

#include "text/messages.h"
#include "text/mots.h"

namespace sylvane {
namespace {

// The middle of a bisection, the exact middle rounded to nearest with a
// half going to the even neighbour, as for the person table.
std::size_t Milieu(std::size_t bas, std::size_t haut) {
    std::size_t deux = bas + haut;
    std::size_t m = deux / 2;
    if (deux % 2 == 1 && m % 2 == 1) ++m;
    return m;
}

// Place where a key belongs in a table of `nb` entries whose key at place i
// is cle(i): the last middle of the bisection, one further when the key is
// greater than the key there.
template <class Cle, class F> std::uint32_t Place(const Cle& k, std::size_t nb, F cle) {
    if (nb == 0) return 1;
    std::size_t bas = 1, haut = nb, milieu = 1;
    while (bas <= haut) {
        milieu = Milieu(bas, haut);
        Cle m = cle(milieu);
        if (k > m)
            bas = milieu + 1;
        else if (k < m) {
            if (milieu == 1) break;
            haut = milieu - 1;
        } else
            break;
    }
    if (k > cle(milieu)) ++milieu;
    return static_cast<std::uint32_t>(milieu);
}


void Bulle(TableTri& t, std::size_t ancienne, std::size_t nouvelle) {
    if (ancienne == nouvelle || ancienne < 1 || ancienne > t.taille()) return;
    if (nouvelle < 1) nouvelle = 1;
    if (nouvelle > t.taille()) nouvelle = t.taille();
    std::uint32_t n = t.at(ancienne);
    t.retirer(ancienne);
    t.inserer(nouvelle, n);
}

void PlaceTri(TableTri& t, std::size_t i, std::uint32_t n) {
    if (i >= 1 && i <= t.taille())
        t.remplacer(i, n);
    else
        t.inserer(1, n);
}

} // namespace

std::uint32_t Base::PlaceEvt(std::uint32_t e) {
    const long date = DateEvt(e);
    return Place(date, entete_.nbEvenements, [this](std::size_t i) { return DateEvt(TriEvt(i)); });
}

std::uint32_t Base::PlaceDoc(std::uint32_t d) {
    const std::string cle = CleMot(TitreDoc(d));
    return Place(cle, entete_.nbDocuments,
                 [this](std::size_t i) { return CleMot(TitreDoc(TriDoc(i))); });
}

std::uint32_t Base::TrouvePlaceEvt(std::uint32_t e) {
    if (e == 0) return 0;
    return Trouve(e, DateEvt(e), triEvenements_, [this](std::uint32_t n) { return DateEvt(n); });
}

std::uint32_t Base::TrouvePlaceDoc(std::uint32_t d) {
    if (d == 0) return 0;
    return Trouve(d, CleMot(TitreDoc(d)), triDocuments_,
                  [this](std::uint32_t n) { return CleMot(TitreDoc(n)); });
}

void Base::BulleEvt(std::size_t ancienne, std::size_t nouvelle) {
    Bulle(triEvenements_, ancienne, nouvelle);
    triEvenementsModifie = true;
}

void Base::BulleDoc(std::size_t ancienne, std::size_t nouvelle) {
    Bulle(triDocuments_, ancienne, nouvelle);
    triDocumentsModifie = true;
}

void Base::PlaceTriEvt(std::size_t i, std::uint32_t e) {
    PlaceTri(triEvenements_, i, e);
    triEvenementsModifie = true;
}

void Base::PlaceTriDoc(std::size_t i, std::uint32_t d) {
    PlaceTri(triDocuments_, i, d);
    triDocumentsModifie = true;
}

bool Base::ChangeModeTri(
    char mode, const std::function<bool(const std::string&, const std::string&)>& confirme) {
    if (mode != '0' && mode != '1' && mode != '2') return false;
    if (confirme && !confirme(Message(629), Message(716) + "\r\n" + Message(717))) return false;
    entete_.modeTri = mode;
    OublieCles();
    if (mode != '0') TriTable();
    triPersonnesModifie = true;
    marqueModif_ = true;
    return true;
}

} // namespace sylvane
