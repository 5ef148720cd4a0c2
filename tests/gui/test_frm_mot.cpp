// The keyword windows as the user drives them: a kind added from the
// fields, the keyword picker typed into and validated, a trade replaced
// from the menu's window. With SYLVANE_CAPTURE set to a folder, also writes
// pictures of the windows.
#include "app/frm_mot.h"
#include "fenetre_test.h"
#include "store/evenement_edition.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

struct FrmMotTest : test::FenetreTest {
    test::Famille f;

    void SetUp() override {
        const std::string chemin = dossier / "famille.sv2";
        f = test::EcritFamille(chemin);
        {
            Parametres p;
            Base b(systemeReel(), p);
            b.Ouvre(chemin);
            for (std::uint32_t n : {f.gp, f.pere, f.moi}) {
                const std::string note = b.LitNote(n) + "\r\nOCCU  \\laboureur";
                b.MajMots(n, b.LitNote(n), note);
                b.EcritNote(n, note);
            }
            b.FermeBase();
        }
        OuvreFenetre(chemin, f.moi);
    }
    template <class F> F* Ouvre(Commande c, const char* nom) {
        EXPECT_TRUE(fenetre->logique().Execute(c));
        QApplication::processEvents();
        return qobject_cast<F*>(fenetre->Formulaire(nom));
    }
    static void FermeBoite() {
        QTimer::singleShot(0, [] {
            if (QWidget* m = QApplication::activeModalWidget()) m->close();
        });
    }
    void Capture(QWidget* w, const char* nom) {
        const char* d = std::getenv("SYLVANE_CAPTURE");
        if (!d) return;
        QApplication::processEvents();
        w->window()->grab().save(QString(d) + "/" + nom + ".png");
    }
    Base& B() { return *fenetre->logique().base(); }
};

} // namespace

TEST_F(FrmMotTest, AKindIsAddedFromTheFieldsAndTheRowsShow) {
    auto* w = Ouvre<FrmMotCleQt>(Commande::MnuMotCle, "FrmMotCle");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->grille()->rowCount(), 11);
    w->grille()->setCurrentCell(5, 0);
    EXPECT_EQ(w->marque()->text(), QStringLiteral("\\"));
    EXPECT_TRUE(w->index()->isChecked());
    w->libelle()->setText(QStringLiteral("Grade"));
    w->marque()->setText(QStringLiteral("g"));
    w->findChild<QPushButton*>(QStringLiteral("C_Ajout"))->click();
    EXPECT_EQ(w->grille()->rowCount(), 12);
    EXPECT_EQ(w->grille()->currentRow(), 11);
    EXPECT_EQ(w->grille()->item(11, 1)->text(), QStringLiteral("G"));
    EXPECT_EQ(w->possibles()->count(), 7);
    EXPECT_EQ(w->rangs(false)->count(), 3);
    Capture(w, "mots-cles");
    w->onglets()->setCurrentIndex(1);
    Capture(w, "mots-cles-rubriques");
}

TEST_F(FrmMotTest, ThePickerOpensAtTheValueAndTakesARow) {
    std::optional<DemandeMot> r;
    QTimer::singleShot(0, [this] {
        auto* d = qobject_cast<FrmMotQt*>(QApplication::activeModalWidget());
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(d->liste()->grille()->item(0, 0)->text(), QStringLiteral("LABOUREUR"));
        EXPECT_EQ(d->liste()->grille()->item(0, 1)->text(), QStringLiteral("3"));
        d->valeur()->clear();
        QTest::keyClicks(d->valeur(), QStringLiteral("tisserand"));
        EXPECT_EQ(d->liste()->grille()->rowCount(), 0) << "no keyword at or after it";
        Capture(d, "mot");
        QTest::keyClick(d->valeur(), Qt::Key_Return);
    });
    DemandeMot d{false, '\\', "OCCU", "Profession", false, "", "", "lab"};
    r = EditeMot(fenetre->logique(), d, fenetre.get());
    ASSERT_TRUE(r);
    EXPECT_EQ(r->valeur, "tisserand");
}

