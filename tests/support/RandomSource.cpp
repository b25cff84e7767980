#include "support/RandomSource.h"

#include <array>
#include <random>
#include <vector>

namespace tarnwick {

namespace randomSource {
namespace {

using namespace std::string_literals;

using Table = std::vector<std::string>;

const Table keywords{"endstream", "stream", "endobj", "obj", "%%EOF", "startxref", "xref",
    "trailer", "/XML", "/FlateDecode", "/Type", "/Catalog", "/Pages", "/Page", "/Info", "/Names",
    "/Kids", "/Parent", "/Count", "/Contents", "/Metadata", "/Root", "/Size", "[", "]", "R", "<<",
    ">>", "/"};

const Table numbers{"0", "1", "2", "3", "12", "007", "+5", "-3", "-0", "+0", "+", "-", "--1", "+-1",
    "1.5", "1e3", "0x1", "9223372036854775807", "9223372036854775808", "-9223372036854775808",
    "-9223372036854775809", "+9223372036854775807", "00000000000000000000000000012",
    "99999999999999999999", "8000000", "8000001", "9000000", "18446744073709551617", "[3", "[-1",
    "3]", "2>>"};

const Table lineEnds{"\n", "\n", "\n", "\r\n", "\r", "\v", "\f", "\x85", "\n\n"};

const Table spaces{" ", " ", " ", "  ", "\t", "\xA0", "\0"s, " \xA0\t ", "\x1C"};

const Table lines{"12 0 obj", "1 0 obj", "2 1 obj", "-3 0 obj", "8000001 0 obj",
    "5 0 obj<</Type/Page/Parent 3 0 R>>", "7  0 obj", "x 0 obj", "obj", "endobj", "endobj",
    "endobj 4 0 obj", "stream", "endstream", "endstream endobj", "<</Length 5>>stream",
    "<</Subtype/XML>>", "<</Type/Metadata/Subtype/XML/Length 9>>",
    "<</Subtype/XML/Filter/FlateDecode>>stream", "<</Subtype/XML>>stream", "%%EOF", "a%%EOFb",
    "startxref", "startxref obj", "400", "xref", "0000000000 65535 f", "trailer",
    "trailer <</Size 6/Root 1 0 R>>", "<< /Size 22 /Root 1 0 R /Info 5 0 R /ID [<ab> <cd>] >>",
    "<< /Size 22>>", "<< /Type /Catalog /Pages 2 0 R /Names << /Dests 7 0 R >> >>",
    "<</Type/Catalog/Pages 2 0 R/Metadata 5 0 R>>", "/Pages  2 0 R", "/Pages\t2 0 R",
    "/Names 6 0 R ", "<< /Type /Pages /Kids [ 3 0 R 4 0 R ] /Count 2 /Parent 1 0 R >>",
    "<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2>>", "/Kids [3 R]", "/Kids [3 0 5 R]", "/Kids []",
    "/Kids [", "3 0 R", "4 0 R ]", "/Count 5 0 R", "<< /Type /Page /Parent 2 0 R",
    "/Contents 4 0 R /StructParents 0 >>", "/Contents [4 0 R 5 0 R]", "/Type /Names",
    "/Type /Annot /Info 7 0 R", "/Type", "/Catalog", "/Subject (an object)", "", " ", "\t\xA0"};

const Table bodies{"<< /Type /Catalog /Pages 2 0 R /Metadata 5 0 R >>",
    "<< /Type /Pages\n/Kids [ 3 0 R 4 0 R ]\n/Count 2\n>>",
    "<< /Length 9 >>\nstream\nBT ET q Q\nendstream",
    "<< /Length 9 >>stream\r\nB\r\n\r\nT\r\nendstream",
    "<</Type/Metadata/Subtype/XML/Length 20>>\nstream\n<x>\n\n obj </x>\nendstream",
    "<</Type/XRef/Size 7/Root 1 0 R/Length 4>>\nstream\n%%EOF\nendstream"};

/// Word, block and page sizes: where a scan in blocks changes over.
const std::array<std::size_t, 6> blockSizes{8, 16, 32, 64, 128, 4096};

class Maker
{
public:
    explicit Maker(std::uint64_t seed)
        : engine(seed)
    {
    }

    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine() % limit); }
    bool onceIn(std::size_t times) { return below(times) == 0; }

    const std::string& of(const Table& table) { return table[below(table.size())]; }

