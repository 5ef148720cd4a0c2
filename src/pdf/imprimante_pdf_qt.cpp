// The PDF writer of the command line, over Qt's painter. Linked into the
// program itself, not into a library, so that it is always there to set
// itself as the maker before main.
#include "app/surface_qt.h"
#include "pdf/imprimante_pdf.h"

#include <QGuiApplication>

#include <cstdio>

namespace sylvane {
namespace {

// The command's errors are its own; Qt's notes on its environment (no
// runtime folder, no display) are no business of the user's.
void SeulementErreurs(QtMsgType type, const QMessageLogContext&, const QString& texte) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", texte.toLocal8Bit().constData());
}

class ImprimantePdfQt : public ImprimantePdf {
  public:
    ImprimantePdfQt() {
        if (!QCoreApplication::instance()) {
            // A command never needs a display: the fonts are all it uses.
            if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
                qputenv("QT_QPA_PLATFORM", "offscreen");
            qInstallMessageHandler(SeulementErreurs);
            application_ = std::make_unique<QGuiApplication>(argc_, argv_);
        }
        mesure_ = std::make_unique<MetriqueQt>();
    }
    const Metrique& Mesure() const override { return *mesure_; }
    FinPages Ecrit(SystemeFichiers& fs, const std::string& gabarit, const std::string& cible,
                   const OptionsPages& o) override {
        return EcritPdf(fs, gabarit, cible, o, *mesure_);
    }
    FinPages EcritPages(SystemeFichiers& fs, const std::string& cible, const Papier& papier,
                        const std::function<FinPages(Surface&)>& dessine) override {
        return EcritPdfPages(fs, cible, papier, *mesure_,
                             [&](SurfaceQt& s) { return dessine(s); });
    }

  private:
    int argc_ = 1;
    char nom_[12] = "sylvane-cli";
    char* argv_[2] = {nom_, nullptr};
    std::unique_ptr<QGuiApplication> application_;
    std::unique_ptr<MetriqueQt> mesure_;
};

std::unique_ptr<ImprimantePdf> Fabrique() { return std::make_unique<ImprimantePdfQt>(); }

const bool enregistre = (FabriquePdf() = &Fabrique, true);

} // namespace
} // namespace sylvane
