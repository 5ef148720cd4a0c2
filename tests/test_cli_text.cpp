#include "cli/cli.h"
#include "text/messages.h"

#include <gtest/gtest.h>

#include <sstream>

using sylvane::cli::Arguments;

namespace {

std::string lance(const Arguments& args, int attendu = 0) {
    std::ostringstream out, err;
    EXPECT_EQ(sylvane::cli::Executer(args, out, err), attendu) << err.str();
    return out.str();
}

} // namespace

TEST(CliText, Probes) {
    sylvane::DefinitMessages({}); // the verb installs the French words itself
    EXPECT_EQ(lance({"text", "fold", "Élisabeth-Marie", "l'été"}), "ELISABETH MARIE\nL ETE\n");
    EXPECT_EQ(lance({"text", "phonetic", "Bastien", "Philippe", "Chevalier", ""}),
              "BDM0\nFLB0\nSFL0\n0000\n");
    EXPECT_EQ(lance({"text", "near", "BDM0", "BM00"}), "1\n");
    EXPECT_EQ(lance({"text", "near", "MRDM", "BRMR"}), "0\n");
    EXPECT_EQ(lance({"text", "propre", "N", "jean de la fontaine"}), "Jean de la Fontaine\n");
    EXPECT_EQ(lance({"text", "particule", "de la Tour-Maubourg"}), "Tour.Maubourg.(de.la)\n");
    EXPECT_EQ(lance({"text", "date", "1er janvier 1880", "30 février", "Pâques"}),
              "1/1/1880\n30 FEB\nPâques\n");
    EXPECT_EQ(lance({"text", "date", "--format", "mm/dd/yyyy", "12 janvier 1880"}), "12/1/1880\n");
    EXPECT_EQ(lance({"text", "gedcom-date", "12 janvier -123", "estimée 3 janvier 1880"}),
              "12 JAN 123 BC\nEST 3 JAN 1880\n");
    EXPECT_EQ(lance({"text", "display-date", "EST 3 JAN 1880"}), "estimée 3 janvier 1880\n");
    EXPECT_EQ(lance({"text", "republican", "--from-gregorian", "22", "9", "1792"}), "1 1 1\n");
    EXPECT_EQ(lance({"text", "republican", "--from-gregorian", "1", "1", "1793"}), "12 4 1\n");
    EXPECT_EQ(lance({"text", "republican", "--from-republican", "1", "1", "I"}), "22 9 1\n");
    EXPECT_EQ(lance({"text", "republican", "--from-republican", "18", "2", "8"}), "9 11 8\n");
    EXPECT_EQ(lance({"text", "republican", "--from-republican", "31", "1", "1"}, 1), "");
}

TEST(CliText, Usage) {
    lance({"text"}, 2);
    lance({"text", "nothing"}, 2);
    lance({"text", "near", "A"}, 2);
    lance({"text", "propre", "X", "a"}, 2);
    lance({"text", "date", "--format", "dd-mm", "1"}, 2);
    lance({"text", "republican", "1", "1", "1792"}, 2);
}
