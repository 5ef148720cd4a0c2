// What the benchmarks of windows share: one application object under the
// offscreen platform (unless QT_QPA_PLATFORM says otherwise), and the
// program itself with its settings in memory, its work folder in the
// benchmarks' folder and its window shown, started on a base.
#pragma once

#include "app/fenetre_principale.h"
#include "million.h"
#include "text/reglages.h"

#include <QApplication>

#include <filesystem>
#include <memory>
#include <string>

namespace sylvane {

inline QApplication& Appli() {
    static int argc = 1;
    static char nom[] = "bench";
    static char* argv[] = {nom, nullptr};
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: a static one would go after Qt's own statics at exit.
    static QApplication* app = new QApplication(argc, argv);
    return *app;
}

// The program's folder in the build tree, where the message files are.
inline std::string DossierProgrammeBench() {
    return std::filesystem::path(QCoreApplication::applicationDirPath().toStdString())
        .parent_path()
        .append("src")
        .string();
}

struct Programme {
    ReglagesMemoire reglages;
    std::unique_ptr<Application> app;
    std::unique_ptr<MDIForm1Qt> fenetre;
    // `taille`: the window's width and height, or the platform's choice.
    explicit Programme(const std::string& base, QSize taille = {}) {
        Appli();
        reglages.ecrit("Defaut", "Travail", Dossier());
        app = std::make_unique<Application>(systemeReel(), reglages, DossierProgrammeBench());
        fenetre = std::make_unique<MDIForm1Qt>(*app);
        if (taille.isValid()) fenetre->resize(taille);
        fenetre->show();
        fenetre->logique().Demarre({base});
    }
};

} // namespace sylvane
