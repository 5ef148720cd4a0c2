// The document windows under the offscreen platform: one picture of each
// format in the viewer with its header, damaged and hostile files that end
// in an error text, and the list, the description form, the title document
// and the text viewer reached from the main window.
#include "app/fenetre_principale.h"
#include "app/frm_document.h"
#include "app/frm_image.h"
#include "app/image_qt.h"
#include "fenetre_test.h"
#include "store/fichier.h"
#include "text/utf8.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

const std::string kImages = std::string(SYLVANE_SOURCE_DIR) + "/tests/data/images/";

struct BureauTest : Bureau {
    std::vector<std::string> ouverts;
    bool OuvreAdresse(const std::string& a) override {
        ouverts.push_back(a);
        return true;
    }
    bool OuvreFichier(const std::string& c) override {
        ouverts.push_back(c);
        return true;
    }
};

struct Images : test::FenetreTest {
    BureauTest bureau;
    Bureau* avant = nullptr;
    std::uint32_t photo = 0, lettre = 0, jean = 0;
    void SetUp() override {
        FrmImageQt::BoitesErreur() = false;
        avant = BureauCourant();
        DefinitBureau(&bureau);
        const std::string base = dossier.chemin() + "/documents.sv2";
        ecrireTout(systemeReel(), dossier.chemin() + "/lettre.txt", "Cher cousin,\r\nvoici l'acte.");
        {
            Parametres p;
            Base b(systemeReel(), p);
            b.Nouvelle(base);
            jean = b.CreePersonne("Martin", "Jean", "", 'H', "1850");
            photo = b.CreeDoc("Portrait", kImages + "modele.pcx", "Photo");
            lettre = b.CreeDoc("Lettre", "lettre.txt");
            b.MajDocs(jean, photo, 'A');
            b.FermeBase();
        }
        OuvreFenetre(base, jean);
    }
    void TearDown() override {
        DefinitBureau(avant);
        FrmImageQt::BoitesErreur() = true;
        test::FenetreTest::TearDown();
    }
    template <class T> T* Forme(const std::string& nom) {
        return dynamic_cast<T*>(fenetre->Formulaire(nom));
    }
};

TEST_F(Images, EveryFormatShowsWithItsHeader) {
    const char* fichiers[] = {"modele.bmp", "modele.gif", "modele.jpg", "modele.png",
                              "modele.tif", "modele.tga", "modele.pcx", "modele.cut",
                              "modele.wpg", "modele.msp", "modele.img", "modele.lbm",
                              "modele.pic", "modele.mac"};
    FrmImageQt v(fenetre->contexte());
    v.resize(600, 400);
    for (const char* f : fichiers) {
        SCOPED_TRACE(f);
        ASSERT_TRUE(v.Montre(kImages + f)) << v.Erreur().toStdString();
        const bool mac = std::string(f) == "modele.mac";
        EXPECT_EQ(v.Image().size(), mac ? QSize(576, 720) : QSize(16, 12));
        EXPECT_GT(v.entete()->count(), 1);
    }
    // The colours survive each reader: the first band is red.
    for (const char* f : {"modele.bmp", "modele.tga", "modele.pcx", "modele.lbm"}) {
        ASSERT_TRUE(v.Montre(kImages + f));
        const QColor c = v.Image().pixelColor(1, 1);
        EXPECT_GT(c.red(), 150) << f;
        EXPECT_LT(c.blue(), 100) << f;
    }
    // A WordPerfect bitmap runs from blue to yellow through its colour map.
    ASSERT_TRUE(v.Montre(kImages + "modele.wpg"));
    EXPECT_GT(v.Image().pixelColor(0, 0).blue(), 200);
    EXPECT_LT(v.Image().pixelColor(0, 0).red(), 50);
    EXPECT_GT(v.Image().pixelColor(15, 11).red(), 200);
    EXPECT_LT(v.Image().pixelColor(15, 11).blue(), 50);
    // A Dr. Halo picture without its palette: its four colour numbers are
    // four greys up to white, not four shades of black.
    ASSERT_TRUE(v.Montre(kImages + "modele.cut"));
    EXPECT_EQ(v.Image().pixelColor(0, 3), QColor(Qt::white));
    EXPECT_LT(v.Image().pixelColor(0, 0).lightness(), v.Image().pixelColor(0, 1).lightness());
    EXPECT_GT(v.Image().pixelColor(0, 0).lightness(), 40);
    // Fitting never enlarges; a zoom of 2 doubles.
    v.Zoom(0);
    EXPECT_EQ(v.vue()->pixmap().size(), QSize(16, 12));
    v.Zoom(2);
    EXPECT_EQ(v.vue()->pixmap().size(), QSize(32, 24));
}

