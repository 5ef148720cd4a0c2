// `FrmTexte`, the notes editor, as a modal dialog: a rich text field under
// a tool bar (save, cancel, bold, italic, underline, the three alignments,
// cut, copy, paste, the usual words) with the font and the size of the
// selection. The note's styled runs go into a QTextDocument and come back
// from it here: Qt reads and writes no RTF, the core does.
#pragma once

#include "ui/frm_texte.h"

#include <QDialog>

#include <functional>

class QAction;
class QFontComboBox;
class QLabel;
class QListWidget;
class QSpinBox;
class QTextCharFormat;
class QTextCursor;
class QTextDocument;
class QTextEdit;
class QToolBar;

namespace sylvane {

// The runs of a note laid into a document, paragraph by paragraph.
void DocumentDepuisSegments(QTextDocument& doc, const std::vector<SegmentRtf>& segments);
// The document as runs, paragraphs ended by "\r\n" (none after the last).
std::vector<SegmentRtf> SegmentsDepuisDocument(const QTextDocument& doc);
// The runs under a selection, or the style at the caret when there is none.
std::vector<SegmentRtf> SegmentsSelection(const QTextCursor& curseur);

class FrmTexteQt : public QDialog {
    Q_OBJECT
  public:
    FrmTexteQt(const std::string& texte, const std::string& titre,
               std::vector<std::string> motsUsuels, QWidget* parent = nullptr);

    FrmTexte& logique() { return logique_; }
    QTextEdit* editeur() const { return editeur_; }
    QListWidget* mots() const { return mots_; }
    // The tool bar's actions by key: "Sauve", "Abandon", "Gras", "Italique",
    // "Souligné", "Gauche", "Centre", "Droite", "Couper", "Copier", "Coller",
    // "Mot Usuel".
    QAction* Action(const QString& cle) const;
    QFontComboBox* police() const { return police_; }
    QSpinBox* taille() const { return taille_; }
    void Retraduit();

  private:
    QAction* Ajoute(const char* cle, const QKeySequence& touche);
    void Style(const std::function<void(QTextCharFormat&)>& change);
    void Aligne(Qt::Alignment a);
    void Suit();
    void Sauve();
    void InsereMot(int i);

    FrmTexte logique_;
    QToolBar* barre_;
    QTextEdit* editeur_;
    QListWidget* mots_;
    QLabel *lPolice_, *lTaille_;
    QFontComboBox* police_;
    QSpinBox* taille_;
    std::vector<std::pair<QString, QAction*>> actions_;
    bool suit_ = false; // the controls follow the selection: their changes apply nothing
};

} // namespace sylvane
