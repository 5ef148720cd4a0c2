// The main window: menus and tool bar built from the command table, the
// multi-document area with its tab strip, the status panels, the progress
// panel with its stop button, the two timers. It implements the services
// the form logic asks for (boxes, file dialogs, progress, child windows,
// the person picker) and shows what the logic of `MDIForm1` tells it.
#pragma once

#include "app/formulaires.h"
#include "ui/mdiform1.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QMap>
#include <QPointer>

#include <map>
#include <memory>

class QAction;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QProgressBar;
class QPushButton;
class QTabBar;
class QTimer;
class QToolBar;
class QToolButton;
class QTranslator;

namespace sylvane {

// A drag tag of a person or an event: "I" or "E" and a number.
bool EtiquetteGlisser(const QString& t, char& genre, std::uint32_t& numero);

class MDIForm1Qt : public QMainWindow,
                   public VueMDI,
                   public Boites,
                   public DialoguesFichier,
                   public Panneau,
                   public Fenetres,
                   public Selecteur {
    Q_OBJECT
  public:
    explicit MDIForm1Qt(Application& app);
    ~MDIForm1Qt() override;

    MDIForm1& logique() { return *logique_; }
    ContexteQt& contexte() { return contexte_; }
    // The open form of that name, or nullptr.
    FormulaireQt* Formulaire(const std::string& nom) const;
    QAction* Action(Commande c) const { return actions_.value(static_cast<int>(c)); }

    // VueMDI
    void PersonneChangee() override;
    void EtatChange() override;
    void LangueChangee() override;
    void VueChangee() override;
    void Quitte() override;
    void Arrange() override;

    // Boites
    void Information(int n, const std::string& nom = {}) override;
    void Texte(const std::string& texte) override;
    Reponse Question(int n, bool annuler = false, const std::string& nom = {}) override;

    // DialoguesFichier
    std::optional<std::string> Ouvrir(int titre, const std::string& filtre,
                                      const std::string& depart = {}) override;
    std::optional<std::string> Enregistrer(int titre, const std::string& filtre,
                                           const std::string& depart = {}) override;
    std::optional<std::string> Dossier(int titre, const std::string& depart = {}) override;

    // Panneau
    void Montre(const std::string& titre, const std::string& texte) override;
    void Cache() override;
    bool Visible() const override;
    bool Arret() override;

    // Fenetres
    bool Disponible(const std::string& formulaire) const override;
    void Ouvre(const std::string& formulaire) override;
    void OuvreNumero(const std::string& formulaire, std::uint32_t n) override;
    bool EstOuverte(const std::string& formulaire) const override;
    void FermeTout() override;
    int NombreOuvertes() const override;

    // Selecteur
    std::uint32_t ChoisitPersonne(std::uint32_t depart, int titre = 0) override;

  public Q_SLOTS:
    // The settings changed: tool bar, colours, family view.
    void RafraichitTout();
    // `Minuterie2`: the tab strip follows the open child windows.
    void SynchroniseOnglets();

  Q_SIGNALS:
    void personneChangee();
    void langueChangee();

  protected:
    void closeEvent(QCloseEvent* e) override;
    void dragEnterEvent(QDragEnterEvent* e) override;
    void dropEvent(QDropEvent* e) override;

  private:
    void ConstruitMenus();
    void ConstruitBarre();
    // Enables each menu entry and tool button as the logic says.
    void MajActions();
    void RemplitHistorique();
    void RemplitLangues();
    void LettreMenus();
    void DeposeSurOnglet(int onglet, const QString& etiquette);
    template <class F> void PourChaqueFormulaire(F f) const;

    Application& app_;
    std::unique_ptr<MDIForm1> logique_;
    ContexteQt contexte_;

    QMdiArea* zone_ = nullptr;
    QTabBar* onglets_ = nullptr;
    QToolBar* barre_ = nullptr;
    QMenu* menuHisto_ = nullptr;
    QMenu* menuLangue_ = nullptr;
    QMap<int, QAction*> actions_;
    QMap<int, QMenu*> menus_;
    // The status panels: the current person, De Cujus 1 and 2.
    QLabel* statutPersonne_ = nullptr;
    QLabel* statutDeCujus1_ = nullptr;
    QLabel* statutDeCujus2_ = nullptr;
    // The progress panel `CdrExecution` and its stop button `CmdAnnuler`.
    QWidget* cdrExecution_ = nullptr;
    QLabel* titreExecution_ = nullptr;
    QLabel* texteExecution_ = nullptr;
    QProgressBar* activite_ = nullptr;
    QPushButton* cmdAnnuler_ = nullptr;
    bool arret_ = false;
    QElapsedTimer depuisEvenements_;

    QTranslator* traducteurQt_ = nullptr;
    QTimer* minuterie1_ = nullptr;
    QTimer* minuterie2_ = nullptr;
    std::map<std::string, QPointer<QMdiSubWindow>> fenetres_;
};

} // namespace sylvane
