// The header inspectors and the decoders of the old picture formats, on one
// small file of each format (tests/data/images, made by fabrique.sh), on
// every truncation of those files, and on headers that claim more than the
// file holds.
#include "exchange/image_decodeur.h"
#include "exchange/image_entete.h"
#include "store/fichier_memoire.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace sylvane {
namespace {

const std::string kDossier = std::string(SYLVANE_SOURCE_DIR) + "/tests/data/images/";

std::string Lit(const std::string& nom) { return lireTout(systemeReel(), kDossier + nom); }

// The lines of a header as "label" -> value (the first of a repeated label).
std::map<std::string, std::string> Valeurs(const EnteteImage& e) {
    std::map<std::string, std::string> m;
    for (const auto& l : e.lignes) m.emplace(l.libelle, l.valeur);
    return m;
}

EnteteImage InspecteOctets(const std::string& octets, FormatImage f, bool palette = false) {
    SystemeMemoire fs;
    ecrireTout(fs, "/x", octets);
    auto fichier = fs.ouvrir("/x", Mode::Lecture);
    return InspecteEntete(*fichier, f, palette);
}

TEST(ImageEntete, ExtensionsAndFormats) {
    EXPECT_EQ(ExtensionFichier("C:\\Photos\\Grand.Pere.JPG"), "jpg");
    EXPECT_EQ(ExtensionFichier("/a.b/sans"), "");
    EXPECT_EQ(FormatExtension("LBM"), FormatImage::Iff);
    EXPECT_EQ(FormatExtension("gem"), FormatImage::Img);
    EXPECT_EQ(FormatExtension("rle"), FormatImage::Bmp);
    EXPECT_EQ(FormatExtension("txt"), FormatImage::Inconnu);
    EXPECT_TRUE(ExtensionImage("wmf"));
    EXPECT_FALSE(ExtensionImage("svo"));
}

// Each sample is 16 x 12 (MacPaint: always 576 x 720).
TEST(ImageEntete, EachFormatShowsItsLabels) {
    struct Cas {
        const char* fichier;
        std::map<std::string, std::string> attendu;
    };
    const Cas cas[] = {
        {"modele.bmp", {{"Width", "16"}, {"Height", "12"}, {"Bits", "24"}}},
        {"modele.gif", {{"Width", "16"}, {"Height", "12"}}},
        {"modele.jpg", {{"Width", "16"}, {"Height", "12"}, {"Bits", "24"}}},
        {"modele.png", {{"Width", "16"}, {"Height", "12"}}},
        {"modele.lbm", {{"Width", "16"}, {"Height", "12"}}},
        {"modele.img", {{"Width", "16"}, {"Height", "12"}, {"Bits", "1"}}},
        {"modele.cut", {{"Width", "16"}, {"Height", "12"}, {"No Palette", ""}}},
        {"modele.mac",
         {{"Name", "modele"}, {"Type", "PNTG"}, {"Creator", "MPNT"}, {"Resource fork size", "0"},
          {"Width", "576"}, {"Height", "720"}}},
        {"modele.msp",
         {{"Windows Version", "2.0"}, {"Width", "16"}, {"Height", "12"}, {"Screen Aspect X", "1"},
          {"Printer Aspect Y", "1"}}},
        {"modele.pcx",
         {{"Manufacturer", "10"}, {"PC Paintbrush Ver.", "3.0 (or later)"}, {"Encoding", "1"},
          {"Width", "16"}, {"Height", "12"}, {"Palette type", "Color"}}},
        {"modele.pic",
         {{"Mark", "4660"}, {"Width", "16"}, {"Height", "12"}, {"Bits per pixel", "8"},
          {"Color planes", "1"}, {"EMark", "255"}, {"Video", "VGA 256 color"},
          {"Palette", "VGA palette"}, {"Palette size", "768"}}},
        {"modele.tga",
         {{"IdentSize", "0"}, {"Width", "16"}, {"Height", "12"}, {"Color Bits", "24"}}},
        {"modele.tif",
         {{"Number Type", "Intel"}, {"Version", "42"}, {"Number", "1"}, {"Tag", "ImageWidth"}}},
        {"modele.wpg",
         {{"ID", "WPC"}, {"First record offset", "16"}, {"File type", "22"},
          {"Color map found", ""}, {"Width", "16"}, {"Height", "12"}, {"Bits", "8"},
          {"Bitmap found", ""}}},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.fichier);
        const EnteteImage e = InspecteFichier(systemeReel(), kDossier + c.fichier);
        EXPECT_EQ(e.erreur, "");
        const auto v = Valeurs(e);
        for (const auto& [libelle, valeur] : c.attendu) {
            ASSERT_TRUE(v.count(libelle)) << libelle;
            EXPECT_EQ(v.at(libelle), valeur) << libelle;
        }
    }
}

