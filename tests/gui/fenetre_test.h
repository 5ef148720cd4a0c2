// What the tests of the real windows share: the application object under
// the offscreen platform, a family of three generations written to a base
// file, and a main window opened on such a base.
#pragma once

#include "app/fenetre_principale.h"
#include "store/base.h"
#include "store/fichier.h"
#include "support/dossier_temp.h"
#include "text/reglages.h"
#include "ui/application.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace sylvane::test {

// The application object that the tests' main made.
inline QApplication& Appli() { return *qApp; }

// A base of unrelated persons: name, first name, sex and birth year each.
struct PersonneSimple {
    const char* nom;
    const char* prenom;
    char sexe;
    const char* an;
};
inline void EcritPersonnes(const std::string& chemin, std::initializer_list<PersonneSimple> personnes) {
    Parametres p;
    Base b(systemeReel(), p);
    b.Nouvelle(chemin);
    for (const PersonneSimple& x : personnes) b.CreePersonne(x.nom, x.prenom, "", x.sexe, x.an);
    b.FermeBase();
}

// Louis Martin and Rose Petit, their son Jean who married Marie Roux, their
// son Pierre who married Anne Blanc, and Pierre's children Paul and, when
// asked, Claire.
struct Famille {
    std::uint32_t gp = 0, gm = 0, pere = 0, mere = 0, moi = 0, conj = 0, fils = 0, fille = 0;
};

inline Famille EcritFamille(const std::string& chemin, bool avecFille = true) {
    Famille f;
    Parametres p;
    Base b(systemeReel(), p);
    b.Nouvelle(chemin);
    auto personne = [&](const char* nom, const char* prenom, char sexe, const char* an) {
        return b.CreePersonne(nom, prenom, "", sexe, an);
    };
    auto parents = [&](std::uint32_t c, std::uint32_t pe, std::uint32_t me) {
        b.EcritPere(c, pe);
        b.MajEnfants(pe, c, 'A');
        b.EcritMere(c, me);
        b.MajEnfants(me, c, 'A');
        if (b.MariageNo(pe, 1) == 0) b.CreeMariage(pe, me);
    };
    f.gp = personne("Martin", "Louis", 'H', "1820");
    f.gm = personne("Petit", "Rose", 'F', "1825");
    f.pere = personne("Martin", "Jean", 'H', "1850");
    f.mere = personne("Roux", "Marie", 'F', "1852");
    f.moi = personne("Martin", "Pierre", 'H', "1880");
    f.conj = personne("Blanc", "Anne", 'F', "1882");
    f.fils = personne("Martin", "Paul", 'H', "1905");
    if (avecFille) f.fille = personne("Martin", "Claire", 'F', "1907");
    parents(f.pere, f.gp, f.gm);
    parents(f.moi, f.pere, f.mere);
    parents(f.fils, f.moi, f.conj);
    if (avecFille) parents(f.fille, f.moi, f.conj);
    b.FermeBase();
    return f;
}

// The fields and buttons shown in `racine` that are drawn below their
// height, and the buttons whose text is cut: a form squeezed by too small
// an area instead of scrolled in it.
inline std::vector<std::string> ChampsEcrases(QWidget* racine) {
    std::vector<std::string> ecrases;
    for (QWidget* w : racine->findChildren<QWidget*>()) {
        if (!w->isVisible()) continue;
        // The editor inside a spin box or a combo box is its owner's affair.
        if (qobject_cast<QAbstractSpinBox*>(w->parentWidget()) || qobject_cast<QComboBox*>(w->parentWidget()))
            continue;
        const bool bouton = qobject_cast<QAbstractButton*>(w) != nullptr;
        if (!bouton && !qobject_cast<QLineEdit*>(w) && !qobject_cast<QAbstractSpinBox*>(w) &&
            !qobject_cast<QComboBox*>(w))
            continue;
        const QSize m = w->minimumSizeHint();
        if (w->height() < m.height() || (bouton && w->width() < m.width()))
            ecrases.push_back(std::string(w->metaObject()->className()) + " " +
                              w->objectName().toStdString() + " " +
                              (bouton ? qobject_cast<QAbstractButton*>(w)->text().toStdString() : ""));
    }
    return ecrases;
}

// A main window whose settings live in memory and whose work folder is a
// temporary one; the message files are those of the build tree.
struct FenetreTest : ::testing::Test {
    DossierTemp dossier;
    ReglagesMemoire reglages;
    std::unique_ptr<Application> app;
    std::unique_ptr<MDIForm1Qt> fenetre;

    // The window, not shown and not started.
    void CreeFenetre() {
        Appli();
        reglages.ecrit("Defaut", "Travail", dossier.chemin());
        app = std::make_unique<Application>(systemeReel(), reglages, SYLVANE_BINARY_DIR "/src");
        fenetre = std::make_unique<MDIForm1Qt>(*app);
    }
    // Shows the window and opens the base at `chemin` on `personne`.
    void OuvreFenetre(const std::string& chemin, std::uint32_t personne = 0) {
        CreeFenetre();
        fenetre->resize(1200, 800);
        fenetre->show();
        fenetre->logique().Demarre({});
        ASSERT_TRUE(fenetre->logique().OuvreFichier(chemin));
        if (personne) fenetre->logique().Aller(personne);
    }
    void TearDown() override {
        if (fenetre) fenetre->logique().Termine();
        fenetre.reset();
        app.reset();
    }
};

} // namespace sylvane::test
