// The printed reports of the command line, as PDF pages drawn by the same
// printers and measured with the same metric as the program's preview.
#include "cli/session.h"
#include "cli/verbes.h"
#include "pdf/imprimante_pdf.h"
#include "publish/impression.h"

#include <ostream>

namespace sylvane::cli {
namespace {

// Counts the pages that pass on to the PDF's surface.
class SurfaceComptee : public Surface {
  public:
    explicit SurfaceComptee(Surface& s) : s_(s) {}
    int pages = 0;
    const Metrique& Mesure() const override { return s_.Mesure(); }
    void DebutPage(int l, int c, double w, double h) override {
        ++pages;
        s_.DebutPage(l, c, w, h);
    }
    void FinPage() override { s_.FinPage(); }
    void Trait(double a, double b, double c, double d, Plume p) override { s_.Trait(a, b, c, d, p); }
    void Boite(double a, double b, double c, double d, std::int32_t f) override {
        s_.Boite(a, b, c, d, f);
    }
    void Texte(double x, double y, std::string_view t, const Police& p, std::int32_t c) override {
        s_.Texte(x, y, t, p, c);
    }

  private:
    Surface& s_;
};

} // namespace

int VerbePrint(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"report", "levels", "pdf", "paper", "contents", "order"},
              {"landscape", "spouses", "couple", "events", "documents", "no-implex"});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{"print attend une base et un num\xC3\xA9ro de personne"};
    const std::string rapport = o.valeur("report", "sheet");
    Rapport r;
    if (rapport == "sheet") r = Rapport::FicheIndividuelle;
    else if (rapport == "family") r = Rapport::FicheFamille;
    else if (rapport == "asc") r = Rapport::FichesAscendants;
    else if (rapport == "desc") r = Rapport::FichesDescendants;
    else throw ErreurUsage{"--report : sheet, family, asc ou desc"};
    if (!o.a("pdf")) throw ErreurUsage{"print a besoin de --pdf OUT.pdf"};
    if (!FabriquePdf()) {
        err << "sylvane-cli print : la sortie PDF n'est pas disponible dans cette version\n";
        return 2;
    }
    OptionsImpression oi;
    oi.niveaux = static_cast<int>(o.entier("levels", 4));
    if (oi.niveaux < 1 || oi.niveaux > 99) throw ErreurUsage{"--levels : de 1 \xC3\xA0 99"};
    const std::string papier = o.valeur("paper", "A4");
    const std::size_t rang = papier == "A4" || papier == "a4" ? RangPapier(9)
                             : papier == "A3" || papier == "a3" ? RangPapier(8)
                             : papier == "A5" || papier == "a5" ? RangPapier(11)
                             : papier == "letter" ? RangPapier(1)
                                                  : TablePapiers().size();
    if (rang >= TablePapiers().size()) throw ErreurUsage{"--paper : A4, A3, A5 ou letter"};
    oi.papier = PapierDeRang(rang, o.a("landscape"));
    const std::string contenu = o.valeur("contents", "complete");
    if (contenu == "quick") oi.Contenu(Contenu::ListeRapide);
    else if (contenu != "complete") throw ErreurUsage{"--contents : complete ou quick"};
    const long ordre = o.entier("order", 0);
    if (ordre < 0 || ordre > 3) throw ErreurUsage{"--order : 0, 1, 2 ou 3"};
    oi.modeTri = ModeTriDeSequence(static_cast<int>(ordre));
    oi.fichesConjoints = o.a("spouses");
    oi.couple = o.a("couple");
    oi.annexeEvenements = o.a("events");
    oi.annexeDocuments = o.a("documents");
    oi.implexe = !o.a("no-implex");

    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    const std::uint32_t personne = PersonneArgument(b, o.positionnels()[1], "personne");
    SystemeFichiers& fs = systemeReel();
    const std::string cible = Chemin(o.valeur("pdf"));
    for (const std::string& p : {b.Chemins().base, b.Chemins().journal})
        if (fs.memeFichier(cible, p))
            throw std::runtime_error("la sortie " + CheminLisible(cible) +
                                     " est la base elle-m\xC3\xAAme");
    const std::unique_ptr<ImprimantePdf> pdf = FabriquePdf()();
    int pages = 0;
    FinRapport fin = FinRapport::Vide;
    pdf->EcritPages(fs, cible, oi.papier, [&](Surface& surface) {
        SurfaceComptee comptee(surface);
        fin = ImprimeRapport(b, fs, comptee, r, personne, oi);
        pages = comptee.pages;
        return fin == FinRapport::Termine ? FinPages::Termine : FinPages::Arrete;
    });
    s.base->Abandonne(); // reading changes nothing
    if (fin != FinRapport::Termine) throw std::runtime_error("rien \xC3\xA0 imprimer");
    nlohmann::json j;
    j["pages"] = pages;
    j["report"] = rapport;
    Ligne(out, j);
    return 0;
}

} // namespace sylvane::cli
