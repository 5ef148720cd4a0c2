#include "app/image_qt.h"

#include "app/texte_qt.h"
#include "exchange/image_decodeur.h"
#include "exchange/image_entete.h"
#include "store/fichier.h"
#include "text/utf8.h"

#include <QImageReader>

#include <magick/api.h>

#include <algorithm>

#include <cstring>
#include <mutex>

namespace sylvane {
namespace {

// The largest file read whole for a decoder of the program.
constexpr std::uint64_t kFichierMax = 256u << 20;

// GraphicsMagick is set up once, with its bounds: no pixel cache on disk,
// memory and pixels as for the other readers.
void PrepareMagick() {
    static std::once_flag fait;
    std::call_once(fait, [] {
        // Signals stay the program's: the library must not end it.
        ExceptionInfo e;
        GetExceptionInfo(&e);
        InitializeMagickEx(nullptr, MAGICK_OPT_NO_SIGNAL_HANDER, &e);
        DestroyExceptionInfo(&e);
        // Limits in bytes and pixels.
        constexpr magick_int64_t mo = 1 << 20;
        SetMagickResourceLimit(PixelsResource, static_cast<magick_int64_t>(kPixelsMax));
        SetMagickResourceLimit(WidthResource, 65535);
        SetMagickResourceLimit(HeightResource, 65535);
        SetMagickResourceLimit(MemoryResource, 1024 * mo);
        SetMagickResourceLimit(MapResource, 1024 * mo);
        SetMagickResourceLimit(DiskResource, 0);
    });
}

QString Raison(const char* texte) { return Q(texte); }

ImageChargee Propre(const std::string& chemin, FormatImage format) {
    ImageChargee r;
    std::string octets;
    try {
        auto f = systemeReel().ouvrir(chemin, Mode::Lecture);
        if (f->taille() > kFichierMax) {
            r.erreur = Raison("Erreur d'allocation memoire");
            return r;
        }
        octets = f->lire(0, static_cast<std::size_t>(f->taille()));
    } catch (const ErreurES&) {
        r.erreur = Raison(kErreurLecture);
        return r;
    }
    const ImageDecodee d = DecodeImage(octets, format);
    if (!d.erreur.empty()) {
        r.erreur = Q(d.erreur);
        return r;
    }
    QImage im(static_cast<int>(d.largeur), static_cast<int>(d.hauteur), QImage::Format_ARGB32);
    if (im.isNull()) {
        r.erreur = Raison("Cr\xE9" "ation bitmap impossible");
        return r;
    }
    for (std::uint32_t y = 0; y < d.hauteur; ++y)
        std::memcpy(im.scanLine(static_cast<int>(y)), &d.pixels[y * d.largeur], d.largeur * 4u);
    r.image = std::move(im);
    return r;
}

ImageChargee Qt(const std::string& chemin, FormatImage format) {
    ImageChargee r;
    QImageReader::setAllocationLimit(static_cast<int>(kPixelsMax * 4 >> 20));
    QImageReader lecteur(CheminQt(chemin));
    lecteur.setAutoTransform(true);
    r.image = lecteur.read();
    if (r.image.isNull()) {
        switch (lecteur.error()) {
        case QImageReader::FileNotFoundError:
        case QImageReader::DeviceError: r.erreur = Raison(kErreurLecture); break;
        case QImageReader::InvalidDataError:
            r.erreur = Raison(format == FormatImage::Gif ? "Fichier GIF erron\xE9" : kEnteteErronee);
            break;
        default: r.erreur = Raison("Erreur creation DIB"); break;
        }
        // A size over the bound is told as such.
        const QSize taille = lecteur.size();
        if (taille.isValid() &&
            static_cast<std::uint64_t>(taille.width()) * taille.height() > kPixelsMax)
            r.erreur = Raison("Allocation memoire impossible pour DIB");
    }
    return r;
}

// The greys of a picture stretched so that its lightest is white.
void EtaleGris(QImage& image) {
    image = image.convertToFormat(QImage::Format_RGB32);
    int haut = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* l = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) haut = std::max(haut, qGray(l[x]));
    }
    if (haut == 0 || haut == 255) return;
    for (int y = 0; y < image.height(); ++y) {
        auto* l = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int g = qGray(l[x]) * 255 / haut;
            l[x] = qRgb(g, g, g);
        }
    }
}

} // namespace

