#include "exchange/gedcom_export.h"

#include "store/pack.h"
#include "text/calendrier.h"
#include "text/conversion.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/rtf.h"
#include "text/tags.h"
#include "text/translitteration.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

namespace sylvane {
namespace {

constexpr std::array<std::string_view, 6> kTagsNom = {"NPFX", "GIVN", "NICK",
                                                      "SPFX", "SURN", "NSFX"};
constexpr std::array<std::string_view, 13> kTagsAttribut = {
    "RESI", "CAST", "DSCR", "EDUC", "IDNO", "NATI", "NCHI",
    "NMR",  "OCCU", "PROP", "RELI", "SSN",  "TITL"};
constexpr std::array<std::string_view, 18> kTagsEvenement = {
    "BURI", "CREM", "BAPM", "BASM", "BLES", "CHRA", "CONF", "FCOM", "ORDN",
    "NATU", "EMIG", "IMMI", "CENS", "PROB", "WILL", "GRAD", "RETI", "ADOP"};
constexpr std::array<std::string_view, 9> kTagsEvtMariage = {
    "ANUL", "CENS", "DIV", "DIVF", "ENGA", "MARB", "MARC", "MARL", "MARS"};

template <std::size_t N>
bool Parmi(const std::array<std::string_view, N>& t, std::string_view tag) {
    return std::find(t.begin(), t.end(), tag) != t.end();
}

// The event lines of phase 4, by the message of the event's label.
struct LigneEvt {
    int message;
    const char* tag;
};
constexpr LigneEvt kLignesEvt[] = {
    {754, "BIRT"}, {782, "CHR"},  {777, "ADOP"}, {755, "DEAT"}, {780, "BURI"}, {852, "CREM"},
    {778, "BARM"}, {779, "BASM"}, {617, "CONF"}, {853, "CENS"}, {786, "EMIG"}, {854, "FCOM"},
    {855, "GRAD"}, {788, "IMMI"}, {792, "NATU"}, {796, "ORDN"}, {856, "RETI"}, {857, "PROB"},
    {858, "ANUL"}, {813, "DIV"},  {859, "DIVF"}, {812, "ENGA"}, {642, "MARR"}, {809, "MARB"},
    {810, "MARC"}, {811, "MARL"}};

// The roles of a citation, by the message of the role's label.
constexpr LigneEvt kRoles[] = {{750, "CHIL"}, {850, "HUSB"}, {851, "WIFE"},
                               {683, "MOTH"}, {681, "FATH"}, {748, "SPOU"}};

// A month's name in the language of the messages, in French without them.
std::string NomMois(int mois) {
    std::string m = Message(729 + mois);
    if (m.empty()) m = MessagesDatesFrancais()[729 + mois];
    return m;
}

bool MemeMessage(const std::string& libelle, int message) {
    const std::string m = Message(message);
    return !m.empty() && m == libelle;
}

std::string Pointeur(char lettre, std::uint32_t n) {
    return "@" + std::string(1, lettre) + std::to_string(n) + "@";
}

std::vector<std::string> LignesTexte(const std::string& texte) {
    std::vector<std::string> l;
    std::size_t debut = 0;
    for (;;) {
        auto fin = texte.find('\n', debut);
        std::string ligne = texte.substr(debut, fin == std::string::npos ? fin : fin - debut);
        if (!ligne.empty() && ligne.back() == '\r') ligne.pop_back();
        l.push_back(std::move(ligne));
        if (fin == std::string::npos) break;
        debut = fin + 1;
    }
    return l;
}

struct Famille {
    std::uint32_t mari = 0, femme = 0;
    std::vector<std::uint32_t> enfants;
    bool existe = false;
};

class Redacteur {
  public:
    Redacteur(Base& b, SystemeFichiers& fs, const std::string& chemin, const OptionsExport& o,
              bool geneanet)
        : b_(b), o_(o), geneanet_(geneanet), fichier_(fs.ouvrir(chemin, Mode::Ecrasement)) {
        fichier_->tronquer(0);
        jeu_ = o.jeu;
        if (geneanet_) {
            if (jeu_ != '1' && jeu_ != '2' && jeu_ != '3' && jeu_ != JeuUtf8) jeu_ = '0';
        } else if (jeu_ != '0' && jeu_ != '1' && jeu_ != '2' && jeu_ != '3' && jeu_ != JeuUtf8) {
            jeu_ = '1';
        }
    }

