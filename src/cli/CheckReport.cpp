#include "CheckReport.h"

#include "CommandOutput.h"

#include <string>

namespace tarnwick {

namespace {

constexpr std::int64_t schemaVersion = 2;

std::string shownObject(const NamedObject& object)
{
    std::string shown = std::to_string(object.objNo);
    if (object.listed)
        shown += ' ' + std::to_string(object.listed->objGen) + ' '
            + std::to_string(object.listed->objVer);
    return shown;
}

std::string lineOf(const FileFinding& finding)
{
    const FindingRule& rule = ruleOf(finding.code);
    return std::string(rule.name) + '\t' + (finding.offset ? std::to_string(*finding.offset) : "-")
        + '\t' + (finding.object ? shownObject(*finding.object) : "-") + '\t' + finding.sentence
        + " (" + std::string(rule.clause) + ")\n";
}

void appendNamed(const NamedObject& object, JsonText& json)
{
    const auto& listed = object.listed;
    json.open('{').key("number");
    object.objNo == trailerNumber ? json.null() : json.number(object.objNo);
    json.key("generation");
    listed&& object.objNo != trailerNumber ? json.number(listed->objGen) : json.null();
    json.key("version");
    listed ? json.number(listed->objVer) : json.null();
    json.key("kind");
    listed ? json.string(listed->kind) : json.null();
    json.close('}');
}

void appendFinding(const FileFinding& finding, JsonText& json)
{
    const FindingRule& rule = ruleOf(finding.code);
    json.open('{').key("code").string(rule.name);
    json.key("level").string(rule.isDeviation ? "deviation" : "fact");
    json.key("clause").string(rule.clause).key("offset");
    finding.offset ? json.number(*finding.offset) : json.null();
    json.key("object");
    if (finding.object)
        appendNamed(*finding.object, json);
    else
        json.null();
    json.key("page");
    finding.page ? json.number(std::int64_t{*finding.page} + 1) : json.null();
    json.key("sentence").string(finding.sentence).close('}');
}

std::string jsonOf(const FileFindings& findings, std::string_view engine)
{
    JsonText json = JsonText::ofCommand("check", schemaVersion);
    json.key("standard").string("ISO 32000-2").key("engine").string(engine);
    json.key("findings").open('[');
    for (const FileFinding& finding : findings.list)
        appendFinding(finding, json);
    json.close(']').key("counts").open('{');
    for (std::size_t code = 0; code < findings.counts.size(); ++code) {
        if (findings.counts.at(code) > 0)
            json.key(ruleOf(static_cast<FindingCode>(code)).name).number(findings.counts.at(code));
    }
    return json.close('}').close('}').text() + '\n';
}

ExitStatus reportMissing(const FileFindings& findings, const Arguments& arguments)
{
    ExitStatus status = ExitStatus::isDone;
    for (const std::string& gap : findings.gaps)
        status = complain(ExitStatus::isIncomplete, arguments.file, gap);
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

ExitStatus reportFindings(const FileFindings& findings, const pdfObjectCatalog& catalog,
    std::string_view engine, const Arguments& arguments)
{
    std::string text;
    if (arguments.json)
        text = jsonOf(findings, engine);
    else
        for (const FileFinding& finding : findings.list)
            text += lineOf(finding);
    ExitStatus status = reportHidden(catalog, arguments, nullptr);
    if (reportMissing(findings, arguments) != ExitStatus::isDone)
        status = ExitStatus::isIncomplete;
    return printBytes(text, status);
}

} // namespace tarnwick
