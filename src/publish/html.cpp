#include "publish/html.h"

#include "kinship/lignes.h"
#include "kinship/liste.h"
#include "publish/html_texte.h"
#include "publish/sortie.h"
#include "store/evenement_edition.h"
#include "store/pack.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/tags.h"

#include <algorithm>

namespace sylvane {
namespace {

const std::string kMeta =
    "<META http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">";
const std::string kFeuille = "<LINK REL=\"stylesheet\" TYPE=\"Text/css\" HREF=\"Sylvane.css\">";
const std::string kTable = "<TABLE BORDER=1 WIDTH=\"100%\" class=\"defaut\">";
constexpr std::uint64_t kTailleIndex = 50000;

std::string Minuscules(std::string t) {
    for (char& c : t) {
        const unsigned char u = static_cast<unsigned char>(c);
        if ((u >= 'A' && u <= 'Z') || (u >= 0xC0 && u <= 0xDE && u != 0xD7)) c = char(u + 32);
    }
    return t;
}

std::string N(std::uint32_t n) { return std::to_string(n); }

std::string Dossier(std::string d) {
    if (!d.empty() && d.back() != '/' && d.back() != '\\') d += '/';
    return d;
}

} // namespace

struct EcrivainHTML::Etat {
    Base& b;
    SystemeFichiers& fs;
    Interaction io;
    EcrivainHTML& w;
    ModeHTML mode = ModeHTML::Site;
    std::string dossier;
    std::string titre;
    std::vector<char> personnesAEcrire, evenementsAEcrire, documentsAEcrire;
    // The index frame of a multi-file report, its name and its counter.
    std::unique_ptr<SortiePage> index;
    std::string nomIndex = "index";
    int compteurIndex = 0;
    std::string premierePage;
    // The single page of a one-file report.
    SortiePage* unique = nullptr;
    long pages = 0;

    Etat(Base& base, SystemeFichiers& f, Interaction i, EcrivainHTML& e)
        : b(base), fs(f), io(std::move(i)), w(e) {}

    // --- Pieces of every page ---------------------------------------------
    void Tete(SortiePage& s, const std::string& t, bool feuille = true) {
        s.Ligne("<HTML><HEAD>");
        s.Ligne(kMeta);
        if (!w.auteur.empty())
            s.Ligne("<META NAME=\"AUTHOR\" CONTENT=\"" + EntiteHTML(w.auteur) + "\">");
        s.Ligne("<META NAME=\"KEYWORDS\" CONTENT=\"genealogie sylvane " +
                EntiteHTML(Minuscules(t)) + "\">");
        s.Ligne("<TITLE>" + EntiteHTML(t) + "</TITLE>");
        if (feuille) s.Ligne(kFeuille);
        s.Ligne("</HEAD>");
    }

    void Banniere(SortiePage& s) {
        s.Ligne("<CENTER>" + EntiteHTML(w.banniere) + "<BR>");
        s.Ligne(EntiteHTML(Message(570)) + " " + DateDuJour());
        s.Ligne("</NOTE>");
        s.Ligne("</BODY>");
        s.Ligne("</HTML>");
    }

    // The end of a person, event or document page; `ancre` the index's.
    void FinPage(SortiePage& s, const std::string& ancre) {
        s.Ligne("</TABLE><NOTE>");
        if (mode == ModeHTML::Multifichiers)
            s.Ligne("<A HREF=\"" + nomIndex + ".htm#" + ancre + "\" TARGET=\"I\">Index</A>");
        Banniere(s);
    }

    bool Arret() { return io.Arrete(); }

    void Progres(const std::string& nom) {
        if (++pages % 64 == 1) io.Montre("Ecriture en cours", "Ecriture " + nom);
    }

    std::string Chemin(const std::string& nom) const { return dossier + nom; }

    // --- Links ---------------------------------------------------------------
    bool Vivante(std::uint32_t p) { return p != 0 && p <= b.Tete().maxPersonne && !b.LitIdentite(p).empty(); }