    FinExport Ecrit() {
        Selectionne();
        Familles();
        Entete();
        if (!Personnes() || !LesFamilles() || !Evenements() || !Documents()) {
            Vide();
            return FinExport::Arrete;
        }
        Ligne(0, "TRLR");
        Vide();
        return FinExport::Termine;
    }

  private:
    // --- Output
    std::string Conv(std::string_view t) const {
        switch (jeu_) {
        // Characters held as references: their Latin form where the set
        // has no room for them, themselves in UTF-8.
        case '1': return Translitere(t);
        case '2': {
            // ANSEL has no non-breaking space: a blank stands for it.
            std::string s(t);
            std::replace(s.begin(), s.end(), '\xA0', ' ');
            return Conv_AnsiVersAnsel(s);
        }
        case '0': return Conv_AnsiVers437(t);
        case '3': return Conv_AnsiVersHtml(t);
        default: return AnsiRefVersUtf8(t);
        }
    }
    void Brut(int niveau, std::string_view tag, const std::string* valeur) {
        tampon_ += static_cast<char>('0' + niveau);
        tampon_ += ' ';
        tampon_ += tag;
        if (valeur) {
            tampon_ += ' ';
            tampon_ += *valeur;
        }
        tampon_ += "\r\n";
        if (tampon_.size() >= (1u << 20)) Vide();
    }
    void Ligne(int niveau, std::string_view tag) { Brut(niveau, tag, nullptr); }
    void Ligne(int niveau, std::string_view tag, std::string_view valeur) {
        const std::string v = Conv(valeur);
        Brut(niveau, tag, &v);
    }
    void Vide() {
        if (tampon_.empty()) return;
        fichier_->ecrire(ecrit_, tampon_);
        ecrit_ += tampon_.size();
        tampon_.clear();
    }
    // One line of text: its pieces under `tag` at `niveau`, its CONC pieces
    // at `niveauSuite`. An "@" of the text goes out as it stands.
    void LigneDecoupee(int niveau, std::string_view tag, int niveauSuite, std::string_view l) {
        for (const auto& m : DecoupeLigneGedcom(Conv(l), jeu_ == JeuUtf8))
            Brut(m.conc ? niveauSuite : niveau, m.conc ? "CONC" : tag, &m.texte);
    }
    // A text of several lines: the first on the record's own line (when
    // `tag` is given), each other as CONT, long ones continued by CONC.
    void Texte(int niveau, std::string_view tag, int niveauSuite, const std::string& texte) {
        auto lignes = LignesTexte(texte);
        for (std::size_t i = 0; i < lignes.size(); ++i) {
            if (i == 0 && !tag.empty())
                LigneDecoupee(niveau, tag, niveauSuite, lignes[i]);
            else
                LigneDecoupee(niveauSuite, "CONT", niveauSuite, lignes[i]);
        }
    }
    bool Point(const std::string& phase, std::size_t fait) {
        if (fait % 100 != 0) return true;
        if (o_.progres) o_.progres(phase, fait);
        return !(o_.arret && o_.arret());
    }

    // --- Before writing
    void Selectionne() {
        const std::uint32_t max = b_.Tete().maxPersonne;
        choisi_.assign(max + 1, false);
        const std::size_t nb = b_.TablePersonnes().taille();
        for (std::size_t i = 1; i <= nb; ++i) {
            std::uint32_t n = b_.TriFiche(i);
            if (n == 0 || n > max) continue;
            if (o_.selection && !o_.selection(n)) continue;
            if (o_.avant1900 && b_.CleAnNaiss(n) > "1900") continue;
            choisi_[n] = true;
        }
    }
    bool Choisi(std::uint32_t n) const { return n != 0 && n < choisi_.size() && choisi_[n]; }

