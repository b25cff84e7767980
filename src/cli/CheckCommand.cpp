#include "CheckCommand.h"

#include "CheckReport.h"
#include "analysis/SourceText.h"

namespace tarnwick {

ExitStatus checkCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    SourceText source(bytes);
    source.scan({});
    const pdfObjectCatalog& catalog = source.theCatalog();
    FileFindings findings = joinFindings(catalog, findFacts(catalog), nullptr);
    findings.gaps.emplace_back("what the PDF engine knows of it is missing: it cannot be started");
    return reportFindings(findings, catalog, "none", arguments);
}

} // namespace tarnwick