ImageChargee ChargeImageMagick(const std::string& chemin) {
    PrepareMagick();
    ImageChargee r;
    ExceptionInfo exception;
    GetExceptionInfo(&exception);
    ImageInfo* info = CloneImageInfo(nullptr);
    const std::string systeme = CheminSysteme(chemin);
    std::strncpy(info->filename, systeme.c_str(), MaxTextExtent - 1);
    // The extension names the format: old formats have no signature to be
    // known by.
    const std::string ext = ExtensionFichier(chemin);
    const std::string magick = ext == "lbm" ? "ILBM" : ext == "wmf" ? "WMF" : "";
    if (!magick.empty()) std::strncpy(info->magick, magick.c_str(), MaxTextExtent - 1);
    Image* image = ReadImage(info, &exception);
    if (image == nullptr || exception.severity >= ErrorException) {
        const char* raison = exception.reason ? exception.reason : nullptr;
        r.erreur = raison && std::strstr(raison, "limit") ? Raison("Allocation memoire impossible pour DIB")
                   : raison && std::strstr(raison, "decode delegate") ? Raison(kEnteteErronee)
                                                                     : Raison(kErreurLecture);
    } else {
        const auto l = static_cast<int>(image->columns), h = static_cast<int>(image->rows);
        QImage im(l, h, QImage::Format_ARGB32);
        if (im.isNull() ||
            DispatchImage(image, 0, 0, image->columns, image->rows, "BGRA", CharPixel,
                          im.bits(), &exception) != MagickPass) {
            r.erreur = Raison("Cr\xE9" "ation bitmap impossible");
        } else {
            // BGRA bytes are ARGB32 words on a little-endian machine; an
            // image without matte gives an opacity of 0: made opaque.
            if (!image->matte) im = im.convertToFormat(QImage::Format_RGB32);
            r.image = std::move(im);
        }
    }
    if (image) DestroyImageList(image);
    DestroyImageInfo(info);
    DestroyExceptionInfo(&exception);
    return r;
}

ImageChargee ChargeImage(const std::string& chemin) {
    const FormatImage format = FormatExtension(ExtensionFichier(chemin));
    if (DecodeurPropre(format)) return Propre(chemin, format);
    try {
        auto f = systemeReel().ouvrir(chemin, Mode::Lecture);
        if (f->taille() == 0) return {{}, Raison(kErreurLecture)};
    } catch (const ErreurES&) {
        return {{}, Raison(kErreurLecture)};
    }
    switch (format) {
    case FormatImage::Bmp:
    case FormatImage::Gif:
    case FormatImage::Jpeg:
    case FormatImage::Png:
    case FormatImage::Tiff: {
        ImageChargee r = Qt(chemin, format);
        return r.image.isNull() && r.erreur != Raison("Allocation memoire impossible pour DIB")
                   ? (ChargeImageMagick(chemin).image.isNull() ? r : ChargeImageMagick(chemin))
                   : r;
    }
    case FormatImage::Cut: {
        // A Dr. Halo picture without its ".pal" holds bare colour numbers,
        // read as the darkest greys: they are spread over the grey scale.
        ImageChargee r = ChargeImageMagick(chemin);
        const auto point = chemin.rfind('.');
        const std::string sans = chemin.substr(0, point);
        if (!r.image.isNull() && !systemeReel().existe(sans + ".pal") &&
            !systemeReel().existe(sans + ".PAL"))
            EtaleGris(r.image);
        return r;
    }
    default: return ChargeImageMagick(chemin);
    }
}

} // namespace sylvane
