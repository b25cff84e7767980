#include "support/PlainAnalysis.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <utility>

namespace tarnwick {

namespace plain {
namespace {

using Lines = std::vector<std::string>;

bool holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

Lines cutAtEvery(const std::string& separators, const std::string& text)
{
    Lines pieces(1);
    for (const char character : text) {
        if (holds(separators, std::string(1, character)))
            pieces.emplace_back();
        else
            pieces.back() += character;
    }
    return pieces;
}

std::string trimmed(std::string line)
{
    const std::string white = " \xA0\t\n\v\f\r\x85";
    while (!line.empty() && holds(white, line.substr(0, 1)))
        line.erase(0, 1);
    while (!line.empty() && holds(white, line.substr(line.size() - 1)))
        line.pop_back();
    return line;
}

std::optional<std::int64_t> decimalInteger(const std::string& token)
{
    const bool isSigned = !token.empty() && (token[0] == '+' || token[0] == '-');
    const std::string digits = token.substr(isSigned ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    errno = 0;
    const long long number = std::strtoll(token.c_str(), nullptr, 10);
    return errno == 0 ? std::optional<std::int64_t>(number) : std::nullopt;
}

std::u16string wide(const std::string& bytes)
{
    std::u16string characters;
    for (const char byte : bytes)
        characters += static_cast<char16_t>(static_cast<unsigned char>(byte));
    return characters;
}

enum class Kind
{
    catalog,
    pages,
    page,
    info,
    names,
    trailer,
    plain
};

struct Reference
{
    std::int64_t number;
    std::int64_t generation;
    std::int64_t version;
};

struct Record
{
    Lines lines;
    std::int64_t number = 0;
    std::int64_t generation = 0;
    std::int64_t version = 1;
    Kind kind = Kind::plain;
    std::map<std::string, Reference> links;
    std::vector<Reference> children;
    std::int64_t count = 0; ///< Count or Size
    std::string text;
};

Kind kindOf(const Record& record)
{
    if (record.number >= 8000001)
        return Kind::trailer;
    static const std::vector<std::pair<std::string, Kind>> names{{"/Catalog", Kind::catalog},
        {"/Pages", Kind::pages}, {"/Page", Kind::page}, {"/Info", Kind::info},
        {"/Names", Kind::names}};
    Kind kind = Kind::plain;
    for (const std::string& line : record.lines) {
        const auto name = std::find_if(names.begin(), names.end(),
            [&line](const auto& one) { return holds(line, one.first); });
        if (holds(line, "/Type") && name != names.end())
            kind = name->second;
    }
    return kind;
}

Record recordOf(const Lines& lines, std::int64_t version)
{
    Record record;
    record.lines = lines;
    if (lines.empty())
        return record;
    const Lines header = cutAtEvery(" ", lines[0]);
    if (header.size() >= 3) {
        record.number = decimalInteger(header[0]).value_or(0);
        record.generation = decimalInteger(header[1]).value_or(0);
    }
    record.version = version;
    record.kind = kindOf(record);
    return record;
}

Reference referenceIn(const std::string& piece, std::int64_t version)
{
    const Lines tokens = cutAtEvery(" ", piece);
    if (tokens.size() < 4)
        return {0, 0, 0};
    return {decimalInteger(tokens[1]).value_or(0), decimalInteger(tokens[2]).value_or(0), version};
}

std::int64_t countIn(const std::string& piece)
{
    const Lines tokens = cutAtEvery(" ", piece);
    return tokens.size() < 2 ? 0 : decimalInteger(tokens[1]).value_or(0);
}

void readKids(Record& record, const std::string& piece)
{
    const Lines tokens = cutAtEvery(" ", piece);
    if (tokens.size() < 3)
        return;
    std::int64_t first = 0;
    std::int64_t second = 0;
    bool hasFirst = false;
    for (const std::string& token : tokens) {
        if (holds(token, "[")) {
            if (token.size() < 2)
                continue;
            if (const auto number = decimalInteger(token.substr(1))) {
                first = *number;
                hasFirst = true;
            }
        } else if (holds(token, "R")) {
            record.children.push_back({first, second, record.version});
            first = second = 0;
            hasFirst = false;
        } else if (holds(token, "]")) {
            continue;
        } else if (const auto number = decimalInteger(token)) {
            (hasFirst ? second : first) = *number;
            hasFirst = true;
        }
    }
}

/// The keys that the kinds read, in the order in which a piece is searched for them.
const std::map<Kind, Lines> keys{
    {Kind::catalog, {"Pages", "Metadata", "Names"}},
    {Kind::pages, {"Kids", "Parent", "Count"}},
    {Kind::page, {"Parent", "Content"}},
    {Kind::trailer, {"Info", "Root", "Size"}},
};

void readPiece(Record& record, const std::string& piece)
{
    for (const std::string& key : keys.at(record.kind)) {
        if (!holds(piece, key))
            continue;
        if (key == "Kids")
            readKids(record, piece);
        else if (key == "Count" || key == "Size")
            record.count = countIn(piece);
        else
            record.links[key] = referenceIn(piece, record.version);
        return;
    }
}

void readDictionary(Record& record)
{
    if (record.lines.size() < 2)
        return;
    if (!keys.contains(record.kind)) {
        record.text = record.lines[1];
        return;
    }
    std::string joined = record.lines[0];
    for (std::size_t index = 1; index < record.lines.size(); ++index)
        joined += ' ' + record.lines[index];
    for (const std::string& piece : cutAtEvery("/", joined))
        readPiece(record, piece);
}

std::string shown(const Reference& reference)
{
    return '(' + std::to_string(reference.number) + ", " + std::to_string(reference.generation)
        + ", " + std::to_string(reference.version) + ')';
}

std::string shownKids(const Record& record)
{
    std::string text;
    for (const Reference& child : record.children)
        text += (text.empty() ? "" : ", ") + shown(child);
    return '[' + text + ']';
}

ColouredText described(const Record& record)
{
    const auto link = [&record](const std::string& name) {
        const auto entry = record.links.find(name);
        return entry == record.links.end() ? "" : ", " + name + ' ' + shown(entry->second);
    };
    const std::string version = std::to_string(record.version);
    const std::string count = std::to_string(record.count);
    const std::string head
        = std::to_string(record.number) + ' ' + std::to_string(record.generation) + ' ' + version;
    const auto line = [](char role, const std::string& text, const char16_t* end = u"\n") {
        return ColouredText{role, wide(text) + end};
    };
    switch (record.kind) {
    case Kind::catalog:
        return line('r', head + " Catalog" + link("Pages") + link("Metadata") + link("Names"));
    case Kind::pages:
        return line('g',
            head + " Pages" + link("Parent") + ", Page count " + count + ", Kids "
                + shownKids(record));
    case Kind::page:
        return line('d', head + " Page" + link("Parent") + link("Content"));
    case Kind::info:
        return line('g', head + " Info " + record.text);
    case Kind::names:
        return line('g', head + " Names " + record.text);
    case Kind::trailer:
        return line(
            'r', "Trailer " + version + ' ' + link("Root") + link("Info") + ", Size " + count);
    case Kind::plain:
        break;
    }
    if (record.text.size() < 121)
        return line('b', head + ' ' + record.text);
    return line('b', head + ' ' + record.text.substr(0, 120), u"\u2026\n");
}

/// The twelve steps of the scan, one line after the other.
class Scan
{
public:
    void take(const std::string& line)
    {
        if (holds(line, "endstream")) {
            if (!inXml) {
                if (streamLength > 0)
                    --streamLength;
                pieces.push_back({'b',
                    u"[\u2026stream length " + wide(std::to_string(streamLength)) + u"\u2026]\n"});
            }
            inStream = inXml = false;
        } else if (holds(line, "stream") && !holds(line, "/XML")) {
            streamLength = 0;
            inStream = true;
        } else if (inStream && !inXml) {
            streamLength += static_cast<std::int64_t>(line.size()) + 1;
        } else if (!trimmed(line).empty()) {
            takeSyntax(trimmed(line));
        }
    }

    std::vector<ColouredText> pieces;
    std::vector<Record> records;

private:
    void takeSyntax(const std::string& line)
    {
        if (holds(line, "endobj")) {
            append('r', line + "\n\n");
            addRecord();
        } else if (holds(line, "obj")) {
            append('d', line + '\n');
            current = {line};
        } else if (holds(line, "%%EOF")) {
            append('r', line + "\n\n");
            ++version;
        } else if (holds(line, "startxref")) {
            append('d', '\n' + line + '\n');
            addRecord();
        } else if (holds(line, "xref")) {
            append('d', '\n' + line + '\n');
        } else if (holds(line, "trailer")) {
            append('d', '\n' + line + '\n');
            current = {"8000001 0 obj"};
        } else {
            append('g', line + '\n');
            current.push_back(line);
            if (holds(line, "/XML") && !holds(line, "/FlateDecode"))
                inXml = true;
        }
    }

    void append(char role, const std::string& text) { pieces.push_back({role, wide(text)}); }

    void addRecord()
    {
        if (current.empty())
            return;
        records.push_back(recordOf(current, version));
        readDictionary(records.back());
    }

    Lines current;
    std::int64_t version = 1;
    std::int64_t streamLength = 0;
    bool inStream = false;
    bool inXml = false;
};

std::string summaryOf(const std::vector<Record>& records)
{
    const auto count = [&](Kind kind) {
        return std::to_string(std::count_if(records.begin(), records.end(),
            [kind](const Record& record) { return record.kind == kind; }));
    };
    std::int64_t maximum = 0;
    for (const Record& record : records)
        maximum = std::max(maximum, record.version);
    return "contains " + std::to_string(records.size()) + " objects, consisting of:\n"
        + count(Kind::page) + " pages\n" + count(Kind::catalog) + " catalogs, " + count(Kind::info)
        + " info objects, " + count(Kind::trailer)
        + " trailers.\nMaximum version = " + std::to_string(maximum);
}

} // namespace

Analysis analyse(const std::string& bytes)
{
    Scan scan;
    for (const std::string& line : cutAtEvery("\n\v\f\r\x85", bytes))
        scan.take(line);

    Analysis analysis;
    analysis.listing = scan.pieces;
    analysis.summary = summaryOf(scan.records);
    std::stable_sort(
        scan.records.begin(), scan.records.end(), [](const Record& left, const Record& right) {
            return left.version != right.version ? left.version < right.version
                                                 : left.number < right.number;
        });
    for (const Record& record : scan.records)
        analysis.objectList.push_back(described(record));
    return analysis;
}

std::vector<std::size_t> cuts(const std::string& bytes)
{
    std::vector<std::size_t> result;
    std::size_t marker = bytes.find("%%EOF");
    while (marker != std::string::npos) {
        result.push_back(std::min(bytes.size(), marker + 6));
        marker = bytes.find("%%EOF", marker + 6);
    }
    return result;
}

} // namespace plain

} // namespace tarnwick