    bool PagePersonne(std::uint32_t p) {
        if (mode == ModeHTML::Site || mode == ModeHTML::Rubriques) return Vivante(p);
        return p < personnesAEcrire.size() && personnesAEcrire[p] == '1';
    }
    bool PageEvt(std::uint32_t e) {
        if (mode == ModeHTML::Site) return e != 0 && b.TrouvePlaceEvt(e) != 0;
        return e < evenementsAEcrire.size() && evenementsAEcrire[e] != ' ';
    }
    bool PageDoc(std::uint32_t d) {
        if (mode == ModeHTML::Site) return d != 0 && b.TrouvePlaceDoc(d) != 0;
        return d < documentsAEcrire.size() && documentsAEcrire[d] != ' ';
    }
    std::string Cible(char genre, std::uint32_t n) const {
        return mode == ModeHTML::Fichier ? std::string("#") + genre + N(n)
                                         : std::string(1, genre) + N(n) + ".htm";
    }

    std::string LienPersonne(const Mention& m) {
        const std::string nom = EntiteHTML(m.nom);
        std::string r = PagePersonne(m.personne)
                            ? "<A HREF=\"" + Cible('i', m.personne) + "\">" + nom + "</A> "
                            : nom + " ";
        return r + EntiteHTML(Trim(m.dates));
    }

    // --- The person page ------------------------------------------------------
    void Entete4(SortiePage& s, int message) {
        s.Ligne("<TR><TD><H4>" + EntiteHTML(Message(message)) + "</H4><UL>");
    }

    void ListeMentions(SortiePage& s, const std::vector<Mention>& l, int un, int plusieurs) {
        if (l.empty()) return;
        Entete4(s, l.size() > 1 ? plusieurs : un);
        for (const Mention& m : l) {
            std::string r = "<LI>";
            if (!m.role.empty()) r += EntiteHTML(m.role) + " (" + m.genre + ") : ";
            r += EntiteHTML(m.signe) + LienPersonne(m) + "</LI>";
            s.Ligne(r);
        }
        s.Ligne("</UL></TD></TR>");
    }

    void CorpsPersonne(SortiePage& s, const FichePersonne& f) {
        s.Ligne(kTable + "<TR><TD>");
        s.Ligne("<BR><STRONG>" + EntiteHTML(f.libelleSexe) + "</STRONG>");
        for (const Rubrique& r : f.identite)
            s.Ligne("<BR><STRONG>" + EntiteHTML(r.libelle) + "</STRONG> : " + EntiteHTML(r.texte));
        s.Ligne("</TD></TR>");
        const OptionsFiche& o = w.options;
        if (o.parents && (f.pere.personne || f.mere.personne)) {
            s.Ligne("<TR><TD><UL>");
            if (f.pere.personne)
                s.Ligne("<LI><STRONG>" + EntiteHTML(Message(681)) + "</STRONG> : " +
                        LienPersonne(f.pere) + "</LI>");
            if (f.mere.personne)
                s.Ligne("<LI><STRONG>" + EntiteHTML(Message(683)) + "</STRONG> : " +
                        LienPersonne(f.mere) + "</LI>");
            s.Ligne("</UL></TD></TR>");
        }
        if (o.conjoints && !f.mariages.empty()) {
            const bool plusieurs = f.mariages.size() > 1;
            s.Ligne("<TR><TD><H4>" + EntiteHTML(Message(plusieurs ? 579 : 748)) +
                    (plusieurs ? "</H4><OL TYPE=a>" : "</H4><UL>"));
            for (const MariageFiche& m : f.mariages) {
                std::string l = "<LI>" + LienPersonne(m.conjoint);
                if (!m.details.empty()) l += " " + EntiteHTML(m.details);
                s.Ligne(l + "</LI>");
            }
            s.Ligne(plusieurs ? "</OL></TD></TR>" : "</UL></TD></TR>");
        }
        if (o.enfants) ListeMentions(s, f.enfants, 750, 666);
        if (o.personnes) ListeMentions(s, f.liees, 926, 926);
        if (o.fratrie) {
            ListeMentions(s, f.freres, 910, 910);
            ListeMentions(s, f.demiFreres, 882, 882);
        }
        if (o.evenements && !f.evenements.empty()) {
            Entete4(s, f.evenements.size() > 1 ? 643 : 644);
            for (const EvenementFiche& e : f.evenements) {
                std::string l = "<LI>" + (e.date.empty() ? "" : EntiteHTML(e.date) + " : ");
                const std::string t = EntiteHTML(e.libelle);
                l += PageEvt(e.evenement)
                         ? "<A HREF=\"" + Cible('e', e.evenement) + "\">" + t + "</A>"
                         : t;
                if (!e.role.empty()) l += " (" + EntiteHTML(e.role) + ")";
                s.Ligne(l + "</LI>");
            }
            s.Ligne("</UL></TD></TR>");
        }
        if (o.documents && !f.documents.empty()) {
            Entete4(s, f.documents.size() > 1 ? 645 : 646);
            for (const DocumentFiche& d : f.documents) LigneDocument(s, d);
            s.Ligne("</UL></TD></TR>");
        }
        if (o.notes && !Trim(f.note).empty()) s.Ligne("<TR><TD>" + TexteRicheHTML(f.note));
    }

