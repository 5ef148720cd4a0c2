#include "app/choix_fiche_qt.h"

#include "app/fenetre_principale.h"
#include "app/formulaires.h"
#include "app/frm_choix.h"
#include "app/frm_creation.h"
#include "app/frm_texte.h"
#include "ui/mdiform1.h"

#include <QApplication>

#include <map>
#include <memory>

namespace sylvane {

namespace {

class ChoixFicheDialogues : public ChoixFiche {
  public:
    explicit ChoixFicheDialogues(ContexteQt& c) : c_(c) {}

    std::uint32_t Cree(const std::string& etiquette) override {
        Base* b = c_.logique.base();
        if (!b) return 0;
        Application& app = c_.logique.app();
        FrmCreationQt d(*b, app.parametres(), c_.logique.services().boites, etiquette,
                        &app.numeros(), Parent());
        return d.exec() == QDialog::Accepted ? d.Personne() : 0;
    }

    std::uint32_t Choisit(Candidats genre, std::uint32_t pour, char sexe,
                          const std::string& nom) override {
        Base* b = c_.logique.base();
        if (!b) return 0;
        FrmChoixQt d(b, genre, pour, sexe, nom, Parent());
        return d.exec() == QDialog::Accepted ? d.Choix() : 0;
    }

    std::optional<std::string> EditeTexte(const std::string& texte,
                                          const std::string& titre) override {
        FrmTexteQt d(texte, titre, MotsUsuels(c_.logique.app().reglages()), Parent());
        if (d.exec() != QDialog::Accepted) return std::nullopt;
        return d.logique().Resultat();
    }

  private:
    // The window on top (the sheet), else the main window.
    QWidget* Parent() const {
        QWidget* w = QApplication::activeWindow();
        return w ? w : static_cast<QWidget*>(&c_.fenetre);
    }

    ContexteQt& c_;
};

} // namespace

ChoixFiche& ChoixFicheQt(ContexteQt& c) {
    static std::map<ContexteQt*, std::unique_ptr<ChoixFicheDialogues>> tous;
    auto& p = tous[&c];
    if (!p) p = std::make_unique<ChoixFicheDialogues>(c);
    return *p;
}

} // namespace sylvane
