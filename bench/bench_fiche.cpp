// The person sheet on the million-person base: validating the sheet of a
// person with 50 children and 20 events after a change of the death place,
// which rewrites the identity, the note through the keyword index and the
// person's place in the lists.
//   build/bench/bench_fiche
#include "million.h"
#include "support/services_faux.h"
#include "text/reglages.h"
#include "ui/application.h"
#include "ui/frm_misajour.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

using namespace sylvane;

namespace {

struct AucunChoix : ChoixFiche {
    std::uint32_t Cree(const std::string&) override { return 0; }
    std::uint32_t Choisit(Candidats, std::uint32_t, char, const std::string&) override {
        return 0;
    }
    std::optional<std::string> EditeTexte(const std::string&, const std::string&) override {
        return std::nullopt;
    }
};

struct Banc {
    ReglagesMemoire reglages;
    Application app{systemeReel(), reglages, Dossier()};
    test::ServicesFaux services;
    AucunChoix choix;
    std::unique_ptr<MDIForm1> f;
    std::unique_ptr<FrmMisajour> fiche;
    std::uint32_t pere = 0;

    Banc() {
        const std::string copie = Dossier() + "/fiche.sv2";
        std::filesystem::copy_file(BaseMillion(), copie,
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::remove(Dossier() + "/fiche.log");
        app.Demarre();
        app.OuvreBase(copie);
        Base& b = app.base();
        pere = b.CreePersonne("FICHE", "Pierre", "", 'H', "1800");
        const std::uint32_t mere = b.CreePersonne("BANC", "Marie", "", 'F', "1805");
        b.CreeMariage(pere, mere, "1825");
        for (int i = 0; i < 50; ++i) {
            const std::uint32_t c = b.CreePersonne("FICHE", "Enfant" + std::to_string(i), "",
                                                   i % 2 ? 'F' : 'H', std::to_string(1826 + i));
            b.EcritPere(c, pere);
            b.MajEnfants(pere, c, 'A');
            b.EcritMere(c, mere);
            b.MajEnfants(mere, c, 'A');
        }
        for (int i = 0; i < 20; ++i)
            b.CreeEvtPersonne(pere, 1820 + i, i % 2 ? "RESI" : "OCCU", "Lieu" + std::to_string(i));
        b.ValideBase();
        f = std::make_unique<MDIForm1>(app, services.ui());
        f->personneFiche = pere;
        fiche = std::make_unique<FrmMisajour>(*f, choix);
    }
    ~Banc() {
        fiche.reset();
        app.FermeBase();
    }
};

void BM_ValideLaFiche(benchmark::State& state) {
    Banc banc;
    int i = 0;
    for (auto _ : state) {
        banc.fiche->Modifie(Champ::LieuDeces, "Paris " + std::to_string(++i));
        if (!banc.fiche->C_Maj_Click()) state.SkipWithError("validation refused");
    }
    state.counters["enfants"] = 50;
    state.counters["pic_Mo"] = static_cast<double>(PicMemoireMo());
}
BENCHMARK(BM_ValideLaFiche)->Unit(benchmark::kMillisecond)->Iterations(50);

} // namespace

BENCHMARK_MAIN();