    void LigneDocument(SortiePage& s, const DocumentFiche& d) {
        std::string t = EntiteHTML(d.titre);
        if (PageDoc(d.document))
            t = "<A HREF=\"" + Cible('d', d.document) + "\">" + t + "</A>";
        if (!d.type.empty()) t += " (" + EntiteHTML(d.type) + ")";
        s.Ligne("<LI>" + t + "</LI>");
    }

    // Marks what a person's page points at, for a report's closing pages.
    void MarqueAnnexes(const FichePersonne& f) {
        if (w.options.evenements)
            for (const EvenementFiche& e : f.evenements)
                if (e.evenement < evenementsAEcrire.size() && evenementsAEcrire[e.evenement] == ' ')
                    evenementsAEcrire[e.evenement] = '1';
        if (w.options.documents)
            for (const DocumentFiche& d : f.documents)
                if (d.document < documentsAEcrire.size() && documentsAEcrire[d.document] == ' ')
                    documentsAEcrire[d.document] = '1';
    }

    void EntreeIndex(const std::string& entree) {
        if (index->Taille() > kTailleIndex) CoupeIndex();
        index->Ligne(entree);
    }

    void CoupeIndex() {
        const std::size_t souligne = nomIndex.find('_');
        ++compteurIndex;
        const std::string nouveau = (souligne == std::string::npos ? nomIndex : nomIndex.substr(0, souligne)) +
                                    "_" + N(static_cast<std::uint32_t>(compteurIndex));
        index->Ligne("</DL>");
        index->Ligne("<NOTE>");
        index->Ligne("<A HREF=\"" + nouveau + ".htm\" TARGET=\"I\">" + EntiteHTML(Message(97)) + "</A>");
        Banniere(*index);
        index->Valide();
        const std::string ancien = nomIndex;
        nomIndex = nouveau;
        index = std::make_unique<SortiePage>(fs, Chemin(nomIndex + ".htm"));
        index->Ligne("<HTML><HEAD>");
        index->Ligne("<TITLE>" + EntiteHTML(titre) + "</TITLE>");
        index->Ligne("</HEAD>");
        index->Ligne("<BODY>");
        index->Ligne("<A HREF=\"" + ancien + ".htm\" TARGET=\"I\">" + EntiteHTML(Message(96)) + "</A>");
        index->Ligne("<H2>Index " + N(static_cast<std::uint32_t>(compteurIndex)) + "</H2><DL>");
    }

