// The anniversary reports in the main window's View menu: the submenu of
// the year's recapitulation and its three destinations carry captions of
// their own, from the message files of the build tree, and are enabled
// once a base is open.
#include "app/texte_qt.h"
#include "fenetre_test.h"
#include "text/messages.h"

#include <QAction>
#include <QMenu>

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

struct MenuAnniv : test::FenetreTest {};

TEST_F(MenuAnniv, LeSousMenuEtSesTroisEntreesOntLeursPropresLibelles) {
    const std::string chemin = dossier / "famille.sv2";
    test::EcritFamille(chemin);
    OuvreFenetre(chemin);
    auto* menu = fenetre->findChild<QMenu*>(QStringLiteral("MnuRecapAnniv"));
    ASSERT_NE(menu, nullptr);
    EXPECT_FALSE(Message(4610).empty());
    EXPECT_EQ(menu->title(), M(4610));
    EXPECT_TRUE(menu->menuAction()->isEnabled());
    QStringList vus{menu->title()};
    int n = 4611;
    for (const char* nom : {"MnuImpAnniv", "MnuRTFAnniv", "MnuHTMLAnniv"}) {
        auto* a = fenetre->findChild<QAction*>(QString::fromLatin1(nom));
        ASSERT_NE(a, nullptr) << nom;
        EXPECT_FALSE(Message(n).empty()) << n;
        EXPECT_EQ(a->text(), M(n)) << nom;
        EXPECT_TRUE(a->isEnabled()) << nom;
        EXPECT_FALSE(vus.contains(a->text())) << nom;
        vus << a->text();
        ++n;
    }
}

} // namespace