    /// A keyword that lacks its ends, follows a piece of itself, or is in capitals.
    std::string nearlyKeyword()
    {
        std::string word = of(keywords);
        const std::string piece = word.substr(below(word.size()), 1 + below(word.size()));
        if (onceIn(8))
            word[below(word.size())] ^= 0x20;
        return onceIn(2) ? piece : piece + word;
    }

    /// Filler that ends within a few bytes of a block's border.
    std::string filler()
    {
        const std::size_t size = blockSizes[below(blockSizes.size())] - 6 + below(12);
        const std::string alphabet = of({"s", "m", "o", "e", "x", "jbo", "%"});
        std::string text;
        while (text.size() < size)
            text += alphabet[text.size() % alphabet.size()];
        return text;
    }

    std::string junk()
    {
        std::string text;
        for (std::size_t count = below(20); count > 0; --count)
            text += static_cast<char>(static_cast<unsigned char>(below(256)));
        return text;
    }

    std::string fragment()
    {
        static const std::array tables{&keywords, &keywords, &numbers, &spaces};
        switch (below(10)) {
        case 0:
            return onceIn(4) ? junk() : of(lines);
        case 1:
            return onceIn(6) ? filler() : of(spaces);
        case 2:
            return of(lineEnds);
        case 3:
            return nearlyKeyword();
        default:
            return of(*tables[below(tables.size())]);
        }
    }

    /// A header, a count, a reference or an array of kids with numbers of every sort.
    std::string numberedLine()
    {
        static const Table keys{"/Count", "/Size", "/Pages", "/Parent", "/Root"};
        std::string text = onceIn(2) ? of(numbers) : of(keys) + ' ' + of(numbers);
        if (onceIn(3))
            text = onceIn(2) ? "/Kids [" : "/Kids [ ";
        for (std::size_t count = below(5) + 1; count > 0; --count)
            text += (onceIn(9) ? of(spaces) : " "s) + (onceIn(3) ? "R"s : of(numbers));
        return onceIn(2) ? of(numbers) + ' ' + of(numbers) + " obj" : text + " R ]";
    }

    std::string someLines(std::size_t count)
    {
        const bool mixesLineEnds = onceIn(2);
        const std::string usualEnd = of(lineEnds);
        std::string text;
        for (; count > 0; --count) {
            if (onceIn(12))
                text += onceIn(2) ? of(spaces) : filler();
            text += onceIn(15) ? fragment() : std::string();
            text += onceIn(6) ? numberedLine() : of(lines);
            text += mixesLineEnds ? of(lineEnds) : usualEnd;
        }
        return text;
    }

    std::string file()
    {
        std::string text = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
        for (std::size_t save = below(4) + 1; save > 0; --save) {
            for (std::size_t count = below(8); count > 0; --count)
                text += std::to_string(below(12)) + " 0 obj\n" + (onceIn(8) ? filler() : of(bodies))
                    + "\nendobj\n";
            if (onceIn(3))
                text += "startxref\n116\n%%EOF\n";
            else
                text += "xref\n0 2\n0000000000 65535 f \n0000000015 00000 n \ntrailer\n"
                        "<< /Size 7 /Root 1 0 R /Info 6 0 R >>\nstartxref\n400\n%%EOF\n";
        }
        return text;
    }

    void damage(std::string& text)
    {
        const std::size_t place = below(text.size() + 1);
        if (onceIn(6))
            text.resize(place);
        else if (onceIn(3) && place < text.size())
            text[place] = static_cast<char>(text[place] ^ (1 << below(8)));
        else
            text.replace(place, onceIn(2) ? below(30) : 0,
                onceIn(3) ? text.substr(below(text.size() + 1), below(300)) : fragment());
    }

private:
    std::mt19937_64 engine;
};

} // namespace

std::string soup(std::uint64_t seed)
{
    Maker maker(seed);
    std::string text;
    for (std::size_t count = maker.below(160); count > 0; --count)
        text += maker.fragment();
    return text;
}

std::string shuffledLines(std::uint64_t seed)
{
    Maker maker(seed);
    return maker.someLines(maker.below(60));
}

std::string damagedFile(std::uint64_t seed)
{
    Maker maker(seed);
    std::string text = maker.file();
    if (maker.onceIn(4)) {
        const std::string end = maker.of(lineEnds);
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size())
            text.replace(at, 1, end);
    }
    for (std::size_t count = maker.below(8); count > 0; --count)
        maker.damage(text);
    return text;
}

} // namespace randomSource

} // namespace tarnwick
