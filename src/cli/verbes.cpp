#include "cli/verbes.h"

#include <array>

namespace sylvane::cli {

std::span<const Verbe> Verbes() {
    static const std::array table = {
        Verbe{"new", "new BASE.sv2", VerbeNew},
        Verbe{"info", "info BASE.sv2", VerbeInfo},
        Verbe{"persons", "persons BASE.sv2", VerbePersons},
        Verbe{"add-person",
              "add-person BASE.sv2 --name N --first F [--sex H|F|I] [--birth YEAR] "
              "[--father N] [--mother N]",
              VerbeAddPerson},
        Verbe{"link",
              "link BASE.sv2 --child N --father|--mother N [--yes]  (questions r\xC3\xA9pondues "
              "non, oui avec --yes : mariage des parents, autres enfants de l'autre parent)",
              VerbeLink},
        Verbe{"unlink", "unlink BASE.sv2 --child N --father|--mother N", VerbeUnlink},
        Verbe{"marry",
              "marry BASE.sv2 HUSBAND WIFE [--year Y] [--yes]  (questions r\xC3\xA9pondues non, "
              "oui avec --yes : le conjoint autre parent des enfants de chacun)",
              VerbeMarry},
        Verbe{"mes", "mes build SOURCE OUT.mes | mes dump FILE.mes", VerbeMes},
        Verbe{"text",
              "text fold|phonetic|near|propre|particule|date|gedcom-date|display-date|"
              "republican ...",
              VerbeText},
        Verbe{"events", "events BASE.sv2", VerbeEvents},
        Verbe{"event", "event BASE.sv2 N  (un \xC3\xA9v\xC3\xA9nement, ses personnes et leurs r\xC3\xB4les)",
              VerbeEvent},
        Verbe{"documents", "documents BASE.sv2", VerbeDocuments},
        Verbe{"add-document",
              "add-document BASE.sv2 --title T --file F [--type T] [--person N|--event N]",
              VerbeAddDocument},
        Verbe{"picture-info", "picture-info FILE  (l'ent\xC3\xAAte d'une image, en JSON)",
              VerbePictureInfo},
        Verbe{"keywords", "keywords BASE.sv2 [SYMBOLE]", VerbeKeywords},
        Verbe{"add-event",
              "add-event BASE.sv2 --person N --tag TAG --date \"12 mars 1850\" [--place P]",
              VerbeAddEvent},
        Verbe{"search-name",
              "search-name BASE.sv2 [--name N] [--first F] [--from Y] [--to Y] [--sex H|F]",
              VerbeSearchName},
        Verbe{"search-keyword",
              "search-keyword BASE.sv2 --word GENRE:TEXTE [--word GENRE:TEXTE]... [--from Y] "
              "[--to Y] [--orphans]  (GENRE : symbole ou tag de la rubrique)",
              VerbeSearchKeyword},
        Verbe{"search-couple",
              "search-couple BASE.sv2 [--husband N] [--husband-first F] [--wife N] "
              "[--wife-first F] [--place P] [--from Y] [--to Y]",
              VerbeSearchCouple},
        Verbe{"search-events", "search-events BASE.sv2 [--tag T] [--place P] [--from Y] [--to Y]",
              VerbeSearchEvents},
        Verbe{"stats", "stats BASE.sv2 [--persons N,N,...]", VerbeStats},
        Verbe{"anniversaries",
              "anniversaries BASE.sv2 [--month M] [--day D] [--html OUT.htm | --rtf OUT.rtf]",
              VerbeAnniversaries},
        Verbe{"ascendants", "ascendants BASE.sv2 N [--levels L] [--order 0|1|2|3] [--implex]",
              VerbeAscendants},
        Verbe{"descendants", "descendants BASE.sv2 N [--levels L] [--order 0|1|2|3] [--implex]",
              VerbeDescendants},
        Verbe{"numbers", "numbers BASE.sv2 --decujus N [--decujus2 M]", VerbeNumbers},
        Verbe{"import-gedcom",
              "import-gedcom FILE.ged BASE.sv2 [--sort yes|no] [--keywords yes|no] [--force]",
              VerbeImportGedcom},
        Verbe{"import-register",
              "import-register FILE.csv BASE.sv2 --kind marriage|baptism|burial|ascendance [--force]",
              VerbeImportRegister},
        Verbe{"communes",
              "communes FILE.svx search TEXT | communes FILE.svx word WORD | "
              "communes FILE.svx show N | communes FILE.svx add NAME [--postcode C] "
              "[--population P] [--area A] [--comment T] | communes FILE.svx remove N | "
              "communes FILE.svx reorganise",
              VerbeCommunes},
        Verbe{"export-gedcom",
              "export-gedcom BASE.sv2 OUT.ged [--charset ansi|ansel|ascii|html|utf8] [--links] "
              "[--ascendants N|--descendants N]... [--collaterals] [--complete] "
              "[--events] [--documents] [--no-after-1900] [--geneanet]",
              VerbeExportGedcom},
        Verbe{"reorganise", "reorganise BASE.sv2 [--backup]", VerbeReorganise},
        Verbe{"control", "control BASE.sv2 [--backup]", VerbeControl},
        Verbe{"repair",
              "repair names|firstnames BASE.sv2 [--surname-case 1|2] [--first-name-case 1|2]",
              VerbeRepair},
        Verbe{"duplicates", "duplicates BASE.sv2 [--level 0|1|2|3] [--marriages A/B]",
              VerbeDuplicates},
        Verbe{"merge",
              "merge BASE.sv2 KEPT DROPPED [--parents first|second|both] "
              "[--notes first|second|both] [--yes]",
              VerbeMerge},
        Verbe{"export-svr",
              "export-svr BASE.sv2 OUT.svr [--ascendants N|--descendants N]... [--collaterals] "
              "[--complete] [--no-after-1900]",
              VerbeExportSvr},
        Verbe{"import-svr", "import-svr FILE.svr BASE.sv2", VerbeImportSvr},
        Verbe{"integrate", "integrate BASE.sv2 FILE.svr [--yes]", VerbeIntegrate},
        Verbe{"backup", "backup BASE.sv2 COPY.sav", VerbeBackup},
        Verbe{"restore", "restore COPY.sav [--yes]", VerbeRestore},
        Verbe{"chart",
              "chart BASE.sv2 N --type asc|desc|mixed|couple [--generations G] "
              "[--sheets-across A] [--sheets-down D] [--paper A4|A3|letter] [--direction 0-3] "
              "[--detailed] [--no-dates] [--colour] [--no-implex] [--marriage K] "
              "[--font-max P] [--other TAG] "
              "(--svg OUT.svg | --svp OUT.svp | --pdf OUT.pdf)",
              VerbeChart},
        Verbe{"relationship",
              "relationship BASE.sv2 N [M...] [--mode common-asc|common-desc|filiation] "
              "[--generations G] [--svp OUT.svp] [--pdf OUT.pdf] [--progress]",
              VerbeRelationship},
        Verbe{"cousins",
              "cousins BASE.sv2 N M [N...] [--generations G] [--subject N]... [--files DOSSIER] "
              "[--pages DOSSIER] [--tables DOSSIER] [--progress]",
              VerbeCousins},
        Verbe{"branch", "branch BASE.sv2 N --asc|--desc [--depth D] [--rtf OUT.rtf] [--html OUT.htm]",
              VerbeBranch},
        Verbe{"print",
              "print BASE.sv2 N [--report sheet|family|asc|desc] [--levels L] "
              "[--contents complete|quick] [--order 0-3] [--spouses] [--couple] [--events] "
              "[--documents] [--no-implex] [--paper A4|A3|A5|letter] [--landscape] --pdf OUT.pdf",
              VerbePrint},
        Verbe{"replace-keyword", "replace-keyword BASE.sv2 GENRE ANCIEN NOUVEAU [--all]",
              VerbeReplaceKeyword},
        Verbe{"html-site", "html-site BASE.sv2 OUTDIR [--decujus N]", VerbeHtmlSite},
        Verbe{"html-report",
              "html-report BASE.sv2 N --report asc|desc|family [--levels L] [--single] "
              "OUTDIR|OUT.htm",
              VerbeHtmlReport},
        Verbe{"rtf",
              "rtf BASE.sv2 N --report sheet|family|asc|desc [--levels L] [--quick] "
              "[--font NAME] OUT.rtf",
              VerbeRtf},
    };
    return table;
}

} // namespace sylvane::cli
