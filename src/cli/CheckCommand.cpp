#include "CheckCommand.h"

#include "CommandOutput.h"
#include "analysis/Findings.h"
#include "analysis/SourceText.h"

#include <string>

namespace tarnwick {

namespace {

std::string lineOf(const pdfObjectCatalog& catalog, const Finding& finding)
{
    const FindingRule& rule = ruleOf(finding.code);
    std::string line(rule.name);
    line += '\t' + std::to_string(finding.offset) + '\t';
    line += finding.object ? shownNumbers(catalog.object(*finding.object)) : "-";
    line += '\t' + finding.sentence + " (" + std::string(rule.clause) + ")\n";
    return line;
}

void appendFinding(const pdfObjectCatalog& catalog, const Finding& finding, JsonText& json)
{
    const FindingRule& rule = ruleOf(finding.code);
    json.open('{').key("code").string(rule.name);
    json.key("level").string(rule.isDeviation ? "deviation" : "fact");
    json.key("clause").string(rule.clause).key("offset").number(finding.offset).key("object");
    if (finding.object) {
        json.open('{');
        appendObject(catalog, catalog.object(*finding.object), json);
        json.close('}');
    } else {
        json.null();
    }
    json.key("sentence").string(finding.sentence).close('}');
}

std::string jsonOf(const pdfObjectCatalog& catalog, const Findings& findings)
{
    JsonText json = JsonText::ofCommand("check");
    json.key("standard").string("ISO 32000-2").key("findings").open('[');
    for (const Finding& finding : findings.list)
        appendFinding(catalog, finding, json);
    json.close(']').key("counts").open('{');
    for (std::size_t code = 0; code < findings.counts.size(); ++code) {
        if (findings.counts.at(code) > 0)
            json.key(ruleOf(static_cast<FindingCode>(code)).name).number(findings.counts.at(code));
    }
    return json.close('}').close('}').text() + '\n';
}

ExitStatus reportUnlisted(const Findings& findings, const Arguments& arguments)
{
    ExitStatus status = ExitStatus::isDone;
    for (std::size_t code = 0; code < findings.counts.size(); ++code) {
        if (findings.counts.at(code) > Findings::mostKept)
            status = complain(ExitStatus::isIncomplete, arguments.file,
                std::to_string(findings.counts.at(code)) + " findings "
                    + std::string(ruleOf(static_cast<FindingCode>(code)).name) + "; the first "
                    + std::to_string(Findings::mostKept) + " are listed");
    }
    return status;
}

} // namespace

ExitStatus checkCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    SourceText source(bytes);
    source.scan({});
    const pdfObjectCatalog& catalog = source.theCatalog();
    const Findings findings = findFacts(catalog);
    std::string text;
    if (arguments.json)
        text = jsonOf(catalog, findings);
    for (const Finding& finding : findings.list)
        text += arguments.json ? std::string() : lineOf(catalog, finding);
    ExitStatus status = reportHidden(catalog, arguments, nullptr);
    if (reportUnlisted(findings, arguments) != ExitStatus::isDone)
        status = ExitStatus::isIncomplete;
    return printBytes(text, status);
}

} // namespace tarnwick
