// sylvane: the desktop program. The first argument, when given, names a
// base to open (".sv2") or a file to import (".ged", ".svr").
#include "app/fenetre_principale.h"
#include "app/texte_qt.h"
#include "store/fichier.h"
#include "text/parametres.h"
#include "text/reglages.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    const char* plateforme = std::getenv("QT_QPA_PLATFORM");
    if (!plateforme && !std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) {
        std::fprintf(stderr, "sylvane : aucun affichage graphique (ni DISPLAY ni WAYLAND_DISPLAY).\n"
                             "Lancez Sylvane dans une session graphique, ou utilisez sylvane-cli.\n");
        return 2;
    }
    QApplication qapp(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Sylvane"));
    QApplication::setOrganizationName(QStringLiteral("Sylvane"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/19.png")));

    using namespace sylvane;
    SystemeFichiers& fs = systemeReel();
    ReglagesIni reglages(fs, FichierReglages());
    Application app(fs, reglages, DossierProgramme());
    MDIForm1Qt fenetre(app);
    std::vector<std::string> arguments;
    const QStringList args = QApplication::arguments();
    if (args.size() > 1) arguments.push_back(CheminInterne(args[1]));
    fenetre.show();
    // The window shows first; the base opens right after.
    QTimer::singleShot(0, &fenetre, [&] { fenetre.logique().Demarre(arguments); });
    return QApplication::exec();
}
