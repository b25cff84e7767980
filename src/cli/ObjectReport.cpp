#include "ObjectReport.h"

#include "analysis/ReferenceScan.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::string_view indent = "  ";

std::string numberOrDash(std::uint32_t number)
{
    return number == 0 ? "-" : std::to_string(number);
}

void appendNumber(JsonText& json, std::string_view key, std::uint32_t number)
{
    json.key(key);
    if (number == 0)
        json.null();
    else
        json.number(std::size_t{number});
}

std::string remarkOf(const ReportedDifference& one)
{
    std::string remark;
    const auto add
        = [&remark](const std::string& word) { remark += (remark.empty() ? "" : " ") + word; };
    if (one.difference.kind != ObjectDifference::Kind::isChanged)
        return remark;
    for (const std::string& key : one.entries)
        add(key);
    if (one.entries.empty() && one.difference.hasOtherEntries)
        add("value");
    if (one.difference.hasOtherData)
        add("stream");
    return remark;
}

} // namespace

std::map<std::string, std::string> entriesOf(std::string_view text)
{
    std::map<std::string, std::string> entries;
    if (!text.starts_with("<<")) {
        entries[""] = text;
        return entries;
    }
    std::string* entry = nullptr;
    for (std::size_t begin = text.find('\n'); begin != std::string_view::npos;) {
        const std::size_t end = text.find('\n', begin + 1);
        const std::string_view line
            = text.substr(begin + 1, end == std::string_view::npos ? end : end - begin - 1);
        begin = end;
        const bool isOwn
            = line.starts_with(indent) && line.size() > indent.size() && line[indent.size()] == '/';
        if (isOwn) {
            const std::size_t space = line.find(' ', indent.size());
            entry = &entries[std::string(line.substr(indent.size(), space - indent.size()))];
        }
        if (entry && line.starts_with(indent))
            entry->append(line).push_back('\n');
    }
    return entries;
}

std::string withNumbers(
    std::string_view text, const std::map<std::uint32_t, std::uint32_t>& partners)
{
    std::string other;
    std::size_t place = 0;
    for (const ScannedReference& one : ReferenceScan::inSource(text, 0, text.size())) {
        const auto partner = partners.find(static_cast<std::uint32_t>(one.objNo));
        if (partner == partners.end())
            continue;
        other += std::string(text.substr(place, one.begin - place))
            + std::to_string(partner->second) + " 0 R";
        place = one.end;
    }
    return other.append(text.substr(place));
}

std::vector<std::string> differingEntries(std::string_view before, std::string_view after,
    const std::map<std::uint32_t, std::uint32_t>& partners, bool isStream)
{
    std::map<std::string, std::string> here = entriesOf(withNumbers(before, partners));
    std::map<std::string, std::string> there = entriesOf(after);
    for (const char* key : {"/Length", "/Filter", "/DecodeParms", "/DL"}) {
        if (isStream) {
            here.erase(key);
            there.erase(key);
        }
    }
    std::vector<std::string> keys;
    for (const auto& [key, value] : here) {
        const auto other = there.find(key);
        if (!key.empty() && (other == there.end() || other->second != value))
            keys.push_back(key);
    }
    for (const auto& [key, value] : there) {
        if (!key.empty() && !here.contains(key))
            keys.push_back(key);
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

std::string linesOf(const std::vector<ReportedDifference>& differences)
{
    std::string text;
    for (const ReportedDifference& one : differences) {
        text += std::string(nameOf(one.difference.kind)) + '\t'
            + numberOrDash(one.difference.before) + '\t' + numberOrDash(one.difference.after) + '\t'
            + std::string(nameOf(one.difference.group)) + '\t' + remarkOf(one) + '\n';
    }
    return text;
}

void appendDifferences(const std::vector<ReportedDifference>& differences, JsonText& json)
{
    const bool isEqual = std::none_of(differences.begin(), differences.end(),
        [](const ReportedDifference& one) { return isDifference(one.difference.kind); });
    json.key("equal").boolean(isEqual).key("objects").open('[');
    for (const ReportedDifference& one : differences) {
        json.open('{').key("change").string(nameOf(one.difference.kind));
        appendNumber(json, "before", one.difference.before);
        appendNumber(json, "after", one.difference.after);
        json.key("group").string(nameOf(one.difference.group));
        json.key("entries").open('[');
        for (const std::string& key : one.entries)
            json.string(key);
        json.close(']')
            .key("stream")
            .boolean(one.difference.hasOtherData
                && one.difference.kind == ObjectDifference::Kind::isChanged)
            .close('}');
    }
    json.close(']');
}

} // namespace tarnwick
