#include "support/RandomSource.h"

#include <array>
#include <random>

namespace randomSource {
namespace {

using namespace std::string_literals;

const std::array keywords{"endstream"s, "stream"s, "endobj"s, "obj"s, "%%EOF"s, "startxref"s,
    "xref"s, "trailer"s, "/XML"s, "/FlateDecode"s, "/Type"s, "/Catalog"s, "/Pages"s, "/Page"s,
    "/Info"s, "/Names"s, "/Kids"s, "/Parent"s, "/Count"s, "/Contents"s, "/Metadata"s, "/Root"s,
    "/Size"s, "["s, "]"s, "R"s, "<<"s, ">>"s, "/"s};

const std::array nearlyKeywords{"bj"s, "ob"s, "endob"s, "ndobj"s, "endstrea"s, "tream"s, "end"s,
    "s"s, "strea"s, "sstream"s, "enendobj"s, "oobj"s, "%%EO"s, "%EOF"s, "%%%EOF"s, "%%eof"s,
    "startxre"s, "xre"s, "xxref"s, "traile"s, "rtrailer"s, "/XM"s, "/xml"s, "/FlateDecod"s, "/Typ"s,
    "/TypeX"s, "/Cat"s, "Pages"s, "Page"s, "Kids"s, "Kid"s, "StructParents"s, "Content"s, "[R"s,
    "R]"s, "R>>"s, "]["s, "[["s, "[ "s, "OBJ"s, "Names"s, "Infos"s, "Sized"s, "Roots"s, "Counts"s};

const std::array numbers{"0"s, "1"s, "2"s, "3"s, "12"s, "007"s, "+5"s, "-3"s, "-0"s, "+0"s, "+"s,
    "-"s, "--1"s, "+-1"s, "1.5"s, "1e3"s, "0x1"s, "9223372036854775807"s, "9223372036854775808"s,
    "-9223372036854775808"s, "-9223372036854775809"s, "+9223372036854775807"s,
    "00000000000000000000000000012"s, "99999999999999999999"s, "8000000"s, "8000001"s, "9000000"s,
    "18446744073709551617"s, "[3"s, "[-1"s, "3]"s, "2>>"s};

const std::array lineEnds{"\n"s, "\n"s, "\n"s, "\r\n"s, "\r"s, "\v"s, "\f"s, "\x85"s, "\n\n"s};

const std::array spaces{" "s, " "s, " "s, "  "s, "\t"s, "\xA0"s, "\0"s, " \xA0\t "s, "\x1C"s};

const std::array lines{"12 0 obj"s, "1 0 obj"s, "2 1 obj"s, "-3 0 obj"s, "8000001 0 obj"s,
    "5 0 obj<</Type/Page/Parent 3 0 R>>"s, "7  0 obj"s, "x 0 obj"s, "obj"s, "endobj"s, "endobj"s,
    "endobj 4 0 obj"s, "stream"s, "endstream"s, "endstream endobj"s, "<</Length 5>>stream"s,
    "<</Subtype/XML>>"s, "<</Type/Metadata/Subtype/XML/Length 9>>"s,
    "<</Subtype/XML/Filter/FlateDecode>>stream"s, "<</Subtype/XML>>stream"s, "%%EOF"s, "a%%EOFb"s,
    "startxref"s, "startxref obj"s, "400"s, "xref"s, "0000000000 65535 f"s, "trailer"s,
    "trailer <</Size 6/Root 1 0 R>>"s, "<< /Size 22 /Root 1 0 R /Info 5 0 R /ID [<ab> <cd>] >>"s,
    "<< /Size 22>>"s, "<< /Type /Catalog /Pages 2 0 R /Names << /Dests 7 0 R >> >>"s,
    "<</Type/Catalog/Pages 2 0 R/Metadata 5 0 R>>"s, "/Pages  2 0 R"s, "/Pages\t2 0 R"s,
    "/Names 6 0 R "s, "<< /Type /Pages /Kids [ 3 0 R 4 0 R ] /Count 2 /Parent 1 0 R >>"s,
    "<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2>>"s, "/Kids [3 R]"s, "/Kids [3 0 5 R]"s, "/Kids []"s,
    "/Kids ["s, "3 0 R"s, "4 0 R ]"s, "/Count 5 0 R"s, "<< /Type /Page /Parent 2 0 R"s,
    "/Contents 4 0 R /StructParents 0 >>"s, "/Contents [4 0 R 5 0 R]"s, "/Type /Names"s,
    "/Type /Annot /Info 7 0 R"s, "/Type"s, "/Catalog"s, "/Subject (an object)"s, ""s, " "s,
    "\t\xA0"s};

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

    template<typename Table> const std::string& of(const Table& table)
    {
        return table[below(table.size())];
    }

    /// Filler that ends within a few bytes of a block's border.
    std::string filler()
    {
        const std::size_t size = blockSizes[below(blockSizes.size())] - 6 + below(12);
        const std::string alphabet = of(std::array{"s"s, "m"s, "o"s, "e"s, "x"s, "jbo"s, "%"s});
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
        switch (below(12)) {
        case 0:
        case 1:
        case 2:
            return of(keywords);
        case 3:
        case 4:
            return of(nearlyKeywords);
        case 5:
        case 6:
            return of(numbers);
        case 7:
        case 8:
            return of(spaces);
        case 9:
            return onceIn(4) ? junk() : of(lines);
        case 10:
            return onceIn(6) ? filler() : of(spaces);
        default:
            return of(lineEnds);
        }
    }

    /// A header, a count, a reference or an array of kids with numbers of every sort.
    std::string numberedLine()
    {
        static const std::array keys{"/Count"s, "/Size"s, "/Pages"s, "/Parent"s, "/Root"s};
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

    std::string object(std::size_t number)
    {
        static const std::array bodies{"<< /Type /Catalog /Pages 2 0 R /Metadata 5 0 R >>"s,
            "<< /Type /Pages\n/Kids [ 3 0 R 4 0 R ]\n/Count 2\n>>"s,
            "<</Type/Page/Parent 2 0 R/Contents 4 0 R>>"s,
            "<< /Length 9 >>\nstream\nBT ET q Q\nendstream"s,
            "<< /Length 9 >>stream\r\nB\r\n\r\nT\r\nendstream"s,
            "<</Type/Metadata/Subtype/XML/Length 20>>\nstream\n<x>\n\n obj </x>\nendstream"s,
            "<</Type/XRef/Size 7/Root 1 0 R/Length 4>>\nstream\n%%EOF\nendstream"s,
            "<< /Producer (Writer) >>"s, "(text)"s, "<< /Type /Names /Limits [ (a) (b) ] >>"s};
        return std::to_string(number) + " 0 obj\n" + (onceIn(8) ? filler() : of(bodies))
            + "\nendobj\n";
    }

    std::string file()
    {
        std::string text = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
        for (std::size_t save = below(4) + 1; save > 0; --save) {
            for (std::size_t count = below(8); count > 0; --count)
                text += object(below(12));
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
        switch (below(6)) {
        case 0:
            text.erase(place, below(30));
            break;
        case 1:
            text.resize(place);
            break;
        case 2:
            text.insert(place, fragment());
            break;
        case 3:
            text.insert(below(text.size() + 1), text.substr(place, below(300)));
            break;
        case 4:
            if (place < text.size())
                text[place] = static_cast<char>(text[place] ^ (1 << below(8)));
            break;
        default:
            text.insert(place, of(lineEnds));
            break;
        }
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
