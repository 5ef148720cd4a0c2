// The print windows over the real widgets: the print form sends a sheet to
// the preview, which turns its pages and saves one as a picture; the print
// form writes a PDF file of a descendant list; the chart window gets its
// options and its preview.
#include "app/fenetre_principale.h"
#include "app/frm_graphique.h"
#include "app/frm_impression.h"
#include "app/texte_qt.h"
#include "fenetre_test.h"

#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QComboBox>
#include <QRadioButton>
#include <QSpinBox>

#include <gtest/gtest.h>

#include <filesystem>

using namespace sylvane;

namespace {

struct Impression : test::FenetreTest {
    test::Famille f;
    void SetUp() override {
        f = test::EcritFamille(dossier / "famille.sv2");
        OuvreFenetre(dossier / "famille.sv2", f.moi);
        ReglagesCourants() = ReglagesImpression{};
    }
    FrmImpressionQt* Formulaire() {
        fenetre->logique().services().fenetres.Ouvre("FrmImpression");
        return qobject_cast<FrmImpressionQt*>(fenetre->Formulaire("FrmImpression"));
    }
};

} // namespace

TEST_F(Impression, SheetToThePreviewAndOnePageAsAPicture) {
    FrmImpressionQt* frm = Formulaire();
    ASSERT_NE(frm, nullptr);
    EXPECT_EQ(frm->logique().personne, f.moi);
    // A person dropped on the tab becomes the form's.
    frm->RecoitGlisser('I', f.pere);
    EXPECT_EQ(frm->logique().personne, f.pere);
    // OK takes the controls: the individual sheet, to the viewer.
    for (QRadioButton* r : frm->findChildren<QRadioButton*>())
        if (r->text() == M(msg_impression::FicheIndividuelle)) r->setChecked(true);
    for (QCheckBox* c : frm->findChildren<QCheckBox*>())
        if (c->text() == M(msg_impression::Visualiseur)) c->setChecked(true);
    frm->Valide();
    auto* apercu =
        qobject_cast<FrmPrevisualisationQt*>(fenetre->Formulaire("FrmPrevisualisation"));
    ASSERT_NE(apercu, nullptr);
    EXPECT_EQ(apercu->logique().NombrePages(), 1);
    EXPECT_TRUE(apercu->page()->text().contains(QStringLiteral("1 / 1")));
    const std::string bmp = dossier / "page.bmp";
    ASSERT_TRUE(apercu->SauveImage(QString::fromStdString(bmp)));
    QImage im(QString::fromStdString(bmp));
    ASSERT_FALSE(im.isNull());
    // Ink on the white page: the head and the sheet were drawn.
    int encre = 0;
    for (int y = 0; y < im.height(); y += 2)
        for (int x = 0; x < im.width(); x += 2) encre += qGray(im.pixel(x, y)) < 128;
    EXPECT_GT(encre, 200);
}

// The print form, taller than the area of a small screen, shows every field
// of every choice at its height: the area scrolls rather than squeeze them.
TEST_F(Impression, NoFieldIsSqueezedOnASmallScreen) {
    fenetre->resize(800, 500);
    FrmImpressionQt* frm = Formulaire();
    ASSERT_NE(frm, nullptr);
    for (const auto choix : {msg_impression::FichesAscendants, msg_impression::Graphe}) {
        for (QRadioButton* r : frm->findChildren<QRadioButton*>())
            if (r->text() == M(choix)) r->click();
        QApplication::processEvents();
        for (QWidget* w : frm->findChildren<QWidget*>())
            if (w->isVisible() && (qobject_cast<QSpinBox*>(w) || qobject_cast<QComboBox*>(w))) {
                EXPECT_GE(w->height(), w->minimumSizeHint().height()) << choix;
            }
    }
}

// The chart window and the preview put a row of buttons above their page,
// wider than the area of a small screen: the area scrolls rather than cut
// their texts.
TEST_F(Impression, ChartAndPreviewKeepTheirButtonsWholeOnASmallScreen) {
    fenetre->resize(800, 500);
    for (const char* nom : {"FrmGraphisme", "FrmPrevisualisation"}) {
        fenetre->logique().services().fenetres.Ouvre(nom);
        QApplication::processEvents();
        FormulaireQt* frm = fenetre->Formulaire(nom);
        ASSERT_NE(frm, nullptr) << nom;
        EXPECT_EQ(test::ChampsEcrases(frm), std::vector<std::string>{}) << nom;
    }
}

TEST_F(Impression, DescendantListAsAPdfFile) {
    FrmImpressionQt* frm = Formulaire();
    ASSERT_NE(frm, nullptr);
    frm->RecoitGlisser('I', f.gp);
    const std::string pdf = dossier / "desc.pdf";
    frm->logique().choix = 3; // descendant sheets
    MetriqueQt m;
    auto travail = frm->logique().Prepare(m);
    ASSERT_TRUE(travail);
    const TravailImpression& t = *travail;
    EXPECT_EQ(t.rapport, Rapport::FichesDescendants);
    ASSERT_EQ(EcritPdfPages(systemeReel(), pdf, t.options.papier, m,
                            [&](SurfaceQt& s) {
                                return frm->logique().Execute(t, s) == FinRapport::Termine
                                           ? FinPages::Termine
                                           : FinPages::Arrete;
                            }),
              FinPages::Termine);
    std::string octets = test::LitFichier(pdf);
    EXPECT_EQ(octets.rfind("%PDF", 0), 0u);
}

TEST_F(Impression, ChartWindowOptionsAndPreview) {
    fenetre->logique().services().fenetres.Ouvre("FrmGraphisme");
    auto* g = qobject_cast<FrmGraphiqueQt*>(fenetre->Formulaire("FrmGraphisme"));
    ASSERT_NE(g, nullptr);
    g->logique().direction = 2;
    g->logique().genre = GenreGraphe::Couple;
    ASSERT_TRUE(g->logique().Dessine(*fenetre->logique().base(), app->parametres(), f.moi,
                                     MetriqueDejaVu::Instance()));
    EXPECT_EQ(g->logique().Plan().direction, 2);
    // The preview button hands the chart's sheets to the preview.
    for (QPushButton* b : g->findChildren<QPushButton*>())
        if (b->text() == M(msg_impression::Apercu)) b->click();
    auto* apercu =
        qobject_cast<FrmPrevisualisationQt*>(fenetre->Formulaire("FrmPrevisualisation"));
    ASSERT_NE(apercu, nullptr);
    EXPECT_EQ(apercu->logique().NombrePages(), g->logique().NombreFeuilles());
}
