// The merge window over the sample family integrated into itself, so that
// every person stands twice: the doubles found at each level, then ten
// pairs merged through the wizard's panels as a person would, clicking a
// row, the merge button, then Suite on each panel and Yes to the question.
// Afterwards the consistency control finds nothing to repair and every
// family link of the base is written on both sides.
//
// SYLVANE_FUSION_BASE names a base to work on instead of building one;
// SYLVANE_CAPTURES a folder for a picture of each panel met.
#include "app/frm_fusion.h"
#include "fenetre_test.h"
#include "maintenance/fusion.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <set>

using namespace sylvane;

namespace {

std::string Guillemets(const std::string& s) { return "'" + s + "'"; }

// The command's standard output, or nothing when it fails.
std::optional<std::string> Sortie(const std::string& commande) {
    FILE* p = popen(commande.c_str(), "r");
    if (!p) return std::nullopt;
    std::string r;
    char tampon[4096];
    while (std::size_t n = std::fread(tampon, 1, sizeof tampon, p)) r.append(tampon, n);
    if (pclose(p) != 0) return std::nullopt;
    return r;
}

// Every family link of a live person that the other side doesn't hold.
std::vector<std::string> LiensBoiteux(Base& b) {
    std::vector<std::string> r;
    auto vivant = [&](std::uint32_t n) {
        return n && n <= b.Tete().maxPersonne && b.TrouvePlaceFiche(n);
    };
    auto enfantDe = [&](std::uint32_t parent, std::uint32_t n) {
        for (int i = 1; i <= 200; ++i)
            if (const std::uint32_t e = b.EnfantNo(parent, i); e == n) return true;
            else if (e == 0) break;
        return false;
    };
    for (std::uint32_t n = 1; n <= b.Tete().maxPersonne; ++n) {
        if (!vivant(n)) continue;
        const std::string p = std::to_string(n);
        for (std::uint32_t parent : {b.LitPere(n), b.LitMere(n)})
            if (parent && (!vivant(parent) || !enfantDe(parent, n)))
                r.push_back(p + ": parent " + std::to_string(parent));
        for (int i = 1; i <= 200; ++i) {
            const std::uint32_t e = b.EnfantNo(n, i);
            if (e == 0) break;
            if (!vivant(e) || (b.LitPere(e) != n && b.LitMere(e) != n))
                r.push_back(p + ": enfant " + std::to_string(e));
        }
        for (std::uint32_t m : b.Mariages(n)) {
            const std::uint32_t mari = b.LitMari(m), femme = b.LitFemme(m);
            const std::uint32_t conjoint = mari == n ? femme : mari;
            if (mari != n && femme != n) r.push_back(p + ": mariage " + std::to_string(m));
            else if (conjoint) {
                const auto l = b.Mariages(conjoint);
                if (!vivant(conjoint) || std::find(l.begin(), l.end(), m) == l.end())
                    r.push_back(p + ": conjoint " + std::to_string(conjoint));
            }
        }
        for (int i = 1; i <= 200; ++i) {
            const std::uint32_t e = b.EvtNo(n, i);
            if (e == 0) break;
            bool present = false;
            for (int j = 1; j <= 200 && !present; ++j) {
                const std::uint32_t x = b.PersonneEvtNo(e, j);
                if (x == 0) break;
                present = x == n;
            }
            if (!present) r.push_back(p + ": evenement " + std::to_string(e));
        }
    }
    return r;
}

// A body of note put after what the note already holds.
void AutreCorps(std::string note, const std::string& corpsAvant, const std::string& corps,
                const std::function<void(const std::string&)>& ecrit) {
    if (!corpsAvant.empty() && note.size() >= corpsAvant.size())
        note.resize(note.size() - corpsAvant.size());
    else
        note += "\r\n\r\n";
    ecrit(note + corps);
}

struct FusionEchantillon : test::FenetreTest {
    std::string base;
    void SetUp() override {
        if (const char* donnee = std::getenv("SYLVANE_FUSION_BASE")) {
            base = donnee;
        } else {
            base = dossier / "d.sv2";
            const std::string cli = Guillemets(SYLVANE_CLI), svr = Guillemets(dossier / "d.svr");
            const std::string ged = Guillemets(SYLVANE_SOURCE_DIR "/samples/famille-exemple.ged");
            ASSERT_TRUE(Sortie(cli + " import-gedcom " + ged + " " + Guillemets(base)));
            ASSERT_TRUE(Sortie(cli + " export-svr " + Guillemets(base) + " " + svr));
            ASSERT_TRUE(Sortie(cli + " integrate " + Guillemets(base) + " " + svr + " --yes"));
        }
        // The counts below are those of this search alone.
        if (systemeReel().existe(CheminPaires(base))) systemeReel().supprimer(CheminPaires(base));
        OuvreFenetre(base, 1);
    }
};

TEST_F(FusionEchantillon, TenPairsMergedThroughTheWizardLeaveEveryLinkOnBothSides) {
    auto w = std::make_unique<FrmFusionQt>(fenetre->contexte());
    w->resize(1100, 640);
    w->show();
    Base& b = *fenetre->logique().base();
    const std::uint32_t vivantsAvant = b.Tete().nbPersonnes;

    // The four levels one after the other: the table keeps what each found.
    std::array<int, 4> comptes{};
    for (int i = 0; i < 4; ++i) {
        w->findChild<QRadioButton*>(QStringLiteral("OptSeuil%1").arg(i))->click();
        comptes[static_cast<std::size_t>(i)] = w->grille()->rowCount();
        RecordProperty("niveau" + std::to_string(i), comptes[static_cast<std::size_t>(i)]);
    }
    std::printf("doubles found, levels 0 to 3: %d %d %d %d\n", comptes[0], comptes[1], comptes[2],
                comptes[3]);
    EXPECT_GE(comptes[0], 20);
    EXPECT_LE(comptes[0], comptes[1]);
    EXPECT_LE(comptes[1], comptes[2]);
    EXPECT_LE(comptes[2], comptes[3]);

    // The first pair gets notes of its own on the second record and on its
    // first marriage, so that the notes are offered on their panels.
    {
        const std::uint32_t k = w->grille()->item(0, 2)->text().toUInt();
        const std::uint32_t d = w->grille()->item(0, 3)->text().toUInt();
        AutreCorps(b.LitNote(d), b.CorpsNote(d), "Note du second relev\xE9.",
                   [&](const std::string& t) { b.EcritNote(d, t); });
        const auto mk = b.Mariages(k), md = b.Mariages(d);
        if (!mk.empty() && !md.empty()) {
            AutreCorps(b.LitNoteMariage(mk[0]), b.CorpsNoteMariage(mk[0]), "Contrat chez le notaire.",
                       [&](const std::string& t) { b.EcritNoteMariage(mk[0], t); });
            AutreCorps(b.LitNoteMariage(md[0]), b.CorpsNoteMariage(md[0]), "Contrat de mariage.",
                       [&](const std::string& t) { b.EcritNoteMariage(md[0], t); });
        }
        b.ValideBase();
    }

    // Every box of the merge is answered Yes: 957, and 981 for a child.
    int questions = 0;
    QTimer oui;
    QObject::connect(&oui, &QTimer::timeout, [&] {
        auto* m = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!m) return;
        ++questions;
        m->defaultButton()->click(); // Yes for a question
    });
    oui.start(10);

