#include "text/mots.h"
#include "text/phonetique.h"

#include <gtest/gtest.h>

using namespace sylvane;

TEST(ClePhonetique, ExamplesOfThePart) {
    EXPECT_EQ(Conv_ClePhonetique("Bastien"), "BDM0");
    EXPECT_EQ(Conv_ClePhonetique("Philippe"), "FLB0");
    EXPECT_EQ(Conv_ClePhonetique("Chevalier"), "SFL0");
    EXPECT_EQ(Conv_ClePhonetique(""), "0000");
    EXPECT_EQ(Conv_ClePhonetique("   "), "0000");
    EXPECT_EQ(Conv_ClePhonetique("Eau"), "O000");
    EXPECT_EQ(Conv_ClePhonetique("A"), "A000");
    EXPECT_EQ(Conv_ClePhonetique("H"), "H000");
    EXPECT_EQ(Conv_ClePhonetique("S"), "S000");
    EXPECT_EQ(Conv_ClePhonetique("HHA"), "H000");
    EXPECT_EQ(Conv_ClePhonetique("SMITH"), "SMD0");
    EXPECT_EQ(Conv_ClePhonetique("EN"), "1000");
    EXPECT_EQ(Conv_ClePhonetique("AIN"), "2000");
    EXPECT_EQ(Conv_ClePhonetique("ER"), "E000");
    // Only the first "PH" is replaced; the second is coded P (B), H (none).
    EXPECT_EQ(Conv_ClePhonetique("PHAPHO"), "FB00");
    // A name of digits or signs gives its first character and fillers.
    EXPECT_EQ(Conv_ClePhonetique("1234"), "1000");
    EXPECT_EQ(Conv_ClePhonetique("?"), "?000");
}