    void Familles() {
        maxMariage_ = b_.Tete().maxMariage;
        familles_.assign(maxMariage_ + 1, Famille{});
        std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> paires;
        for (std::uint32_t m = 1; m <= maxMariage_; ++m) {
            std::uint32_t h = b_.LitMari(m), f = b_.LitFemme(m);
            if (h == 0 || !Choisi(h) || !Choisi(f)) continue;
            familles_[m] = {h, f, {}, true};
            paires.emplace(std::make_pair(h, f), m);
        }
        famc_.assign(choisi_.size(), 0);
        const std::size_t nb = b_.TablePersonnes().taille();
        for (std::size_t i = 1; i <= nb; ++i) {
            std::uint32_t n = b_.TriFiche(i);
            if (!Choisi(n)) continue;
            std::uint32_t p = b_.LitPere(n), m = b_.LitMere(n);
            if (!Choisi(p)) p = 0;
            if (!Choisi(m)) m = 0;
            if (p == 0 && m == 0) continue;
            auto [it, neuf] = paires.emplace(std::make_pair(p, m), 0);
            if (neuf) {
                it->second = static_cast<std::uint32_t>(familles_.size());
                familles_.push_back({p, m, {}, true});
            }
            familles_[it->second].enfants.push_back(n);
            famc_[n] = it->second;
        }
    }

    // --- Phase 1
    void Entete() {
        Ligne(0, "HEAD");
        Ligne(1, "SOUR", "SYLVANE");
        Ligne(2, "VERS", "2001.0");
        Ligne(1, "DEST", "PAF");
        Ligne(1, "DATE", o_.date.empty() ? Aujourdhui() : o_.date);
        Ligne(1, "GEDC");
        Ligne(2, "VERS", "5.5");
        Ligne(2, "FORM", "LINEAGE-LINKED");
        switch (jeu_) {
        case '1': Ligne(1, "CHAR", "ANSI"); break;
        case '2': Ligne(1, "CHAR", "ANSEL"); break;
        case '0': Ligne(1, "CHAR", "ASCII"); break;
        case '3': Ligne(1, "CHAR", "HTML"); break;
        default: Ligne(1, "CHAR", "UTF-8"); break;
        }
        Ligne(1, "FILE", CheminComplet(b_.Chemins().base));
        Ligne(1, "LANG", "French");
        Ligne(1, "SUBM", "@S1@");
        if (std::uint32_t d = b_.Tete().documentTitre) {
            LigneDecoupee(1, "NOTE", 2, b_.TitreDoc(d));
            const std::string note = SansRtf(b_.NoteDoc(d));
            if (!note.empty()) Texte(2, "", 2, note);
        }
        Ligne(0, "@S1@ SUBM");
        const Parametres& p = b_.Params();
        Ligne(1, "NAME", p.auteur);
        Ligne(1, "ADDR", p.adresse[0]);
        for (int i = 1; i <= 4; ++i)
            if (!p.adresse[i].empty()) Ligne(2, "CONT", p.adresse[i]);
    }
    static std::string CheminComplet(const std::string& chemin) {
        std::error_code e;
        const auto p = std::filesystem::absolute(chemin, e);
        return e ? chemin : p.lexically_normal().string();
    }
    static std::string Aujourdhui() {
        std::time_t t = std::time(nullptr);
        std::tm tm{};
        localtime_r(&t, &tm);
        char jour[3];
        std::snprintf(jour, sizeof jour, "%02d", tm.tm_mday);
        return std::string(jour) + " " + NomMois(tm.tm_mon + 1) + " " +
               std::to_string(tm.tm_year + 1900);
    }

    // --- Phase 2
    bool Personnes() {
        const std::size_t nb = b_.TablePersonnes().taille();
        std::size_t fait = 0;
        for (std::size_t i = 1; i <= nb; ++i) {
            std::uint32_t n = b_.TriFiche(i);
            if (!Choisi(n)) continue;
            if (!Point("Phase 2 - " + Message(17), ++fait)) return false;
            Personne(n);
        }
        return true;
    }