    void PagePersonne(std::uint32_t p, const std::string& lignes) {
        const FichePersonne f = LitFichePersonne(b, p);
        Progres(f.nom);
        const std::vector<std::string> segments = SegmentsLignes(lignes);
        if (mode != ModeHTML::Site) MarqueAnnexes(f);
        if (mode == ModeHTML::Fichier) {
            SortiePage& s = *unique;
            s.Ligne("<H2 ALIGN=CENTER><A NAME=\"i" + N(p) + "\">" + EntiteHTML(f.nom) + "</A></H2>");
            for (const std::string& l : segments) s.Ligne("<H4 ALIGN=CENTER>" + l + "</H4>");
            CorpsPersonne(s, f);
            s.Ligne("</TABLE>");
            return;
        }
        if (mode == ModeHTML::Multifichiers) {
            if (premierePage.empty()) premierePage = "i" + N(p) + ".htm";
            EntreeIndex("<DT><A NAME=\"i" + N(p) + "\"><A HREF=\"i" + N(p) + ".htm\" TARGET=\"M\">" +
                        EntiteHTML(f.nom) + "</A> </DT>");
            for (const std::string& l : segments) index->Ligne("<DD><SMALL>" + l + "</SMALL></DD>");
        }
        SortiePage s(fs, Chemin("i" + N(p) + ".htm"));
        Tete(s, f.nom);
        s.Ligne(std::string("<BODY CLASS=") + ClasseSexe(f.sexe) + ">");
        s.Ligne("<H2 ALIGN=CENTER><EM>" + EntiteHTML(f.nom) + "</EM></H2>");
        for (const std::string& l : segments) s.Ligne("<H4 ALIGN=CENTER>" + l + "</H4>");
        CorpsPersonne(s, f);
        FinPage(s, "i" + N(p));
        s.Valide();
        if (mode == ModeHTML::Multifichiers) {
            // Each page once: "2" once written.
            for (const EvenementFiche& e : f.evenements)
                if (e.evenement < evenementsAEcrire.size() && evenementsAEcrire[e.evenement] == '1') {
                    evenementsAEcrire[e.evenement] = '2';
                    PageEvenement(e.evenement);
                }
            for (const DocumentFiche& d : f.documents)
                if (d.document < documentsAEcrire.size() && documentsAEcrire[d.document] == '1') {
                    documentsAEcrire[d.document] = '2';
                    PageDocument(d.document);
                }
        }
    }

    // --- Event and document pages ------------------------------------------
    std::string RolePersonne(std::uint32_t p, std::uint32_t e) {
        return Conv_LibelleTag(RoleDansEvenement(b, p, e));
    }

    void TeteDocOuEvt(SortiePage& s, char genre, std::uint32_t n, const std::string& type,
                      const std::string& t) {
        s.Ligne("<H3 ALIGN=CENTER><A NAME=\"" + std::string(1, genre) + N(n) + "\">" +
                EntiteHTML(type) + "</A></H3><H3 ALIGN=CENTER>" + EntiteHTML(t) + "</H3>");
    }

    void CorpsEvenement(SortiePage& s, std::uint32_t e) {
        s.Ligne("<P ALIGN=CENTER>" + EntiteHTML(DateEnMots(b.DateEvt(e))) + "</P>" + kTable);
        std::vector<std::uint32_t> personnes;
        for (int i = 1; i <= kMaxListeFiche; ++i) {
            const std::uint32_t p = b.PersonneEvtNo(e, i);
            if (p == 0) break;
            personnes.push_back(p);
        }
        if (!personnes.empty()) {
            s.Ligne("<TR><TD><UL>");
            for (std::uint32_t p : personnes)
                s.Ligne("<LI>" + EntiteHTML(RolePersonne(p, e)) + " : " + LienPersonne(MentionDe(b, p)) +
                        "</LI>");
            s.Ligne("</UL></TD></TR>");
        }
        std::vector<DocumentFiche> docs;
        for (int i = 1; i <= kMaxListeFiche; ++i) {
            const std::uint32_t d = b.DocEvtNo(e, i);
            if (d == 0) break;
            docs.push_back({d, b.TitreDoc(d), b.TypeDoc(d)});
        }
        if (!docs.empty()) {
            // Unlike the person page, the event page puts its heading before the row.
            s.Ligne("<H4>" + EntiteHTML(Message(docs.size() > 1 ? 645 : 646)) + "</H4><TR><TD><UL>");
            for (const DocumentFiche& d : docs) LigneDocument(s, d);
            s.Ligne("</UL></TD></TR>");
        }
        const std::string note = b.NoteEvt(e);
        if (!Trim(note).empty()) s.Ligne("<TR><TD>" + TexteRicheHTML(note));
    }

    std::string TitreEvt(std::uint32_t e) {
        std::string t = b.TitreEvt(e);
        return Trim(t).empty() ? b.LibelleEvt(e) : t;
    }

    void PageEvenement(std::uint32_t e) {
        const std::string type = Conv_LibelleTag(b.TagEvt(e)), t = TitreEvt(e);
        if (mode == ModeHTML::Multifichiers) {
            EntreeIndex("<DT><A NAME=\"e" + N(e) + "\"><A HREF=\"e" + N(e) + ".htm\" TARGET=\"M\">" +
                        EntiteHTML(t) + "</A></DT>");
            index->Ligne("<DD>" + DateCourte(b.DateEvt(e)) + "</DD>");
        }
        SortiePage s(fs, Chemin("e" + N(e) + ".htm"));
        Tete(s, t);
        s.Ligne("<BODY>");
        TeteDocOuEvt(s, 'e', e, type, t);
        CorpsEvenement(s, e);
        FinPage(s, "e" + N(e));
        s.Valide();
    }

