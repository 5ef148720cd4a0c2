// `FrmFusion`: the table of likely doubles with its level panel, the two
// records to merge (picked, clicked or dropped), and the wizard's panels.
// `FrmFusionMariages` is the same window opened on every marriage.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_fusion.h"

#include <array>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QScrollArea;
class QStackedWidget;
class QTableWidget;

namespace sylvane {

class FrmFusionQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmFusionQt(ContexteQt& c, QWidget* parent = nullptr);
    ~FrmFusionQt() override;
    void Retraduit() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    bool Modal() const override { return true; }

    FrmFusion& logique() { return logique_; }
    QTableWidget* grille() const { return grille_; }
    QPushButton* fusion() const { return fusion_; }
    QPushButton* suite() const { return suite_; }
    QStackedWidget* panneaux() const { return panneaux_; }
    QComboBox* conjoint() const { return conjoint_; }
    // Shows the logic's state again.
    void Montre();

  protected:
    void keyPressEvent(class QKeyEvent* e) override;

  private:
    void MontreEtape();
    void LitEtape();
    QComboBox* Liste(const ListeFusion& l, QComboBox* boite);
    // The rubric rows of a panel, and the choices read back from them.
    void MontreRubriques(QFormLayout* forme, const std::vector<RubriqueFusion>& lignes);
    static void LitRubriques(QFormLayout* forme, std::vector<RubriqueFusion>& lignes);
    QGroupBox* Options(QButtonGroup*& groupe, std::array<QRadioButton*, 3>& boutons);
    void Ferme();

    ContexteQt& c_;
    FrmFusion logique_;
    QGroupBox* niveau_;
    std::array<QRadioButton*, 4> seuils_{};
    QTableWidget* grille_;
    QLabel* nombre_;
    std::array<QLabel*, 2> fiches_{}, titresFiches_{};
    std::array<QPushButton*, 2> noms_{};
    QPushButton *fusion_, *ecarter_, *quitter_, *suite_;
    QWidget* assistant_; // the wizard's side, hidden with the table alone
    QLabel* etape_; // where the wizard stands, above its panel
    QStackedWidget* panneaux_;
    // "RG"
    std::array<QComboBox*, 7> listes_{};
    std::array<QLabel*, 7> libelles_{};
    QCheckBox* autrePrenom_;
    QScrollArea* defile_;
    QWidget* rubriques_;
    QFormLayout* formeRubriques_;
    // "TXT"
    std::array<QPlainTextEdit*, 2> textes_{};
    QGroupBox* cadreTexte_;
    QButtonGroup* optTexte_;
    std::array<QRadioButton*, 3> boutonsTexte_{};
    // "PARENTS"
    QGroupBox *cadrePere_, *cadreMere_;
    QButtonGroup *optPere_, *optMere_;
    std::array<QRadioButton*, 3> boutonsPere_{}, boutonsMere_{};
    // "MARIAGE"
    QLabel* lblConjoint_;
    QComboBox *conjoint_, *dateMariage_, *lieuMariage_;
    QLabel *lblDateMariage_, *lblLieuMariage_;
    QScrollArea* defileMariage_; // VScroll2: what differs between the two marriages
    QWidget* detailMariage_;
    QFormLayout* formeRubriquesMariage_;
    QWidget* notesMariage_;
    std::array<QPlainTextEdit*, 2> textesMariage_{};
    QGroupBox* cadreTexteMariage_;
    QButtonGroup* optTxtMar_;
    std::array<QRadioButton*, 3> boutonsTxtMar_{};
    // "ENFT"
    QLabel* lblEnfant_;
    QComboBox* enfant_;
    bool ferme_ = false;
};

} // namespace sylvane
