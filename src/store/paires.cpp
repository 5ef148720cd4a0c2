// The two-slot block caches of the keyword entries, the document positions
// and the event positions: a block is looked for in both slots, and a new
// one replaces the slot that was not used last.
#include "store/base.h"

#include "store/pack.h"

namespace sylvane {

std::string& Base::BlocPaire(PaireBlocs& p, std::uint32_t bloc, int* slot) {
    int s = -1;
    if (p.slots[0].bloc == bloc)
        s = 0;
    else if (p.slots[1].bloc == bloc)
        s = 1;
    else {
        s = p.enCours == 0 ? 1 : 0;
        EcritSlotPaire(p, s);
        auto& sl = p.slots[s];
        std::uint32_t pos = PositionBloc(p.table, bloc);
        sl.donnees = pos ? Lire(pos, p.taille) : std::string();
        sl.donnees.resize(p.taille, '\0');
        sl.bloc = bloc;
        sl.sale = false;
    }
    p.enCours = s;
    if (slot) *slot = s;
    return p.slots[s].donnees;
}

void Base::EcritSlotPaire(PaireBlocs& p, int slot) {
    auto& s = p.slots[slot];
    if (s.sale && s.bloc != 0) EcritBlocTable(p.table, s.bloc, s.donnees);
    s.sale = false;
}

void Base::EcritPaire(PaireBlocs& p) {
    EcritSlotPaire(p, 0);
    EcritSlotPaire(p, 1);
}

void Base::RazPaire(PaireBlocs& p) {
    p.slots = {};
    p.enCours = 0;
}

std::uint32_t Base::LitPosPaire(PaireBlocs& p, std::uint32_t n, std::uint32_t parBloc) {
    if (n == 0) return 0;
    const std::string& b = BlocPaire(p, (n - 1) / parBloc + 1);
    const std::size_t largeur = p.taille / parBloc;
    return Unpack4(b, ((n - 1) % parBloc) * largeur);
}

void Base::EcritPosPaire(PaireBlocs& p, std::uint32_t n, std::uint32_t parBloc,
                         std::string_view octets) {
    if (n == 0) return;
    int slot = 0;
    std::string& b = BlocPaire(p, (n - 1) / parBloc + 1, &slot);
    const std::size_t largeur = p.taille / parBloc;
    b.replace(((n - 1) % parBloc) * largeur, octets.size(), octets);
    p.slots[slot].sale = true;
    marqueModif_ = true;
}

} // namespace sylvane