    void CorpsDocument(SortiePage& s, std::uint32_t d) {
        const std::string fichier = b.FichierDoc(d);
        if (!Trim(fichier).empty()) {
            std::string l = "<P ALIGN=CENTER>";
            std::string ext = Minuscules(fichier.substr(fichier.rfind('.') == std::string::npos
                                                            ? fichier.size()
                                                            : fichier.rfind('.') + 1));
            if (d == w.documentAccueil) {
                // The base's title document holds its e-mail address.
                l += "<a href=\"mailto:" + EntiteHTML(Trim(fichier)) + "\">" +
                     EntiteHTML(w.auteur.empty() ? Trim(fichier) : w.auteur) + "</a>";
            } else if (ext == "jpg" || ext == "gif" || ext == "bmp" || ext == "wmf" || ext == "pcx") {
                std::string chemin = fichier;
                std::replace(chemin.begin(), chemin.end(), '\\', '/');
                const bool lecteur = chemin.size() > 1 && chemin[1] == ':';
                const bool absolu = !chemin.empty() && chemin[0] == '/';
                l += "<IMG SRC=\"" + std::string(lecteur || absolu ? "" : "../") +
                     EntiteHTML(chemin) + "\" WIDTH=100%>";
            } else {
                l += EntiteHTML(fichier);
            }
            s.Ligne(l + "</P>");
        }
        const std::string note = b.NoteDoc(d);
        if (!Trim(note).empty())
            s.Ligne("<TABLE BORDER COLS=1 WIDTH=\"100%\" class=\"defaut\"><TR><TD>" +
                    TexteRicheHTML(note) + "</TABLE>");
    }

    void PageDocument(std::uint32_t d) {
        const std::string t = b.TitreDoc(d);
        if (mode == ModeHTML::Multifichiers)
            EntreeIndex("<DT><A NAME=\"d" + N(d) + "\"><A HREF=\"d" + N(d) + ".htm\" TARGET=\"M\">" +
                        EntiteHTML(t) + "</A></DT>");
        SortiePage s(fs, Chemin("d" + N(d) + ".htm"));
        Tete(s, t);
        s.Ligne("<BODY>");
        TeteDocOuEvt(s, 'd', d, b.TypeDoc(d), t);
        CorpsDocument(s, d);
        s.Ligne(kTable);
        FinPage(s, "d" + N(d));
        s.Valide();
    }

    // --- The site ---------------------------------------------------------------
    void EcritFeuille() {
        SortiePage s(fs, Chemin("Sylvane.css"));
        s.Texte(FeuilleStyle(b.Params()));
        s.Valide();
    }

    // The text beside a person in a word's list, by the kind of the
    // rubric: the birth (a baptism too) or the death, the date of the
    // person's marriage or of the rubric's event; else the years of life.
    std::string TexteMot(std::uint32_t p, char symbole, const std::string& tag,
                         const std::string& mot) {
        if (symbole == '$' || tag == "BIRT" || tag == "CHR" || tag == "BAPM")
            return Message(754) + " : " + Joint({b.TexteDateNaiss(p), b.LitAnNaiss(p), b.LieuNaiss(p)});
        if (symbole == '~' || tag == "DEAT" || tag == "BURI" || tag == "CREM")
            return Message(755) + " : " +
                   Joint({b.TexteDateDeces(p), b.LitAnDeces(p), b.LieuDeces(p)});
        if (tag == "MARR")
            for (std::uint32_t m : b.Mariages(p))
                if (CleMot(Trim(b.LieuMariage(m))) == mot)
                    return Message(642) + " : " +
                           Joint({Conv_DateLongue(b.DateMariage(m)), b.LitAnMariage(m)});
        const auto& slots = b.Tete().rubriquesPersonne;
        for (std::size_t i = 0; i < slots.size() && slots[i].symbole != ' '; ++i) {
            if (slots[i].symbole != symbole || slots[i].drapeau != '1') continue;
            const TableValeursRubriques v = b.RubriquesNote(p);
            if (i < v.size())
                return Joint({Conv_LibelleTag(slots[i].tag) + " :",
                              Conv_DateLongue(v[i].jourMois), v[i].annee});
        }
        return Trim(MentionDe(b, p).dates);
    }