// Keys worked out by hand from the steps of the key, one name at a time.
TEST(ClePhonetique, FrenchSurnamesWorkedByHand) {
    struct Cas {
        const char* nom;
        const char* cle;
    };
    const Cas cas[] = {
        {"MARTIN", "MRDM"},      {"BERNARD", "BRMR"},     {"DUBOIS", "DB00"},
        {"THOMAS", "TM00"},      {"ROBERT", "RBR0"},      {"RICHARD", "RSR0"},
        {"PETIT", "PD00"},       {"DURAND", "DRM0"},      {"LEROY", "LR00"},
        {"MOREAU", "MR00"},      {"SIMON", "SM00"},       {"LAURENT", "LRM0"},
        {"LEFEBVRE", "LFR0"},    {"MICHEL", "MSL0"},      {"GARCIA", "GRS0"},
        {"DAVID", "DFD0"},       {"BERTRAND", "BRDR"},    {"ROUX", "R000"},
        {"VINCENT", "VMSM"},     {"FOURNIER", "FRM0"},    {"MOREL", "MRL0"},
        {"GIRARD", "JR00"},      {"ANDRE", "1DR0"},       {"LEFEVRE", "LFR0"},
        {"MERCIER", "MRS0"},     {"DUPONT", "DBM0"},      {"LAMBERT", "LMBR"},
        {"BONNET", "BMD0"},      {"FRANCOIS", "FRMC"},    {"MARTINEZ", "MRDM"},
        {"LEGRAND", "LGRM"},     {"GARNIER", "GRM0"},     {"FAURE", "FR00"},
        {"ROUSSEAU", "RS00"},    {"BLANC", "BLM0"},       {"GUERIN", "GRM0"},
        {"MULLER", "ML00"},      {"HENRY", "1R00"},       {"ROUSSEL", "RSL0"},
        {"NICOLAS", "NCL0"},     {"PERRIN", "PRM0"},      {"MORIN", "MRM0"},
        {"MATHIEU", "MD00"},     {"CLEMENT", "KLM0"},     {"GAUTHIER", "GD00"},
        {"DUMONT", "DM00"},      {"LOPEZ", "LBS0"},       {"FONTAINE", "FMDM"},
        {"CHEVALIER", "SFL0"},   {"ROBIN", "RBM0"},       {"MASSON", "MSM0"},
        {"SANCHEZ", "SMS0"},     {"GERARD", "JR00"},      {"NGUYEN", "NGM0"},
        {"BOYER", "B000"},       {"DENIS", "DM00"},       {"LEMAIRE", "LMR0"},
        {"DUVAL", "DFL0"},       {"JOLY", "JL00"},        {"GAUTIER", "GD00"},
        {"ROGER", "RG00"},       {"ROCHE", "RS00"},       {"ROY", "R000"},
        {"NOEL", "NL00"},        {"MEYER", "M000"},       {"LUCAS", "LC00"},
        {"MEUNIER", "M000"},     {"JEAN", "JM00"},        {"PEREZ", "PRS0"},
        {"MARCHAND", "MRSM"},    {"DUFOUR", "DFR0"},      {"BLANCHARD", "BLMS"},
        {"GILLET", "JLD0"},      {"CHEVALLIER", "SFL0"},  {"BARBIER", "BRB0"},
        {"BRUN", "BRM0"},        {"DUMAS", "DM00"},       {"BRUNET", "BRMD"},
        {"SCHMITT", "SMD0"},     {"LEROUX", "LR00"},      {"COLIN", "KLM0"},
        {"FERNANDEZ", "FRMD"},   {"PIERRE", "PR00"},      {"RENARD", "RMR0"},
        {"ARNAUD", "ARMD"},      {"ROLLAND", "RLM0"},     {"CARON", "KRM0"},
        {"AUBERT", "OBR0"},      {"GIRAUD", "JRD0"},      {"LECLERC", "LCLR"},
        {"VIDAL", "VDL0"},       {"BOURGEOIS", "BRG0"},   {"RENAUD", "RMD0"},
        {"LEMOINE", "LM00"},     {"PICARD", "PCR0"},      {"GAILLARD", "GLR0"},
        {"PHILIPPE", "FLB0"},    {"LACROIX", "LCR0"},     {"DUPUIS", "DB00"},
        {"OLIVIER", "OLF0"},     {"LOUIS", "L000"},       {"FABRE", "FBR0"},
        {"AUBRY", "OBR0"},       {"HUBERT", "UBR0"},      {"BRETON", "BRDM"},
        {"BOUCHER", "BS00"},     {"CARPENTIER", "KRBM"},  {"CHARPENTIER", "SRBM"},
        {"DESCHAMPS", "DSM0"},   {"MARECHAL", "MRSL"},    {"LEBLANC", "LBLM"},
        {"GUILLAUME", "GLM0"},   {"COLLET", "KLD0"},      {"PREVOST", "PRFD"},
        {"PROVOST", "PRFD"},     {"BAILLY", "BL00"},      {"HUET", "UD00"},
        {"HERVE", "ERF0"},       {"ETIENNE", "EDM0"},     {"ANTOINE", "1DM0"},
        {"LAMY", "LM00"},        {"JACOB", "JCB0"},       {"COLAS", "KL00"},
        {"BENOIT", "BMD0"},      {"LAINE", "LM00"},       {"MARIE", "MR00"},
        {"CHAUVIN", "SFM0"},     {"BOURDON", "BRDM"},     {"LEBRUN", "LBRM"},
        {"MAILLARD", "MLR0"},    {"POULAIN", "PLM0"},     {"COUSIN", "KSM0"},
        {"GUYOT", "GD00"},       {"HAMON", "AM00"},       {"BARRE", "BR00"},
        {"CAMUS", "KM00"},       {"DELMAS", "DLM0"},      {"TESSIER", "TS00"},
        {"LEGER", "LG00"},       {"WEBER", "VB00"},       {"SCHNEIDER", "SMD0"},
        {"QUENTIN", "KMDM"},     {"YVON", "IFM0"},        {"HOUDE", "3D00"},
        {"OUVRARD", "3FR0"},     {"EMERY", "EMR0"},       {"ENAULT", "EML0"},
        {"IMBERT", "2BR0"},      {"UNGER", "2G00"},       {"AINARD", "AMR0"},
        {"EINSTEIN", "2DM0"},    {"ESTIENNE", "EDM0"},    {"BASTIEN", "BDM0"},
        {"CASTEL", "KD00"},      {"CHASTEL", "SD00"},     {"AUGUSTIN", "OGD0"},
        {"MOUSTIER", "MD00"},    {"MARTINEAU", "MRDM"},   {"PETITJEAN", "PDGM"},
        {"LEJEUNE", "LGM0"},     {"DOUCET", "DSD0"},      {"MALLET", "MLD0"},
        {"POIRIER", "PR00"},     {"CHARLES", "SRL0"},     {"PASCAL", "PSCL"},
        {"BAUDRY", "BDR0"},      {"LANGLOIS", "LMGL"},    {"BRUNEAU", "BRM0"},
        {"BESSON", "BSM0"},      {"GIMENEZ", "JMS0"},     {"GUICHARD", "GSR0"},
        {"BENARD", "BMR0"},      {"CORDIER", "KRD0"},     {"LEMONNIER", "LM00"},
        {"COLLIN", "KLM0"},      {"FLEURY", "FLR0"},      {"GERMAIN", "JRM0"},
        {"BOUVIER", "BF00"},     {"JACQUET", "JCD0"},     {"VASSEUR", "VSR0"},
        {"PERRET", "PRD0"},      {"MASSE", "MS00"},       {"GIBERT", "JBR0"},
        {"CHAUVET", "SFD0"},     {"BAILLEUL", "BL00"},    {"PHILIPPON", "FLBM"},
        {"PHILIPPOT", "FLBD"},   {"STEPHAN", "SDFM"},     {"STEPHANE", "SDFM"},
        {"LEBOEUF", "LBF0"},     {"CHRISTOPHE", "SRDF"},  {"CHRISTIAN", "SRDM"},
        {"SEBASTIEN", "SBDM"},   {"ERNEST", "ERMD"},      {"AUGUSTE", "OGD0"},
        {"FAUST", "FD00"},       {"PASTEUR", "PDR0"},     {"BASTIDE", "BD00"},
        {"MONTAGNE", "MDM0"},    {"CHAMPAGNE", "SMBM"},   {"BRETAGNE", "BRDM"},
        {"MIGNON", "M000"},      {"AGNES", "AM00"},       {"DESNOS", "DM00"},
        {"DELNORD", "DMR0"},     {"ASMUS", "1000"},       {"DESMARETS", "DMRD"},
        {"MAISTRE", "MD00"},     {"HOSTE", "OD00"},       {"STEIN", "SDM0"},
        {"TESTARD", "TDSD"},     {"TESTU", "TDSD"},       {"TRISTAN", "TRDS"},
        {"MARTEL", "MRDL"},      {"DUCHESNE", "DSM0"},    {"CHESNEAU", "SM00"},
        {"COSNARD", "KMR0"},     {"LESNE", "LM00"},       {"GEORGES", "JRG0"},
        {"GEOFFROY", "JFR0"},    {"GAY", "G000"},         {"YVES", "IF00"},
        {"EAUBONNE", "OBM0"},    {"QUINTIN", "KMDM"},     {"QUESNEL", "KM00"},
        {"WAGNER", "VM00"},      {"GUILLOT", "GLD0"},     {"CHAPUIS", "SB00"},
        {"CHAPELLE", "SBL0"},    {"CELLIER", "SL00"},     {"CYR", "SR00"},
        {"CIRET", "SRD0"},       {"COCHET", "KSD0"},      {"CECILE", "SL00"},
        {"PHELIPPEAUX", "FLB0"}, {"THIBAULT", "TBL0"},    {"THIBAUD", "TBD0"},
        {"THEVENIN", "TFM0"},    {"TOUSSAINT", "TSM0"},   {"DANIEL", "DML0"},
        {"DANTON", "DMDM"},      {"DIDIER", "D000"},      {"DUTHEIL", "DL00"},
        {"TOUTAIN", "TDM0"},     {"TATIN", "TDM0"},       {"DEVAUX", "DF00"},
        {"BOURDIN", "BRDM"},     {"MICHAUD", "MSD0"},     {"RIVIERE", "RFR0"},
        {"ARNOULD", "ARML"},     {"RAYMOND", "RM00"},     {"LECOMTE", "LCMD"},
        {"BERTIN", "BRDM"},      {"BOUCHET", "BSD0"},     {"BOUQUET", "BCD0"},
        {"HUGUET", "UGD0"},      {"HEBERT", "EBR0"},      {"HAMEL", "AML0"},
        {"HARDY", "ARD0"},       {"HOARAU", "OR00"},      {"HOUSSIN", "3SM0"},
        {"OUDIN", "3DM0"},       {"OUELLET", "OLD0"},     {"AMIOT", "AMD0"},
        {"ANSELME", "1SLM"},     {"ENGEL", "1GL0"},       {"EMPEREUR", "1BR0"},
        {"AMBROISE", "1BRS"},    {"INGRAND", "2GRM"},     {"AIME", "AM00"},
        {"EINARD", "EMR0"},      {"AUDOUIN", "ODM0"},     {"AUGER", "OG00"},
        {"GIBAUD", "JBD0"},      {"GUYON", "GM00"},       {"YON", "IM00"},
        {"WILLIAM", "VLM0"},     {"KELLER", "KL00"},      {"KLEIN", "KLM0"},
        {"SCHMIDT", "SMD0"},     {"ZIMMERMANN", "ZMRM"},  {"XAVIER", "XF00"},
        {"PERROUX", "PR00"},     {"DESPREZ", "DSBR"},     {"ALEXANDRE", "ALSM"},
        {"ALEXIS", "ALS0"},      {"FELIX", "FL00"},       {"MAXIME", "MSM0"},
        {"BEAUX", "B000"},       {"DEBRAY", "DBR0"},      {"MARX", "MR00"},
        {"LEFORT", "LFR0"},      {"FORT", "FR00"},        {"FORTIN", "FRDM"},
        {"GODARD", "GDR0"},      {"BLONDEL", "BLMD"},     {"CHARRIER", "SR00"},
        {"BOULANGER", "BLMG"},   {"BOULENGER", "BLMG"},   {"CARRE", "KR00"},
        {"PAGES", "PG00"},       {"JOUBERT", "JBR0"},     {"DELAUNAY", "DLM0"},
        {"LEBON", "LBM0"},       {"DESCAMPS", "DSCM"},    {"MAURICE", "MRS0"},
        {"LAURENCE", "LRMS"},    {"FRANCE", "FRMS"},      {"PONCET", "PMSD"},
        {"MARCEAU", "MRS0"},     {"CIRON", "SRM0"},       {"CYPRIEN", "SBRM"},
        {"\xC9mile", "EML0"},    {"\xC9lo\xEFse", "ELS0"}, {"No\xEBl", "NL00"},
        {"Lef\xE8vre", "LFR0"},  {"B\xE9n\xE9" "dicte", "BMDC"}, {"J\xE9r\xF4me", "JRM0"},
        {"Fran\xE7oise", "FRMC"}, {"d'Artagnan", "DRDM"},  {"Le Goff", "LGF0"},
        {"Saint-Just", "SMDG"},  {"SAINT", "SM00"},       {"La Fontaine", "LFMD"},
        {"de Gaulle", "DGL0"},   {"BEAUCHAMP", "BSM0"},   {"LONGCHAMP", "LMGS"},
        {"CHEVREUIL", "SFRL"},   {"HOCHE", "OS00"},       {"PAPILLON", "PBLM"},
        {"BIBAUT", "BD00"},      {"BABIN", "BM00"},       {"COQUELIN", "KCLM"},
        {"CUVELIER", "KFL0"},
    };
    int n = 0;
    for (const Cas& c : cas) {
        EXPECT_EQ(Conv_ClePhonetique(c.nom), c.cle) << c.nom;
        // Case and accents do not matter.
        EXPECT_EQ(Conv_ClePhonetique(CleMot(c.nom)), c.cle) << c.nom;
        ++n;
    }
    EXPECT_GE(n, 300);
}

