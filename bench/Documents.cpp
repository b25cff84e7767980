#include "Documents.h"

#include <array>
#include <string>

namespace tarnwick {

namespace documents {
namespace {

/// Writes objects and remembers where each begins, for the cross-reference table.
class Writer
{
public:
    explicit Writer(const shapes::Sink& sink)
        : theSink(sink)
    {
        put("%PDF-1.7\n%\xE2\xE3\xCF\xD3\n");
    }

    void object(const std::string& body)
    {
        theOffsets.push_back(theLength);
        put(std::to_string(theOffsets.size()) + " 0 obj\n" + body + "\nendobj\n");
    }

    void finish()
    {
        const std::size_t start = theLength;
        const std::string size = std::to_string(theOffsets.size() + 1);
        std::string text = "xref\n0 " + size + "\n0000000000 65535 f \n";
        for (const std::size_t offset : theOffsets) {
            const std::string digits = std::to_string(offset);
            text += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
        }
        put(text + "trailer\n<< /Size " + size + " /Root 1 0 R >>\nstartxref\n"
            + std::to_string(start) + "\n%%EOF\n");
    }

private:
    void put(const std::string& text)
    {
        theSink(text);
        theLength += text.size();
    }

    const shapes::Sink& theSink;
    std::vector<std::size_t> theOffsets;
    std::size_t theLength = 0;
};

std::string sentence(std::size_t& word, std::size_t words)
{
    static constexpr std::array vocabulary{"the", "valve", "opens", "when", "pressure", "falls",
        "below", "its", "limit", "and", "a", "lamp", "shows", "that", "supply", "is", "on",
        "before", "service", "turn", "handle", "to", "stop", "check", "seals", "for", "wear"};
    std::string text;
    for (; words > 0; --words) {
        word = word * 31 + 7;
        text += vocabulary[word % vocabulary.size()];
        text += words > 1 ? ' ' : '.';
    }
    return text;
}

std::string contents(std::size_t page, std::size_t lines, std::size_t words, std::size_t leading)
{
    std::size_t word = page;
    std::string text = "BT /F1 16 Tf 72 760 Td (Chapter " + std::to_string(page) + ") Tj\n/F1 "
        + std::to_string(leading - 2) + " Tf " + std::to_string(leading) + " TL 0 -30 Td\n";
    for (std::size_t line = 0; line < lines; ++line)
        text.append("(").append(sentence(word, words)).append(") Tj T*\n");
    text += "ET\n0.2 0.4 0.8 rg 72 60 200 20 re f\n1 0 0 RG 72 60 m 300 90 l S\n";
    return "<< /Length " + std::to_string(text.size()) + " >>\nstream\n" + text + "endstream";
}

void write(std::size_t pages, std::size_t lines, std::size_t words, std::size_t leading,
    const shapes::Sink& sink)
{
    Writer writer(sink);
    writer.object("<< /Type /Catalog /Pages 2 0 R >>");
    std::string kids;
    for (std::size_t page = 0; page < pages; ++page)
        kids += std::to_string(4 + 2 * page) + " 0 R ";
    writer.object("<< /Type /Pages /Count " + std::to_string(pages) + " /Kids [ " + kids + "] >>");
    writer.object("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>");
    for (std::size_t page = 0; page < pages; ++page) {
        writer.object("<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 595 842 ] /Resources "
                      "<< /Font << /F1 3 0 R >> >> /Contents "
            + std::to_string(5 + 2 * page) + " 0 R >>");
        writer.object(contents(page + 1, lines, words, leading));
    }
    writer.finish();
}

} // namespace

void writeManual(std::size_t pages, const shapes::Sink& sink)
{
    write(pages, 24, 9, 14, sink);
}

void writeBook(std::size_t pages, const shapes::Sink& sink)
{
    write(pages, 68, 16, 9, sink);
}

} // namespace documents

} // namespace tarnwick