TEST_F(Images, DamagedAndHostileFilesEndInAnErrorText) {
    FrmImageQt v(fenetre->contexte());
    const std::string d = dossier.chemin() + "/";
    ecrireTout(systemeReel(), d + "vide.jpg", "");
    EXPECT_FALSE(v.Montre(d + "vide.jpg"));
    EXPECT_EQ(v.Erreur(), QStringLiteral("Erreur lecture fichier"));
    EXPECT_TRUE(v.vue()->pixmap().isNull());
    EXPECT_FALSE(v.Montre(d + "absent.png"));
    // Every format cut in half.
    for (const char* f : {"modele.bmp", "modele.gif", "modele.png", "modele.tif", "modele.tga",
                          "modele.pcx", "modele.wpg", "modele.msp", "modele.pic", "modele.lbm"}) {
        const std::string octets = lireTout(systemeReel(), kImages + f);
        const std::string coupe = d + "coupe-" + f;
        ecrireTout(systemeReel(), coupe, octets.substr(0, octets.size() / 2));
        v.Montre(coupe); // no crash; some readers give what they could read
    }
    // A bitmap header that claims 60000 x 60000 pixels.
    std::string bmp = lireTout(systemeReel(), kImages + "modele.bmp").substr(0, 54);
    for (int i : {18, 22}) {
        bmp[static_cast<std::size_t>(i)] = '\x60';
        bmp[static_cast<std::size_t>(i) + 1] = '\xEA';
    }
    ecrireTout(systemeReel(), d + "geant.bmp", bmp);
    EXPECT_FALSE(v.Montre(d + "geant.bmp"));
    EXPECT_FALSE(v.Erreur().isEmpty());
    // The same claim to GraphicsMagick, through a Targa header.
    std::string tga(18, '\0');
    tga[2] = 2;
    tga[12] = tga[13] = tga[14] = tga[15] = '\xFF';
    tga[16] = 24;
    ecrireTout(systemeReel(), d + "geant.tga", tga + std::string(100, 'x'));
    EXPECT_TRUE(ChargeImageMagick(d + "geant.tga").image.isNull());
}

TEST_F(Images, TheListOpensTheViewerTheFormAndTheUse) {
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuImage));
    auto* liste = Forme<FrmLstImageQt>("FrmLstImage");
    ASSERT_NE(liste, nullptr);
    ASSERT_EQ(liste->grille()->model()->rowCount(), 2);
    EXPECT_EQ(liste->grille()->model()->index(0, 1).data().toString(), QStringLiteral("Lettre"));
    // The picture of row 2 in its viewer.
    EXPECT_EQ(liste->logique().CmdVisu(1), Visionneuse::Image);
    auto* image = Forme<FrmImageQt>("FrmImage:" + std::to_string(photo));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->Image().size(), QSize(16, 12));
    EXPECT_EQ(image->windowTitle(), QStringLiteral("Portrait"));
    // The text of row 1 in the plain viewer.
    EXPECT_EQ(liste->logique().CmdVisu(0), Visionneuse::Texte);
    auto* texte = Forme<FrmOleQt>("FrmOLE:" + std::to_string(lettre));
    ASSERT_NE(texte, nullptr);
    EXPECT_TRUE(texte->texte()->toPlainText().startsWith(QStringLiteral("Cher cousin")));

    // The form: a new title, saved, moves the row.
    liste->logique().CmdMaj(0);
    auto* form = Forme<FrmDesImageQt>("FrmDesImage:" + std::to_string(lettre));
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->intitule()->text(), QStringLiteral("Lettre"));
    form->intitule()->setText(QStringLiteral("Été 1870, lettre"));
    form->commentaire()->setPlainText(QStringLiteral("Écrite à Caen"));
    form->commentaire()->document()->setModified(true);
    ASSERT_TRUE(form->Enregistre());
    Base& b = *fenetre->logique().base();
    EXPECT_EQ(b.TitreDoc(lettre), "\xC9t\xE9 1870, lettre");
    EXPECT_EQ(b.NoteDoc(lettre), "\xC9" "crite \xE0 Caen");
    liste->Actualise();
    // The list follows the documents' sort: find the rows again.
    int rangLettre = -1;
    for (int r = 0; r < 2; ++r)
        if (liste->grille()->model()->index(r, 1).data().toString() ==
            QStringLiteral("Été 1870, lettre"))
            rangLettre = r;
    ASSERT_NE(rangLettre, -1);

    // Who uses the picture: Jean; a dropped event takes it too.
    liste->logique().CmdUtilisation(static_cast<std::size_t>(1 - rangLettre));
    auto* util = Forme<FrmUtilImageQt>("FrmUtilImage:" + std::to_string(photo));
    ASSERT_NE(util, nullptr);
    ASSERT_EQ(util->grille()->rowCount(), 1);
    EXPECT_TRUE(util->grille()->item(0, 0)->text().contains(QStringLiteral("Jean")))
        << util->grille()->item(0, 0)->text().toStdString();
    EXPECT_EQ(util->grille()->item(0, 1)->text(), QStringLiteral("%1I").arg(jean));
}

TEST_F(Images, TheTitleDocumentIsAnEmailEntry) {
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuDescription));
    auto* form = Forme<FrmDesImageQt>("FrmDesImage");
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(form->logique()->EstTitre());
    EXPECT_FALSE(form->cmdVisu()->isVisibleTo(form));
    EXPECT_FALSE(form->cmdFichier()->isVisibleTo(form));
    EXPECT_FALSE(form->chkOle()->isVisibleTo(form));
    EXPECT_EQ(form->type()->currentText(), QStringLiteral("E-Mail"));
    form->intitule()->setText(QStringLiteral("Famille Martin"));
    form->fichier()->setText(QStringLiteral("martin@example.org"));
    ASSERT_TRUE(form->Enregistre());
    Base& b = *fenetre->logique().base();
    ASSERT_NE(b.Tete().documentTitre, 0u);
    EXPECT_EQ(b.FichierDoc(b.Tete().documentTitre), "martin@example.org");
    EXPECT_EQ(b.TypeDoc(b.Tete().documentTitre), "E-Mail");
}

} // namespace
