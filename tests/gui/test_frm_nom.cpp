// The person picker as a person uses it: type the start of a name, Enter
// chooses; Escape cancels. And the list and the calendar are the forms the
// main window finds by name.
#include "app/frm_nom.h"
#include "support/base_memoire.h"

#include <QApplication>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

using namespace sylvane;

namespace {

class FrmNom : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char* argv[] = {const_cast<char*>("t")};
        if (!qApp) new QApplication(argc, argv);
    }
    void SetUp() override {
        for (const char* nom : {"Martin", "Dupont", "Durand", "Lef\xE8vre", "Dupuis"})
            numeros.push_back(m.b.CreePersonne(nom, "Anne", "", 'F', "1850"));
    }

    // Opens the picker and, once it shows, plays `jeu` on it.
    std::uint32_t Choisit(std::uint32_t depart, std::function<void(FrmNomQt&)> jeu,
                          Base* base = nullptr) {
        QTimer::singleShot(0, [&] {
            QWidget* d = QApplication::activeModalWidget();
            ASSERT_NE(d, nullptr);
            auto* f = d->findChild<FrmNomQt*>();
            ASSERT_NE(f, nullptr);
            jeu(*f);
        });
        return ChoisitPersonneQt(base ? base : &m.b, depart, 0, nullptr);
    }

    test::BaseMemoire m;
    std::vector<std::uint32_t> numeros;
};

TEST_F(FrmNom, TypedPrefixThenEnterChoosesThatPerson) {
    const std::uint32_t depart = numeros[0];
    EXPECT_EQ(Choisit(depart, [depart](FrmNomQt& f) {
                  EXPECT_EQ(f.liste().Choix(), depart);
                  QTest::keyClicks(f.position(), "lefe");
                  QTest::keyClick(f.position(), Qt::Key_Return);
              }),
              numeros[3]);
    // The arrows of the search line move in the list.
    const std::uint32_t apres = Choisit(0, [](FrmNomQt& f) {
        QTest::keyClicks(f.position(), "dupo");
        QTest::keyClick(f.position(), Qt::Key_Down);
        QTest::keyClick(f.position(), Qt::Key_Enter);
    });
    EXPECT_EQ(apres, numeros[4]);
}

TEST_F(FrmNom, EscapeAnswersNothing) {
    EXPECT_EQ(Choisit(numeros[1], [](FrmNomQt& f) {
                  QTest::keyClicks(f.position(), "dur");
                  QTest::keyClick(f.position(), Qt::Key_Escape);
              }),
              0u);
    EXPECT_EQ(Choisit(numeros[1], [](FrmNomQt& f) {
                  QTest::keyClick(f.vue(), Qt::Key_Escape);
              }),
              0u);
}

TEST_F(FrmNom, PickerStartsOnThePersonAndIsInstalled) {
    FrmNomQt f(&m.b, numeros[2]);
    EXPECT_EQ(f.liste().Choix(), numeros[2]);
    EXPECT_EQ(f.vue()->currentIndex().data(ModeleNoms::kRolePersonne).toUInt(), numeros[2]);
    EXPECT_EQ(f.vue()->model()->rowCount(), 5);
    EXPECT_TRUE(SelecteurPersonne());
    EXPECT_TRUE(RegistreFormulaires().count("FrmNom"));
    EXPECT_TRUE(RegistreFormulaires().count("FrmCalendrier"));
    // An empty base: nothing to choose, nothing answered.
    test::BaseMemoire vide;
    EXPECT_EQ(Choisit(
                  0, [](FrmNomQt& l) { QTest::keyClick(l.position(), Qt::Key_Return); }, &vide.b),
              0u);
}

} // namespace
