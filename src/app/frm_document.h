// The document windows over their logic (src/ui/frm_document.h): the list
// by title, the form on one document, who uses it, and the plain viewer of
// texts. Web addresses and HTML pages go to the user's browser; ".svo"
// links and other files to the program the system associates with them.
#pragma once

#include "app/formulaires.h"
#include "app/modele_glisser.h"
#include "ui/frm_document.h"

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTableView;
class QTableWidget;
class QTextEdit;
class QToolBar;
class QAction;
class QTimer;

namespace sylvane {

// The document a window is for: the demand waiting when it was made, else
// the number after the ":" of its name (read at its first translation).
class DocumentDeFenetre {
  public:
    DocumentDeFenetre();
    // True the first time, once the number is known.
    bool Prend(const QWidget& w);
    std::uint32_t document = 0;
    OrigineDocument origine;

  private:
    bool connu_ = false, pris_ = false;
};

// --- FrmLstImage ---------------------------------------------------------------------

class ModeleDocuments : public ModeleGlisser {
    Q_OBJECT
  public:
    ModeleDocuments(FrmLstImage& l, QObject* parent) : ModeleGlisser(parent), l_(l) {}
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;

  private:
    std::string TagLigne(int) const override { return {}; }
    FrmLstImage& l_;
};

class FrmLstImageQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmLstImageQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    // The main window sizes a new window by its hint.
    QSize sizeHint() const override { return {640, 420}; }
    FrmLstImage& logique() { return logique_; }
    QTableView* grille() const { return grille_; }
    // Reads the list again when a document changed since.
    void Actualise(bool toujours = false);

  protected:
    void keyPressEvent(QKeyEvent* e) override;

  private:
    int Ligne() const;

    ContexteQt& c_;
    FrmLstImage logique_;
    ModeleDocuments* modele_;
    QTableView* grille_;
    QLabel* nombre_;
    QPushButton *cmdMaj_, *cmdAjout_, *cmdSupp_, *cmdVisu_, *cmdUtilisation_;
    QTimer* minuterie_;
    std::uint64_t version_ = 0;
};

// --- FrmDesImage ---------------------------------------------------------------------

class FrmDesImageQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmDesImageQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    // The main window sizes a new window by its hint.
    QSize sizeHint() const override { return {560, 420}; }
    FrmDesImage* logique() { return logique_.get(); }
    // The fields to the logic, then its save.
    bool Enregistre();
    QLineEdit* intitule() const { return intitule_; }
    QLineEdit* fichier() const { return fichier_; }
    QComboBox* type() const { return type_; }
    QTextEdit* commentaire() const { return commentaire_; }
    QPushButton* cmdVisu() const { return cmdVisu_; }
    QPushButton* cmdFichier() const { return cmdFichier_; }
    QCheckBox* chkOle() const { return ole_; }

  protected:
    void closeEvent(QCloseEvent* e) override;

  private:
    void Remplit();
    void Lit();

    ContexteQt& c_;
    DocumentDeFenetre demande_;
    std::unique_ptr<FrmDesImage> logique_;
    QToolBar* barre_;
    QAction* enregistrer_;
    QLabel *lblIntitule_, *lblFichier_, *lblType_, *lblCommentaire_, *dossier_;
    QLineEdit *intitule_, *fichier_;
    QComboBox* type_;
    QCheckBox* ole_;
    QPushButton *cmdFichier_, *cmdVisu_;
    QTextEdit* commentaire_;
};

// --- FrmUtilImage --------------------------------------------------------------------

class FrmUtilImageQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmUtilImageQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    // The main window sizes a new window by its hint.
    QSize sizeHint() const override { return {520, 360}; }
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    FrmUtilImage* logique() { return logique_.get(); }
    QTableWidget* grille() const { return grille_; }
    void Remplit();

  private:
    int Ligne() const;

    ContexteQt& c_;
    DocumentDeFenetre demande_;
    std::unique_ptr<FrmUtilImage> logique_;
    QTableWidget* grille_;
    QLabel* nombre_;
    QPushButton *cmdMaj_, *cmdAffichage_;
};

// --- FrmOLE --------------------------------------------------------------------------

class FrmOleQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmOleQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    // The main window sizes a new window by its hint.
    QSize sizeHint() const override { return {640, 480}; }
    FrmOle& logique() { return logique_; }
    QLineEdit* adresse() const { return url_; }
    QPlainTextEdit* texte() const { return texte_; }
    // Enter in `TxtUrl`.
    void Navigue();

  private:
    void Montre();

    ContexteQt& c_;
    DocumentDeFenetre demande_;
    FrmOle logique_;
    QToolBar* barre_;
    QAction *precedent_, *suivant_, *accueil_, *arreter_, *actualiser_;
    QLabel* lblUrl_;
    QLineEdit* url_;
    QPlainTextEdit* texte_;
};

} // namespace sylvane
