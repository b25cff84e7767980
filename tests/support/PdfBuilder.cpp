#include "support/PdfBuilder.h"

#include <cstdio>

namespace tarnwick {

namespace {

std::string reference(int number)
{
    return std::to_string(number) + " 0 R";
}

std::string indirect(int number, const std::string& body)
{
    return std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
}

std::string tableRow(std::size_t offset, int generation, char kind)
{
    char row[24];
    std::snprintf(row, sizeof row, "%010zu %05d %c \n", offset, generation, kind);
    return row;
}

std::string bigEndian(std::size_t number, int bytes)
{
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        text += static_cast<char>((number >> shift) & 0xff);
    return text;
}

/// Data for ASCIIHexDecode, which shows nothing of it to a reader of the file's bytes.
std::string hexadecimal(const std::string& data)
{
    std::string text;
    for (const char byte : data) {
        text += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text + '>';
}

bool isStream(const std::string& body)
{
    return body.find("\nstream\n") != std::string::npos;
}

} // namespace

PdfBuilder::PdfBuilder()
    : theObjects{"", "", "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"}
{
}

PdfBuilder& PdfBuilder::setVersion(const std::string& version)
{
    theVersion = version;
    return *this;
}

PdfBuilder& PdfBuilder::setXref(Xref kind)
{
    theXref = kind;
    return *this;
}

PdfBuilder& PdfBuilder::setCatalogEntries(const std::string& entries)
{
    theCatalogEntries = entries;
    return *this;
}

PdfBuilder& PdfBuilder::setInfo(const std::string& dictionary)
{
    theInfo = addObject(dictionary);
    return *this;
}

PdfBuilder& PdfBuilder::addPage(const std::string& text, const std::string& entries)
{
    std::string content = "BT /F1 12 Tf 14 TL 72 720 Td (";
    for (const char one : text) {
        if (one == '\n')
            content += ") Tj T* (";
        else if (one == '(' || one == ')' || one == '\\')
            content += std::string("\\") + one;
        else
            content += one;
    }
    return addDrawing(content + ") Tj ET", entries);
}

PdfBuilder& PdfBuilder::addDrawing(const std::string& content, const std::string& entries)
{
    theLastContents = addStream(content);
    addPageObject(theLastContents, entries);
    return *this;
}

PdfBuilder& PdfBuilder::addSharedPage(const std::string& entries)
{
    addPageObject(theLastContents, entries);
    return *this;
}

void PdfBuilder::addPageObject(int contents, const std::string& entries)
{
    std::string page = "<< /Type /Page /Parent 2 0 R ";
    if (entries.find("/MediaBox") == std::string::npos)
        page += "/MediaBox [ 0 0 612 792 ] ";
    if (entries.find("/Resources") == std::string::npos)
        page += "/Resources << /Font << /F1 3 0 R >> >> ";
    if (entries.find("/Contents [") == std::string::npos)
        page += "/Contents " + reference(contents) + " ";
    thePages.push_back(addObject(page + entries + " >>"));
}

int PdfBuilder::addObject(const std::string& body)
{
    theObjects.push_back(body);
    return static_cast<int>(theObjects.size());
}

int PdfBuilder::addStream(const std::string& data, const std::string& entries)
{
    return addObject("<< /Length " + std::to_string(data.size()) + " " + entries + " >>\nstream\n"
        + data + "\nendstream");
}

PdfBuilder& PdfBuilder::addUpdate(int number, const std::string& body)
{
    theUpdates.emplace_back(number, body);
    return *this;
}

std::string PdfBuilder::body(int number) const
{
    if (number == 1)
        return "<< /Type /Catalog /Pages 2 0 R " + theCatalogEntries + " >>";
    if (number != 2)
        return theObjects.at(static_cast<std::size_t>(number) - 1);
    std::string kids;
    for (const int page : thePages)
        kids += reference(page) + " ";
    return "<< /Type /Pages /Kids [ " + kids + "] /Count " + std::to_string(thePages.size())
        + " >>";
}

std::string PdfBuilder::trailerEntries() const
{
    return "/Root 1 0 R" + (theInfo > 0 ? " /Info " + reference(theInfo) : std::string());
}

void PdfBuilder::writeTable(std::string& file, const std::map<int, std::size_t>& offsets) const
{
    const std::size_t start = file.size();
    const int size = static_cast<int>(theObjects.size()) + 1;
    file += "xref\n0 " + std::to_string(size) + "\n" + tableRow(0, 65535, 'f');
    for (int number = 1; number < size; ++number)
        file += tableRow(offsets.at(number), 0, 'n');
    file += "trailer\n<< /Size " + std::to_string(size) + " " + trailerEntries()
        + " >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
}

/// Object stream (ISO 32000-2, 7.5.7) of what may stand in one. @param[out] numbers its objects.
std::string PdfBuilder::objectStream(std::vector<int>& numbers) const
{
    std::string head;
    std::string bodies;
    for (int number = 1; number <= static_cast<int>(theObjects.size()); ++number) {
        if (isStream(body(number)))
            continue;
        head += std::to_string(number) + " " + std::to_string(bodies.size()) + " ";
        bodies += body(number) + "\n";
        numbers.push_back(number);
    }
    const std::string data = hexadecimal(head + bodies);
    return "<< /Type /ObjStm /N " + std::to_string(numbers.size()) + " /First "
        + std::to_string(head.size()) + " /Filter /ASCIIHexDecode /Length "
        + std::to_string(data.size()) + " >>\nstream\n" + data + "\nendstream";
}

void PdfBuilder::writeXrefStream(std::string& file, std::map<int, std::size_t> offsets) const
{
    const int objects = static_cast<int>(theObjects.size());
    std::vector<int> packed;
    const std::string stream = objectStream(packed);
    offsets[objects + 1] = file.size();
    file += indirect(objects + 1, stream);
    offsets[objects + 2] = file.size();
    std::string rows = bigEndian(0, 1) + bigEndian(0, 4) + bigEndian(65535, 2);
    std::size_t place = 0;
    for (int number = 1; number <= objects + 2; ++number) {
        const bool isPacked = place < packed.size() && packed[place] == number;
        rows += bigEndian(isPacked ? 2 : 1, 1);
        rows += bigEndian(isPacked ? static_cast<std::size_t>(objects) + 1 : offsets.at(number), 4);
        rows += bigEndian(isPacked ? place++ : 0, 2);
    }
    const std::size_t start = file.size();
    file += indirect(objects + 2,
        "<< /Type /XRef /Size " + std::to_string(objects + 3) + " /W [ 1 4 2 ] " + trailerEntries()
            + " /Length " + std::to_string(rows.size()) + " >>\nstream\n" + rows + "\nendstream");
    file += "startxref\n" + std::to_string(start) + "\n%%EOF\n";
}

std::string PdfBuilder::bytes() const
{
    std::string file = "%PDF-" + theVersion + "\n%\xe2\xe3\xcf\xd3\n";
    std::map<int, std::size_t> offsets;
    for (int number = 1; number <= static_cast<int>(theObjects.size()); ++number) {
        if (theXref == Xref::isStream && !isStream(body(number)))
            continue;
        offsets[number] = file.size();
        file += indirect(number, body(number));
    }
    if (theXref == Xref::isTable)
        writeTable(file, offsets);
    else
        writeXrefStream(file, offsets);
    const std::string size = std::to_string(theObjects.size() + (theXref == Xref::isTable ? 1 : 3));
    for (const auto& [number, body] : theUpdates) {
        const std::size_t previous = file.rfind("startxref\n") + 10;
        const std::string before = file.substr(previous, file.find('\n', previous) - previous);
        const std::size_t offset = file.size();
        file += indirect(number, body);
        const std::size_t start = file.size();
        file += "xref\n" + std::to_string(number) + " 1\n" + tableRow(offset, 0, 'n')
            + "trailer\n<< /Size " + size + " " + trailerEntries() + " /Prev " + before
            + " >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
    }
    return file;
}

} // namespace tarnwick
