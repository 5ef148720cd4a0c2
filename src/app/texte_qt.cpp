#include "app/texte_qt.h"

#include "text/messages.h"
#include "text/utf8.h"

#include <QFile>

namespace sylvane {

// Characters that Windows-1252 lacks may stand in a text as references
// ("&#1047;"): they are shown as the characters they stand for.
QString Q(const std::string& ansi) { return QString::fromStdString(AnsiRefVersUtf8(ansi)); }

// What the user typed keeps every character: those Windows-1252 lacks as
// references.
std::string A(const QString& texte) { return Utf8VersAnsiRef(texte.toStdString()); }

QString M(int n) { return Q(Message(n)); }

QString MT(int n, const QString& nom) {
    QString t = M(n);
    t.replace(QStringLiteral("&1"), nom);
    return t;
}

// A path is converted by the rule of the file layer, so that every name the
// system accepts can be reached, whatever its characters.
std::string CheminInterne(const QString& chemin) {
    const QByteArray octets = QFile::encodeName(chemin);
    return sylvane::CheminInterne(std::string_view(octets.constData(), static_cast<std::size_t>(octets.size())));
}

QString CheminQt(const std::string& chemin) {
    const std::string systeme = CheminSysteme(chemin);
    return QFile::decodeName(QByteArray(systeme.data(), static_cast<qsizetype>(systeme.size())));
}

} // namespace sylvane
