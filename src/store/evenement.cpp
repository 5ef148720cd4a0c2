// The event store: a table of head positions in blocks of 1000, through a
// two-slot cache; heads of 20 bytes that are replaced, never changed; the
// event text, the note and the two lists behind them.
#include "store/base.h"

#include "store/pack.h"
#include "text/mots.h"
#include "text/tags.h"

namespace sylvane {
namespace {

constexpr std::uint32_t kParBloc = 1000;
constexpr std::uint32_t kDecalage = 1000000;
constexpr std::size_t kLimite = 32000;

std::string OctetsTete(const TeteEvt& t) {
    return Pack4(t.date) + Pack4(t.note) + Pack4(t.personnes) + Pack4(t.documents) + Pack4(t.texte);
}

// CR LF pairs at both ends of a note are not part of it.
std::string SansCrLf(std::string s) {
    while (s.size() >= 2 && s.compare(0, 2, "\r\n") == 0)
        s.erase(0, 2);
    while (s.size() >= 2 && s.compare(s.size() - 2, 2, "\r\n") == 0)
        s.resize(s.size() - 2);
    return s;
}

std::uint32_t Element(const std::string& liste, int i) {
    if (i < 1 || static_cast<std::size_t>(i) * 4 > liste.size()) return 0;
    return Unpack4(liste, static_cast<std::size_t>(i - 1) * 4);
}

void RetirePremier(std::string& l, std::uint32_t v) {
    for (std::size_t o = 0; o + 4 <= l.size(); o += 4)
        if (Unpack4(l, o) == v) {
            l.erase(o, 4);
            return;
        }
}

} // namespace

std::uint32_t Base::PosEvt(std::uint32_t e) {
    return LitPosPaire(paireEvts_, e, kParBloc);
}

void Base::EcritPosEvt(std::uint32_t e, std::uint32_t position) {
    EcritPosPaire(paireEvts_, e, kParBloc, Pack4(position));
    if (teteEvtNo_ == e) teteEvtNo_ = 0;
    if (texteEvtNo_ == e) texteEvtNo_ = 0;
    if (cachePersEvt_.first == e) cachePersEvt_ = {0, {}};
    if (cacheDocsEvt_.first == e) cacheDocsEvt_ = {0, {}};
}

void Base::EcritEvts() {
    EcritPaire(paireEvts_);
}

void Base::RazEvts() {
    RazPaire(paireEvts_);
    teteEvtNo_ = texteEvtNo_ = 0;
    cachePersEvt_ = cacheDocsEvt_ = {0, {}};
}

TeteEvt Base::LitTeteEvt(std::uint32_t e) {
    if (e == 0) return {};
    if (e == teteEvtNo_) return teteEvt_;
    TeteEvt t;
    if (std::uint32_t pos = PosEvt(e)) {
        std::string h = Lire(pos, 20);
        h.resize(20, '\0');
        t = {Unpack4(h, 0), Unpack4(h, 4), Unpack4(h, 8), Unpack4(h, 12), Unpack4(h, 16)};
    }
    teteEvtNo_ = e;
    teteEvt_ = t;
    return t;
}

void Base::EcritTeteEvt(std::uint32_t e, const TeteEvt* tete) {
    if (e == 0) return;
    if (!tete) {
        EcritPosEvt(e, 0);
        teteEvt_ = {};
    } else {
        EcritPosEvt(e, Ajouter(OctetsTete(*tete)));
        teteEvt_ = *tete;
    }
    teteEvtNo_ = e;
    marqueModif_ = true;
}

long Base::DateEvt(std::uint32_t e) {
    return static_cast<long>(LitTeteEvt(e).date) - static_cast<long>(kDecalage);
}

long Base::ValeurDateEvt(std::uint32_t e) {
    return DateEvt(e);
}

void Base::EcritDateEvt(std::uint32_t e, long date) {
    TeteEvt t = LitTeteEvt(e);
    t.date = static_cast<std::uint32_t>(date + static_cast<long>(kDecalage));
    EcritTeteEvt(e, &t);
}

void Base::LitEvt(std::uint32_t e) {
    if (e == texteEvtNo_ && e != 0) return;
    for (auto& c : texteEvt_)
        c.clear();
    texteEvtNo_ = e;
    if (e == 0) return;
    bool trop = false;
    std::string t = LireTexte(LitTeteEvt(e).texte, 100, kLimite, &trop);
    if (trop) {
        Signale("Incident sur l'\xE9v\xE9nement " + std::to_string(e) +
                " - R\xE9organisez votre base");
        return;
    }
    std::size_t debut = 0;
    for (int k = 0; k < 4 && debut <= t.size(); ++k) {
        std::size_t fin = k < 3 ? t.find('\0', debut) : std::string::npos;
        if (fin == std::string::npos) fin = t.size();
        texteEvt_[k] = t.substr(debut, fin - debut);
        debut = fin + 1;
    }
}

std::string Base::LieuEvt(std::uint32_t e) {
    return LitEvt(e), texteEvt_[0];
}
std::string Base::TitreEvt(std::uint32_t e) {
    return LitEvt(e), texteEvt_[1];
}
std::string Base::TagEvt(std::uint32_t e) {
    return LitEvt(e), texteEvt_[2];
}
std::string Base::LibelleEvt(std::uint32_t e) {
    return Conv_LibelleTag(TagEvt(e));
}

void Base::EcritEvt(std::uint32_t e, std::string_view texte) {
    if (e == 0) return;
    std::uint32_t pos = AjouteTexte(texte, true);
    TeteEvt t = LitTeteEvt(e);
    t.texte = pos;
    EcritTeteEvt(e, &t);
    std::string s(texte);
    std::size_t debut = 0;
    for (int k = 0; k < 4; ++k) {
        texteEvt_[k].clear();
        if (debut > s.size()) continue;
        std::size_t fin = k < 3 ? s.find('\0', debut) : std::string::npos;
        if (fin == std::string::npos) fin = s.size();
        texteEvt_[k] = s.substr(debut, fin - debut);
        debut = fin + 1;
    }
    texteEvtNo_ = e;
    temoins_.Ajoute(texteEvt_[2]);
}

std::string Base::NoteEvt(std::uint32_t e) {
    if (e == 0) return "";
    bool trop = false;
    std::string t = LireTexte(LitTeteEvt(e).note, 200, kLimite, &trop);
    if (trop) {
        Signale("Incident sur l'\xE9v\xE9nement " + std::to_string(e) +
                " - R\xE9organisez votre base");
        return "";
    }
    return SansCrLf(t);
}

void Base::EcritNoteEvt(std::uint32_t e, std::string_view s) {
    if (e == 0) return;
    std::uint32_t pos = AjouteTexte(s);
    TeteEvt t = LitTeteEvt(e);
    t.note = pos;
    EcritTeteEvt(e, &t);
}

// A list of numbers ended by a 0, read in chunks of 200 bytes; a person
// list stops at 800 bytes (200 persons) when no end came.
std::string Base::LitListeEvt(std::uint32_t position, bool personnes) {
    if (position == 0) return "";
    const std::size_t limite = personnes ? 800 : kLimite;
    std::string l;
    std::uint32_t p = position;
    for (;;) {
        std::string c = Lire(p, 200);
        std::size_t debut = l.size();
        l += c;
        for (std::size_t o = debut; o + 4 <= l.size(); o += 4)
            if (Unpack4(l, o) == 0) return l.substr(0, std::min(o, limite));
        if (l.size() >= limite || c.size() < 200) break;
        p += 200;
    }
    l.resize(std::min(l.size(), limite) / 4 * 4);
    return l;
}

std::string Base::ListePersonnesEvt(std::uint32_t e) {
    if (e == 0) return "";
    if (cachePersEvt_.first != e) cachePersEvt_ = {e, LitListeEvt(LitTeteEvt(e).personnes, true)};
    return cachePersEvt_.second;
}

std::string Base::ListeDocsEvt(std::uint32_t e) {
    if (e == 0) return "";
    if (cacheDocsEvt_.first != e) cacheDocsEvt_ = {e, LitListeEvt(LitTeteEvt(e).documents, false)};
    return cacheDocsEvt_.second;
}

std::uint32_t Base::PersonneEvtNo(std::uint32_t e, int i) {
    return Element(ListePersonnesEvt(e), i);
}
std::uint32_t Base::DocEvtNo(std::uint32_t e, int i) {
    return Element(ListeDocsEvt(e), i);
}

void Base::EcritListeEvt(std::uint32_t e, std::string_view liste, bool personnes) {
    // An empty person list is no list at all; an empty document list is
    // still written, as its end mark alone.
    std::uint32_t pos =
        personnes && liste.empty() ? 0 : Ajouter(std::string(liste) + Pack4(0));
    TeteEvt t = LitTeteEvt(e);
    (personnes ? t.personnes : t.documents) = pos;
    EcritTeteEvt(e, &t);
    auto& cache = personnes ? cachePersEvt_ : cacheDocsEvt_;
    cache.first = e;
    cache.second.assign(liste.data(), liste.size());
}

void Base::MajPersonnesEvt(std::uint32_t e, std::uint32_t p, char op) {
    if (e == 0) return;
    std::string l = ListePersonnesEvt(e);
    if (op == 'A')
        l.insert(0, Pack4(p));
    else if (op == 'S')
        RetirePremier(l, p);
    else
        return;
    EcritListeEvt(e, l, true);
}

void Base::MajDocsEvt(std::uint32_t e, std::uint32_t d, char op) {
    if (e == 0) return;
    std::string l = ListeDocsEvt(e);
    if (op == 'A')
        l.insert(0, Pack4(d));
    else if (op == 'S')
        RetirePremier(l, d);
    else
        return;
    EcritListeEvt(e, l, false);
}

// --- Creation and deletion ---------------------------------------------------

void Base::NouvelEvt(std::uint32_t e, long date, std::string_view texte) {
    entete_.maxEvenement = e;
    TeteEvt t;
    t.texte = AjouteTexte(texte, true);
    t.date = static_cast<std::uint32_t>(date + static_cast<long>(kDecalage));
    EcritTeteEvt(e, &t);
    std::uint32_t place = PlaceEvt(e);
    triEvenements_.inserer(place, e);
    entete_.nbEvenements += 1;
    triEvenementsModifie = true;
}

// Both sides of a link, the person first.
void Base::RoleEvt(std::uint32_t e, std::uint32_t p, const std::string& role) {
    if (p == 0) return;
    MajEvts(p, e, role, 'A');
    MajPersonnesEvt(e, p, 'A');
}

// The spouses that survive person n get the death event as widow or widower.
void Base::Veufs(std::uint32_t n, std::uint32_t e) {
    const std::string sexe = LitSexe(n);
    if (sexe != "H" && sexe != "F") return;
    const std::string deces = CleAnDeces(n);
    for (std::uint32_t m : Mariages(n)) {
        std::uint32_t conjoint = sexe == "H" ? LitFemme(m) : LitMari(m);
        if (conjoint == 0) continue;
        bool enCours = Trim(LitAnFin(m)).empty() || CleAnFin(m) == deces;
        bool vivant = Trim(LitAnDeces(conjoint)).empty() || CleAnDeces(conjoint) > deces;
        if (enCours && vivant) RoleEvt(e, conjoint, sexe == "H" ? "WIDW" : "WIDR");
    }
}

std::uint32_t Base::CreeEvtPersonne(std::uint32_t n, long date, std::string_view tag,
                                    std::string_view lieu) {
    const std::uint32_t e = entete_.maxEvenement + 1;
    std::string texte = Trim(lieu);
    texte += '\0';
    texte += NomComplet(n);
    texte += '\0';
    texte += tag;
    NouvelEvt(e, date, texte);
    temoins_.Ajoute(tag);
    const GenreEvt* genre = temoins_.Genre(tag);
    if (!genre || n == 0) return e;
    const std::string sexe = LitSexe(n);
    for (const std::string& role : genre->RolesPrincipaux(sexe.empty() ? ' ' : sexe[0])) {
        RoleEvt(e, n, role);
        if (role == "CHIL") {
            RoleEvt(e, LitPere(n), "FATH");
            RoleEvt(e, LitMere(n), "MOTH");
        } else if (role == "DEAD") {
            Veufs(n, e);
        }
    }
    return e;
}

std::uint32_t Base::CreeEvtMariage(std::uint32_t m, long date, std::string_view tag,
                                   std::string_view lieu) {
    const std::uint32_t e = entete_.maxEvenement + 1;
    const std::uint32_t mari = LitMari(m), femme = LitFemme(m);
    std::string texte = Trim(lieu);
    texte += '\0';
    texte += LitNom(mari) + "/" + LitNom(femme);
    texte += '\0';
    texte += tag;
    NouvelEvt(e, date, texte);
    temoins_.Ajoute(tag);
    const GenreEvt* genre = temoins_.Genre(tag);
    if (!genre || m == 0) return e;
    for (const std::string& cellule : genre->roles) {
        if (cellule.empty()) break;
        if (cellule.size() < 3 || cellule[0] != 'M') continue;
        const std::string role = cellule.substr(2);
        if (cellule[1] == 'H' || cellule[1] == ' ') RoleEvt(e, mari, role);
        if (cellule[1] == 'F' || cellule[1] == ' ') RoleEvt(e, femme, role);
    }
    return e;
}

void Base::SupprimeEvt(std::uint32_t e) {
    if (e == 0 || PosEvt(e) == 0) return;
    const std::uint32_t place = TrouvePlaceEvt(e);
    std::string personnes = ListePersonnesEvt(e);
    for (std::size_t o = 0; o + 4 <= personnes.size(); o += 4) {
        std::uint32_t p = Unpack4(personnes, o);
        MajEvts(p, e, "", 'S');
        MajPersonnesEvt(e, p, 'S');
    }
    EcritTeteEvt(e, nullptr);
    if (place) {
        triEvenements_.retirer(place);
        entete_.nbEvenements -= 1;
    }
    triEvenementsModifie = true;
}

} // namespace sylvane
