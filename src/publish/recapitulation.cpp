#include "publish/recapitulation.h"

#include "publish/html_texte.h"
#include "publish/rtf_rapports.h"
#include "publish/sortie.h"
#include "store/pack.h"
#include "store/remplacement.h"
#include "text/mots.h"

namespace sylvane {
namespace {

constexpr std::size_t kPas = 100; // keywords between two looks at the stop button

std::string Libelle(Base& b, char marque) {
    const std::string r = b.LibelleRubrique(b.RubriqueDeSymbole(marque));
    return r.size() > 1 ? r.substr(1) : std::string(1, marque);
}

// Walks the keywords of every kind, polling the stop every kPas words.
template <class Genre, class Mot>
bool Parcourt(const std::vector<GenreRecapitule>& r, const Interaction& io, Genre genre, Mot mot) {
    std::size_t n = 0;
    for (const GenreRecapitule& g : r) {
        genre(g);
        for (const MotRecapitule& m : g.mots) {
            if (++n % kPas == 0) {
                io.Montre("", m.mot);
                if (io.Arrete()) return false;
            }
            mot(m);
        }
    }
    return true;
}

} // namespace

std::vector<char> MarquesIndexees(Base& b) {
    std::vector<char> v;
    for (const GenreMot& g : GenresMots(b))
        if (g.indexe) v.push_back(g.marque);
    return v;
}

std::vector<GenreRecapitule> Recapitulation(Base& b, const std::vector<char>& marques, const Interaction& io) {
    std::vector<GenreRecapitule> r;
    for (char m : marques) {
        const std::uint32_t k = b.RubriqueDeSymbole(m);
        if (k == 0 || b.PosListeRubrique(k) == 0) continue;
        GenreRecapitule g{m, Libelle(b, m), {}};
        const std::string liste = b.ListeRubrique(k);
        for (std::size_t i = 0; i + 4 <= liste.size(); i += 4) {
            const std::uint32_t e = Unpack4(liste, i);
            MotRecapitule x{DesPoints(b.LitMot(e)), Unpack4(b.EntreeMot(e), 4), {}};
            const std::string p = b.PersonnesMot(e);
            for (std::size_t o = 0; o + 4 <= p.size(); o += 4) x.personnes.push_back(Unpack4(p, o));
            g.mots.push_back(std::move(x));
            if (g.mots.size() % kPas == 0 && io.Arrete()) return r;
        }
        r.push_back(std::move(g));
    }
    return r;
}

bool RecapitulationRTF(Base& b, SystemeFichiers& fs, const std::vector<GenreRecapitule>& r,
                       const std::string& titre, const std::string& chemin, const Interaction& io) {
    SortiePage s(fs, chemin);
    s.Ligne("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman Times New Roman;}}");
    s.Ligne("\\paperw11905\\paperh16837\\margl1134\\margr1134\\margt1134\\margb1134\\widowctrl");
    s.Ligne("{\\header \\pard\\qc\\box\\brdrs\\brdrw15\\brsp20 {\\b\\f0\\fs20 " + EchappeRTF(titre) + "}\\par }");
    s.Ligne("{\\footer \\pard\\qc {\\f0\\fs16 \\chpgn}\\par }");
    const bool fini = Parcourt(
        r, io,
        [&](const GenreRecapitule& g) {
            s.Ligne("\\pard\\keepn\\sb240\\sa120 {\\b\\f0\\fs28 " + EchappeRTF(g.libelle) + "}\\par");
        },
        [&](const MotRecapitule& m) {
            s.Ligne("\\pard\\keepn\\sb120 {\\b\\f0\\fs22 " + EchappeRTF(m.mot) + "} {\\f0\\fs18 (" +
                    std::to_string(m.emplois) + ")}\\par");
            for (std::uint32_t p : m.personnes)
                s.Ligne("\\pard\\li567 {\\f0\\fs20 " + EchappeRTF(b.NomDates(p)) + "}\\par");
        });
    if (!fini) return false;
    s.Ligne("}");
    s.Valide();
    return true;
}

bool RecapitulationHTML(Base& b, SystemeFichiers& fs, const std::vector<GenreRecapitule>& r,
                        const std::string& titre, const std::string& chemin, const Interaction& io) {
    SortiePage s(fs, chemin);
    s.Ligne("<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">");
    s.Ligne("<HTML><HEAD>");
    s.Ligne("<META http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1252\">");
    s.Ligne("<TITLE>" + EntiteHTML(titre) + "</TITLE>");
    s.Ligne("<STYLE type=\"text/css\">body{font-family:sans-serif} h3{margin-bottom:0.2em} "
            "ul{margin-top:0} .n{font-weight:normal;color:#666}</STYLE>");
    s.Ligne("</HEAD><BODY>");
    s.Ligne("<H1>" + EntiteHTML(titre) + "</H1>");
    bool ouvert = false;
    auto ferme = [&] {
        if (ouvert) s.Ligne("</UL>");
        ouvert = false;
    };
    const bool fini = Parcourt(
        r, io,
        [&](const GenreRecapitule& g) {
            ferme();
            s.Ligne("<H2>" + EntiteHTML(g.libelle) + "</H2>");
        },
        [&](const MotRecapitule& m) {
            ferme();
            s.Ligne("<H3>" + EntiteHTML(m.mot) + " <SPAN class=\"n\">(" + std::to_string(m.emplois) +
                    ")</SPAN></H3>");
            s.Ligne("<UL>");
            ouvert = true;
            for (std::uint32_t p : m.personnes) s.Ligne("<LI>" + EntiteHTML(b.NomDates(p)) + "</LI>");
        });
    if (!fini) return false;
    ferme();
    s.Ligne("</BODY></HTML>");
    s.Valide();
    return true;
}

bool ImprimeRecapitulation(Base& b, Surface& s, const OptionsImpression& o,
                           const std::vector<GenreRecapitule>& r, const std::string& titre) {
    Imprimante imp(b, s, o);
    imp.NouvellePage(titre);
    Interaction io;
    io.arret = o.arret;
    io.progres = o.progres;
    using P = Imprimante::Paragraphe;
    const bool fini = Parcourt(
        r, io,
        [&](const GenreRecapitule& g) {
            P p{{{g.libelle, true, true, 12}}, 0, true, true};
            imp.Imprime({p});
        },
        [&](const MotRecapitule& m) {
            std::vector<P> ps;
            ps.push_back({{{m.mot, true, false, 10}, {"  (" + std::to_string(m.emplois) + ")", false, false, 8}},
                          0, true, false});
            for (std::uint32_t p : m.personnes) ps.push_back({{{b.NomDates(p), false, false, 9}}, 360, false, false});
            imp.Imprime(ps);
        });
    imp.FinImpression();
    return fini;
}

} // namespace sylvane