    static std::string DateRubrique(const ValeurRubrique& v) {
        return DateGedcomTenue(v.jourMois, v.annee);
    }
    static bool Date(const ValeurRubrique& v) { return !v.jourMois.empty() || !v.annee.empty(); }

    void Liens(std::uint32_t n) {
        for (int i = 1; i <= 200; ++i) {
            std::uint32_t p = b_.LienNo(n, i);
            if (p == 0) break;
            if (!Choisi(p)) continue;
            Ligne(1, "ASSO", Pointeur('I', p));
            Ligne(2, "RELA", Conv_LibelleTag(b_.TexteLienBrutNo(n, i)));
        }
    }

    bool EstAttribut(std::string_view tag) const {
        return Parmi(kTagsAttribut, tag) || (geneanet_ && tag == "PEDI");
    }

    void Note(const std::string& reste) {
        std::string t = reste;
        while (t.size() >= 2 && t.compare(t.size() - 2, 2, "\r\n") == 0) t.resize(t.size() - 2);
        while (t.compare(0, 2, "\r\n") == 0) t.erase(0, 2);
        if (Trim(t).empty()) return;
        Texte(1, "NOTE", 2, t);
    }

    void Personne(std::uint32_t n) {
        Ligne(0, Pointeur('I', n) + " INDI");
        // The first name's blank stands even when there is no first name.
        std::string nom = b_.LitPrenom(n) + " ";
        const std::string autres = b_.LitAutrePrenom(n);
        if (!autres.empty()) nom += autres + " ";
        Ligne(1, "NAME", nom + "/" + b_.LitNom(n) + "/");
        const auto& slots = b_.Tete().rubriquesPersonne;
        const TableValeursRubriques valeurs = b_.RubriquesNote(n);
        auto chaque = [&](auto&& f) {
            for (std::size_t i = 0; i < valeurs.size() && i < slots.size(); ++i) f(slots[i].tag, valeurs[i]);
        };
        chaque([&](const std::string& tag, const ValeurRubrique& v) {
            if (Parmi(kTagsNom, tag) && !v.valeur.empty()) Ligne(2, tag, v.valeur);
        });
        const std::string sexe = b_.LitSexe(n);
        if (sexe == "H") Ligne(1, "SEX", "M");
        else if (sexe == "F") Ligne(1, "SEX", "F");
        chaque([&](const std::string& tag, const ValeurRubrique& v) {
            if (!EstAttribut(tag) || v.valeur.empty()) return;
            Ligne(1, tag, v.valeur);
            if (Date(v)) Ligne(2, "DATE", DateRubrique(v));
        });
        if (o_.liens && !geneanet_) Liens(n);
        auto vie = [&](const char* tag, const std::string& date, const std::string& an,
                       const std::string& lieu) {
            if (date.empty() && an.empty() && lieu.empty()) return;
            Ligne(1, tag);
            Ligne(2, "DATE", DateGedcomTenue(date, an));
            if (!lieu.empty()) Ligne(2, "PLAC", lieu);
        };
        vie("BIRT", b_.LitDateNaiss(n), b_.LitAnNaiss(n), b_.LieuNaiss(n));
        vie("DEAT", b_.LitDateDeces(n), b_.LitAnDeces(n), b_.LieuDeces(n));
        chaque([&](const std::string& tag, const ValeurRubrique& v) {
            if (tag == "ADDR" && (Date(v) || !v.valeur.empty())) Ligne(1, "ADDR", v.valeur);
        });
        chaque([&](const std::string& tag, const ValeurRubrique& v) {
            if (tag.empty() || Parmi(kTagsNom, tag) || EstAttribut(tag) || tag == "ADDR") return;
            if (!Date(v) && v.valeur.empty()) return;
            if (Parmi(kTagsEvenement, tag) || tag == "CHR") {
                Ligne(1, tag == "CHR" ? "BAPM" : tag);
                if (Date(v)) Ligne(2, "DATE", DateRubrique(v));
                Ligne(2, "PLAC", v.valeur);
            } else {
                Ligne(1, "EVEN");
                Ligne(2, "TYPE", Conv_LibelleTag(tag));
                if (Date(v)) Ligne(2, "DATE", DateRubrique(v));
                Ligne(2, "NOTE", v.valeur);
            }
        });
        // The free text goes out as it stands: a rubric's symbol in it ("100 $",
        // "C:\\Photos", an e-mail address) is text, not a mark.
        Note(SansRtf(b_.CorpsNote(n)));
        const std::vector<std::uint32_t> mariages = b_.Mariages(n);
        const auto& slotsM = b_.Tete().rubriquesMariage;
        for (std::uint32_t m : mariages) {
            const TableValeursRubriques vm = b_.RubriquesMariage(m);
            for (std::size_t i = 0; i < vm.size() && i < slotsM.size(); ++i) {
                if (slotsM[i].tag != "RESI" || vm[i].valeur.empty()) continue;
                Ligne(1, "RESI", vm[i].valeur);
                if (Date(vm[i])) Ligne(2, "DATE", DateRubrique(vm[i]));
            }
        }
        for (std::uint32_t m : mariages)
            if (m < familles_.size() && familles_[m].existe) Ligne(1, "FAMS", Pointeur('F', m));
        const bool homme = sexe == "H";
        for (std::size_t f = maxMariage_ + 1; f < familles_.size(); ++f)
            if ((homme && familles_[f].mari == n) || (!homme && familles_[f].femme == n))
                Ligne(1, "FAMS", Pointeur('F', static_cast<std::uint32_t>(f)));
        if (famc_[n]) Ligne(1, "FAMC", Pointeur('F', famc_[n]));
        if (o_.liens && geneanet_) Liens(n);
        if (o_.evenements) {
            for (int i = 1; i <= 200; ++i) {
                std::uint32_t e = b_.EvtNo(n, i);
                if (e == 0) break;
                Ligne(1, "SOUR", Pointeur('E', e));
                Ligne(2, "EVEN");
                const std::string tag = b_.RoleEvtNo(n, i);
                const std::string libelle = Conv_LibelleTag(tag);
                std::string role;
                for (const auto& r : kRoles)
                    if (MemeMessage(libelle, r.message) || (Message(r.message).empty() && tag == r.tag)) {
                        role = r.tag;
                        break;
                    }
                Ligne(3, "ROLE", role.empty() ? "(" + libelle + ")" : role);
                Marque(evtsMarques_, e);
            }
        }
        if (o_.documents) {
            for (int i = 1; i <= 200; ++i) {
                std::uint32_t d = b_.DocNo(n, i);
                if (d == 0) break;
                Ligne(1, "NOTE", Pointeur('D', d));
                Marque(docsMarques_, d);
            }
        }
    }
    static void Marque(std::vector<bool>& v, std::uint32_t n) {
        if (n >= v.size()) v.resize(n + 1, false);
        v[n] = true;
    }
    static bool Marquee(const std::vector<bool>& v, std::uint32_t n) {
        return n < v.size() && v[n];
    }