TEST(ClesVoisines, Comparison) {
    EXPECT_TRUE(Conv_ClesVoisines("BDM0", "BDM0"));
    EXPECT_TRUE(Conv_ClesVoisines("0000", "XYZ0"));
    EXPECT_TRUE(Conv_ClesVoisines("XYZ0", "0000"));
    // Example of the Part: the first walk fails, the exchanged one completes.
    EXPECT_TRUE(Conv_ClesVoisines("BDM0", "BM00"));
    EXPECT_TRUE(Conv_ClesVoisines("BM00", "BDM0"));
    // Three positions in common once the first characters are coded:
    // P and B share the class B.
    EXPECT_TRUE(Conv_ClesVoisines("PDR0", "BDR0"));
    // A vowel, "1", "2", "3" as first character become "0".
    EXPECT_TRUE(Conv_ClesVoisines("1DR0", "EDR0"));
    EXPECT_TRUE(Conv_ClesVoisines("ODM0", "3DM0"));
    EXPECT_FALSE(Conv_ClesVoisines("MRDM", "BRMR"));
    // T codes as D: three positions agree.
    EXPECT_TRUE(Conv_ClesVoisines("DB00", "TM00"));
    EXPECT_FALSE(Conv_ClesVoisines("DB00", "SM00"));
    EXPECT_FALSE(Conv_ClesVoisines("MRDM", "MSL0"));
    // The walk allows one inserted character only.
    EXPECT_FALSE(Conv_ClesVoisines("BDM0", "BSLM"));
    EXPECT_TRUE(Conv_ClesVoisines("LFR0", "LFRM"));
    // Through the keys of names.
    EXPECT_TRUE(Conv_ClesVoisines(Conv_ClePhonetique("Martin"), Conv_ClePhonetique("Martineau")));
    EXPECT_TRUE(Conv_ClesVoisines(Conv_ClePhonetique("Lefebvre"), Conv_ClePhonetique("Lefevre")));
    EXPECT_TRUE(Conv_ClesVoisines(Conv_ClePhonetique("Bastien"), Conv_ClePhonetique("Batin")));
}