    std::string LigneMot(std::uint32_t p, const std::string& texte) {
        return "<TR><TH><A HREF=\"i" + N(p) + ".htm\" TARGET=\"M\">" + EntiteHTML(b.NomComplet(p)) +
               "</A></TH><TD>" + EntiteHTML(texte) + "</TD></TR>";
    }

    void TeteSimple(SortiePage& s, const std::string& t) {
        Tete(s, t);
        s.Ligne("<BODY>");
        s.Ligne("<H2>" + EntiteHTML(t) + "</H2>");
        s.Ligne("<TABLE WIDTH=\"100%\" class=\"defaut\">");
    }

    void PiedSimple(SortiePage& s) {
        s.Ligne("</TABLE>");
        s.Ligne("<NOTE>");
        Banniere(s);
    }

    // Writes k<k>.htm and its word pages; false on a stop.
    bool PagesRubrique(std::uint32_t k, std::uint32_t& premier) {
        const std::string r = b.LitRubrique(k);
        const char symbole = r.empty() ? ' ' : r[0];
        const std::string tag = r.substr(r.empty() ? 0 : 1);
        SortiePage s(fs, Chemin("k" + N(k) + ".htm"));
        TeteSimple(s, Conv_LibelleTag(tag));
        const std::string mots = b.ListeRubrique(k);
        for (std::size_t i = 0; i + 4 <= mots.size(); i += 4) {
            if (Arret()) return false;
            const std::uint32_t w = Unpack4(mots, i);
            const std::string mot = b.LitMot(w);
            const std::string personnes = b.PersonnesMot(w);
            s.Ligne("<TR><TH><A HREF=\"k" + N(k) + "_" + N(w) + ".htm\" TARGET=\"I\">" +
                    EntiteHTML(mot) + "</A></TH>");
            s.Ligne("<TD>" + N(static_cast<std::uint32_t>(personnes.size() / 4)) + "</TD></TR>");
            SortiePage m(fs, Chemin("k" + N(k) + "_" + N(w) + ".htm"));
            TeteSimple(m, mot);
            for (std::size_t j = 0; j + 4 <= personnes.size(); j += 4) {
                const std::uint32_t p = Unpack4(personnes, j);
                if (!Vivante(p)) continue;
                if (premier == 0) premier = p;
                m.Ligne(LigneMot(p, TexteMot(p, symbole, tag, Trim(mot))));
            }
            PiedSimple(m);
            m.Valide();
            Progres(mot);
        }
        PiedSimple(s);
        s.Valide();
        return true;
    }

    bool Indexee(std::uint32_t k) { return b.PosListeRubrique(k) != 0 && !b.LitRubrique(k).empty(); }