    const char* images = std::getenv("SYLVANE_CAPTURES");
    std::set<int> panneaux;
    int fusions = 0;
    while (fusions < 10) {
        // The first pair, then from the end of the table: the children
        // before their parents, so that parents still differ.
        int ligne = -1;
        for (int i = 0; i < w->grille()->rowCount() && ligne < 0; ++i) {
            const int r = fusions == 0 ? i : w->grille()->rowCount() - 1 - i;
            // One person entered twice: the same name and dates on both sides.
            const QString a = w->grille()->item(r, 0)->text(), z = w->grille()->item(r, 1)->text();
            if (!a.isEmpty() && a == z) ligne = r;
        }
        ASSERT_GE(ligne, 0) << "no pair left after " << fusions << " merges";
        const std::uint32_t k = w->grille()->item(ligne, 2)->text().toUInt();
        const std::uint32_t d = w->grille()->item(ligne, 3)->text().toUInt();
        w->grille()->setCurrentCell(ligne, 0);
        ASSERT_TRUE(w->fusion()->isEnabled());
        w->fusion()->click();
        ASSERT_NE(w->logique().etape(), FrmFusion::Etape::Liste) << k << " and " << d;
        for (int pas = 0; w->logique().etape() != FrmFusion::Etape::Liste; ++pas) {
            ASSERT_LT(pas, 100) << "the wizard never ends";
            const int p = w->panneaux()->currentIndex();
            if (panneaux.insert(p).second && images) {
                QApplication::processEvents();
                w->grab().save(QString::fromUtf8(images) + QStringLiteral("/fusion-%1.png").arg(p));
            }
            w->suite()->click();
        }
        std::printf("merged %u into %u: %s\n", d, k, b.NomDates(k).c_str());
        EXPECT_EQ(b.TrouvePlaceFiche(d), 0u) << d << " merged into " << k;
        EXPECT_NE(b.TrouvePlaceFiche(k), 0u);
        ++fusions;
    }
    oui.stop();
    // Every panel was met: general data, notes, parents, marriages, children.
    EXPECT_EQ(panneaux, (std::set<int>{1, 2, 3, 4, 5}));
    EXPECT_GE(questions, 10);
    EXPECT_EQ(b.Tete().nbPersonnes, vivantsAvant - 10);
    const auto boiteux = LiensBoiteux(b);
    EXPECT_TRUE(boiteux.empty()) << boiteux.front();

    // Closed, the base is left to the consistency control, which has
    // nothing to repair, and read again with every link on both sides.
    w.reset();
    fenetre->logique().Termine();
    fenetre.reset();
    const auto rapport = Sortie(Guillemets(SYLVANE_CLI) + " control " + Guillemets(base));
    ASSERT_TRUE(rapport);
    EXPECT_EQ(*rapport, "");
    Parametres p;
    Base relue(systemeReel(), p);
    relue.Ouvre(base);
    EXPECT_EQ(relue.Tete().nbPersonnes, vivantsAvant - 10);
    const auto apres = LiensBoiteux(relue);
    EXPECT_TRUE(apres.empty()) << apres.front();
    relue.FermeBase();
}

} // namespace
