#include "publish/rtf_rapports.h"

#include "kinship/liste.h"
#include "publish/sortie.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/rtf.h"
#include "text/tags.h"

#include <cstdio>

namespace sylvane {
namespace {

constexpr const char* kLettres = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
const std::string kLigne = "\\li0\\sl0\\tx0\\tx424 ";
const std::string kBoite = "\\brdrt\\brdrs\\brdrw15 \\brdrb\\brdrs\\brdrw15 \\brdrl\\brdrs\\brdrw15 "
                           "\\brdrr\\brdrs\\brdrw15  ";
const std::string kCellule = "\\plain \\f0\\fs16 ";

// Length of a character reference "&#N;" at i and its value, 0 when none.
std::size_t Reference(std::string_view t, std::size_t i, long& valeur) {
    if (i + 3 >= t.size() || t[i] != '&' || t[i + 1] != '#') return 0;
    std::size_t j = i + 2;
    valeur = 0;
    while (j < t.size() && j - i < 10 && t[j] >= '0' && t[j] <= '9') valeur = valeur * 10 + (t[j++] - '0');
    if (j == i + 2 || j >= t.size() || t[j] != ';' || valeur > 0x10FFFF) return 0;
    return j - i + 1;
}

void Unicode(std::string& r, long u) {
    auto un = [&r](long v) { r += "\\u" + std::to_string(v > 32767 ? v - 65536 : v) + "?"; };
    if (u > 0xFFFF) {
        u -= 0x10000;
        un(0xD800 + (u >> 10));
        un(0xDC00 + (u & 0x3FF));
    } else {
        un(u);
    }
}

std::string AvecNom(int message, const std::string& nom) {
    std::string m = Message(message);
    const std::size_t p = m.find("&1");
    return p == std::string::npos ? m + " " + nom : m.replace(p, 2, nom);
}

class Redacteur {
  public:
    Redacteur(Base& b, SystemeFichiers& fs, const Interaction& io, const std::string& chemin,
              const OptionsRTF& o)
        : b_(b), io_(io), o_(o), s_(fs, chemin) {
        evenements_.assign(b.Tete().maxEvenement + 1, ' ');
        documents_.assign(b.Tete().maxDocument + 1, ' ');
    }

    void Debut(const std::string& titre, int progres) {
        progres_ = Message(progres);
        io_.Montre(progres_, "");
        s_.Ligne("{\\rtf1\\ansi \\deff0{\\fonttbl");
        s_.Ligne("{\\f0\\froman " + EchappeRTF(o_.police) + ";}}{\\colortbl \\red0\\green0\\blue0;}");
        s_.Ligne("{\\stylesheet");
        s_.Ligne("{\\s243\\tqc\\tx4252\\tqr\\tx8504 \\f0\\fs16 \\sbasedon0\\snext243 header;}"
                 "{\\s242\\brdrt\\brdrs\\brdrw15\\brsp20 \\tqc\\tx4252\\tqr\\tx8504 \\f0\\fs16 "
                 "\\sbasedon0\\snext242 footer;}{\\li284 \\f0\\fs16 \\snext0 Normal;}}");
        s_.Ligne("{\\info{\\version2}{\\edmins28}{\\nofpages2}}\\gutter0\\deftab708\\widowctrl\\ftnbj"
                 "\\hyphhotz425 \\sectd \\linex0\\headery709\\footery709\\colsx709\\endnhere ");
        s_.Ligne("\\paperw11905\\paperh16837\\margt708\\margb708\\widowctrl\\hyphhotz291\\ftnbj"
                 "\\ftnrestart \\pard \\li283\\sl0\\tx0\\tx0\\tx424\\tx1132\\tx1840\\tx2548\\tx3256"
                 "\\tx3964\\tx4672\\tx5380\\tx6088\\tx6796\\tx7504\\tx8212  ");
        s_.Ligne("{\\plain }\\sectd \\headery708\\footery1188\\endnhere");
        s_.Ligne("{\\header \\pard \\s2\\s10\\tx0\\tqc\\tx4252\\tqr\\tx8504");
        s_.Ligne("{\\plain \\f0\\fs14 " + EchappeRTF(o_.banniere) + " \\tab \\tab ");
        s_.Ligne("{\\field{\\*\\fldinst DATE \\\\@ \"d MMMM yyyy\"}{\\fldrslt }} \\par }");
        s_.Ligne("\\pard \\qc\\box\\brdrs\\brdrw15\\brsp20 ");
        s_.Ligne("{\\b\\f0\\fs20 " + EchappeRTF(titre) + " }");
        s_.Ligne("\\par }");
        s_.Ligne("{\\footer \\pard \\s2\\sl0\\tx0\\tqc\\tx4252\\tqr\\tx8504 \\brdrt\\brdrs\\brdrw15 "
                 "{\\plain \\tab \\f0\\fs16 Page \\chpgn \\par }}");
    }

