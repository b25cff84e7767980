#include "SavedFile.h"

#include <algorithm>
#include <cstdio>

namespace tarnwick {

namespace {

std::string bigEndian(std::size_t number, int bytes)
{
    std::string text;
    while (bytes-- > 0)
        text += static_cast<char>(number >> 8 * bytes);
    return text;
}

std::string stream(const std::string& entries, const std::string& data)
{
    return "<< " + entries + " /Length " + std::to_string(data.size()) + " >>\nstream\n" + data
        + "\nendstream";
}

} // namespace

SavedFile::SavedFile(std::string start)
    : theBytes(std::move(start))
    , theStart(std::stoul(theBytes.substr(theBytes.rfind("startxref\n") + 10)))
{
}

SavedFile& SavedFile::row(int number, int use, std::size_t place, int detail)
{
    theRows.push_back({number, use, place, detail});
    return *this;
}

SavedFile& SavedFile::object(int number, const std::string& body, int generation)
{
    row(number, 1, theBytes.size(), generation);
    return raw(
        std::to_string(number) + ' ' + std::to_string(generation) + " obj\n" + body + "\nendobj\n");
}

SavedFile& SavedFile::packed(int container, const std::vector<std::pair<int, std::string>>& objects)
{
    std::string head;
    std::string bodies;
    for (const auto& [number, body] : objects) {
        row(number, 2, static_cast<std::size_t>(container),
            static_cast<int>(std::count(head.begin(), head.end(), ' ') / 2));
        head += std::to_string(number) + ' ' + std::to_string(bodies.size()) + ' ';
        bodies += body + '\n';
    }
    return object(container,
        stream("/Type /ObjStm /N " + std::to_string(objects.size()) + " /First "
                + std::to_string(head.size()),
            head + bodies));
}

SavedFile& SavedFile::freed(int number, int generation)
{
    return row(number, 0, 0, generation);
}

SavedFile& SavedFile::raw(const std::string& bytes)
{
    theBytes += bytes;
    return *this;
}

std::string SavedFile::streamObject(const std::vector<Row>& rows, const std::string& entries) const
{
    std::string data;
    std::string index;
    for (const Row& row : rows) {
        data += bigEndian(static_cast<std::size_t>(row.use), 1) + bigEndian(row.place, 4)
            + bigEndian(static_cast<std::size_t>(row.detail), 2);
        index += std::to_string(row.number) + " 1 ";
    }
    return "90 0 obj\n"
        + stream("/Type /XRef /W [ 1 4 2 ] /Index [ " + index + "] " + entries, data)
        + "\nendobj\n";
}

std::string SavedFile::table(const std::vector<Row>& rows) const
{
    std::string text = "xref\n" + std::string(rows.empty() ? "0 0\n" : "");
    for (const Row& row : rows) {
        char line[64];
        std::snprintf(line, sizeof line, "%d 1\n%010zu %05d %c \n", row.number,
            row.use == 1 ? row.place : 0, row.use == 2 ? 0 : row.detail, row.use == 1 ? 'n' : 'f');
        text += line;
    }
    return text;
}

SavedFile& SavedFile::save(Form form, std::optional<std::int64_t> prev, const std::string& trailer)
{
    const std::int64_t before = prev.value_or(static_cast<std::int64_t>(theStart));
    std::string entries = "/Size 91 /Root 1 0 R " + trailer;
    if (before >= 0)
        entries += " /Prev " + std::to_string(before);
    std::vector<Row> packed;
    std::copy_if(theRows.begin(), theRows.end(), std::back_inserter(packed),
        [](const Row& row) { return row.use == 2; });
    if (form == Form::isHybrid) {
        entries += " /XRefStm " + std::to_string(theBytes.size());
        raw(streamObject(packed, "/Size 91"));
    }
    theStart = theBytes.size();
    if (form == Form::isStream)
        raw(streamObject(theRows, entries));
    else
        raw(table(theRows) + "trailer\n<< " + entries + " >>\n");
    theRows.clear();
    return raw("startxref\n" + std::to_string(theStart) + "\n%%EOF\n");
}

} // namespace tarnwick
