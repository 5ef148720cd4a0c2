#include "exchange/releve.h"

#include "text/calendrier.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/tags.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>

namespace sylvane {
namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kFormat = "dd/mm/yyyy";
constexpr int kEvenement = 644;
constexpr int kTitreReleve = 976;
constexpr int kTypeSource = 967;

unsigned char Octet(char c) { return static_cast<unsigned char>(c); }

std::string Nettoie(std::string_view s) {
    std::size_t d = 0, f = s.size();
    while (d < f && (s[d] == ' ' || s[d] == '\t')) ++d;
    while (f > d && (s[f - 1] == ' ' || s[f - 1] == '\t')) --f;
    return std::string(s.substr(d, f - d));
}

bool ToutChiffres(std::string_view s) {
    return !s.empty() && std::all_of(s.begin(), s.end(), [](char c) { return std::isdigit(Octet(c)); });
}

// A count at the head of a text ("45", "2 mois"); -1 when there is none.
long NombreEnTete(std::string_view s, std::size_t* fin = nullptr) {
    std::size_t i = 0;
    while (i < s.size() && s[i] == ' ') ++i;
    long n = 0;
    const std::size_t debut = i;
    for (; i < s.size() && std::isdigit(Octet(s[i])) && i - debut < 6; ++i) n = n * 10 + (s[i] - '0');
    if (i == debut) return -1;
    if (fin) *fin = i;
    return n;
}

// --- Well-formed UTF-8 and UTF-16

bool Utf8Valide(std::string_view s, bool& multi) {
    multi = false;
    for (std::size_t i = 0; i < s.size();) {
        const unsigned char c = Octet(s[i]);
        if (c < 0x80) {
            ++i;
            continue;
        }
        std::size_t len;
        char32_t cp;
        if (c >= 0xC2 && c <= 0xDF) len = 2, cp = c & 0x1F;
        else if (c >= 0xE0 && c <= 0xEF) len = 3, cp = c & 0x0F;
        else if (c >= 0xF0 && c <= 0xF4) len = 4, cp = c & 0x07;
        else return false;
        if (s.size() - i < len) return false;
        for (std::size_t k = 1; k < len; ++k) {
            const unsigned char b = Octet(s[i + k]);
            if ((b & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (b & 0x3F);
        }
        if ((len == 3 && cp < 0x800) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
            (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        multi = true;
        i += len;
    }
    return true;
}

std::string Utf16VersUtf8(std::string_view o, bool grosBout) {
    std::string r;
    r.reserve(o.size());
    auto unite = [&](std::size_t i) -> char32_t {
        return grosBout ? (Octet(o[i]) << 8) | Octet(o[i + 1]) : (Octet(o[i + 1]) << 8) | Octet(o[i]);
    };
    for (std::size_t i = 0; i + 1 < o.size(); i += 2) {
        char32_t u = unite(i);
        if (u >= 0xD800 && u <= 0xDBFF && i + 3 < o.size()) {
            const char32_t v = unite(i + 2);
            if (v >= 0xDC00 && v <= 0xDFFF) {
                u = 0x10000 + ((u - 0xD800) << 10) + (v - 0xDC00);
                i += 2;
            } else {
                u = 0xFFFD;
            }
        } else if (u >= 0xD800 && u <= 0xDFFF) {
            u = 0xFFFD;
        }
        AjouteUtf8(r, u);
    }
    return r;
}

// --- Dates

// The date of an act: its day-and-month text and its year as the file has
// them, the held day and month, and the value of the event.
struct DateActe {
    std::string jourMois; // held: "12/5" for a real date, else as typed
    std::string annee;    // four digits at most, or empty
    int jour = 0, mois = 0;
    long an = 0;
    bool reelle = false;
    long valeur = 0;      // 0: no date
    std::string Texte() const {
        if (jourMois.empty()) return annee;
        return annee.empty() ? jourMois : jourMois + "/" + annee;
    }
};

std::string AnneeValide(std::string_view s) {
    const std::string a = Nettoie(s);
    return ToutChiffres(a) && a.size() <= 4 ? a : std::string();
}

DateActe LitDate(std::string_view jm0, std::string_view an0) {
    std::string jm = Nettoie(jm0), an = Nettoie(an0);
    for (char& c : jm)
        if (c == '.' || c == '-') c = '/';
    // A whole date in the day-and-month column ("12/05/1850").
    if (an.empty() && std::count(jm.begin(), jm.end(), '/') == 2) {
        const auto p = jm.rfind('/');
        an = jm.substr(p + 1);
        jm.resize(p);
    }
    DateActe d;
    d.annee = AnneeValide(an);
    d.an = d.annee.empty() ? 0 : std::stol(d.annee);
    d.jourMois = jm.size() > 40 ? jm.substr(0, 40) : jm;
    const auto barre = jm.find('/');
    if (barre != std::string::npos && ToutChiffres(jm.substr(0, barre)) &&
        ToutChiffres(jm.substr(barre + 1)) && barre <= 2 && jm.size() - barre <= 3) {
        d.jour = std::stoi(jm.substr(0, barre));
        d.mois = std::stoi(jm.substr(barre + 1));
    } else if (ToutChiffres(jm) && jm.size() <= 2) {
        d.mois = std::stoi(jm); // a month alone
    }
    if (d.mois < 1 || d.mois > 12) d.mois = d.jour = 0;
    if (d.an >= 100) {
        const std::string a = std::to_string(d.an);
        if (d.jour && d.mois) {
            const std::string t = std::to_string(d.jour) + "/" + std::to_string(d.mois) + "/" + a;
            d.reelle = Conv_DateValide(t, kFormat);
            if (d.reelle) {
                d.valeur = Conv_DateSerie(t, kFormat);
                d.jourMois = std::to_string(d.jour) + "/" + std::to_string(d.mois);
            }
        }
        if (!d.reelle)
            d.valeur = Conv_DateSerie("01/" + std::to_string(d.mois ? d.mois : 1) + "/" + a, kFormat);
    }
    return d;
}

char Sexe(std::string_view s0) {
    const std::string s = Nettoie(s0);
    if (s.empty()) return 'I';
    switch (std::toupper(Octet(s[0]))) {
    case 'H': case 'M': case 'G': return 'H';
    case 'F': return 'F';
    default: return 'I';
    }
}

std::string EnMinuscules(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(Octet(c)));
    return s;
}

bool EstMajuscules(std::string_view mot) {
    int lettres = 0;
    for (char c : mot) {
        const unsigned char o = Octet(c);
        if (std::islower(o) || (o >= 0xDF && o != 0xF7)) return false;
        if (std::isupper(o) || (o >= 0xC0 && o <= 0xDE && o != 0xD7)) ++lettres;
    }
    return lettres >= 2;
}

// "feu Jean", "feue Marie", "Jean +": a parent dead before the act.
bool Defunt(std::string& nom) {
    const std::string m = EnMinuscules(nom);
    bool mort = false;
    for (std::string_view p : {"feue ", "feu "}) {
        if (m.starts_with(p)) {
            nom = Nettoie(nom.substr(p.size()));
            mort = true;
            break;
        }
    }
    if (nom.find('+') != std::string::npos) {
        nom.erase(std::remove(nom.begin(), nom.end(), '+'), nom.end());
        nom = Nettoie(nom);
        mort = true;
    }
    return mort;
}

// A name in one column: the words in capitals are the family name, the
// others the first names; with none in capitals, `nomParDefaut`.
std::pair<std::string, std::string> NomEtPrenom(const std::string& texte, const std::string& nomParDefaut) {
    std::string nom, prenom;
    std::size_t i = 0;
    while (i < texte.size()) {
        while (i < texte.size() && texte[i] == ' ') ++i;
        std::size_t f = texte.find(' ', i);
        if (f == std::string::npos) f = texte.size();
        const std::string mot = texte.substr(i, f - i);
        if (!mot.empty()) {
            std::string& cible = EstMajuscules(mot) ? nom : prenom;
            cible += (cible.empty() ? "" : " ") + mot;
        }
        i = f;
    }
    if (nom.empty()) nom = nomParDefaut;
    return {nom, prenom};
}

std::string NomAffiche(const std::string& nom, const std::string& prenom) {
    if (prenom.empty()) return nom;
    return nom.empty() ? prenom : prenom + " " + nom;
}

class Importeur {
  public:
    Importeur(Base& b, const TexteReleve& t, GenreReleve g, const OptionsReleve& o, RapportReleve& r)
        : b_(b), t_(t), genre_(g), o_(o), r_(r) {}

    void Lance() {
        if (o_.parametres) {
            o_.parametres->affichageNom = genre_ == GenreReleve::Ascendance
                                              ? std::vector<std::string>{"FNAM", "BIRN"}
                                              : std::vector<std::string>{"FNAM", "OFNM", "BIRN"};
        }
        b_.DebutLot();
        b_.DiffereRangement();
        if (genre_ != GenreReleve::Ascendance) Source();
        Lignes();
        if (genre_ == GenreReleve::Ascendance) Ascendance();
        Fin();
    }

  private:
    // --- Lines and fields
    void Lignes() {
        const std::string& s = t_.octets;
        const char fin = s.find('\n') == std::string::npos && s.find('\r') != std::string::npos ? '\r' : '\n';
        bool premiere = true;
        for (std::size_t debut = 0; debut < s.size();) {
            std::size_t f = s.find(fin, debut);
            if (f == std::string::npos) f = s.size();
            std::string_view ligne(s.data() + debut, f - debut);
            debut = f + 1;
            ++r_.lignes;
            if (!ligne.empty() && ligne.back() == '\r') ligne.remove_suffix(1);
            if (ligne.size() > LongueurMaxLigneReleve) {
                Arret(MessageLigneTropLongue);
                return;
            }
            if (Nettoie(ligne).empty()) continue;
            if (!DecoupeChamps(ligne, champs_)) {
                Arret(MessageSansSeparateur);
                return;
            }
            if (std::all_of(champs_.begin(), champs_.end(), [](const std::string& c) { return c.empty(); }))
                continue;
            const bool entete = premiere && EstEntete();
            premiere = false;
            if (entete) {
                r_.entete = true;
                continue;
            }
            Acte();
            if (o_.arret && o_.arret()) {
                r_.arrete = true;
                return;
            }
        }
    }

    void Arret(int message) {
        r_.message = message;
        r_.ligneErreur = r_.lignes;
    }

    // A first line with no digit in it, or, for an ascendance, no number
    // in its first column, names the columns.
    bool EstEntete() const {
        if (genre_ == GenreReleve::Ascendance) return !ToutChiffres(champs_[0]);
        for (const std::string& c : champs_)
            if (std::any_of(c.begin(), c.end(), [](char x) { return std::isdigit(Octet(x)); })) return false;
        return true;
    }

    // Field i (1-based) in the program's form, controls made blanks.
    std::string Champ(int i) const {
        if (i < 1 || static_cast<std::size_t>(i) > champs_.size()) return {};
        std::string v = t_.utf8 ? Utf8VersAnsiRef(champs_[static_cast<std::size_t>(i) - 1])
                                : champs_[static_cast<std::size_t>(i) - 1];
        for (char& c : v)
            if (Octet(c) < 0x20) c = ' ';
        return v;
    }
    // A name or a date goes into the identity, whose fields ";" splits.
    std::string Nom(int i) const { return SansSeparateur(Champ(i)); }
    static std::string SansSeparateur(std::string v) {
        for (std::size_t p = PointVirgule(v); p != std::string::npos; p = PointVirgule(v, p + 1)) v[p] = ',';
        return v;
    }

    void Acte() {
        switch (genre_) {
        case GenreReleve::Bapteme: Bapteme(); break;
        case GenreReleve::Sepulture: Sepulture(); break;
        case GenreReleve::Mariage: Mariage(); break;
        case GenreReleve::Ascendance: LigneAscendance(); return;
        }
        ++r_.actes;
        if (r_.actes % 100 == 0 && o_.progres)
            o_.progres(std::to_string(r_.actes) + " " + Message(kEvenement));
    }

    // --- Records
    // The source document that every act of the file cites.
    void Source() {
        const char* tag = genre_ == GenreReleve::Bapteme ? "CHR" : genre_ == GenreReleve::Sepulture ? "BURI" : "MARR";
        source_ = b_.CreeDoc(Conv_LibelleTag(tag) + Message(kTitreReleve), "", Message(kTypeSource));
        b_.DefinitDocumentTitre(source_);
    }

    // A new person: identity, years, then its note (the key line and
    // `lignes` below it).
    std::uint32_t Personne(const std::string& nom, const std::string& prenom, char sexe,
                           const std::string& anNaiss, const std::string& jmNaiss,
                           const std::string& anDeces, const std::string& jmDeces,
                           const std::string& lieuNaiss, const std::string& lieuDeces,
                           const std::string& lignes = {}) {
        const std::uint32_t n =
            b_.CreePersonne(nom, prenom, "", sexe, anNaiss, jmNaiss, anDeces, jmDeces);
        ++r_.personnes;
        std::string note = b_.LigneMotsCles(nom, prenom, lieuNaiss, lieuDeces);
        if (!lignes.empty()) note += std::string(kCrLf) + lignes;
        const std::string avant = b_.LitNote(n);
        if (note != avant) {
            b_.RetireLot(n, avant);
            b_.EcritNote(n, note);
            b_.AjoutLot(n, note);
        }
        return n;
    }

    static std::string Profession(const std::string& p) {
        return Nettoie(p).empty() ? std::string() : "OCCU \\" + VersPoints(p);
    }

    void Parents(std::uint32_t enfant, std::uint32_t pere, std::uint32_t mere) {
        if (pere) {
            b_.EcritPere(enfant, pere);
            b_.MajEnfants(pere, enfant, 'A');
        }
        if (mere) {
            b_.EcritMere(enfant, mere);
            b_.MajEnfants(mere, enfant, 'A');
        }
        if (pere && mere) Couple(pere, mere);
    }

    std::uint32_t Couple(std::uint32_t mari, std::uint32_t femme, const std::string& an = {}) {
        ++r_.mariages;
        return b_.CreeMariage(mari, femme, an);
    }

    void Role(std::uint32_t e, std::uint32_t p, const std::string& role) {
        if (!p) return;
        b_.MajEvts(p, e, role, 'A');
        b_.MajPersonnesEvt(e, p, 'A');
    }

    void Evenement(std::uint32_t e, const std::string& commentaire) {
        ++r_.evenements;
        if (!commentaire.empty()) b_.EcritNoteEvt(e, commentaire);
        if (source_) b_.MajDocsEvt(e, source_, 'A');
    }

    static void Ligne(std::string& c, const std::string& texte) {
        c += texte;
        c += kCrLf;
    }
    static void Note(std::string& c, const std::string& note) {
        if (Nettoie(note).empty()) return;
        c += kCrLf;
        Ligne(c, note);
    }

    // --- Baptism
    void Bapteme() {
        using namespace col;
        const DateActe d = LitDate(Nom(B_JourMois), Champ(B_Annee));
        const std::string lieu = Nettoie(Champ(B_Lieu));
        const std::string nom = Nom(B_Nom), prenom = Nom(B_Prenom), sexe = Nettoie(Champ(B_Sexe));
        std::string rubrique = "CHR " + d.Texte();
        if (!lieu.empty()) rubrique += " \xB0" + VersPoints(lieu);
        const std::uint32_t enfant =
            Personne(nom, prenom, Sexe(sexe), d.annee, d.jourMois, "", "", lieu, "", rubrique);
        auto [pere, mere] = DeuxParents(enfant, B_NomPere, B_PrenomPere, B_ProfPere, B_NomMere,
                                        B_PrenomMere, B_ProfMere, nom);
        (void)pere;
        (void)mere;
        // The child's main role brings its father's and mother's.
        const std::uint32_t e = b_.CreeEvtPersonne(enfant, d.valeur, "CHR", lieu);
        std::string c;
        Ligne(c, "Enfant " + NomAffiche(nom, prenom) + (sexe.empty() ? "" : " Sexe : " + sexe));
        AjouteParent(c, "P\xE8re ", B_NomPere, B_PrenomPere, B_ProfPere, nom);
        AjouteParent(c, "M\xE8re ", B_NomMere, B_PrenomMere, B_ProfMere, {});
        if (const std::string p = Nettoie(Champ(B_Parrain)); !p.empty()) Ligne(c, "Parrain " + p);
        if (const std::string m = Nettoie(Champ(B_Marraine)); !m.empty()) Ligne(c, "Marraine " + m);
        Note(c, Champ(B_Note));
        Evenement(e, c);
    }

    // The father and mother of columns of their own, made and linked;
    // a father with no family name takes the child's.
    std::pair<std::uint32_t, std::uint32_t> DeuxParents(std::uint32_t enfant, int nomP, int prenomP,
                                                        int profP, int nomM, int prenomM, int profM,
                                                        const std::string& nomEnfant) {
        std::uint32_t pere = 0, mere = 0;
        std::string np = Nom(nomP);
        const std::string pp = Nom(prenomP);
        if (!Nettoie(np).empty() || !Nettoie(pp).empty()) {
            if (Nettoie(np).empty()) np = nomEnfant;
            pere = Personne(np, pp, 'H', "", "", "", "", "", "", Profession(Champ(profP)));
        }
        const std::string nm = Nom(nomM), pm = Nom(prenomM);
        if (!Nettoie(nm).empty() || !Nettoie(pm).empty())
            mere = Personne(nm, pm, 'F', "", "", "", "", "", "", profM ? Profession(Champ(profM)) : "");
        Parents(enfant, pere, mere);
        return {pere, mere};
    }

    void AjouteParent(std::string& c, const char* libelle, int nom, int prenom, int prof,
                      const std::string& nomParDefaut) {
        std::string n = Nettoie(Champ(nom));
        const std::string p = Nettoie(Champ(prenom));
        if (n.empty() && p.empty()) return;
        if (n.empty()) n = nomParDefaut;
        std::string l = libelle + NomAffiche(n, p);
        if (prof) {
            const std::string metier = Nettoie(Champ(prof));
            if (!metier.empty()) l += ", " + metier;
        }
        Ligne(c, l);
    }

    // --- Burial
    void Sepulture() {
        using namespace col;
        const DateActe d = LitDate(Nom(S_JourMois), Champ(S_Annee));
        const std::string lieu = Nettoie(Champ(S_Lieu));
        const std::string nom = Nom(S_Nom), prenom = Nom(S_Prenom), sexe = Nettoie(Champ(S_Sexe));
        const std::string age = Nettoie(Champ(S_Age)), unite = Nettoie(Champ(S_Unite));
        const std::string naissance = Nettoie(Champ(S_Naissance)), lieuNaiss = Nettoie(Champ(S_LieuNaissance));
        DateTenue nee = NaissanceParAge(d.jourMois, d.annee, age, unite);
        if (nee.annee.empty() && !naissance.empty()) {
            nee = Conv_DateEtrangere(SansSeparateur(naissance), kFormat);
            if (nee.annee.size() > 4 || !ToutChiffres(nee.annee)) nee = {};
        }
        std::string rubrique = "BURI " + d.Texte();
        if (!lieu.empty()) rubrique += " ^" + VersPoints(lieu);
        const std::uint32_t defunt = Personne(nom, prenom, Sexe(sexe), nee.annee, nee.jourMois,
                                              d.annee, d.jourMois, lieuNaiss, lieu, rubrique);
        DeuxParents(defunt, S_NomPere, S_PrenomPere, 0, S_NomMere, S_PrenomMere, 0, nom);
        const std::uint32_t e = b_.CreeEvtPersonne(defunt, d.valeur, "BURI", lieu);
        std::string c = "D\xE9" "funt " + NomAffiche(nom, prenom);
        if (!sexe.empty()) c += " Sexe : " + sexe;
        if (!age.empty()) c += " Age : " + age + (unite.empty() ? "" : " " + unite);
        if (!naissance.empty()) c += " Naissance : " + naissance;
        if (!lieuNaiss.empty()) c += " de " + lieuNaiss;
        c += kCrLf;
        AjouteParent(c, "\tP\xE8re ", S_NomPere, S_PrenomPere, 0, nom);
        AjouteParent(c, "\tM\xE8re ", S_NomMere, S_PrenomMere, 0, {});
        if (const std::string cj = Nettoie(Champ(S_Conjoint)); !cj.empty()) Ligne(c, "Conjoint " + cj);
        Note(c, Champ(S_Note));
        Evenement(e, c);
    }

    // --- Marriage
    struct Epoux {
        std::string nom, prenom, age, domicile, ancien, pere, mere;
        bool pereMort = false, mereMort = false;
        std::uint32_t n = 0, nPere = 0, nMere = 0, nAncien = 0;
    };

    Epoux LitEpoux(int premier) {
        using namespace col;
        const int k = premier - M_Nom;
        Epoux x;
        x.nom = Nom(M_Nom + k);
        x.prenom = Nom(M_Prenom + k);
        x.age = Nettoie(Champ(M_Age + k));
        x.domicile = Nettoie(Champ(M_Domicile + k));
        x.ancien = Nettoie(Nom(M_Veuf + k));
        x.pere = Nettoie(Nom(M_Pere + k));
        x.mere = Nettoie(Nom(M_Mere + k));
        x.pereMort = Defunt(x.pere);
        x.mereMort = Defunt(x.mere);
        return x;
    }

    void FaitEpoux(Epoux& x, char sexe, const DateActe& d) {
        std::string an, jm;
        const long age = NombreEnTete(x.age);
        if (age >= 0 && d.an > age) {
            an = std::to_string(d.an - age);
            jm = "CAL";
        }
        const std::string resi = x.domicile.empty() ? "" : "RESI %" + VersPoints(x.domicile);
        x.n = Personne(x.nom, x.prenom, sexe, an, jm, "", "", "", "", resi);
        const std::string mortAn = d.annee, mortJm = d.annee.empty() ? "" : "BEF";
        if (!x.pere.empty()) {
            const auto [nom, prenom] = NomEtPrenom(x.pere, x.nom);
            x.nPere = Personne(nom, prenom, 'H', "", "", x.pereMort ? mortAn : "",
                               x.pereMort ? mortJm : "", "", "");
        }
        if (!x.mere.empty()) {
            const auto [nom, prenom] = NomEtPrenom(x.mere, "");
            x.nMere = Personne(nom, prenom, 'F', "", "", x.mereMort ? mortAn : "",
                               x.mereMort ? mortJm : "", "", "");
        }
        Parents(x.n, x.nPere, x.nMere);
        if (!x.ancien.empty()) {
            const auto [nom, prenom] = NomEtPrenom(x.ancien, "");
            x.nAncien = Personne(nom, prenom, sexe == 'H' ? 'F' : 'H', "", "", "", "", "", "");
            if (sexe == 'H') Couple(x.n, x.nAncien);
            else Couple(x.nAncien, x.n);
        }
    }

    void Mariage() {
        using namespace col;
        const DateActe d = LitDate(Nom(M_JourMois), Champ(M_Annee));
        const std::string lieu = Nettoie(Champ(M_Lieu));
        Epoux mari = LitEpoux(M_Nom), femme = LitEpoux(M_NomEpouse);
        FaitEpoux(mari, 'H', d);
        FaitEpoux(femme, 'F', d);
        const std::uint32_t m = Couple(mari.n, femme.n, d.annee);
        std::string texte = d.jourMois;
        if (!lieu.empty()) texte += " @" + VersPoints(lieu);
        if (!Nettoie(texte).empty()) {
            b_.EcritNoteMariage(m, texte);
            b_.AjoutLot(mari.n, texte);
            b_.AjoutLot(femme.n, texte);
        }
        const std::uint32_t e = b_.CreeEvtMariage(m, d.valeur, "MARR", lieu);
        std::string c;
        for (const Epoux* x : {&mari, &femme}) {
            const bool h = x == &mari;
            std::string l = (h ? "Epoux " : "Epouse ") + NomAffiche(x->nom, x->prenom);
            if (!x->age.empty()) l += " - " + x->age + (ToutChiffres(x->age) ? " ans" : "");
            if (!x->domicile.empty()) l += " - " + x->domicile;
            Ligne(c, l);
            if (!x->pere.empty()) Ligne(c, "P\xE8re " + x->pere + (x->pereMort ? " (d\xE9" "c\xE9" "d\xE9)" : ""));
            if (!x->mere.empty()) Ligne(c, "M\xE8re " + x->mere + (x->mereMort ? " (d\xE9" "c\xE9" "d\xE9" "e)" : ""));
            if (!x->ancien.empty()) Ligne(c, (h ? "Veuf de " : "Veuve de ") + x->ancien);
            Role(e, x->nPere, "FATH");
            Role(e, x->nMere, "MOTH");
            Role(e, x->nAncien, h ? "Veuf de" : "Veuve de");
        }
        Evenement(e, c);
    }

    // --- Ascendance: the lines are gathered, then made in number order,
    // so that a file in any order gives the same base.
    void LigneAscendance() {
        const std::string num = Nettoie(champs_[0]);
        const long n = ToutChiffres(num) && num.size() <= 9 ? std::stol(num) : 0;
        if (n < 1 || n > static_cast<long>(NumeroMaxAscendance) || ascendants_.count(static_cast<std::uint32_t>(n))) {
            r_.lignesIgnorees.push_back(r_.lignes);
            return;
        }
        std::array<std::string, ChampsReleve + 1> v;
        for (int i = 2; i <= static_cast<int>(ChampsReleve); ++i)
            v[static_cast<std::size_t>(i)] = Nettoie(i == col::A_Profession || i == col::A_LieuNaiss ||
                                                             i == col::A_LieuDeces || i == col::A_LieuMariage
                                                         ? Champ(i)
                                                         : Nom(i));
        ascendants_.emplace(static_cast<std::uint32_t>(n), std::move(v));
        ++r_.actes;
        if (r_.actes % 100 == 0 && o_.progres) o_.progres(std::to_string(r_.actes));
    }

    static std::string JourMois(const std::string& j, const std::string& m) {
        if (j.empty() || m.empty()) return j.empty() ? m : j;
        return j + "/" + m;
    }

    void Ascendance() {
        using namespace col;
        for (auto& [n, v] : ascendants_) {
            if (b_.Tete().maxPersonne < n - 1) b_.TeteModifiable().maxPersonne = n - 1;
            char sexe = n % 2 == 0 ? 'H' : 'F';
            if (n == 1) sexe = Sexe(v[A_Sexe]);
            const std::uint32_t p =
                Personne(v[A_Nom], v[A_Prenom], sexe, AnneeValide(v[A_AnNaiss]),
                         JourMois(v[A_JourNaiss], v[A_MoisNaiss]), AnneeValide(v[A_AnDeces]),
                         JourMois(v[A_JourDeces], v[A_MoisDeces]), v[A_LieuNaiss], v[A_LieuDeces],
                         Profession(v[A_Profession]));
            (void)p;
        }
        for (auto& [n, v] : ascendants_) {
            if (n == 1) continue;
            const std::uint32_t c = n / 2;
            if (ascendants_.count(c)) {
                if (n % 2 == 0) b_.EcritPere(c, n);
                else b_.EcritMere(c, n);
                b_.MajEnfants(n, c, 'A');
            }
            // Marriage c joins n and its spouse by number, made once.
            const std::uint32_t mari = c * 2, femme = c * 2 + 1;
            if (n == femme && ascendants_.count(mari)) continue;
            if (b_.Tete().maxMariage < c) b_.TeteModifiable().maxMariage = c;
            b_.EcritMari(c, mari);
            b_.EcritFemme(c, femme);
            b_.EcritAnFin(c, "");
            ++r_.mariages;
            // The year and place of the husband's line, else of the wife's.
            const auto* lm = LigneDe(mari);
            const auto* lf = LigneDe(femme);
            const auto* l = lm && !(*lm)[A_AnMariage].empty() ? lm : lf && !(*lf)[A_AnMariage].empty() ? lf : lm ? lm : lf;
            std::string texte;
            if (l) {
                b_.EcritAnMariage(c, AnneeValide((*l)[A_AnMariage]));
                texte = JourMois((*l)[A_JourMariage], (*l)[A_MoisMariage]);
                if (!(*l)[A_LieuMariage].empty()) texte += " @" + VersPoints((*l)[A_LieuMariage]);
            }
            b_.EcritNoteMariage(c, texte);
            for (std::uint32_t x : {mari, femme}) {
                if (!ascendants_.count(x)) continue;
                b_.MajMariages(x, c, 'A');
                if (!texte.empty()) b_.AjoutLot(x, texte);
            }
        }
    }
    const std::array<std::string, ChampsReleve + 1>* LigneDe(std::uint32_t n) const {
        auto it = ascendants_.find(n);
        return it == ascendants_.end() ? nullptr : &it->second;
    }

    void Fin() {
        b_.RangeDifferes(false);
        if (genre_ == GenreReleve::Ascendance) {
            b_.TeteModifiable().modeTri = '2';
            b_.OublieCles();
        }
        b_.TriTable();
        b_.triPersonnesModifie = true;
        b_.FinLot();
        b_.MarqueModif();
        b_.ValideBase();
    }

    Base& b_;
    const TexteReleve& t_;
    GenreReleve genre_;
    const OptionsReleve& o_;
    RapportReleve& r_;
    std::vector<std::string> champs_;
    std::uint32_t source_ = 0;
    std::map<std::uint32_t, std::array<std::string, ChampsReleve + 1>> ascendants_;
};

// The message, or its French words when no message file is loaded (the
// command line run from elsewhere).
std::string MessageReleve(int n) {
    std::string m = Message(n);
    if (!m.empty()) return m;
    switch (n) {
    case MessageSansSeparateur: return "Ligne sans s\xE9parateur : l'importation s'arr\xEAte ici.";
    case MessageLigneTropLongue: return "Ligne trop longue : l'importation s'arr\xEAte ici.";
    case MessageFichierVide: return "Le fichier est vide.";
    case MessageFichierBinaire: return "Ce fichier n'est pas un relev\xE9 en texte.";
    case MessageFichierTropGrand: return "Le fichier est trop grand pour un relev\xE9.";
    case MessageNumeroInvalide: return "Num\xE9ro d'ascendant invalide : ligne ignor\xE9" "e";
    default: return "";
    }
}

} // namespace

bool DecoupeChamps(std::string_view l, std::vector<std::string>& champs) {
    champs.clear();
    std::string_view sep;
    if (l.find(';') != std::string_view::npos) sep = ";";
    else if (l.find('\t') != std::string_view::npos) sep = "\t";
    else if (l.find(',') != std::string_view::npos) sep = ",";
    else if (l.find("\" \"") != std::string_view::npos) sep = "\" \"";
    else return false;
    const bool espaces = sep.size() == 3;
    std::size_t i = 0;
    for (;;) {
        std::size_t d = i;
        while (d < l.size() && l[d] == ' ') ++d;
        std::string champ;
        std::size_t fin;
        if (!espaces && d < l.size() && l[d] == '"') {
            // A quoted field runs to its closing mark; a doubled mark is one.
            std::size_t k = d + 1;
            bool ferme = false;
            while (k < l.size()) {
                if (l[k] == '"') {
                    if (k + 1 < l.size() && l[k + 1] == '"') {
                        champ += '"';
                        k += 2;
                        continue;
                    }
                    ferme = true;
                    ++k;
                    break;
                }
                champ += l[k++];
            }
            fin = l.find(sep, ferme ? k : d);
            if (ferme) {
                champ += l.substr(k, fin == std::string_view::npos ? fin : fin - k);
            } else {
                // No closing mark: the field ends at the separator, less
                // its first character.
                champ = l.substr(d + 1, fin == std::string_view::npos ? fin : fin - d - 1);
            }
        } else {
            fin = l.find(sep, i);
            champ = l.substr(i, fin == std::string_view::npos ? fin : fin - i);
        }
        champs.push_back(Nettoie(champ));
        if (fin == std::string_view::npos || champs.size() == ChampsReleve) break;
        i = fin + sep.size();
    }
    if (espaces) {
        // `"a" "b"`: the outer marks stand at the two ends of the line.
        if (!champs.front().empty() && champs.front().front() == '"') champs.front().erase(0, 1);
        if (!champs.back().empty() && champs.back().back() == '"') champs.back().pop_back();
        for (auto& c : champs) c = Nettoie(c);
    }
    return true;
}

int PrepareReleve(std::string_view octets, TexteReleve& t) {
    t = {};
    if (octets.size() > TailleMaxReleve) return MessageFichierTropGrand;
    if (octets.starts_with("\xFF\xFE") || octets.starts_with("\xFE\xFF")) {
        t.octets = Utf16VersUtf8(octets.substr(2), octets[0] == '\xFE');
        t.utf8 = true;
    } else {
        if (octets.starts_with("\xEF\xBB\xBF")) octets.remove_prefix(3);
        bool multi = false;
        t.utf8 = Utf8Valide(octets, multi) && multi;
        t.octets.assign(octets);
    }
    if (Nettoie(t.octets).find_first_not_of("\r\n") == std::string::npos) return MessageFichierVide;
    // A text has no NUL; nor more than a few controls other than line ends.
    std::size_t controles = 0;
    for (char c : t.octets) {
        if (c == '\0') return MessageFichierBinaire;
        if (Octet(c) < 0x20 && c != '\t' && c != '\r' && c != '\n' && c != '\f') ++controles;
    }
    if (controles * 20 > t.octets.size()) return MessageFichierBinaire;
    return 0;
}

RapportReleve ImporteReleve(Base& b, std::string_view octets, GenreReleve genre,
                            const OptionsReleve& options) {
    RapportReleve r;
    TexteReleve t;
    r.message = PrepareReleve(octets, t);
    if (r.message) return r;
    Importeur(b, t, genre, options, r).Lance();
    return r;
}

RapportReleve ImporteReleveFichier(Base& b, SystemeFichiers& fs, const std::string& chemin,
                                   GenreReleve genre, const OptionsReleve& options) {
    auto f = fs.ouvrir(chemin, Mode::Lecture);
    const std::uint64_t taille = f->taille();
    if (taille > TailleMaxReleve) {
        RapportReleve r;
        r.message = MessageFichierTropGrand;
        return r;
    }
    const std::string octets = f->lire(0, static_cast<std::size_t>(taille));
    f.reset();
    return ImporteReleve(b, octets, genre, options);
}

DateTenue NaissanceParAge(std::string_view jourMoisActe, std::string_view anneeActe,
                          std::string_view age, std::string_view unite0) {
    std::size_t finNombre = 0;
    const long k = NombreEnTete(age, &finNombre);
    const std::string an = AnneeValide(anneeActe);
    if (k < 0 || an.empty()) return {};
    std::string unite = EnMinuscules(Nettoie(unite0));
    if (unite.empty()) unite = EnMinuscules(Nettoie(age.substr(finNombre)));
    const DateActe d = LitDate(jourMoisActe, an);
    auto annees = [&](long ans) -> DateTenue {
        if (d.an - ans < 1) return {};
        return {"CAL", std::to_string(d.an - ans)};
    };
    long mois = 0, jours = 0;
    if (unite.empty() || unite == "an" || unite == "ans" || unite == "a") return annees(k);
    if (unite == "mois" || unite == "m") mois = k;
    else if (unite.starts_with("sem")) jours = 7 * k;
    else if (unite == "jour" || unite == "jours" || unite == "j") jours = k;
    else return {};
    if (!d.reelle) return annees(mois / 12 + jours / 365);
    DateCivile c{d.jour, d.mois, static_cast<int>(d.an)};
    if (mois) {
        const long total = c.annee * 12L + (c.mois - 1) - mois;
        c.annee = static_cast<int>(total / 12);
        c.mois = static_cast<int>(total % 12) + 1;
        c.jour = std::min(c.jour, JoursDuMois(c.mois, c.annee));
    } else {
        c = DepuisJourSerie(JourSerie(c) - jours);
    }
    const long y = c.annee;
    const int m = c.mois, j = c.jour;
    if (y < 1) return {};
    static constexpr const char* kMois[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                            "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    return Conv_DateEtrangere("CAL " + std::to_string(j) + " " + kMois[m - 1] + " " + std::to_string(y),
                              kFormat);
}

std::string RapportReleve::Texte() const {
    std::string t;
    if (refuse()) return MessageReleve(message) + "\r\n";
    t += std::to_string(actes) + " actes, " + std::to_string(personnes) + " personnes, " +
         std::to_string(mariages) + " mariages, " + std::to_string(evenements) +
         " \xE9v\xE9nements\r\n";
    if (message)
        t += "Ligne " + std::to_string(ligneErreur) + " : " +
             MessageReleve(message) + "\r\n";
    if (!lignesIgnorees.empty()) {
        t += MessageReleve(MessageNumeroInvalide) + " :";
        for (std::size_t i = 0; i < lignesIgnorees.size() && i < 10; ++i)
            t += " " + std::to_string(lignesIgnorees[i]);
        if (lignesIgnorees.size() > 10) t += " ...";
        t += "\r\n";
    }
    if (arrete) t += "Importation arr\xEAt\xE9" "e\r\n";
    return t;
}

} // namespace sylvane