    // --- Phase 3
    bool LesFamilles() {
        std::size_t fait = 0;
        for (std::size_t f = 1; f < familles_.size(); ++f) {
            const Famille& fa = familles_[f];
            if (!fa.existe || (fa.mari == 0 && fa.femme == 0)) continue;
            if (!Point("Phase 3 - " + Message(18), ++fait)) return false;
            Ligne(0, Pointeur('F', static_cast<std::uint32_t>(f)) + " FAM");
            if (fa.mari) Ligne(1, "HUSB", Pointeur('I', fa.mari));
            if (fa.femme) Ligne(1, "WIFE", Pointeur('I', fa.femme));
            for (std::uint32_t c : fa.enfants) Ligne(1, "CHIL", Pointeur('I', c));
            std::uint32_t m = f <= maxMariage_ ? static_cast<std::uint32_t>(f) : 0;
            if (m == 0 && fa.mari && fa.femme) {
                for (int i = 1; i <= 200 && m == 0; ++i) {
                    std::uint32_t x = b_.MariageNo(fa.mari, i);
                    if (x == 0) break;
                    if ((b_.LitMari(x) == fa.mari && b_.LitFemme(x) == fa.femme) ||
                        (b_.LitMari(x) == fa.femme && b_.LitFemme(x) == fa.mari))
                        m = x;
                }
            }
            if (m) Mariage(m);
        }
        return true;
    }

