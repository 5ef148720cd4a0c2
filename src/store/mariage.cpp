// The marriage store: a cache of 40 blocks of 100 records of 30 bytes,
// replaced in order of loading.
#include "store/base.h"

#include "store/pack.h"

#include <algorithm>

namespace sylvane {
namespace {
constexpr int kSlots = 40;
constexpr int kParBloc = 100;
constexpr int kTailleEnreg = 30;
constexpr int kTailleBloc = kParBloc * kTailleEnreg;
constexpr int oMari = 0, oFemme = 4, oAn = 8, oAnFin = 12, oNote = 16;
} // namespace

void Base::RazMariages() {
    for (auto& s : slotsM_) s = Slot{};
    ordreM_.fill(0);
    slotCourantM_ = -1;
    enregCourantM_ = 0;
    noCourantM_ = 0;
    cacheNoteMariage_ = {0, {}};
}

void Base::LitMariage(std::uint32_t m) {
    if (m == 0 || m == noCourantM_) return;
    const std::uint32_t bloc = (m - 1) / kParBloc + 1;
    const int enreg = static_cast<int>(m - (bloc - 1) * kParBloc);
    // A hit leaves the order of replacement as it is.
    for (int s = 0; s < kSlots; ++s) {
        if (slotsM_[s].bloc == bloc) {
            slotCourantM_ = s;
            enregCourantM_ = enreg;
            noCourantM_ = m;
            return;
        }
    }
    int slot = -1;
    for (int p = 0; p < kSlots; ++p) {
        if (ordreM_[p] == 0) {
            ordreM_[p] = p + 1;
            slot = p;
            break;
        }
    }
    if (slot < 0) {
        slot = ordreM_[0] - 1;
        EcritBlocMariage(slot);
        std::rotate(ordreM_.begin(), ordreM_.begin() + 1, ordreM_.end());
    }
    auto& sl = slotsM_[slot];
    std::uint32_t pos = PositionBloc(Table::Mariages, bloc);
    sl.donnees = pos ? Lire(pos, kTailleBloc) : std::string();
    sl.donnees.resize(kTailleBloc, '\0');
    sl.bloc = bloc;
    sl.sale = false;
    ++stats_.lecturesBlocMariage;
    slotCourantM_ = slot;
    enregCourantM_ = enreg;
    noCourantM_ = m;
}

char* Base::EnregMariage() {
    return slotsM_[slotCourantM_].donnees.data() + (enregCourantM_ - 1) * kTailleEnreg;
}

void Base::EcritBlocMariage(int slot) {
    auto& s = slotsM_[slot];
    if (!s.sale) return;
    if (s.bloc == 0) {
        s.sale = false;
        return;
    }
    EcritBlocTable(Table::Mariages, s.bloc, s.donnees);
    ++stats_.ecrituresBlocMariage;
    s.sale = false;
}

void Base::EcritMariages() {
    for (int s = 0; s < kSlots; ++s) EcritBlocMariage(s);
}

std::vector<std::uint32_t> Base::BlocsCacheMariages() const {
    std::vector<std::uint32_t> v;
    for (int s : ordreM_)
        if (s) v.push_back(slotsM_[s - 1].bloc);
    return v;
}

std::uint32_t Base::LitMari(std::uint32_t m) {
    if (m == 0) return 0;
    LitMariage(m);
    auto v = LitBrut(EnregMariage() + oMari);
    return v < 0 ? 0 : static_cast<std::uint32_t>(v);
}

std::uint32_t Base::LitFemme(std::uint32_t m) {
    if (m == 0) return 0;
    LitMariage(m);
    auto v = LitBrut(EnregMariage() + oFemme);
    return v < 0 ? 0 : static_cast<std::uint32_t>(v);
}

std::string Base::LitAnMariage(std::uint32_t m) {
    if (m == 0) return "";
    LitMariage(m);
    return Annee(EnregMariage() + oAn);
}

std::string Base::LitAnFin(std::uint32_t m) {
    if (m == 0) return "";
    LitMariage(m);
    return Annee(EnregMariage() + oAnFin);
}

std::string Base::CleAnMariage(std::uint32_t m) { return CleAnnee(LitAnMariage(m)); }
std::string Base::CleAnFin(std::uint32_t m) { return CleAnnee(LitAnFin(m)); }

std::string Base::LitNoteMariage(std::uint32_t m) {
    if (m == 0) return "";
    if (cacheNoteMariage_.first == m) return cacheNoteMariage_.second;
    LitMariage(m);
    auto pos = LitBrut(EnregMariage() + oNote);
    std::string t = pos > 0 ? LireTexte(static_cast<std::uint32_t>(pos), 1000, 0) : "";
    cacheNoteMariage_ = {m, t};
    return t;
}

void Base::EcritNumeroMariage(std::uint32_t m, int offset, std::uint32_t p) {
    if (m == 0) return;
    LitMariage(m);
    EcritBrut(EnregMariage() + offset, static_cast<std::int32_t>(p));
    slotsM_[slotCourantM_].sale = true;
    marqueModif_ = true;
    redessiner = true;
}

void Base::EcritMari(std::uint32_t m, std::uint32_t p) { EcritNumeroMariage(m, oMari, p); }
void Base::EcritFemme(std::uint32_t m, std::uint32_t p) { EcritNumeroMariage(m, oFemme, p); }

void Base::EcritAnneeMariage(std::uint32_t m, int offset, std::string_view s) {
    if (m == 0) return;
    LitMariage(m);
    std::string a(s.substr(0, 4));
    a.resize(4, ' ');
    std::copy(a.begin(), a.end(), EnregMariage() + offset);
    slotsM_[slotCourantM_].sale = true;
    marqueModif_ = true;
}

void Base::EcritAnMariage(std::uint32_t m, std::string_view s) { EcritAnneeMariage(m, oAn, s); }
void Base::EcritAnFin(std::uint32_t m, std::string_view s) { EcritAnneeMariage(m, oAnFin, s); }

void Base::EcritNoteMariage(std::uint32_t m, std::string_view s) {
    if (m == 0) return;
    LitMariage(m);
    const std::uint32_t pos = AjouteTexte(s);
    EcritBrut(EnregMariage() + oNote, static_cast<std::int32_t>(pos));
    slotsM_[slotCourantM_].sale = true;
    marqueModif_ = true;
    cacheNoteMariage_ = {m, std::string(s)};
}

std::uint32_t Base::CreeMariage(std::uint32_t mari, std::uint32_t femme, std::string_view an,
                                std::string_view anFin) {
    const std::uint32_t m = entete_.maxMariage + 1;
    entete_.maxMariage = m;
    EcritMari(m, mari);
    EcritFemme(m, femme);
    EcritAnMariage(m, an);
    EcritAnFin(m, anFin);
    EcritNoteMariage(m, "");
    if (mari) MajMariages(mari, m, 'A');
    if (femme) MajMariages(femme, m, 'A');
    return m;
}

} // namespace sylvane
