// `FrmParametre`: the settings as a modal dialog of tabs (general and
// folders, names and particles, presentation of the trees, tool bar,
// rubric lists, events and roles, documents and images, submitter), with
// OK, Cancel and Apply. Every rule is the form's logic; the widgets show its
// state and write into it as the user types.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_parametre.h"

#include <QColor>
#include <QString>

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSpinBox;
class QTabWidget;

namespace sylvane {

class ListeEditable;

class FrmParametreQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmParametreQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    bool Modal() const override { return true; }

    FrmParametre& logique() { return logique_; }
    QTabWidget* onglets() const { return onglets_; }
    // Colour i of the presentation (0 background, 1 to 3 box of a man, a
    // woman, unknown sex, 4 to 6 their texts), as the colour dialog sets it.
    void DefinitCouleur(int i, const QColor& couleur);
    static QColor CouleurQt(std::int32_t bgr);
    static std::int32_t CouleurBgr(const QColor& c);

    // The buttons: OK applies and closes, Apply applies, Cancel closes.
    bool Ok();
    bool Appliquer();
    void Annuler();

  private:
    QWidget* OngletGeneral();
    QWidget* OngletNoms();
    QWidget* OngletPresentation();
    QWidget* OngletOutils();
    QWidget* OngletRubriques();
    QWidget* OngletEvenements();
    QWidget* OngletDocuments();
    QWidget* OngletAuteur();
    // State to widgets.
    void Montre();
    void MontreCouleurs();
    void MontrePolices();
    void MontreBase();
    void Ferme();
    // A caption taken from message n at each language switch.
    template <class W> W* Texte(W* w, int n);
    QLabel* Etiquette(int n, QWidget* compagnon);
    QLineEdit* Chemin(QGridLayout* g, int ligne, int libelle, std::string Parametres::*champ,
                      bool dossier, const char* filtre);

    ContexteQt& c_;
    FrmParametre logique_;
    bool montre_ = false; // widgets being filled: their signals write nothing
    QTabWidget* onglets_ = nullptr;
    std::vector<std::pair<QObject*, int>> textes_;
    std::vector<std::function<void()>> montres_; // each fills its widgets from the state

    // General.
    QComboBox* langue_ = nullptr;
    QGroupBox* groupeBase_ = nullptr;
    QLabel *deCujus1_ = nullptr, *deCujus2_ = nullptr, *personne_ = nullptr;
    // Presentation.
    std::vector<QPushButton*> couleurs_;
    std::vector<QPushButton*> polices_;
    // Lists.
    std::vector<ListeEditable*> listes_;
    QComboBox* listeRubrique_ = nullptr;
    ListeEditable* particules_ = nullptr;
    QCheckBox *particuleN_ = nullptr, *particuleP_ = nullptr;
    ListeEditable* evenements_ = nullptr;
    ListeEditable* roles_ = nullptr;
    QCheckBox* roleObligatoire_ = nullptr;
    QComboBox* roleSexe_ = nullptr;
    QLineEdit* extensions_ = nullptr;
};

} // namespace sylvane
