// The person store: a cache of 20 blocks of 100 records, the accessors, the
// family lists and the display names.
#include "store/base.h"

#include "store/pack.h"
#include "text/mots.h"
#include "text/tags.h"
#include "text/utf8.h"

#include <algorithm>

namespace sylvane {
namespace {

constexpr int kSlots = 20;
constexpr int kParBloc = 100;
constexpr int kTailleEnreg = 60;
constexpr int kTailleBloc = kParBloc * kTailleEnreg;

// Offsets of the record fields.
constexpr int oSexe = 0, oPere = 1, oMere = 7, oAnNaiss = 13, oAnDeces = 17, oIdentite = 21,
              oNote = 25, oMariages = 29, oEnfants = 33, oLiens = 37, oEvts = 41, oDocs = 45;

// The comparable form of a year: blanks become "0", a "-" anywhere becomes
// "0" with a "-" at the front.
std::string CleAn(std::string an) {
    an.resize(4, ' ');
    for (char& c : an)
        if (c == ' ' || c == '\0') c = '0';
    if (an.find('-') == std::string::npos) return an;
    // A year before Christ, its sign anywhere: "850-" and "-850" both give
    // "-850", which sorts before every year of the era.
    std::string chiffres;
    for (char c : an)
        if (c != '-') chiffres += c;
    chiffres.insert(0, 4 - chiffres.size(), '0');
    chiffres[0] = '-';
    return chiffres;
}

std::string Qualificatif(const std::string& date) {
    std::string q = CleMot(date.substr(0, 3));
    if (q == "BEF" || q == "BET") return "<";
    if (q == "AFT") return ">";
    if (q == "ABT" || q == "EST" || q == "CAL") return "~";
    return "";
}

} // namespace

std::string CleAnnee(const std::string& an) { return CleAn(an); }

// --- Cache --------------------------------------------------------------------

void Base::RazFiches() {
    for (auto& s : slots_) s = Slot{};
    ordre_.fill(0);
    slotCourant_ = -1;
    enregCourant_ = 0;
    noCourant_ = 0;
    identiteNo_ = 0;
    for (auto* c : {&cacheNote_, &cacheMariages_, &cacheEnfants_, &cacheLiens_, &cacheEvts_,
                    &cacheDocs_})
        *c = {0, {}};
}

void Base::LitFiche(std::uint32_t n) {
    if (n == 0 || n == noCourant_) return;
    const std::uint32_t bloc = (n - 1) / kParBloc + 1;
    const int enreg = static_cast<int>(n - (bloc - 1) * kParBloc);
    // A hit moves the slot to the end of the order list.
    for (int p = kSlots - 1; p >= 0; --p) {
        int s = ordre_[p];
        if (s != 0 && slots_[s - 1].bloc == bloc) {
            std::rotate(ordre_.begin() + p, ordre_.begin() + p + 1, ordre_.end());
            slotCourant_ = s - 1;
            enregCourant_ = enreg;
            noCourant_ = n;
            return;
        }
    }
    int slot = -1;
    for (int p = kSlots - 1; p >= 0; --p) {
        if (ordre_[p] == 0) {
            ordre_[p] = p + 1;
            slot = p;
            break;
        }
    }
    if (slot < 0) {
        slot = ordre_[0] - 1;
        EcritBloc(slot);
        std::rotate(ordre_.begin(), ordre_.begin() + 1, ordre_.end());
    }
    auto& sl = slots_[slot];
    std::uint32_t pos = PositionBloc(Table::Personnes, bloc);
    sl.donnees = pos ? Lire(pos, kTailleBloc) : std::string();
    sl.donnees.resize(kTailleBloc, '\0');
    sl.bloc = bloc;
    sl.sale = false;
    ++stats_.lecturesBlocPersonne;
    slotCourant_ = slot;
    enregCourant_ = enreg;
    noCourant_ = n;
}

char* Base::Enreg() {
    return slots_[slotCourant_].donnees.data() + (enregCourant_ - 1) * kTailleEnreg;
}

void Base::Salir() {
    slots_[slotCourant_].sale = true;
    marqueModif_ = true;
}

void Base::EcritBloc(int slot) {
    auto& s = slots_[slot];
    if (!s.sale) return;
    if (s.bloc == 0) {
        s.sale = false;
        return;
    }
    EcritBlocTable(Table::Personnes, s.bloc, s.donnees);
    ++stats_.ecrituresBlocPersonne;
    s.sale = false;
}

void Base::EcritFiches() {
    for (int s = 0; s < kSlots; ++s) EcritBloc(s);
}

std::vector<std::uint32_t> Base::BlocsCachePersonnes() const {
    std::vector<std::uint32_t> v;
    for (int s : ordre_)
        if (s) v.push_back(slots_[s - 1].bloc);
    return v;
}

// --- Fixed fields -------------------------------------------------------------

std::string Base::Annee(const char* p) const {
    std::string a(p, 4);
    if (a == std::string(4, '\0')) return "";
    while (!a.empty() && (a.back() == ' ' || a.back() == '\0')) a.pop_back();
    return a;
}

std::string Base::LitSexe(std::uint32_t n) {
    if (n == 0) return "";
    LitFiche(n);
    char c = Enreg()[oSexe];
    return c == '\0' ? std::string() : std::string(1, c);
}

std::uint32_t Base::LitPere(std::uint32_t n) {
    if (n == 0) return 0;
    LitFiche(n);
    auto v = LitBrut(Enreg() + oPere);
    return v < 0 ? 0 : static_cast<std::uint32_t>(v);
}

std::uint32_t Base::LitMere(std::uint32_t n) {
    if (n == 0) return 0;
    LitFiche(n);
    auto v = LitBrut(Enreg() + oMere);
    return v < 0 ? 0 : static_cast<std::uint32_t>(v);
}

std::string Base::LitAnNaiss(std::uint32_t n) {
    if (n == 0) return "";
    LitFiche(n);
    return Annee(Enreg() + oAnNaiss);
}

std::string Base::LitAnDeces(std::uint32_t n) {
    if (n == 0) return "";
    LitFiche(n);
    return Annee(Enreg() + oAnDeces);
}

std::string Base::CleAnNaiss(std::uint32_t n) { return CleAn(LitAnNaiss(n)); }

std::string Base::CleAnDeces(std::uint32_t n) {
    std::string k = CleAn(LitAnDeces(n));
    bool chiffres = true;
    for (int i = 0; i < 3; ++i)
        if (!(k[i] >= '0' && k[i] <= '9')) chiffres = false;
    return chiffres ? k : "Z   ";
}

std::uint32_t Base::PositionChamp(std::uint32_t n, int offset) {
    if (n == 0) return 0;
    LitFiche(n);
    auto v = LitBrut(Enreg() + offset);
    return v < 0 ? 0 : static_cast<std::uint32_t>(v);
}

void Base::EcritSexe(std::uint32_t n, std::string_view s) {
    if (n == 0) return;
    LitFiche(n);
    Enreg()[oSexe] = s.empty() ? ' ' : s[0];
    Salir();
}

void Base::EcritPere(std::uint32_t n, std::uint32_t p) {
    if (n == 0) return;
    LitFiche(n);
    if (LitBrut(Enreg() + oPere) == static_cast<std::int32_t>(p)) return;
    EcritBrut(Enreg() + oPere, static_cast<std::int32_t>(p));
    Salir();
    if (parentChange_) parentChange_(n, p);
}

void Base::EcritMere(std::uint32_t n, std::uint32_t m) {
    if (n == 0) return;
    LitFiche(n);
    if (LitBrut(Enreg() + oMere) == static_cast<std::int32_t>(m)) return;
    EcritBrut(Enreg() + oMere, static_cast<std::int32_t>(m));
    Salir();
    if (parentChange_) parentChange_(n, m);
}

void Base::EcritAnnee(std::uint32_t n, int offset, std::string_view s) {
    if (n == 0) return;
    LitFiche(n);
    std::string a(s.substr(0, 4));
    a.resize(4, ' ');
    std::copy(a.begin(), a.end(), Enreg() + offset);
    Salir();
}

void Base::EcritAnNaiss(std::uint32_t n, std::string_view s) {
    EcritAnnee(n, oAnNaiss, s);
    OublieCle(n);
}

void Base::EcritAnDeces(std::uint32_t n, std::string_view s) { EcritAnnee(n, oAnDeces, s); }

// --- Texts --------------------------------------------------------------------

// Splits the raw identity text into its five fields and keeps it as the
// cache of person n.
void Base::GardeIdentite(std::uint32_t n, std::string brute) {
    identiteBrute_ = std::move(brute);
    std::size_t debut = 0;
    for (int k = 0; k < 5; ++k) {
        if (debut > identiteBrute_.size()) {
            identite_[k].clear();
            continue;
        }
        auto fin = k < 4 ? PointVirgule(identiteBrute_, debut) : std::string::npos;
        if (fin == std::string::npos) fin = identiteBrute_.size();
        identite_[k] = identiteBrute_.substr(debut, fin - debut);
        debut = fin + 1;
    }
    identiteNo_ = n;
}

void Base::LitIdentiteCache(std::uint32_t n) {
    if (n == identiteNo_) return;
    LitFiche(n);
    auto pos = LitBrut(Enreg() + oIdentite);
    bool trop = false;
    std::string t = pos > 0 ? LireTexte(static_cast<std::uint32_t>(pos), 100, 1000, &trop) : "";
    GardeIdentite(n, trop ? std::string() : std::move(t));
}

std::string Base::LitIdentite(std::uint32_t n) {
    if (n == 0) return "";
    LitIdentiteCache(n);
    return identiteBrute_;
}
std::string Base::LitNom(std::uint32_t n) {
    if (n == 0) return "";
    LitIdentiteCache(n);
    return identite_[0];
}
std::string Base::LitPrenom(std::uint32_t n) {
    if (n == 0) return "";
    LitIdentiteCache(n);
    return identite_[1];
}
std::string Base::LitAutrePrenom(std::uint32_t n) {
    if (n == 0) return "";
    LitIdentiteCache(n);
    return identite_[2];
}
std::string Base::LitDateNaiss(std::uint32_t n) {
    if (n == 0) return "";
    LitIdentiteCache(n);
    return identite_[3];
}
std::string Base::LitDateDeces(std::uint32_t n) {
    if (n == 0) return "";
    LitIdentiteCache(n);
    return identite_[4];
}

void Base::EcritIdentite(std::uint32_t n, std::string_view s) {
    if (n == 0) return;
    LitFiche(n);
    const std::uint32_t pos = AjouteTexte(s);
    EcritBrut(Enreg() + oIdentite, static_cast<std::int32_t>(pos));
    Salir();
    GardeIdentite(n, std::string(s));
    OublieCle(n);
}

std::string Base::LitNote(std::uint32_t n) {
    if (n == 0) return "";
    if (cacheNote_.first == n) return cacheNote_.second;
    LitFiche(n);
    auto pos = LitBrut(Enreg() + oNote);
    std::string t = pos > 0 ? LireTexte(static_cast<std::uint32_t>(pos), 1000, 0) : "";
    cacheNote_ = {n, t};
    return t;
}

void Base::EcritNote(std::uint32_t n, std::string_view s) {
    if (n == 0) return;
    LitFiche(n);
    const std::uint32_t pos = AjouteTexte(s);
    EcritBrut(Enreg() + oNote, static_cast<std::int32_t>(pos));
    Salir();
    cacheNote_ = {n, std::string(s)};
}

// --- Lists --------------------------------------------------------------------

std::string Base::LitListe(std::uint32_t n, int offset, int taille, int pas,
                           std::pair<std::uint32_t, std::string>& cache) {
    if (n == 0) return "";
    if (cache.first == n) return cache.second;
    LitFiche(n);
    auto pos = LitBrut(Enreg() + offset);
    std::string r;
    if (pos > 0) {
        std::string d = Lire(static_cast<std::uint32_t>(pos), static_cast<std::size_t>(taille));
        for (std::size_t i = 0; i < 200; ++i) {
            std::size_t o = i * static_cast<std::size_t>(pas);
            if (o + static_cast<std::size_t>(pas) > d.size()) break;
            if (Unpack4(d, o) == 0) break;
            r.append(d, o, static_cast<std::size_t>(pas));
        }
    }
    cache = {n, r};
    return r;
}

void Base::EcritListe(std::uint32_t n, int offset, std::string_view liste,
                      std::pair<std::uint32_t, std::string>& cache) {
    if (n == 0) return;
    LitFiche(n);
    std::uint32_t pos = 0;
    if (!liste.empty()) {
        std::string l(liste);
        l += Pack4(0);
        pos = Ajouter(l);
    }
    EcritBrut(Enreg() + offset, static_cast<std::int32_t>(pos));
    Salir();
    // The cache holds what a reader would see: up to the first 0, at most
    // 200 entries.
    const std::size_t pas = (offset == oLiens || offset == oEvts) ? 8 : 4;
    std::string vu;
    for (std::size_t o = 0; o + pas <= liste.size() && o / pas < 200; o += pas) {
        if (Unpack4(liste, o) == 0) break;
        vu.append(liste.substr(o, pas));
    }
    cache = {n, vu};
}

std::string Base::ListeMariages(std::uint32_t n) { return LitListe(n, oMariages, 800, 4, cacheMariages_); }
std::string Base::ListeEnfants(std::uint32_t n) { return LitListe(n, oEnfants, 800, 4, cacheEnfants_); }
std::string Base::ListeDocs(std::uint32_t n) { return LitListe(n, oDocs, 800, 4, cacheDocs_); }
std::string Base::ListeLiens(std::uint32_t n) { return LitListe(n, oLiens, 1600, 8, cacheLiens_); }
std::string Base::ListeEvts(std::uint32_t n) { return LitListe(n, oEvts, 1600, 8, cacheEvts_); }

namespace {
std::uint32_t Element(const std::string& liste, int i, std::size_t pas) {
    if (i < 1) return 0;
    std::size_t o = static_cast<std::size_t>(i - 1) * pas;
    if (o + 4 > liste.size()) return 0;
    return Unpack4(liste, o);
}
} // namespace

std::uint32_t Base::MariageNo(std::uint32_t n, int i) { return Element(ListeMariages(n), i, 4); }
std::uint32_t Base::EnfantNo(std::uint32_t n, int i) { return Element(ListeEnfants(n), i, 4); }
std::uint32_t Base::DocNo(std::uint32_t n, int i) { return Element(ListeDocs(n), i, 4); }
std::uint32_t Base::LienNo(std::uint32_t n, int i) { return Element(ListeLiens(n), i, 8); }
std::uint32_t Base::EvtNo(std::uint32_t n, int i) { return Element(ListeEvts(n), i, 8); }

std::string Base::LitTextePaire(std::uint32_t pos) {
    if (pos == 0 || pos > 800000000) return "";
    std::string t = Lire(pos, 50);
    return TexteDuFichier(std::string_view(t).substr(0, t.find('#')));
}

std::string Base::TexteLienBrutNo(std::uint32_t n, int i) {
    std::string l = ListeLiens(n);
    if (i < 1 || static_cast<std::size_t>(i) * 8 > l.size()) return "";
    return LitTextePaire(Unpack4(l, static_cast<std::size_t>(i - 1) * 8 + 4));
}

std::string Base::RoleEvtNo(std::uint32_t n, int i) {
    std::string l = ListeEvts(n);
    if (i < 1 || static_cast<std::size_t>(i) * 8 > l.size()) return "";
    return LitTextePaire(Unpack4(l, static_cast<std::size_t>(i - 1) * 8 + 4));
}

void Base::EcritListeMariages(std::uint32_t n, std::string_view l) { EcritListe(n, oMariages, l, cacheMariages_); }
void Base::EcritListeEnfants(std::uint32_t n, std::string_view l) { EcritListe(n, oEnfants, l, cacheEnfants_); }
void Base::EcritListeDocs(std::uint32_t n, std::string_view l) { EcritListe(n, oDocs, l, cacheDocs_); }

void Base::EcritListeLiens(std::uint32_t n,
                           const std::vector<std::pair<std::uint32_t, std::string>>& l) {
    std::string o;
    for (const auto& [p, t] : l) {
        std::string tag = Conv_TagLibelle(t);
        std::uint32_t pos = AjouteTexte(tag, true);
        o += Pack4(p) + Pack4(pos);
    }
    EcritListe(n, oLiens, o, cacheLiens_);
}

void Base::EcritListeEvts(std::uint32_t n,
                          const std::vector<std::pair<std::uint32_t, std::string>>& l) {
    std::string o;
    for (const auto& [e, r] : l) {
        std::uint32_t pos = AjouteTexte(r, true);
        o += Pack4(e) + Pack4(pos);
    }
    EcritListe(n, oEvts, o, cacheEvts_);
}

namespace {
// Removes the first entry equal to v from a packed list of `pas`-byte entries.
void RetirePremier(std::string& l, std::uint32_t v, std::size_t pas) {
    for (std::size_t o = 0; o + pas <= l.size(); o += pas)
        if (Unpack4(l, o) == v) {
            l.erase(o, pas);
            return;
        }
}
} // namespace

void Base::MajMariages(std::uint32_t n, std::uint32_t m, char op) {
    if (n == 0) return;
    redessiner = true;
    std::string l = ListeMariages(n);
    if (op == 'A') l += Pack4(m);
    else if (op == 'S') RetirePremier(l, m, 4);
    else return;
    EcritListeMariages(n, l);
}

void Base::MajDocs(std::uint32_t n, std::uint32_t d, char op) {
    if (n == 0) return;
    redessiner = true;
    std::string l = ListeDocs(n);
    if (op == 'A') l += Pack4(d);
    else if (op == 'S') RetirePremier(l, d, 4);
    else return;
    EcritListeDocs(n, l);
}

void Base::MajEnfants(std::uint32_t n, std::uint32_t c, char op) {
    if (n == 0) return;
    redessiner = true;
    std::string l = ListeEnfants(n);
    if (op == 'A') {
        const std::string cle = CleAnNaiss(c);
        std::size_t o = 0;
        for (; o + 4 <= l.size(); o += 4)
            if (CleAnNaiss(Unpack4(l, o)) > cle) break;
        l.insert(o, Pack4(c));
    } else if (op == 'S') {
        RetirePremier(l, c, 4);
    } else {
        return;
    }
    EcritListeEnfants(n, l);
}

void Base::MajLiens(std::uint32_t n, std::uint32_t p, std::string_view texte, char op) {
    if (n == 0) return;
    redessiner = true;
    std::string l = ListeLiens(n);
    std::string tag = Conv_TagLibelle(texte);
    if (op == 'A') {
        std::uint32_t pos = AjouteTexte(tag, true);
        l += Pack4(p) + Pack4(pos);
    } else if (op == 'S') {
        for (std::size_t o = 0; o + 8 <= l.size(); o += 8)
            if (Unpack4(l, o) == p && LitTextePaire(Unpack4(l, o + 4)) == tag) {
                l.erase(o, 8);
                break;
            }
    } else if (op == 'M') {
        if (p < 1 || std::size_t(p) * 8 > l.size()) return;
        std::uint32_t pos = AjouteTexte(tag, true);
        l.replace((p - 1) * 8 + 4, 4, Pack4(pos));
    } else {
        return;
    }
    EcritListe(n, oLiens, l, cacheLiens_);
}

void Base::MajEvts(std::uint32_t n, std::uint32_t e, std::string_view role, char op) {
    if (n == 0) return;
    redessiner = true;
    std::string l = ListeEvts(n);
    if (op == 'A') {
        std::uint32_t pos = AjouteTexte(role, true);
        l += Pack4(e) + Pack4(pos);
        EcritListe(n, oEvts, l, cacheEvts_);
        TriEvts(n);
        return;
    }
    if (op == 'S') {
        RetirePremier(l, e, 8);
    } else if (op == 'M') {
        if (e < 1 || std::size_t(e) * 8 > l.size()) return;
        std::uint32_t pos = AjouteTexte(role, true);
        l.replace((e - 1) * 8 + 4, 4, Pack4(pos));
    } else {
        return;
    }
    EcritListe(n, oEvts, l, cacheEvts_);
}

void Base::TriEvts(std::uint32_t n) {
    std::string l = ListeEvts(n);
    const std::size_t nb = l.size() / 8;
    if (nb < 2) return;
    std::vector<long> dates(nb);
    for (std::size_t i = 0; i < nb; ++i) dates[i] = ValeurDateEvt(Unpack4(l, i * 8));
    bool echange = false;
    for (bool passe = true; passe;) {
        passe = false;
        for (std::size_t i = nb - 1; i >= 1; --i) {
            if (dates[i] < dates[i - 1]) {
                std::swap(dates[i], dates[i - 1]);
                std::string a = l.substr((i - 1) * 8, 8), b = l.substr(i * 8, 8);
                l.replace((i - 1) * 8, 8, b);
                l.replace(i * 8, 8, a);
                passe = echange = true;
            }
        }
    }
    if (echange) EcritListe(n, oEvts, l, cacheEvts_);
}

// --- Display names ------------------------------------------------------------

std::string Base::NomComplet(std::uint32_t n) {
    if (n == 0) return "";
    std::string r;
    for (const auto& tag : parametres_.affichageNom) {
        std::string v;
        if (tag == "FNAM") v = LitPrenom(n);
        else if (tag == "BIRN") v = LitNom(n);
        else if (tag == "OFNM") v = LitAutrePrenom(n);
        else if (tag == "FATN") v = LitNom(LitPere(n));
        else if (tag == "MOTN") v = LitNom(LitMere(n));
        else if (EstTagRubrique(tag)) v = ValeurRubriquePersonne(n, tag);
        else if (valeurNom_) v = valeurNom_(n, tag);
        r += ' ';
        r += v;
    }
    return Trim(r);
}

std::string Base::NomDates(std::uint32_t n) {
    std::string r = NomComplet(n);
    std::string an = Trim(LitAnNaiss(n)), ad = Trim(LitAnDeces(n));
    std::string qn = Qualificatif(LitDateNaiss(n)), qd = Qualificatif(LitDateDeces(n));
    if (!an.empty() && !ad.empty()) r += " (" + qn + an + "-" + qd + ad + ")";
    else if (!an.empty()) r += " (o" + qn + an + ") ";
    else if (!ad.empty()) r += " (+" + qd + ad + ")";
    return r;
}

// --- Creation and deletion ------------------------------------------------------

std::string Base::LigneMotsCles(std::uint32_t n, std::string_view lieuNaiss,
                                std::string_view lieuDeces) {
    return LigneMotsCles(LitNom(n), LitPrenom(n), lieuNaiss, lieuDeces);
}

std::string Base::LigneMotsCles(std::string_view nom, std::string_view prenomsBruts,
                                std::string_view lieuNaiss, std::string_view lieuDeces) const {
    std::string l = "|" + SansParticule(nom) + " \xB6";
    const std::string prenoms = Trim(prenomsBruts);
    // With header field 102 the first blank stops the keyword: the first
    // name alone is a keyword and the others stay plain words.
    l += entete_.premierPrenom == '1' ? prenoms : VersPoints(prenoms);
    if (!Trim(lieuNaiss).empty()) l += " $" + VersPoints(lieuNaiss);
    if (!Trim(lieuDeces).empty()) l += " ~" + VersPoints(lieuDeces);
    return l;
}

std::uint32_t Base::CreePersonne(std::string_view nom, std::string_view prenom,
                                 std::string_view autres, char sexe, std::string_view anNaiss,
                                 std::string_view dateNaiss, std::string_view anDeces,
                                 std::string_view dateDeces) {
    const std::uint32_t n = entete_.maxPersonne + 1;
    entete_.maxPersonne = n;
    if (personneCreee_) personneCreee_(n);
    std::string identite = std::string(nom) + ";" + std::string(prenom) + ";" +
                           std::string(autres) + ";" + std::string(dateNaiss) + ";" +
                           std::string(dateDeces);
    EcritIdentite(n, identite);
    EcritSexe(n, std::string(1, sexe));
    EcritAnNaiss(n, anNaiss);
    EcritAnDeces(n, anDeces);
    EcritPere(n, 0);
    EcritMere(n, 0);
    EcritNote(n, "");
    EcritListeMariages(n, "");
    EcritListeEnfants(n, "");
    EcritListe(n, oLiens, "", cacheLiens_);
    EcritListe(n, oEvts, "", cacheEvts_);
    EcritListeDocs(n, "");
    std::uint32_t place = differeDepuis_ ? entete_.nbPersonnes + 1 : PlaceFiche(n);
    entete_.nbPersonnes += 1;
    MajTriFiche(place, n, 'A');
    triPersonnesModifie = true;
    std::string note = LigneMotsCles(n);
    // During a batch (an import) the index is built once at its end.
    if (lot_) AjoutLot(n, note);
    else MajMots(n, "", note);
    EcritNote(n, note);
    return n;
}

int Base::RefusSuppressionPersonne(std::uint32_t n) {
    if (EnfantNo(n, 1)) return 610;
    if (MariageNo(n, 1)) return 611;
    if (LienNo(n, 1)) return 612;
    if (DocNo(n, 1)) return 613;
    if (EvtNo(n, 1)) return 614;
    if (LitPere(n)) return 615;
    if (LitMere(n)) return 616;
    return 0;
}

int Base::SupprimePersonne(std::uint32_t n) {
    if (int refus = RefusSuppressionPersonne(n)) return refus;
    std::uint32_t place = TrouvePlaceFiche(n);
    EcritAnNaiss(n, "");
    EcritAnDeces(n, "");
    std::string note = LitNote(n);
    if (!note.empty()) MajMots(n, note, "");
    EcritNote(n, "");
    EcritIdentite(n, "");
    EcritSexe(n, " ");
    EcritListeMariages(n, "");
    EcritListeEnfants(n, "");
    EcritListe(n, oLiens, "", cacheLiens_);
    EcritListe(n, oEvts, "", cacheEvts_);
    EcritListeDocs(n, "");
    if (place) {
        MajTriFiche(place, n, 'S');
        entete_.nbPersonnes -= 1;
    }
    triPersonnesModifie = true;
    return 0;
}

} // namespace sylvane
