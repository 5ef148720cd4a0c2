#include "store/evenement_edition.h"

#include "store/pack.h"
#include "text/calendrier.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"

#include <algorithm>
#include <cstdio>

namespace sylvane {

namespace {

constexpr int kMaxListe = 200;
constexpr long kDecalage = 1000000;

std::string Sexe(Base& b, std::uint32_t p) {
    const std::string s = b.LitSexe(p);
    return s.empty() ? " " : s.substr(0, 1);
}

// What follows the first line of a note (from its CR LF on).
std::string SuiteNote(const std::string& note) {
    const std::size_t fin = note.find("\r\n");
    return fin == std::string::npos ? "" : note.substr(fin);
}

// The day and month of a day number in held form ("12/3").
std::string JourMois(long serie) {
    const DateCivile d = DepuisJourSerie(serie);
    return std::to_string(d.jour) + "/" + std::to_string(d.mois);
}

std::string AnneeTexte(long serie) { return std::to_string(DepuisJourSerie(serie).annee); }

// The day count of a held day and a year, nothing when they make no full date.
std::optional<long> Serie(const std::string& jourMois, const std::string& annee) {
    const std::string j = Trim(jourMois), a = Trim(annee);
    if (j.empty() || a.empty()) return std::nullopt;
    const std::string date = j + "/" + a;
    if (!Conv_DateValide(date, "dd/mm/yyyy")) return std::nullopt;
    return Conv_DateSerie(date, "dd/mm/yyyy");
}

// The owner's role in the event when it is the type's main role.
bool RolePrincipal(Base& b, std::uint32_t e, std::uint32_t p) {
    const std::string role = RoleDansEvenement(b, p, e);
    for (const CelluleRole& c : CellulesRoles(b.Temoins(), b.TagEvt(e)))
        if (c.principal && c.tag == role) return !role.empty();
    return false;
}

// The marriage of the owner whose other spouse is in the event as husband
// or wife; the owner's first marriage when the event names no spouse.
std::uint32_t MariageDeEvenement(Base& b, std::uint32_t e, std::uint32_t p) {
    const std::vector<std::uint32_t> mariages = b.Mariages(p);
    for (std::uint32_t m : mariages) {
        const std::uint32_t autre = b.LitMari(m) == p ? b.LitFemme(m) : b.LitMari(m);
        if (autre == 0) continue;
        const std::string r = RoleDansEvenement(b, autre, e);
        if (r == "HUSB" || r == "WIFE") return m;
    }
    return mariages.size() == 1 ? mariages.front() : 0;
}

// A new birth key moves the person in the sort table (sort by year), in its
// parents' child lists and in the keyword lists.
void NaissanceChangee(Base& b, std::uint32_t n, std::uint32_t place, const std::string& cleAvant) {
    if (b.Tete().modeTri == '1') {
        if (place) {
            b.MajTriFiche(place, n, 'S');
            b.TeteModifiable().nbPersonnes -= 1;
        }
        b.MajTriFiche(b.PlaceFiche(n), n, 'A');
        b.TeteModifiable().nbPersonnes += 1;
        b.triPersonnesModifie = true;
    }
    for (std::uint32_t parent : {b.LitPere(n), b.LitMere(n)})
        if (parent) {
            b.MajEnfants(parent, n, 'S');
            b.MajEnfants(parent, n, 'A');
        }
    b.RangeMots(n, cleAvant);
}

} // namespace

// --- Dates ------------------------------------------------------------------------------------

std::optional<long> LitDateEvenement(std::string_view texte) {
    const std::string t = Trim(texte);
    if (t.empty()) return 0L;
    const std::string locale = Conv_DateSaisie(t);
    if (Conv_DateValide(locale)) return Conv_DateSerie(locale);
    if (auto d = LitDateCalendrier(t, "dd/mm/yyyy")) return JourSerie(*d);
    return std::nullopt;
}

std::string TexteDateEvenement(long serie) {
    if (serie == 0) return "";
    return Conv_DateLongue(JourMois(serie)) + " " + AnneeTexte(serie);
}

std::string DateCourteEvenement(long serie) {
    if (serie == 0) return "";
    const DateCivile d = DepuisJourSerie(serie);
    char t[32];
    std::snprintf(t, sizeof t, "%02d/%02d/%04d", d.jour, d.mois, d.annee);
    return t;
}

int AnneeEvenement(long serie) { return serie == 0 ? 0 : DepuisJourSerie(serie).annee; }

std::string JourSemaineEvenement(long serie) {
    if (serie == 0) return "";
    static const int messages[7] = {604, 598, 599, 600, 601, 602, 603};
    return Message(messages[JourDeSemaine(DepuisJourSerie(serie))]);
}

// --- Kinds and roles ----------------------------------------------------------------------------

std::vector<CelluleRole> CellulesRoles(const TableTemoins& t, std::string_view type) {
    std::vector<CelluleRole> r;
    const GenreEvt* g = t.Genre(type);
    if (!g) return r;
    for (const std::string& c : g->roles) {
        if (c.empty()) break;
        if (c.size() < 3) continue;
        r.push_back({c[0] == 'M', c[1] == 'H' || c[1] == 'F' ? c[1] : ' ', c.substr(2)});
    }
    return r;
}

bool SexeConvient(char sexeRole, std::string_view sexePersonne) {
    return sexeRole == ' ' || (!sexePersonne.empty() && sexePersonne[0] == sexeRole);
}

char SexeDuRole(const TableTemoins& t, std::string_view type, std::string_view role) {
    for (const CelluleRole& c : CellulesRoles(t, type))
        if (c.tag == role) return c.sexe;
    return ' ';
}

std::string RoleDansEvenement(Base& b, std::uint32_t p, std::uint32_t e, int* rang) {
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t x = b.EvtNo(p, i);
        if (x == 0) break;
        if (x == e) {
            if (rang) *rang = i;
            return b.RoleEvtNo(p, i);
        }
    }
    if (rang) *rang = 0;
    return "";
}