    bool Site(const std::string& d) {
        dossier = Dossier(d);
        try {
            fs.creerDossier(dossier);
        } catch (const ErreurES&) {
            // Usually the folder is there already; opening a page will tell.
        }
        mode = ModeHTML::Rubriques;
        std::uint32_t premier = 0;
        const std::uint32_t nbRubriques = b.Tete().nbRubriques;
        for (std::uint32_t k = 1; k <= nbRubriques; ++k)
            if (Indexee(k) && !PagesRubrique(k, premier)) return false;

        mode = ModeHTML::Site;
        const std::size_t nbPersonnes = b.TablePersonnes().taille();
        for (std::size_t i = 1; i <= nbPersonnes; ++i) {
            if (Arret()) return false;
            const std::uint32_t p = b.TriFiche(i);
            if (p == 0) continue;
            if (premier == 0) premier = p;
            PagePersonne(p, "#");
        }
        for (std::size_t i = 1; i <= b.TableEvenements().taille(); ++i) {
            if (Arret()) return false;
            if (const std::uint32_t e = b.TriEvt(i)) PageEvenement(e);
        }
        for (std::size_t i = 1; i <= b.TableDocuments().taille(); ++i) {
            if (Arret()) return false;
            if (const std::uint32_t dd = b.TriDoc(i)) PageDocument(dd);
        }

        {
            SortiePage s(fs, Chemin("index.htm"));
            titre = b.Chemins().titre;
            Tete(s, titre, false);
            s.Ligne("<BODY>");
            s.Ligne("<H2>Index</H2><UL>");
            if (w.documentAccueil)
                s.Ligne("<LI><A HREF=\"d" + N(w.documentAccueil) + ".htm\" TARGET=\"M\">" +
                        EntiteHTML(b.TitreDoc(w.documentAccueil)) + "</A></LI>");
            for (std::uint32_t k = 1; k <= nbRubriques; ++k)
                if (Indexee(k)) {
                    const std::string r = b.LitRubrique(k);
                    s.Ligne("<LI><A HREF=\"k" + N(k) + ".htm\" TARGET=\"R\">" +
                            EntiteHTML(Conv_LibelleTag(r.substr(1))) + "</A></LI>");
                }
            s.Ligne("</UL>");
            s.Ligne("<NOTE>");
            Banniere(s);
            s.Valide();
        }
        EcritFeuille();

        SortiePage s(fs, Chemin("homepage.htm"));
        Tete(s, titre, false);
        s.Ligne("<frameset rows=\"100%\" cols=\"40%,*\">");
        s.Ligne("<frameset rows=\"20%,35%,*\" cols=\"100%\">");
        s.Ligne("<FRAME src=\"index.htm\" name=\"K\">");
        s.Ligne("<FRAME src=\"k1.htm\" name=\"R\">");
        s.Ligne("<FRAME src=\"k1_1.htm\" name=\"I\">");
        s.Ligne("</frameset>");
        // A person asked for opens the site before the home document.
        const bool personne = Vivante(w.personneAccueil);
        if (personne) premier = w.personneAccueil;
        const std::string page = !personne && w.documentAccueil ? "d" + N(w.documentAccueil) + ".htm"
                                 : premier ? "i" + N(premier) + ".htm"
                                           : "";
        s.Ligne("<FRAME src=\"" + page + "\" name=\"M\">");
        s.Ligne("</frameset>");
        s.Ligne("</HTML>");
        s.Valide();
        return true;
    }

    // --- Reports -----------------------------------------------------------------
    void Marques() {
        personnesAEcrire.assign(b.Tete().maxPersonne + 1, ' ');
        evenementsAEcrire.assign(b.Tete().maxEvenement + 1, ' ');
        documentsAEcrire.assign(b.Tete().maxDocument + 1, ' ');
    }

    bool Multifichiers(const std::string& d, const std::string& t,
                       const std::vector<EntreeRapport>& entrees) {
        dossier = Dossier(d);
        try {
            fs.creerDossier(dossier);
        } catch (const ErreurES&) {
        }
        mode = ModeHTML::Multifichiers;
        titre = t;
        Marques();
        for (const EntreeRapport& e : entrees)
            if (e.personne < personnesAEcrire.size()) personnesAEcrire[e.personne] = '1';
        nomIndex = "index";
        compteurIndex = 0;
        premierePage.clear();
        index = std::make_unique<SortiePage>(fs, Chemin("index.htm"));
        Tete(*index, titre);
        index->Ligne("<BODY>");
        index->Ligne("<H2>" + EntiteHTML(titre) + "</H2>");
        index->Ligne("<H2>Index</H2><DL>");
        if (w.documentAccueil && w.documentAccueil < documentsAEcrire.size()) {
            documentsAEcrire[w.documentAccueil] = '2';
            premierePage = "d" + N(w.documentAccueil) + ".htm";
            PageDocument(w.documentAccueil);
        }
        for (const EntreeRapport& e : entrees) {
            if (Arret()) {
                index.reset();
                return false;
            }
            PagePersonne(e.personne, e.lignes);
        }
        index->Ligne("</DL>");
        index->Ligne("<NOTE>");
        Banniere(*index);
        index->Valide();
        index.reset();
        EcritFeuille();
        SortiePage s(fs, Chemin("homepage.htm"));
        s.Ligne("<HTML><HEAD><TITLE>" + EntiteHTML(titre) + "</TITLE>");
        s.Ligne("</HEAD>");
        s.Ligne("<frameset rows=\"100%\" cols=\"40%,*\">");
        s.Ligne("<FRAME src=\"index.htm\" name=\"I\">");
        s.Ligne(premierePage.empty() ? "<FRAME name=\"M\">"
                                     : "<FRAME src=\"" + premierePage + "\" name=\"M\">");
        s.Ligne("</frameset>");
        s.Ligne("</HTML>");
        s.Valide();
        return true;
    }

