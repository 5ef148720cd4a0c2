#include "app/texte_qt.h"

#include "text/messages.h"
#include "text/utf8.h"

namespace sylvane {

QString Q(const std::string& ansi) { return QString::fromStdString(AnsiVersUtf8(ansi)); }

std::string A(const QString& texte) { return Utf8VersAnsi(texte.toStdString()); }

QString M(int n) { return Q(Message(n)); }

QString MT(int n, const QString& nom) {
    QString t = M(n);
    t.replace(QStringLiteral("&1"), nom);
    return t;
}

std::string CheminInterne(const QString& chemin) { return A(chemin); }

QString CheminQt(const std::string& chemin) { return Q(chemin); }

} // namespace sylvane