std::vector<std::uint32_t> PersonnesEvenement(Base& b, std::uint32_t e) {
    std::vector<std::uint32_t> v;
    const std::string l = b.ListePersonnesEvt(e);
    for (std::size_t o = 0; o + 4 <= l.size() && v.size() < kMaxListe; o += 4) {
        const std::uint32_t p = Unpack4(l, o);
        if (p == 0) break;
        v.push_back(p);
    }
    return v;
}

// --- Writes -------------------------------------------------------------------------------------

namespace {

std::string TexteEvenement(const ChampsEvenement& c) {
    std::string t = Trim(c.lieu);
    t += '\0';
    t += c.titre;
    t += '\0';
    t += c.tag;
    return t;
}

} // namespace

std::uint32_t CreeEvenement(Base& b, const ChampsEvenement& c) {
    const std::uint32_t e = b.Tete().maxEvenement + 1;
    TeteEvt t;
    t.note = c.note.empty() ? 0 : b.AjouteTexte(c.note);
    t.texte = b.AjouteTexte(TexteEvenement(c), true);
    t.date = static_cast<std::uint32_t>(c.date + kDecalage);
    b.TeteModifiable().maxEvenement = e;
    b.EcritTeteEvt(e, &t);
    b.TableEvenements().inserer(b.PlaceEvt(e), e);
    b.TeteModifiable().nbEvenements += 1;
    b.triEvenementsModifie = true;
    b.Temoins().Ajoute(c.tag);
    return e;
}

bool MajEvenement(Base& b, std::uint32_t e, const ChampsEvenement& c) {
    if (e == 0 || b.PosEvt(e) == 0) return false;
    bool ecrit = false;
    if (c.note != b.NoteEvt(e)) {
        b.EcritNoteEvt(e, c.note);
        ecrit = true;
    }
    if (Trim(c.lieu) != b.LieuEvt(e) || c.titre != b.TitreEvt(e) || c.tag != b.TagEvt(e)) {
        b.EcritEvt(e, TexteEvenement(c));
        ecrit = true;
    }
    if (c.date != b.DateEvt(e)) {
        const std::uint32_t avant = b.TrouvePlaceEvt(e);
        b.EcritDateEvt(e, c.date);
        if (avant) {
            b.TableEvenements().retirer(avant);
            b.TeteModifiable().nbEvenements -= 1;
        }
        b.TableEvenements().inserer(b.PlaceEvt(e), e);
        b.TeteModifiable().nbEvenements += 1;
        b.triEvenementsModifie = true;
        for (std::uint32_t p : PersonnesEvenement(b, e)) b.TriEvts(p);
        ecrit = true;
    }
    return ecrit;
}

void SupprimeEvenement(Base& b, std::uint32_t e) { b.SupprimeEvt(e); }

void AjouteRole(Base& b, std::uint32_t e, std::uint32_t p, std::string_view role) {
    if (e == 0 || p == 0) return;
    b.MajEvts(p, e, role, 'A');
    b.MajPersonnesEvt(e, p, 'A');
}

void RetireRole(Base& b, std::uint32_t e, std::uint32_t p) {
    if (e == 0 || p == 0) return;
    b.MajEvts(p, e, "", 'S');
    b.MajPersonnesEvt(e, p, 'S');
}

void ChangeRole(Base& b, std::uint32_t e, std::uint32_t p, std::string_view role) {
    int rang = 0;
    RoleDansEvenement(b, p, e, &rang);
    if (rang) b.MajEvts(p, static_cast<std::uint32_t>(rang), role, 'M');
}