    bool Arret() { return io_.Arrete(); }

    void Ligne(std::string_view l) { s_.Ligne(l); }

    void Valide() {
        s_.Ligne("}");
        s_.Valide();
    }

    // --- Sections ------------------------------------------------------------
    void Personne(std::uint32_t p, const std::string& entete) {
        const FichePersonne f = LitFichePersonne(b_, p);
        if (++sections_ % 64 == 1) io_.Montre(progres_, "Ecriture " + f.nom);
        const std::vector<std::string> lignes = SegmentsLignes(entete);
        Marque(f);
        if (o_.fiche.listeRapide) {
            std::string l = "\\trowd \\trgaph70\\trleft-70 \\clbrdrt\\brdrs\\brdrw10 "
                            "\\clbrdrl\\brdrs\\brdrw10 \\clbrdrb\\brdrs\\brdrw10 \\cellx4000"
                            "\\clbrdrt\\brdrs\\brdrw10 \\clbrdrr\\brdrs\\brdrw10 "
                            "\\clbrdrb\\brdrs\\brdrw10 \\cellx8505\\pard\\plain \\li100\\ri100\\intbl ";
            l += kCellule + EchappeRTF(f.nom + f.dates) + "\\cell " + kCellule + "{" + kCellule;
            for (std::size_t i = 0; i < lignes.size(); ++i) {
                if (i) l += "} " + kCellule + "{" + kCellule + "\\par }" + kCellule + "{" + kCellule;
                l += EchappeRTF(lignes[i]);
            }
            s_.Ligne(l + "} " + kCellule + "\\cell {" + kCellule + "\\row }");
            return;
        }
        Titre(f.nom);
        s_.Ligne(kBoite);
        s_.Ligne(kLigne + "{\\tab \\plain \\ul\\f0\\fs20 " + EchappeRTF(f.libelleSexe) + " \\par }");
        for (const std::string& l : lignes)
            s_.Ligne(kLigne + "{\\tab \\plain \\ul\\f0\\fs20 " + EchappeRTF(l) + " \\par }");
        for (const Rubrique& r : f.identite) Champ(r.libelle, r.texte);
        const OptionsFiche& o = o_.fiche;
        if (o.parents) {
            if (f.pere.personne) Parent(Message(681), f.pere);
            if (f.mere.personne) Parent(Message(683), f.mere);
        }
        if (o.conjoints)
            for (std::size_t i = 0; i < f.mariages.size(); ++i) {
                const MariageFiche& m = f.mariages[i];
                const std::string lettre(1, kLettres[i % 52]);
                s_.Ligne("{" + kCellule + "}{     \\f0\\fs16 " + lettre + ") " +
                         EchappeRTF(m.conjoint.nom + m.conjoint.dates) + "}" + "{" + kCellule + "\\par}");
                if (!m.details.empty())
                    s_.Ligne("{" + kCellule + "}{    \\f0\\fs16      " + EchappeRTF(m.details) + "}{" +
                             kCellule + "\\par}");
                if (o.enfants)
                    for (const Mention& e : m.enfants) Mentionne("          " + e.signe, e);
            }
        if (o.enfants && f.enfants.size() > 0)
            for (const Mention& e : f.enfants)
                if (e.signe == "?") Mentionne(Message(750) + " ? ", e);
        if (o.personnes)
            for (const Mention& l : f.liees) Mentionne(l.role + " (" + l.genre + ") : ", l);
        if (o.fratrie) {
            for (const Mention& l : f.freres) Mentionne(Message(910) + " : ", l);
            for (const Mention& l : f.demiFreres) Mentionne(Message(882) + " : ", l);
        }
        if (o.evenements && !f.evenements.empty()) {
            Champ(Message(f.evenements.size() > 1 ? 643 : 644), "");
            for (const EvenementFiche& e : f.evenements)
                Libre("     " + e.date + " : " + e.libelle + (e.role.empty() ? "" : " (" + e.role + ")"));
        }
        if (o.documents && !f.documents.empty()) {
            Champ(Message(f.documents.size() > 1 ? 645 : 646), "");
            for (const DocumentFiche& d : f.documents)
                Libre("     " + d.titre + (d.type.empty() ? "" : " (" + d.type + ")"));
        }
        if (o.notes) Note(f.note);
        s_.Ligne("\\pard ");
    }