    void Mariage(std::uint32_t m) {
        // The couple is the family itself: a MARR line only for a date or a place.
        const std::string date = b_.DateMariage(m), an = b_.LitAnMariage(m);
        const std::string lieu = b_.LieuMariage(m);
        if (!date.empty() || !an.empty() || !lieu.empty()) Ligne(1, "MARR");
        if (!date.empty() || !an.empty()) Ligne(2, "DATE", DateGedcomTenue(date, an));
        if (!lieu.empty()) Ligne(2, "PLAC", lieu);
        const auto& slots = b_.Tete().rubriquesMariage;
        const TableValeursRubriques v = b_.RubriquesMariage(m);
        for (std::size_t i = 0; i < v.size() && i < slots.size(); ++i) {
            const std::string& tag = slots[i].tag;
            if (tag.empty() || tag == "RESI" || (!Date(v[i]) && v[i].valeur.empty())) continue;
            if (Parmi(kTagsEvtMariage, tag)) {
                Ligne(1, tag);
                if (Date(v[i])) Ligne(2, "DATE", DateRubrique(v[i]));
                Ligne(2, "PLAC", v[i].valeur);
            } else {
                Ligne(1, "EVEN");
                Ligne(2, "TYPE", Conv_LibelleTag(tag));
                if (Date(v[i])) Ligne(2, "DATE", DateRubrique(v[i]));
                Ligne(2, "NOTE", v[i].valeur);
            }
        }
        Note(SansRtf(b_.CorpsNoteMariage(m)));
    }

    // --- Phase 4
    std::string LigneEvenement(std::uint32_t e) {
        const std::string libelle = b_.LibelleEvt(e);
        const std::string tag = b_.TagEvt(e);
        const bool sansMessages = Message(754).empty();
        if (geneanet_) {
            if (MemeMessage(libelle, 782) || (sansMessages && tag == "CHR")) return "BAPM";
            if ((!libelle.empty() && libelle == Message(MessageDuTag("WILL"))) ||
                (sansMessages && tag == "WILL"))
                return "WILL";
        }
        for (const auto& l : kLignesEvt)
            if (MemeMessage(libelle, l.message) || (sansMessages && tag == l.tag)) return l.tag;
        return "(" + libelle + ")";
    }

    static std::string DateSerie(long jours) {
        const DateCivile d = DepuisJourSerie(jours);
        return Trim(Conv_DateGedcom(std::to_string(d.jour) + " " + NomMois(d.mois) + " " +
                                    std::to_string(d.annee)));
    }

    bool Evenements() {
        const std::size_t nb = b_.TableEvenements().taille();
        std::size_t fait = 0;
        for (std::size_t i = 1; i <= nb; ++i) {
            std::uint32_t e = b_.TriEvt(i);
            if (!Marquee(evtsMarques_, e)) continue;
            if (!Point("Phase 4 - " + Message(19), ++fait)) return false;
            Ligne(0, Pointeur('E', e) + " SOUR");
            Ligne(1, "DATA");
            Ligne(2, "EVEN", LigneEvenement(e));
            Ligne(3, "DATE", DateSerie(b_.DateEvt(e)));
            const std::string lieu = b_.LieuEvt(e);
            if (!lieu.empty()) Ligne(3, "PLAC", lieu);
            const std::string note = SansRtf(b_.NoteEvt(e));
            if (!note.empty()) Texte(3, "", 3, note);
            if (o_.documents) {
                for (int k = 1;; ++k) {
                    std::uint32_t d = b_.DocEvtNo(e, k);
                    if (d == 0) break;
                    // Only the persons' documents are marked for phase 5: one
                    // that only an event holds has no NOTE record.
                    Ligne(2, "NOTE", Pointeur('D', d));
                }
            }
            Ligne(1, "TITL", b_.TitreEvt(e));
        }
        return true;
    }