namespace {

// Swaps the entries i and i + 1 (from 1) of one of the event's two lists.
bool EchangeDansListe(Base& b, std::uint32_t e, int i, bool personnes) {
    std::string l = personnes ? b.ListePersonnesEvt(e) : b.ListeDocsEvt(e);
    if (i < 1 || static_cast<std::size_t>(i + 1) * 4 > l.size()) return false;
    const std::size_t o = static_cast<std::size_t>(i - 1) * 4;
    std::string a = l.substr(o, 4);
    l.replace(o, 4, l.substr(o + 4, 4));
    l.replace(o + 4, 4, a);
    TeteEvt t = b.LitTeteEvt(e);
    (personnes ? t.personnes : t.documents) = b.Ajouter(l + Pack4(0));
    b.EcritTeteEvt(e, &t);
    return true;
}

} // namespace

bool EchangePersonnes(Base& b, std::uint32_t e, int i) { return EchangeDansListe(b, e, i, true); }
bool EchangeDocuments(Base& b, std::uint32_t e, int i) { return EchangeDansListe(b, e, i, false); }

std::string RolesCreation(Base& b, std::uint32_t e, std::uint32_t n, bool enfants) {
    if (e == 0 || n == 0) return "";
    const std::string tag = b.TagEvt(e);
    const std::vector<CelluleRole> cellules = CellulesRoles(b.Temoins(), tag);
    const std::string sexe = Sexe(b, n);
    std::string role;
    for (const CelluleRole& c : cellules)
        if (c.principal && SexeConvient(c.sexe, sexe)) {
            role = c.tag;
            break;
        }
    if (role.empty()) return "";
    AjouteRole(b, e, n, role);
    if (role == "CHIL") {
        AjouteRole(b, e, b.LitPere(n), "FATH");
        AjouteRole(b, e, b.LitMere(n), "MOTH");
    } else if (role == "DEAD") {
        const std::string deces = b.CleAnDeces(n);
        const bool decesConnu = !Trim(b.LitAnDeces(n)).empty();
        if (sexe == "H" || sexe == "F") {
            for (std::uint32_t m : b.Mariages(n)) {
                const std::uint32_t conjoint = sexe == "H" ? b.LitFemme(m) : b.LitMari(m);
                if (conjoint == 0) continue;
                // The spouse outlives the person, and the marriage still ran.
                const bool vivant = Trim(b.LitAnDeces(conjoint)).empty() || !decesConnu ||
                                    b.CleAnDeces(conjoint) >= deces;
                const bool enCours =
                    Trim(b.LitAnFin(m)).empty() || !decesConnu || b.CleAnFin(m) >= deces;
                if (vivant && enCours) AjouteRole(b, e, conjoint, sexe == "H" ? "WIDW" : "WIDR");
            }
        }
        if (enfants) {
            auto a = [&cellules](const char* r) {
                return std::any_of(cellules.begin(), cellules.end(),
                                   [r](const CelluleRole& c) { return c.tag == r; });
            };
            const bool fils = a("SON"), filles = a("DAUG");
            for (int i = 1; i <= kMaxListe; ++i) {
                const std::uint32_t c = b.EnfantNo(n, i);
                if (c == 0) break;
                const std::string s = Sexe(b, c);
                if (s == "H" && fils) AjouteRole(b, e, c, "SON");
                else if (s == "F" && filles) AjouteRole(b, e, c, "DAUG");
            }
        }
    }
    return role;
}

std::uint32_t Creer_Evenement(Base& b, std::uint32_t personne, std::string_view tag, long date,
                              std::string_view lieu) {
    ChampsEvenement c;
    c.date = date;
    c.lieu = std::string(lieu);
    c.titre = b.NomComplet(personne);
    c.tag = std::string(tag);
    const std::uint32_t e = CreeEvenement(b, c);
    RolesCreation(b, e, personne, true);
    return e;
}

std::uint32_t EvenementPrincipal(Base& b, std::uint32_t personne, std::string_view tag) {
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t e = b.EvtNo(personne, i);
        if (e == 0) break;
        if (b.TagEvt(e) != tag) continue;
        const std::string role = b.RoleEvtNo(personne, i);
        for (const CelluleRole& c : CellulesRoles(b.Temoins(), tag))
            if (c.principal && c.tag == role) return e;
    }
    return 0;
}

std::uint32_t EvenementMariage(Base& b, std::uint32_t personne, std::uint32_t mariage,
                               std::string_view tag) {
    const std::uint32_t autre =
        b.LitMari(mariage) == personne ? b.LitFemme(mariage) : b.LitMari(mariage);
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t e = b.EvtNo(personne, i);
        if (e == 0) break;
        const std::string role = b.RoleEvtNo(personne, i);
        if (b.TagEvt(e) != tag || (role != "HUSB" && role != "WIFE")) continue;
        if (autre == 0) return e;
        const std::string r = RoleDansEvenement(b, autre, e);
        if (r == "HUSB" || r == "WIFE") return e;
    }
    return 0;
}