TEST(ImageEntete, TiffListsEveryEntryWithItsTypeAndPlace) {
    const EnteteImage e = InspecteFichier(systemeReel(), kDossier + "modele.tif");
    std::string texte;
    for (const auto& l : e.lignes) texte += l.Texte() + "\n";
    EXPECT_NE(texte.find("Tag: ImageWidth\nType: Unsigned Int\n = 16\n  Length = 1\n"),
              std::string::npos)
        << texte;
    EXPECT_NE(texte.find("Tag: StripOffsets"), std::string::npos);
    EXPECT_NE(texte.find("Tag: BitsPerSample\nType: Unsigned Int\nOffset = "), std::string::npos);
}

TEST(ImageEntete, LabelsOfCodedValues) {
    // TGA: run-length RGB stored from the top; PCX 2.5 in grey.
    std::string tga(18, '\0');
    tga[2] = 10;
    tga[17] = 0x20;
    auto v = Valeurs(InspecteOctets(tga, FormatImage::Tga));
    EXPECT_EQ(v["Image Type"], "Run-length encoded RGB");
    EXPECT_EQ(v["Storage"], "Last line first");
    EXPECT_EQ(v["Color Map"], "None");
    std::string pcx(128, '\0');
    pcx[0] = 0x0A;
    pcx[68] = 2;
    v = Valeurs(InspecteOctets(pcx, FormatImage::Pcx));
    EXPECT_EQ(v["PC Paintbrush Ver."], "2.5");
    EXPECT_EQ(v["Palette type"], "Gray scale");
    // MSP of an unknown key; a Dr. Halo picture with its palette beside it.
    v = Valeurs(InspecteOctets(std::string(32, 'x'), FormatImage::Msp));
    EXPECT_EQ(v["Windows Version"], "Unknown");
    SystemeMemoire fs;
    ecrireTout(fs, "/p/halo.CUT", Lit("modele.cut"));
    ecrireTout(fs, "/p/halo.pal", "AH");
    EXPECT_EQ(Valeurs(InspecteFichier(fs, "/p/halo.CUT")).count("Palette file"), 1u);
    EXPECT_EQ(InspecteFichier(fs, "/p/absent.cut").erreur, kErreurLecture);
}

// Every prefix of every sample: no crash; an empty file, or a header cut
// short, is an error.
TEST(ImageEntete, TruncatedFilesNeverReadPastTheirEnd) {
    const char* fichiers[] = {"modele.bmp", "modele.gif", "modele.jpg", "modele.png",
                              "modele.lbm", "modele.img", "modele.cut", "modele.mac",
                              "modele.msp", "modele.pcx", "modele.pic", "modele.tga",
                              "modele.tif", "modele.wpg"};
    for (const char* nom : fichiers) {
        SCOPED_TRACE(nom);
        const std::string octets = Lit(nom);
        const FormatImage f = FormatExtension(ExtensionFichier(nom));
        EXPECT_NE(InspecteOctets("", f).erreur, "");
        for (std::size_t n = 0; n < octets.size(); n += 1 + n / 16) {
            InspecteOctets(octets.substr(0, n), f);
            if (DecodeurPropre(f) && n < 17) {
                EXPECT_NE(DecodeImage(octets.substr(0, n), f).erreur, "") << n;
            }
        }
    }
}

