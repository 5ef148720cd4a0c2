// A picture file to a QImage: the system's image plug-ins for what they
// read, GraphicsMagick for the old formats they lack, and the program's
// own decoders for those that no library reads. Each reader runs under a
// bound of memory and pixels, so that a damaged or hostile file gives an
// error text, never a crash or an allocation without bound.
#pragma once

#include <QImage>
#include <QString>

#include <string>

namespace sylvane {

struct ImageChargee {
    QImage image;
    // Empty when read; else the reason ("Erreur lecture fichier", ...).
    QString erreur;
};

// `chemin` is a path as the program keeps it (Windows-1252).
ImageChargee ChargeImage(const std::string& chemin);

// Through GraphicsMagick alone (for the formats Qt lacks).
ImageChargee ChargeImageMagick(const std::string& chemin);

} // namespace sylvane