    void Evenement(std::uint32_t e) {
        const long date = b_.DateEvt(e);
        std::string titre = b_.TitreEvt(e);
        if (Trim(titre).empty()) titre = b_.LibelleEvt(e);
        if (o_.fiche.listeRapide) {
            s_.Ligne("\\trowd \\trgaph70\\trleft-70 \\cellx4000 \\cellx8504\\pard\\plain "
                     "\\li400\\ri100\\intbl ");
            s_.Ligne(kCellule + "{" + kCellule + DateCourte(date) + "}" + kCellule + "\\cell {" +
                     kCellule + EchappeRTF(titre) + "}" + kCellule + "\\cell {" + kCellule + "\\row }");
            return;
        }
        Titre(Conv_LibelleTag(b_.TagEvt(e)) + " : " + titre);
        s_.Ligne(kLigne + "{\\tab \\plain \\f0\\fs20 " + EchappeRTF(DateEnMots(date)) + " \\par}");
        for (int i = 1; i <= kMaxListeFiche; ++i) {
            const std::uint32_t p = b_.PersonneEvtNo(e, i);
            if (p == 0) break;
            Mentionne("     ", MentionDe(b_, p));
            if (p < personnes_.size()) personnes_[p] = '1';
        }
        for (int i = 1; i <= kMaxListeFiche; ++i) {
            const std::uint32_t d = b_.DocEvtNo(e, i);
            if (d == 0) break;
            Libre("     " + b_.TitreDoc(d));
        }
        Note(b_.NoteEvt(e));
        s_.Ligne("\\pard ");
    }

    void Document(std::uint32_t d) {
        const std::string titre = b_.TitreDoc(d);
        if (o_.fiche.listeRapide) {
            s_.Ligne("\\trowd \\trgaph70\\trleft-70 \\cellx4000 \\cellx8505\\pard\\plain "
                     "\\li400\\ri100\\intbl ");
            s_.Ligne(kCellule + "{" + kCellule + EchappeRTF(b_.TypeDoc(d)) + "}" + kCellule +
                     "\\cell {" + kCellule + EchappeRTF(titre) + "}" + kCellule + "\\cell {" +
                     kCellule + "\\row }");
            return;
        }
        s_.Ligne("\\pard \\s2\\sl0\\tx0\\tqc\\tx4252\\tqr\\tx8504");
        s_.Ligne("\\li0\\sl0\\tx0\\tx424\\tx1132 {\\plain \\f0 }{\\plain \\b\\f0 " + EchappeRTF(titre) +
                 "}{\\plain \\b\\ul\\f0  \\par }");
        s_.Ligne(kBoite);
        s_.Ligne("\\li0\\sl0\\tx0\\tx424\\tx1132 {\\tab \\plain \\f0\\fs20 " + EchappeRTF(b_.TypeDoc(d)) +
                 " \\par } ");
        s_.Ligne("\\par ");
        const std::string fichier = b_.FichierDoc(d);
        if (!Trim(fichier).empty()) Libre(fichier);
        Note(b_.NoteDoc(d));
        s_.Ligne("\\pard \\par {\\plain \\f0\\fs16 }");
    }

    // The marked events and documents, in number order.
    void Annexes() {
        for (std::uint32_t e = 1; e < evenements_.size(); ++e) {
            if (evenements_[e] != '1' || !o_.annexesEvenements) continue;
            if (Arret()) return;
            Evenement(e);
        }
        for (std::uint32_t d = 1; d < documents_.size(); ++d)
            if (documents_[d] == '1' && o_.annexesDocuments) Document(d);
    }