    // One page holding the sections of `personnes`.
    void OuvreUnique(SortiePage& s, const std::vector<std::uint32_t>& personnes) {
        mode = ModeHTML::Fichier;
        Marques();
        for (std::uint32_t p : personnes)
            if (p < personnesAEcrire.size()) personnesAEcrire[p] = '1';
        unique = &s;
    }

    bool Fichier(const std::string& chemin, const std::string& t,
                 const std::vector<EntreeRapport>& entrees) {
        const std::size_t barre = chemin.find_last_of("/\\");
        dossier = barre == std::string::npos ? "" : chemin.substr(0, barre + 1);
        titre = t;
        std::vector<std::uint32_t> personnes;
        for (const EntreeRapport& e : entrees) personnes.push_back(e.personne);
        SortiePage s(fs, chemin);
        OuvreUnique(s, personnes);
        Tete(s, titre);
        s.Ligne("<BODY>");
        s.Ligne("<H2>" + EntiteHTML(titre) + "</H2>");
        for (const EntreeRapport& e : entrees) {
            if (Arret()) {
                unique = nullptr;
                return false;
            }
            PagePersonne(e.personne, e.lignes);
        }
        Annexes(s);
        s.Ligne("<NOTE>");
        Banniere(s);
        EcritFeuille();
        s.Valide();
        unique = nullptr;
        return true;
    }

    // The events and documents of a single page, after its persons.
    void Annexes(SortiePage& s) {
        bool table = false;
        auto ouvre = [&] {
            if (!table) s.Ligne(kTable);
            table = true;
        };
        for (std::uint32_t e = 1; e < evenementsAEcrire.size(); ++e) {
            if (evenementsAEcrire[e] != '1') continue;
            ouvre();
            s.Ligne("<TR><TH><A NAME=\"e" + N(e) + "\">" + EntiteHTML(Conv_LibelleTag(b.TagEvt(e))) +
                    "</A></TH><TD>" + EntiteHTML(TitreEvt(e)) + " " +
                    EntiteHTML(DateEnMots(b.DateEvt(e))) + "</TD></TR>");
        }
        for (std::uint32_t d = 1; d < documentsAEcrire.size(); ++d) {
            if (documentsAEcrire[d] != '1') continue;
            ouvre();
            s.Ligne("<TR><TH><A NAME=\"d" + N(d) + "\">" + EntiteHTML(b.TypeDoc(d)) +
                    "</A></TH><TD>" + EntiteHTML(b.TitreDoc(d)) + "</TD></TR>");
        }
        if (table) s.Ligne("</TABLE>");
    }
};

EcrivainHTML::EcrivainHTML(Base& b, SystemeFichiers& fs, Interaction io)
    : e_(std::make_unique<Etat>(b, fs, std::move(io), *this)) {
    auteur = b.Params().auteur;
    documentAccueil = b.Tete().documentTitre;
}

EcrivainHTML::~EcrivainHTML() = default;

bool EcrivainHTML::Site(const std::string& dossier) { return e_->Site(dossier); }

bool EcrivainHTML::RapportMultifichiers(const std::string& dossier, const std::string& titre,
                                        const std::vector<EntreeRapport>& entrees) {
    return e_->Multifichiers(dossier, titre, entrees);
}

bool EcrivainHTML::RapportFichier(const std::string& chemin, const std::string& titre,
                                  const std::vector<EntreeRapport>& entrees) {
    return e_->Fichier(chemin, titre, entrees);
}

void EcrivainHTML::OuvrePage(SortiePage& s, const std::vector<std::uint32_t>& personnes) {
    e_->OuvreUnique(s, personnes);
}

void EcrivainHTML::SectionPersonne(std::uint32_t p, const std::string& lignes) {
    if (e_->unique) e_->PagePersonne(p, lignes);
}

void EcrivainHTML::FermePage() {
    if (e_->unique) e_->Annexes(*e_->unique);
    e_->unique = nullptr;
}

std::string DossierSite(const Parametres& p, const std::string& titreBase) {
    return p.DossierTravail() + titreBase;
}

} // namespace sylvane
