#include "text/tags.h"

#include "text/messages.h"

#include <array>

namespace sylvane {
namespace {

struct LigneTag {
    const char* tag;
    int message;
};

// Each tag and the message of its word. A word typed back finds the first
// row whose message it equals.
constexpr LigneTag kTags[] = {
    {"BIRT", 754}, {"BURI", 780}, {"CHR", 782}, {"DEAT", 755}, {"MARR", 642}, {"CHIL", 750},
    {"FATH", 681}, {"MOTH", 683}, {"HUSB", 850}, {"WIFE", 851}, {"DEAD", 914}, {"WIDR", 937},
    {"WIDW", 938}, {"SON", 749}, {"DAUG", 751}, {"JAN", 730}, {"FEB", 731}, {"MAR", 732},
    {"APR", 733}, {"MAY", 734}, {"JUN", 735}, {"JUL", 736}, {"AUG", 737}, {"SEP", 738},
    {"OCT", 739}, {"NOV", 740}, {"DEC", 741}, {"BIRP", 820}, {"CHRP", 821}, {"DEAP", 822},
    {"MARP", 823}, {"BURP", 824}, {"BIRN", 818}, {"FNAM", 1046}, {"NICK", 881}, {"SURN", 896},
    {"OCCU", 795}, {"ADOP", 777}, {"ANUL", 858}, {"BARM", 778}, {"BASM", 779}, {"BLES", 870},
    {"CENS", 853}, {"CONF", 783}, {"CREM", 852}, {"DIV", 813}, {"DIVF", 859}, {"EMIG", 786},
    {"ENDL", 902}, {"ENGA", 812}, {"FCOM", 854}, {"GRAD", 855}, {"IMMI", 788}, {"LEGA", 903},
    {"MAIN", 972}, {"MARB", 809}, {"MARC", 810}, {"MARL", 811}, {"NATU", 792}, {"ORDN", 796},
    {"PROB", 857}, {"RETI", 856}, {"WILL", 804}, {"WITN", 911}, {"GODF", 912}, {"GODM", 913},
    {"GODC", 947}, {"WARD", 946}, {"GUAR", 945}, {"BET", 833}, {"AND", 834}, {"BEF", 831},
    {"AFT", 830}, {"EST", 832}, {"CAL", 871}, {"ABT", 828}, {"AUTH", 900}, {"ADDR", 776},
    {"RESI", 801}, {"TITL", 803}, {"PEDI", 885}, {"CAST", 781}, {"DSCR", 784}, {"EDUC", 785},
    {"GIVN", 880}, {"OTHR", 909}, {"NPFX", 883}, {"SPFX", 895}, {"NSFX", 884}, {"PROP", 798},
    {"PUBL", 905}, {"RELI", 799}, {"FATN", 963}, {"MOTN", 964}, {"NATI", 791}, {"NUMB", 965},
    {"OFNM", 1047}, {"BATL", 1501}, {"TREA", 1502}, {"SACR", 1503}, {"ELEC", 1504}, {"NOMI", 1505},
    {"IMPR", 1506}, {"IMPE", 1507}, {"KING", 1508}, {"QUEN", 1509}, {"SUCC", 1510}, {"BROT", 1511},
    {"SIST", 1512}, {"UNCL", 1513}, {"AUNT", 1514}, {"GFAT", 1515}, {"GMOT", 1516}, {"SINL", 1517},
    {"DINL", 1518}, {"FINL", 1519}, {"MINL", 1520}, {"BINL", 1521}, {"SIIL", 1522}, {"DUKE", 1523},
    {"DUCH", 1524}, {"EARL", 1525}, {"COUN", 1526}, {"KILL", 1527}, {"EXEC", 1528}, {"SHOT", 1529},
    {"EXEN", 1530}, {"MURD", 1531}, {"SIEG", 1532}, {"HEIR", 1533}, {"HEIS", 1534}, {"SIRE", 1535},
    {"LADY", 1536}, {"EVEN", 644},
    // The list name "RELA" of the rubric lists has a word of its own.
    {"RELA", 1537},
};
static_assert(std::size(kTags) == 135);

} // namespace

int MessageDuTag(std::string_view tag) {
    for (const auto& l : kTags)
        if (tag == l.tag) return l.message;
    return 0;
}

std::string Conv_LibelleTag(std::string_view tag) {
    const int n = MessageDuTag(tag);
    return n ? Message(n) : std::string(tag);
}

std::string Conv_TagLibelle(std::string_view texte) {
    if (MessageDuTag(texte)) return std::string(texte);
    if (!texte.empty())
        for (const auto& l : kTags)
            if (Message(l.message) == texte) return l.tag;
    return std::string(texte);
}

std::vector<std::string> TagsConnus() {
    std::vector<std::string> r;
    for (const auto& l : kTags) r.emplace_back(l.tag);
    return r;
}

} // namespace sylvane