TEST(EstVoyelle, SixLetters) {
    int n = 0;
    for (int c = 0; c < 256; ++c) n += Conv_EstVoyelle(static_cast<char>(c));
    EXPECT_EQ(n, 6);
    for (char c : std::string("AEIOUY")) EXPECT_TRUE(Conv_EstVoyelle(c));
    EXPECT_FALSE(Conv_EstVoyelle('a'));
    EXPECT_FALSE(Conv_EstVoyelle('W'));
}

TEST(NomPropre, CapitalsAndParticles) {
    const auto& p = ParticulesParDefaut();
    EXPECT_EQ(Conv_NomPropre("jean de la fontaine", 'N', p), "Jean de la Fontaine");
    EXPECT_EQ(Conv_NomPropre("JEAN DE LA FONTAINE", 'N', p), "Jean de la Fontaine");
    EXPECT_EQ(Conv_NomPropre("d'artagnan", 'N', p), "d'Artagnan");
    EXPECT_EQ(Conv_NomPropre("DE GAULLE", 'N', p), "de Gaulle");
    EXPECT_EQ(Conv_NomPropre("louis xiv", 'N', p), "Louis XIV");
    EXPECT_EQ(Conv_NomPropre("jean-pierre", 'P', p), "Jean-Pierre");
    // The default list has no first-name particle.
    EXPECT_EQ(Conv_NomPropre("de la", 'P', p), "De La");
    EXPECT_EQ(Conv_NomPropre("\xC9LISE \xC9MILIE", 'P', p), "\xC9lise \xC9milie");
    EXPECT_EQ(Conv_NomPropre("l\x92\xE9glise", 'N', p), "l\x92\xC9glise");
    // A particle inside a word is not one.
    EXPECT_EQ(Conv_NomPropre("delacroix", 'N', p), "Delacroix");
    EXPECT_EQ(Conv_NomPropre("van der berg", 'N', p), "van Der Berg");
    EXPECT_EQ(Conv_NomPropre("", 'N', p), "");
    const std::vector<Particule> prenoms = {{"Marie", false, true}};
    EXPECT_EQ(Conv_NomPropre("jean marie", 'P', prenoms), "Jean Marie");
    for (const char* s : {"a", "ab c-d", "x'y z"})
        EXPECT_EQ(Conv_NomPropre(s, 'N', p).size(), std::string(s).size());
}