    std::vector<char> personnes_;

  private:
    void Titre(const std::string& nom) {
        s_.Ligne("\\pard \\s2\\sl0\\tx0\\tqc\\tx4252\\tqr\\tx8504");
        s_.Ligne(kLigne + " {\\plain \\f0 }{\\plain \\b\\f0 " + EchappeRTF(nom) +
                 "}{\\plain \\b\\ul\\f0  \\par }");
    }
    void Champ(const std::string& libelle, const std::string& texte) {
        s_.Ligne("{\\plain \\b\\f0\\fs16 " + EchappeRTF(libelle) + "}{" + kCellule +
                 (texte.empty() ? "" : ": " + EchappeRTF(texte)) + "}{" + kCellule + "\\par }");
    }
    void Parent(const std::string& libelle, const Mention& m) {
        s_.Ligne("{" + kCellule + "     }{\\plain \\b\\f0\\fs16 " + EchappeRTF(libelle) + "     }{" +
                 kCellule + EchappeRTF(m.nom + m.dates) + "}{" + kCellule + "\\par}");
    }
    void Mentionne(const std::string& avant, const Mention& m) {
        Libre(avant + m.nom + m.dates);
    }
    void Libre(const std::string& texte) {
        s_.Ligne("{" + kCellule + EchappeRTF(texte) + "}{" + kCellule + "\\par}");
    }
    void Note(const std::string& note) {
        if (Trim(note).empty()) return;
        const std::string texte = note.substr(0, 5) == "{\\rtf" ? TexteRtf(note) : note;
        std::size_t debut = 0;
        while (debut <= texte.size()) {
            std::size_t fin = texte.find('\n', debut);
            if (fin == std::string::npos) fin = texte.size();
            std::string ligne = texte.substr(debut, fin - debut);
            if (!ligne.empty() && ligne.back() == '\r') ligne.pop_back();
            s_.Ligne("{" + kCellule + EchappeRTF(ligne) + " \\par}");
            debut = fin + 1;
        }
    }
    void Marque(const FichePersonne& f) {
        for (const EvenementFiche& e : f.evenements)
            if (e.evenement < evenements_.size() && evenements_[e.evenement] == ' ')
                evenements_[e.evenement] = '1';
        for (const DocumentFiche& d : f.documents)
            if (d.document < documents_.size() && documents_[d.document] == ' ')
                documents_[d.document] = '1';
    }

