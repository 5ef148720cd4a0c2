// `FrmImage`: a document's picture in a scrolling view that zooms, with
// the header of its file beside it. A picture that can't be read shows
// "Error occurred - " and the reason in a box, and the form stays empty.
#pragma once

#include "app/formulaires.h"

#include <QImage>

#include <cstdint>
#include <string>

class QLabel;
class QListWidget;
class QScrollArea;
class QSplitter;
class QToolBar;
class QAction;

namespace sylvane {

class FrmImageQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmImageQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    // The main window sizes a new window by its hint: the form fits the screen.
    QSize sizeHint() const override;

    // Shows a file (the document's, or any path for the tests and the
    // benchmark). False when it could not be read.
    bool Montre(const std::string& chemin, const QString& legende = {});
    // The zoom: 0 fits the view, else the scale (1 = the picture's size).
    void Zoom(double facteur);
    double Facteur() const { return facteur_; }
    const QImage& Image() const { return image_; }
    QLabel* vue() const { return vue_; }
    QListWidget* entete() const { return entete_; }
    QScrollArea* defilement() const { return defilement_; }
    const QString& Erreur() const { return erreur_; }
    // Boxes of errors are shown unless the tests ask otherwise.
    static bool& BoitesErreur();

  protected:
    bool eventFilter(QObject* objet, QEvent* e) override;

  private:
    void Affiche();

    ContexteQt& c_;
    std::uint32_t document_ = 0;
    bool charge_ = false;
    QImage image_;
    QString erreur_;
    double facteur_ = 0;
    QToolBar* barre_;
    QAction *ajuster_, *reel_, *plus_, *moins_;
    QSplitter* separation_;
    QScrollArea* defilement_;
    QLabel* vue_;
    QLabel* titreEntete_;
    QListWidget* entete_;
};

} // namespace sylvane