TEST(ImageEntete, CountsBeyondTheFileStopTheReader) {
    // A TIFF directory that claims 65535 entries and holds one.
    std::string tif("II*\0\x08\0\0\0\xFF\xFF", 10);
    tif.resize(tif.size() + 12, '\0');
    tif[10] = 0;
    tif[11] = 1; // tag 256
    EnteteImage e = InspecteOctets(tif, FormatImage::Tiff);
    EXPECT_EQ(e.erreur, kErreurLecture);
    EXPECT_EQ(Valeurs(e)["Tag"], "ImageWidth");
    // A directory past the end of the file.
    e = InspecteOctets(std::string("MM\0*\x7F\0\0\0", 8), FormatImage::Tiff);
    EXPECT_EQ(e.erreur, kEnteteErronee);
    // WPG records that loop on themselves stay within the file.
    std::string wpg = std::string("\xFFWPC\x10\0\0\0\x01\x16\x01\0\0\0\0\0", 16);
    for (int i = 0; i < 1000; ++i) wpg += std::string("\x01\x00", 2);
    EXPECT_EQ(Valeurs(InspecteOctets(wpg, FormatImage::Wpg)).count("No Bitmap found"), 1u);
}

// --- The decoders of this program ------------------------------------------------

TEST(ImageDecodeur, EachOwnFormatDecodesToItsSizeAndColours) {
    const ImageDecodee msp = DecodeImage(Lit("modele.msp"), FormatImage::Msp);
    ASSERT_EQ(msp.erreur, "");
    EXPECT_EQ(msp.largeur, 16u);
    EXPECT_EQ(msp.hauteur, 12u);
    const ImageDecodee img = DecodeImage(Lit("modele.img"), FormatImage::Img);
    ASSERT_EQ(img.erreur, "");
    ASSERT_EQ(img.pixels.size(), 16u * 12u);
    // The two 1-bit pictures come from one threshold: black where both say.
    for (std::size_t i = 0; i < img.pixels.size(); ++i)
        EXPECT_EQ(img.pixels[i], msp.pixels[i]) << i;
    const ImageDecodee lbm = DecodeImage(Lit("modele.lbm"), FormatImage::Iff);
    ASSERT_EQ(lbm.erreur, "");
    ASSERT_EQ(lbm.pixels.size(), 16u * 12u);
    // First band red, third blue, in the palette the file brings.
    EXPECT_GT((lbm.pixels[0] >> 16) & 0xFF, 150u);
    EXPECT_GT(lbm.pixels[8] & 0xFF, 150u);
    const ImageDecodee pic = DecodeImage(Lit("modele.pic"), FormatImage::Pic);
    ASSERT_EQ(pic.erreur, "");
    // Pixel (x, y) is index 16x: red grows along the row, the same on each row.
    EXPECT_EQ(pic.pixels[0], pic.pixels[16 * 11]);
    EXPECT_LT((pic.pixels[0] >> 16) & 0xFF, (pic.pixels[15] >> 16) & 0xFF);
}

TEST(ImageDecodeur, HugeClaimsAreRefusedBeforeAllocation) {
    // MSP version 1 of 65535 x 65535 with no data behind it.
    std::string msp = "DanM";
    msp += std::string("\xFF\xFF\xFF\xFF", 4);
    msp.resize(32, '\0');
    EXPECT_EQ(DecodeImage(msp, FormatImage::Msp).erreur, kErreurLecture);
    // A packed format that claims more pixels than its bytes can give.
    std::string img = Lit("modele.img");
    img[12] = img[13] = img[14] = img[15] = '\xFF';
    EXPECT_EQ(DecodeImage(img, FormatImage::Img).erreur, "Allocation memoire impossible pour DIB");
    std::string pic = Lit("modele.pic");
    pic[2] = pic[3] = pic[4] = pic[5] = '\xFF';
    EXPECT_NE(DecodeImage(pic, FormatImage::Pic).erreur, "");
    EXPECT_NE(DecodeImage("", FormatImage::Tiff).erreur, "");
}

} // namespace
} // namespace sylvane