    // --- Phase 5
    bool Documents() {
        const std::size_t nb = b_.TableDocuments().taille();
        std::size_t fait = 0;
        for (std::size_t i = 1; i <= nb; ++i) {
            std::uint32_t d = b_.TriDoc(i);
            if (!Marquee(docsMarques_, d)) continue;
            if (!Point("Phase 5 - " + Message(20), ++fait)) return false;
            LigneDecoupee(0, Pointeur('D', d) + " NOTE", 1, b_.TitreDoc(d));
            const std::string note = SansRtf(b_.NoteDoc(d));
            if (!note.empty()) Texte(1, "", 1, note);
            const std::string fichier = b_.FichierDoc(d), type = b_.TypeDoc(d);
            if (!fichier.empty() || !type.empty()) Ligne(1, "REFN", fichier);
            if (!type.empty()) Ligne(2, "TYPE", type);
        }
        return true;
    }

    Base& b_;
    const OptionsExport& o_;
    bool geneanet_;
    char jeu_ = '1';
    std::unique_ptr<Fichier> fichier_;
    std::string tampon_;
    std::uint64_t ecrit_ = 0;
    std::vector<bool> choisi_;
    std::uint32_t maxMariage_ = 0;
    std::vector<Famille> familles_;
    std::vector<std::uint32_t> famc_;
    std::vector<bool> evtsMarques_, docsMarques_;
};

} // namespace

std::string DateGedcomTenue(std::string_view jourMois, std::string_view annee) {
    std::string d = Trim(Conv_DateVersGedcom(jourMois, annee));
    for (auto p = d.find("@*D"); p != std::string::npos; p = d.find("@*D", p + 3)) d[p + 1] = '#';
    return d;
}

std::vector<MorceauGedcom> DecoupeLigneGedcom(std::string_view l, bool utf8) {
    std::vector<MorceauGedcom> r;
    if (l.size() < 61) {
        r.push_back({false, std::string(l)});
        return r;
    }
    // Where a cut of 60 characters falls.
    auto coupe = [utf8](std::string_view t) {
        std::size_t c = 60;
        if (utf8)
            while (c > 1 && c < t.size() && (static_cast<unsigned char>(t[c]) & 0xC0) == 0x80)
                --c;
        return c;
    };
    auto prend = [&r, &l](bool conc, std::size_t n, std::size_t saut) {
        r.push_back({conc, std::string(l.substr(0, n))});
        l.remove_prefix(n + saut);
    };
    // The blank of the cut stays at the end of the piece, so that a reader
    // that joins CONC as GEDCOM does gets the text back.
    if (const auto blanc = l.substr(0, 60).rfind(' '); blanc != std::string_view::npos)
        prend(false, blanc + 1, 0);
    if (l.size() >= 61 && l.substr(0, 60).find(' ') == std::string_view::npos)
        prend(false, coupe(l), 0);
    while (l.size() >= 60)
        prend(true, coupe(l), 0);
    r.push_back({true, std::string(l)});
    return r;
}

// The file is written beside and takes its name only when whole.
static FinExport Exporte(Base& b, SystemeFichiers& fs, const std::string& chemin,
                         const OptionsExport& options, bool geneanet) {
    auto sortie = SortieExport(b, chemin);
    FinExport fin;
    {
        Redacteur r(b, fs, sortie->Temporaire(), options, geneanet);
        fin = r.Ecrit();
    }
    if (fin == FinExport::Termine) sortie->Valide();
    return fin;
}

FinExport ExporteGedcom(Base& b, SystemeFichiers& fs, const std::string& chemin,
                        const OptionsExport& options) {
    return Exporte(b, fs, chemin, options, false);
}

FinExport ExporteGeneanet(Base& b, SystemeFichiers& fs, const std::string& chemin,
                          const OptionsExport& options) {
    return Exporte(b, fs, chemin, options, true);
}

} // namespace sylvane