TEST(CleMot, EveryByte) {
    // Capitals, digits and the blank stay; the folds of the Part.
    for (int c = 0; c < 256; ++c) {
        const char x = static_cast<char>(c);
        const char k = CleCar(x);
        if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ') {
            EXPECT_EQ(k, x);
        }
        if (c >= 'a' && c <= 'z') {
            EXPECT_EQ(k, c - 32);
        }
    }
    EXPECT_EQ(CleMot("\xC0\xC1\xC2\xC3\xC4\xC5\xE0\xE1\xE2\xE3\xE4\xE5"), "AAAAAAAAAAAA");
    EXPECT_EQ(CleMot("\xC8\xC9\xCA\xCB\xE8\xE9\xEA\xEB"), "EEEEEEEE");
    EXPECT_EQ(CleMot("\xCC\xCD\xCE\xCF\xEC\xED\xEE\xEF"), "IIIIIIII");
    EXPECT_EQ(CleMot("\xD2\xD3\xD4\xD5\xD6\xD8\xF2\xF3\xF4\xF5\xF6\xF8"), "OOOOOOOOOOOO");
    EXPECT_EQ(CleMot("\xD9\xDA\xDB\xDC\xF9\xFA\xFB\xFC"), "UUUUUUUU");
    EXPECT_EQ(CleMot("\xC7\xE7\xD1\xF1\xD0\xF0\xDD\xFD"), "CCNNDDYY");
    EXPECT_EQ(CleMot("'-._\x92\xB4,;:"), "         ");
    // ÿ becomes Ÿ, not Y: only Ý folds to Y.
    EXPECT_EQ(CleMot("\xFF"), "\x9F");
    EXPECT_EQ(CleMot("\x9A\x9C\x9E"), "\x8A\x8C\x8E");
    EXPECT_EQ(CleMot("\xD7\xF7\xDE\xFE"), "\xD7\xF7\xDE\xDE");
}