    Base& b_;
    const Interaction& io_;
    const OptionsRTF& o_;
    SortiePage s_;
    std::string progres_;
    std::vector<char> evenements_, documents_;
    long sections_ = 0;
};

} // namespace

std::string EchappeRTF(std::string_view texte) {
    std::string r;
    r.reserve(texte.size() + texte.size() / 4);
    for (std::size_t i = 0; i < texte.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(texte[i]);
        long u = 0;
        if (c == '&') {
            if (const std::size_t n = Reference(texte, i, u)) {
                Unicode(r, u);
                i += n - 1;
                continue;
            }
        }
        if (c >= 128 || (c >= 22 && c <= 29)) {
            char h[8];
            std::snprintf(h, sizeof h, "\\'%X", c);
            r += h;
        } else if (c == 9) {
            r += "\\tab \\plain \\f0\\fs16 ";
        } else if (c == '{' || c == '}' || c == '\\' || c == 30 || c == 31) {
            r += '\\';
            r += static_cast<char>(c);
        } else {
            r += static_cast<char>(c);
        }
    }
    return r;
}

struct DocumentRTF::Etat {
    Interaction io;
    OptionsRTF options;
    Redacteur r;
    Etat(Base& b, SystemeFichiers& fs, const Interaction& i, const std::string& chemin,
         const OptionsRTF& o)
        : io(i), options(o), r(b, fs, io, chemin, options) {}
};

DocumentRTF::DocumentRTF(Base& b, SystemeFichiers& fs, const Interaction& io,
                         const std::string& chemin, const OptionsRTF& options)
    : e_(std::make_unique<Etat>(b, fs, io, chemin, options)) {}

DocumentRTF::~DocumentRTF() = default;

void DocumentRTF::Debut(const std::string& titre, int progres) { e_->r.Debut(titre, progres); }

void DocumentRTF::Ligne(std::string_view l) { e_->r.Ligne(l); }

void DocumentRTF::SectionPersonne(std::uint32_t p, const std::string& entete) {
    e_->r.Personne(p, entete);
}

bool DocumentRTF::Valide() {
    e_->r.Annexes();
    if (e_->r.Arret()) return false;
    e_->r.Valide();
    return true;
}

FinRTF RapportRTF(Base& b, SystemeFichiers& fs, const Interaction& io, ListeParente& liste,
                  GenreRapport genre, std::uint32_t personne, int niveaux,
                  const std::string& chemin, const OptionsRTF& options) {
    if (personne == 0 || personne > b.Tete().maxPersonne || b.LitIdentite(personne).empty())
        return FinRTF::Vide;
    const std::vector<EntreeRapport> entrees =
        EntreesRapport(b, liste, genre, personne, niveaux, FormeLigne::Texte);
    if (entrees.empty()) return liste.Abandon ? FinRTF::Arrete : FinRTF::Vide;
    Redacteur r(b, fs, io, chemin, options);
    const bool liste2 = genre == GenreRapport::Ascendants || genre == GenreRapport::Descendants;
    r.Debut(TitreRapport(b, genre, personne), genre == GenreRapport::Ascendants ? 758 : 745);
    for (const EntreeRapport& e : entrees) {
        if (r.Arret()) return FinRTF::Arrete;
        r.Personne(e.personne, e.lignes);
        if (!liste2 && genre != GenreRapport::Fiche) continue;
        if (!options.fiche.conjoints) continue;
        // The spouses that the list does not bring by itself.
        const std::uint32_t autreParent =
            genre == GenreRapport::Ascendants && e.lien
                ? (b.LitPere(e.lien) == e.personne ? b.LitMere(e.lien) : b.LitPere(e.lien))
                : 0;
        const std::string nom = b.NomComplet(e.personne);
        for (std::uint32_t m : b.Mariages(e.personne)) {
            const std::uint32_t c = b.LitMari(m) == e.personne ? b.LitFemme(m) : b.LitMari(m);
            if (c == 0 || c == autreParent) continue;
            const bool homme = b.LitSexe(c) == "H";
            int message = homme ? 752 : 753;
            if (genre == GenreRapport::Descendants) message = 769;
            if (genre == GenreRapport::Fiche) message = homme ? 747 : 748;
            r.Personne(c, "#" + (genre == GenreRapport::Fiche ? Message(message)
                                                               : AvecNom(message, nom)));
        }
    }
    r.Annexes();
    if (r.Arret()) return FinRTF::Arrete;
    r.Valide();
    io.Montre(Message(569), "");
    return FinRTF::Termine;
}

FinRTF ListeRTF(Base& b, SystemeFichiers& fs, const Interaction& io, const std::string& titre,
                const std::vector<std::uint32_t>& evenements,
                const std::vector<std::uint32_t>& documents,
                const std::vector<std::uint32_t>& personnes, const std::string& chemin,
                const OptionsRTF& options) {
    if (evenements.empty() && documents.empty() && personnes.empty()) return FinRTF::Vide;
    Redacteur r(b, fs, io, chemin, options);
    r.personnes_.assign(b.Tete().maxPersonne + 1, ' ');
    r.Debut(titre, 745);
    for (std::uint32_t e : evenements) {
        if (r.Arret()) return FinRTF::Arrete;
        r.Evenement(e);
    }
    for (std::uint32_t d : documents) r.Document(d);
    for (std::uint32_t p : personnes)
        if (p < r.personnes_.size()) r.personnes_[p] = '1';
    for (std::uint32_t p = 1; p < r.personnes_.size(); ++p) {
        if (r.personnes_[p] != '1' || b.LitIdentite(p).empty()) continue;
        if (r.Arret()) return FinRTF::Arrete;
        r.Personne(p, "#");
    }
    r.Valide();
    return FinRTF::Termine;
}

} // namespace sylvane
