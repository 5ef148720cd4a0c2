// The table of verbs. Each group of verbs lives in its own file and adds
// its entries to the table in verbes.cpp.
#pragma once

#include "cli/cli.h"

#include <span>

namespace sylvane::cli {

std::span<const Verbe> Verbes();

// Groups of verbs, one per file.
int VerbeNew(const Arguments&, std::ostream&, std::ostream&);
int VerbeInfo(const Arguments&, std::ostream&, std::ostream&);
int VerbePersons(const Arguments&, std::ostream&, std::ostream&);
int VerbeAddPerson(const Arguments&, std::ostream&, std::ostream&);
int VerbeMes(const Arguments&, std::ostream&, std::ostream&);
int VerbeText(const Arguments&, std::ostream&, std::ostream&);
int VerbeEvents(const Arguments&, std::ostream&, std::ostream&);
int VerbeEvent(const Arguments&, std::ostream&, std::ostream&);
int VerbeDocuments(const Arguments&, std::ostream&, std::ostream&);
int VerbeAddDocument(const Arguments&, std::ostream&, std::ostream&);
int VerbePictureInfo(const Arguments&, std::ostream&, std::ostream&);
int VerbeKeywords(const Arguments&, std::ostream&, std::ostream&);
int VerbeAddEvent(const Arguments&, std::ostream&, std::ostream&);
int VerbeAscendants(const Arguments&, std::ostream&, std::ostream&);
int VerbeDescendants(const Arguments&, std::ostream&, std::ostream&);
int VerbeNumbers(const Arguments&, std::ostream&, std::ostream&);
int VerbeImportGedcom(const Arguments&, std::ostream&, std::ostream&);
int VerbeImportRegister(const Arguments&, std::ostream&, std::ostream&);
int VerbeCommunes(const Arguments&, std::ostream&, std::ostream&);
int VerbeExportGedcom(const Arguments&, std::ostream&, std::ostream&);
int VerbeReorganise(const Arguments&, std::ostream&, std::ostream&);
int VerbeControl(const Arguments&, std::ostream&, std::ostream&);
int VerbeRepair(const Arguments&, std::ostream&, std::ostream&);
int VerbeDuplicates(const Arguments&, std::ostream&, std::ostream&);
int VerbeMerge(const Arguments&, std::ostream&, std::ostream&);
int VerbeExportSvr(const Arguments&, std::ostream&, std::ostream&);
int VerbeImportSvr(const Arguments&, std::ostream&, std::ostream&);
int VerbeIntegrate(const Arguments&, std::ostream&, std::ostream&);
int VerbeBackup(const Arguments&, std::ostream&, std::ostream&);
int VerbeRestore(const Arguments&, std::ostream&, std::ostream&);
int VerbeLink(const Arguments&, std::ostream&, std::ostream&);
int VerbeUnlink(const Arguments&, std::ostream&, std::ostream&);
int VerbeMarry(const Arguments&, std::ostream&, std::ostream&);
int VerbeChart(const Arguments&, std::ostream&, std::ostream&);
int VerbeRelationship(const Arguments&, std::ostream&, std::ostream&);
int VerbeCousins(const Arguments&, std::ostream&, std::ostream&);
int VerbeBranch(const Arguments&, std::ostream&, std::ostream&);
int VerbePrint(const Arguments&, std::ostream&, std::ostream&);
int VerbeSearchName(const Arguments&, std::ostream&, std::ostream&);
int VerbeSearchKeyword(const Arguments&, std::ostream&, std::ostream&);
int VerbeSearchCouple(const Arguments&, std::ostream&, std::ostream&);
int VerbeSearchEvents(const Arguments&, std::ostream&, std::ostream&);
int VerbeStats(const Arguments&, std::ostream&, std::ostream&);
int VerbeAnniversaries(const Arguments&, std::ostream&, std::ostream&);
int VerbeReplaceKeyword(const Arguments&, std::ostream&, std::ostream&);
int VerbeHtmlSite(const Arguments&, std::ostream&, std::ostream&);
int VerbeHtmlReport(const Arguments&, std::ostream&, std::ostream&);
int VerbeRtf(const Arguments&, std::ostream&, std::ostream&);

} // namespace sylvane::cli