// --- The sheet and the event --------------------------------------------------------------------

bool DiffereDeFiche(Base& b, std::uint32_t e, std::uint32_t n) {
    if (e == 0 || n == 0 || !RolePrincipal(b, e, n)) return false;
    const std::string tag = b.TagEvt(e);
    const long date = b.DateEvt(e);
    const std::string lieu = Trim(b.LieuEvt(e));
    std::string jour, annee, lieuFiche;
    if (tag == "BIRT") {
        jour = b.LitDateNaiss(n), annee = b.LitAnNaiss(n), lieuFiche = b.LieuNaiss(n);
    } else if (tag == "DEAT") {
        jour = b.LitDateDeces(n), annee = b.LitAnDeces(n), lieuFiche = b.LieuDeces(n);
    } else if (tag == "MARR") {
        const std::uint32_t m = MariageDeEvenement(b, e, n);
        if (m == 0) return false;
        jour = b.DateMariage(m), annee = b.LitAnMariage(m), lieuFiche = b.LieuMariage(m);
    } else {
        return false;
    }
    const std::optional<long> fiche = Serie(jour, annee);
    const bool dateDiffere = date != 0 && (!fiche || *fiche != date);
    const bool lieuDiffere = !lieu.empty() && lieu != Trim(lieuFiche);
    return dateDiffere || lieuDiffere;
}

void EcritNaissanceDeces(Base& b, std::uint32_t n, bool naissance, long date,
                        const std::string& lieu) {
    if (n == 0) return;
    const std::uint32_t place = b.TrouvePlaceFiche(n);
    const std::string cleAvant = b.CleAnNaiss(n);
    if (date != 0) {
        const std::string an = AnneeTexte(date);
        if (naissance && an != b.LitAnNaiss(n)) b.EcritAnNaiss(n, an);
        if (!naissance && an != b.LitAnDeces(n)) b.EcritAnDeces(n, an);
        std::string jn = b.LitDateNaiss(n), jd = b.LitDateDeces(n);
        (naissance ? jn : jd) = JourMois(date);
        b.EcritIdentite(n, b.LitNom(n) + ";" + b.LitPrenom(n) + ";" + b.LitAutrePrenom(n) + ";" +
                               jn + ";" + jd);
    }
    const std::string l = Trim(lieu);
    if (!l.empty()) {
        const std::string avant = b.LitNote(n);
        const std::string reste = SuiteNote(avant);
        const std::string nouvelle =
            b.LigneMotsCles(n, naissance ? l : b.LieuNaiss(n), naissance ? b.LieuDeces(n) : l) +
            reste;
        if (nouvelle != avant) {
            b.MajMots(n, avant, nouvelle);
            b.EcritNote(n, nouvelle);
        }
    }
    if (b.CleAnNaiss(n) != cleAvant) NaissanceChangee(b, n, place, cleAvant);
}

void MetFicheAJour(Base& b, std::uint32_t e, std::uint32_t n) {
    if (e == 0 || n == 0) return;
    const std::string tag = b.TagEvt(e);
    const long date = b.DateEvt(e);
    const std::string lieu = Trim(b.LieuEvt(e));
    if (tag == "BIRT" || tag == "DEAT") {
        EcritNaissanceDeces(b, n, tag == "BIRT", date, lieu);
        return;
    }
    if (tag == "MARR") {
        const std::uint32_t m = MariageDeEvenement(b, e, n);
        if (m == 0) return;
        if (date != 0 && AnneeTexte(date) != b.LitAnMariage(m)) b.EcritAnMariage(m, AnneeTexte(date));
        const std::string avant = b.LitNoteMariage(m);
        const std::string reste = SuiteNote(avant);
        std::string jour = date != 0 ? JourMois(date) : b.DateMariage(m);
        const std::string l = lieu.empty() ? b.LieuMariage(m) : lieu;
        std::string premiere = jour;
        if (!l.empty()) premiere += " @" + l;
        const std::string nouvelle = premiere + reste;
        if (nouvelle == avant) return;
        const std::uint32_t mari = b.LitMari(m), femme = b.LitFemme(m);
        const std::string avantMari = b.NoteAvecMariages(mari);
        const std::string avantFemme = b.NoteAvecMariages(femme);
        b.EcritNoteMariage(m, nouvelle);
        if (mari) b.MajMots(mari, avantMari, b.NoteAvecMariages(mari));
        if (femme) b.MajMots(femme, avantFemme, b.NoteAvecMariages(femme));
    }
}

} // namespace sylvane