TEST_F(FrmMotTest, ATradeIsReplacedFromTheWindow) {
    auto* w = Ouvre<FrmRemplacementQt>(Commande::CmdRemplacement, "FrmRemplacement");
    ASSERT_NE(w, nullptr);
    EXPECT_FALSE(w->remplacer()->isEnabled());
    w->genre()->setCurrentIndex(w->genre()->findData(static_cast<int>('\\')));
    w->ancien()->setText(QStringLiteral("Laboureur"));
    w->nouveau()->setText(QStringLiteral("cultivateur"));
    ASSERT_TRUE(w->remplacer()->isEnabled());
    FermeBoite();
    w->remplacer()->click();
    EXPECT_EQ(w->logique().Bilan().occurrences, 3u);
    EXPECT_NE(B().LitNote(f.pere).find("\\cultivateur"), std::string::npos);
    Capture(w, "remplacement");
}

TEST_F(FrmMotTest, ThePickerOfABaptismMakesTheEventAndTheListHasItsSummary) {
    fenetre->logique().personneFiche = f.moi;
    char marque = ' ';
    for (const SlotRubrique& r : RangsRubriques(B(), false))
        if (r.tag == "CHR") marque = r.symbole;
    ASSERT_TRUE(ListeMotsCles(B(), marque).Indexee()) << "the baptism rubric's kind keeps its list";
    QTimer::singleShot(0, [this] {
        auto* d = qobject_cast<FrmMotQt*>(QApplication::activeModalWidget());
        ASSERT_NE(d, nullptr);
        ASSERT_TRUE(d->evenement()->isVisible());
        d->findChild<QLineEdit*>(QStringLiteral("TxtIndA"))->setText(QStringLiteral("1880"));
        Capture(d, "mot-evenement");
        d->evenement()->click();
    });
    DemandeMot d{false, marque, "CHR", "Bapt\xEAme", true, "", "", "Caen"};
    const auto r = EditeMot(fenetre->logique(), d, fenetre.get());
    ASSERT_TRUE(r) << "the event button keeps the value";
    const std::uint32_t e = EvenementPrincipal(B(), f.moi, "CHR");
    ASSERT_NE(e, 0u);
    EXPECT_EQ(B().LieuEvt(e), "Caen");
    QApplication::processEvents();
    EXPECT_NE(fenetre->Formulaire("FrmDesEvt:" + std::to_string(e)), nullptr) << "and opens it";
    // A trade is no event: no button.
    QTimer::singleShot(0, [] {
        auto* d = qobject_cast<FrmMotQt*>(QApplication::activeModalWidget());
        ASSERT_NE(d, nullptr);
        EXPECT_FALSE(d->evenement()->isVisible());
        d->reject();
    });
    EditeMot(fenetre->logique(), {false, '\\', "OCCU", "Profession", false, "", "", ""}, fenetre.get());

    // The keyword list of an indexed kind offers its summary.
    QTimer::singleShot(0, [] {
        QWidget* l = QApplication::activeModalWidget();
        ASSERT_NE(l, nullptr);
        auto* recap = l->findChild<QPushButton*>(QStringLiteral("MnuRecap"));
        ASSERT_NE(recap, nullptr);
        EXPECT_TRUE(recap->isEnabled());
        ASSERT_NE(recap->menu(), nullptr);
        QStringList noms;
        for (QAction* a : recap->menu()->actions()) noms << a->objectName();
        EXPECT_TRUE(noms.contains(QStringLiteral("MnuRecapRTF")) && noms.contains(QStringLiteral("MnuRecapHTML")) &&
                    noms.contains(QStringLiteral("MnuRecapImp")) && noms.contains(QStringLiteral("MnuEnsemble")));
        l->close();
    });
    ChoisitMotCle(fenetre->logique(), '\\', fenetre.get());
}
