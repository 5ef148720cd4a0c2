// Verbs of documents: adding one to a base, attached to a person or an
// event, and the header of a picture file as the viewer shows it.
#include "cli/session.h"
#include "cli/verbes.h"
#include "exchange/image_entete.h"
#include "text/mots.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

const char* NomFormat(FormatImage f) {
    switch (f) {
    case FormatImage::Bmp: return "bmp";
    case FormatImage::Gif: return "gif";
    case FormatImage::Jpeg: return "jpeg";
    case FormatImage::Png: return "png";
    case FormatImage::Tiff: return "tiff";
    case FormatImage::Tga: return "tga";
    case FormatImage::Pcx: return "pcx";
    case FormatImage::Cut: return "cut";
    case FormatImage::Mac: return "macpaint";
    case FormatImage::Msp: return "msp";
    case FormatImage::Pic: return "pic";
    case FormatImage::Iff: return "iff";
    case FormatImage::Img: return "gem-img";
    case FormatImage::Wpg: return "wpg";
    case FormatImage::Meta: return "metafile";
    case FormatImage::Inconnu: break;
    }
    return "";
}

} // namespace

int VerbeAddDocument(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"title", "file", "type", "person", "event"}, {});
    if (o.positionnels().size() != 1) throw ErreurUsage{"add-document attend un fichier de base"};
    const std::string titre = Ansi(o.valeur("title")), fichier = Ansi(o.valeur("file")),
                      type = Ansi(o.valeur("type"));
    if (Trim(titre).empty() && Trim(fichier).empty())
        throw ErreurUsage{"--title ou --file est requis"};
    for (const std::string* t : {&titre, &fichier, &type})
        if (t->find_first_of(std::string("\r\n\0", 3)) != std::string::npos)
            throw ErreurUsage{"le caract\xC3\xA8re NUL et les fins de ligne sont interdits"};
    // The byte 0xFF ends the file name in a document's head.
    if (fichier.find('\xFF') != std::string::npos || type.find('\xFF') != std::string::npos)
        throw ErreurUsage{"--file et --type ne peuvent contenir \xC2\xAB \xC3\xBF \xC2\xBB"};
    if (o.a("person") && o.a("event")) throw ErreurUsage{"--person ou --event, pas les deux"};
    Session s(err);
    Base& b = s.Ouvre(o.positionnels()[0]);
    std::uint32_t personne = 0, evenement = 0;
    if (o.a("person")) personne = PersonneArgument(b, o.valeur("person"), "--person");
    if (o.a("event")) {
        evenement = static_cast<std::uint32_t>(EntierArgument(o.valeur("event"), "--event"));
        if (evenement == 0 || b.PosEvt(evenement) == 0) {
            b.Abandonne();
            throw ErreurUsage{"--event " + o.valeur("event") + " : pas un \xC3\xA9v\xC3\xA9nement de la base"};
        }
    }
    const std::uint32_t d = b.CreeDoc(titre, fichier, type);
    if (personne) b.MajDocs(personne, d, 'A');
    if (evenement) b.MajDocsEvt(evenement, d, 'A');
    s.Ferme();
    out << d << "\n";
    return 0;
}

int VerbePictureInfo(const Arguments& args, std::ostream& out, std::ostream&) {
    Options o(args, {}, {});
    if (o.positionnels().size() != 1) throw ErreurUsage{"picture-info attend un fichier"};
    const std::string chemin = Chemin(o.positionnels()[0]);
    const EnteteImage e = InspecteFichier(systemeReel(), chemin);
    nlohmann::json j;
    j["file"] = o.positionnels()[0];
    j["format"] = NomFormat(e.format);
    auto lignes = nlohmann::json::array();
    for (const LigneEntete& l : e.lignes)
        lignes.push_back({{"label", Texte(l.libelle)}, {"value", Texte(l.valeur)}});
    j["header"] = lignes;
    std::string erreur = e.erreur;
    if (e.format == FormatImage::Inconnu) erreur = "Format inconnu";
    if (!erreur.empty()) j["error"] = Texte(erreur);
    Ligne(out, j);
    return erreur.empty() ? 0 : 1;
}

} // namespace sylvane::cli
