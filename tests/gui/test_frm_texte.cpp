// The notes editor on screen: a note with bold and italic opened, changed
// with the tool bar and the keyboard, saved, and read back through the
// core's reader; the document and the runs convert both ways.
#include "app/frm_texte.h"
#include "support/francais.h"
#include "text/rtf_ecriture.h"

#include <QAction>
#include <QListWidget>
#include <QSpinBox>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

SegmentRtf Seg(std::string t, bool g, bool i, bool s, Alignement a, std::string police, int taille) {
    return {std::move(t), g, i, s, a, std::move(police), taille};
}

// The runs of a saved note, its words with their styles.
const SegmentRtf* Trouve(const std::vector<SegmentRtf>& s, const std::string& mot) {
    for (const auto& x : s)
        if (x.texte.find(mot) != std::string::npos) return &x;
    return nullptr;
}

void Selectionne(QTextEdit* e, const QString& mot) {
    QTextCursor c = e->document()->find(mot);
    ASSERT_FALSE(c.isNull());
    e->setTextCursor(c);
}

} // namespace

TEST(FrmTexteQt, DocumentAndRunsConvertBothWays) {
    const std::vector<SegmentRtf> note = {
        Seg("Un ", false, false, false, Alignement::Gauche, "", 0),
        Seg("gras", true, false, false, Alignement::Gauche, "", 0),
        Seg(" et \xE9t\xE9\r\n", false, true, false, Alignement::Gauche, "", 0),
        Seg("\r\n", false, false, false, Alignement::Gauche, "", 0),
        Seg("Centr\xE9\r\n", false, false, true, Alignement::Centre, "Serif", 24),
        Seg("fin", false, false, false, Alignement::Droite, "Sans", 18),
    };
    QTextDocument doc;
    DocumentDepuisSegments(doc, note);
    EXPECT_EQ(doc.blockCount(), 4);
    EXPECT_EQ(doc.findBlockByNumber(2).blockFormat().alignment() & Qt::AlignHorizontal_Mask,
              Qt::AlignHCenter);
    const auto retour = SegmentsDepuisDocument(doc);
    ASSERT_EQ(retour.size(), note.size());
    for (std::size_t i = 0; i < note.size(); ++i) {
        EXPECT_EQ(retour[i].texte, note[i].texte) << i;
        EXPECT_EQ(retour[i].gras, note[i].gras) << i;
        EXPECT_EQ(retour[i].italique, note[i].italique) << i;
        EXPECT_EQ(retour[i].souligne, note[i].souligne) << i;
        EXPECT_EQ(retour[i].alignement, note[i].alignement) << i;
        EXPECT_EQ(retour[i].police, note[i].police) << i;
        EXPECT_EQ(retour[i].taille, note[i].taille) << i;
    }
}

TEST(FrmTexteQt, OpenChangeSaveAndReadBack) {
    const std::string rtf = EcritRtf({Seg("Jean est ", false, false, false, Alignement::Gauche, "", 0),
                                      Seg("laboureur", true, false, false, Alignement::Gauche, "", 0),
                                      Seg(" \xE0 Tours", false, true, false, Alignement::Gauche, "", 0)});
    FrmTexteQt f(rtf, "Martin Jean", {"cultivateur", "tisserand"});
    f.show();
    f.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&f));
    QTextEdit* e = f.editeur();
    EXPECT_EQ(e->toPlainText(), QString::fromUtf8("Jean est laboureur à Tours"));
    EXPECT_EQ(f.windowTitle(), "Martin Jean");

    // The tool bar shows the style under the selection.
    Selectionne(e, "laboureur");
    EXPECT_TRUE(f.Action("Gras")->isChecked());
    EXPECT_FALSE(f.Action("Italique")->isChecked());
    Selectionne(e, "Jean est laboureur");
    EXPECT_FALSE(f.Action("Gras")->isChecked()); // mixed

    // Underline a word with the keyboard, centre the paragraph, add a word
    // from the usual words at the end.
    Selectionne(e, "Tours");
    QTest::keyClick(e, Qt::Key_U, Qt::ControlModifier);
    f.Action("Centre")->trigger();
    e->moveCursor(QTextCursor::End);
    QTest::keyClicks(e, ", ");
    f.Action("Mot Usuel")->trigger();
    ASSERT_TRUE(f.mots()->isVisible());
    f.mots()->setCurrentRow(1);
    QTest::keyClick(f.mots(), Qt::Key_Return);
    EXPECT_FALSE(f.mots()->isVisible());
    EXPECT_TRUE(e->toPlainText().endsWith("Tours, tisserand"));

    QTest::keyClick(e, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(f.result(), QDialog::Accepted);
    ASSERT_TRUE(f.logique().Resultat());
    const auto lu = SegmentsNote(*f.logique().Resultat());
    const SegmentRtf* gras = Trouve(lu, "laboureur");
    ASSERT_TRUE(gras);
    EXPECT_TRUE(gras->gras);
    const SegmentRtf* tours = Trouve(lu, "Tours");
    ASSERT_TRUE(tours);
    EXPECT_TRUE(tours->italique);
    EXPECT_TRUE(tours->souligne);
    EXPECT_EQ(tours->alignement, Alignement::Centre);
    std::string tout;
    for (const auto& s : lu) tout += s.texte;
    EXPECT_EQ(tout, "Jean est laboureur \xE0 Tours, tisserand");

    if (const char* d = std::getenv("SYLVANE_CAPTURES")) {
        FrmTexteQt c(rtf, "Martin Jean", {"cultivateur", "tisserand"});
        c.show();
        c.Action("Mot Usuel")->trigger();
        Selectionne(c.editeur(), "laboureur");
        QTest::qWait(200);
        c.grab().save(QString::fromUtf8(d) + "/editeur.png");
    }
}

TEST(FrmTexteQt, FontSizeAndCancel) {
    FrmTexteQt f("simple note", "", {});
    f.show();
    EXPECT_FALSE(f.Action("Mot Usuel")->isEnabled()); // no usual words
    QTextEdit* e = f.editeur();
    Selectionne(e, "note");
    f.taille()->setValue(16);
    f.Action("Sauve")->trigger();
    const auto lu = SegmentsNote(*f.logique().Resultat());
    const SegmentRtf* note = Trouve(lu, "note");
    ASSERT_TRUE(note);
    EXPECT_EQ(note->taille, 32);
    EXPECT_EQ(Trouve(lu, "simple")->taille, 0);

    FrmTexteQt g("garde", "", {});
    g.show();
    g.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&g));
    QTest::keyClicks(g.editeur(), "xyz");
    QTest::keyClick(&g, Qt::Key_Escape);
    EXPECT_EQ(g.result(), QDialog::Rejected);
    EXPECT_FALSE(g.logique().Resultat());
}
