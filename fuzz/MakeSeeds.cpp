// Writes the seeds: what fuzzing starts from.
//
// fuzz_make_seeds FOLDER    writes FOLDER/TARGET/NUMBER

#include "FuzzTarget.h"
#include "RequestFrames.h"

#include "support/PdfBuilder.h"
#include "support/RandomSource.h"
#include "support/SavedFile.h"

#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

using namespace tarnwick;

namespace {

using namespace std::string_literals;
using Seeds = std::vector<std::string>;

/// Text in UTF-16, as the targets read it.
std::string wide(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xff);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

Seeds sources()
{
    Seeds seeds;
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        seeds.push_back(randomSource::soup(seed));
        seeds.push_back(randomSource::shuffledLines(seed));
        seeds.push_back(randomSource::damagedFile(seed));
    }
    return seeds;
}

PdfBuilder structured()
{
    PdfBuilder builder;
    builder.setCatalogEntries("/PageLabels << /Nums [ 0 << /S /r /P (A) /St 3 >> 1 << /S /D >> ] >>"
                              " /Outlines 6 0 R /Names << /Dests << /Names [ (d) [ 4 0 R /Fit ] ] "
                              ">> >> /AcroForm << /Fields [ 9 0 R ] /DA (/F1 9 Tf) >>");
    builder.addPage("Text (in brackets)\nof \\ lines", "/Annots [ 8 0 R 9 0 R 11 0 R ] /Rotate 90");
    builder.addObject("<< /Type /Outlines /First 7 0 R /Last 7 0 R /Count 1 >>");
    builder.addObject("<< /Title <feff00e9> /Parent 6 0 R /Dest [ 5 0 R /XYZ 10 20 0 ] >>");
    builder.addObject("<< /Type /Annot /Subtype /Link /Rect [ 9 9 90 30 ] /A << /S /URI /URI "
                      "(https://a.example/) >> >>");
    builder.addObject("<< /Type /Annot /Subtype /Widget /FT /Tx /T (f) /V (v) /Rect [ 5 5 60 30 ] "
                      "/F 4 /AP << /N 10 0 R >> >>");
    builder.addStream("0 1 0 rg 0 0 9 9 re f",
        "/Type /XObject /Subtype /Form /BBox [ 0 0 9 9 ] "
        "/Matrix [ 1 0 0 2 3 4 ]");
    builder.addObject("<< /Type /Annot /Subtype /Square /Rect [ 1 1 8 8 ] /C [ 1 0 0 ] >>");
    return builder;
}

PdfBuilder drawn()
{
    PdfBuilder builder;
    builder.addDrawing("q 20 0 0 20 9 9 cm BI /W 2 /H 2 /BPC 8 /CS /G ID abcd EI Q /I Do /S sh",
        "/Resources << /XObject << /I 6 0 R >> /Shading << /S << /ShadingType 2 /ColorSpace "
        "/DeviceRGB /Coords [ 0 0 90 90 ] /Function << /FunctionType 2 /Domain [ 0 1 ] /C0 [ 1 0 0 "
        "] /C1 [ 0 0 1 ] /N 1 >> >> >> >>");
    builder.addStream("00ff00>",
        "/Type /XObject /Subtype /Image /Width 1 /Height 1 "
        "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter "
        "/ASCIIHexDecode");
    return builder;
}

/// Hebrew drawn from the left, "PDF" in its middle, and an emoji of two characters.
PdfBuilder rightToLeft()
{
    PdfBuilder builder;
    builder.addDrawing(
        "BT /F1 12 Tf 72 720 Td (ABC DEF BA) Tj ET", "/Resources << /Font << /F1 6 0 R >> >>");
    builder.addObject("<< /Type /Font /Subtype /Type1 /BaseFont /Courier /ToUnicode 7 0 R >>");
    builder.addStream("1 begincodespacerange <00> <ff> endcodespacerange 6 beginbfchar "
                      "<41> <05d0> <42> <05d1> <43> <05d205b7> <44> <0050> <45> <0044> "
                      "<46> <d83ddc4dd83cdffd> endbfchar");
    return builder;
}

Seeds documents()
{
    const std::string plain = PdfBuilder().addPage("One").addSharedPage("/Rotate 270").bytes();
    return {
        plain,
        structured().bytes(),
        structured().setXref(PdfBuilder::Xref::isStream).setVersion("2.0").bytes(),
        drawn().bytes(),
        rightToLeft().bytes(),
        PdfBuilder().addPage("Old").addUpdate(3, "<< /Type /Font /Subtype /Type3 >>").bytes(),
        PdfBuilder()
            .setInfo("<< /Title (t) /Pages 2 0 R >>")
            .addPage("", "/Contents [ 4 0 R ]")
            .bytes(),
        plain.substr(0, plain.size() * 2 / 3),
        PdfBuilder().bytes(),
    };
}

std::string bigEndian(std::uint64_t number)
{
    std::string bytes;
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xff);
    return bytes;
}

/// A binary property list with offsets and references of one byte; the first object is the root.
std::string binaryList(const Seeds& objects)
{
    std::string file = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += static_cast<char>(file.size());
        file += object;
    }
    const std::size_t tableStart = file.size();
    return file + table + std::string(6, '\0') + "\1\1" + bigEndian(objects.size()) + bigEndian(0)
        + bigEndian(tableStart);
}

Seeds propertyLists()
{
    const std::string entry = "<dict><key>AppName</key><string>Tarnwick</string><key>Version</key>"
                              "<string>1.1</string><key>URL</key><string>https://a.example/t"
                              "</string></dict>";
    return {
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><array>" + entry
            + "<integer>-0x1f</integer><real>1.5e3</real><true/><data>AP8=</data>"
              "<date>2001-01-02T00:00:01Z</date><string><![CDATA[<]]>&amp;</string></array></"
              "plist>",
        "( { AppName = Tarnwick; Version = \"1.\\1011\"; URL = 'https://a.example/\\U00e9'; },"
        " <00 ff>, /* c */ a.b ) // end",
        binaryList({"\xa1\x01", "\xd3\x02\x03\x04\x05\x06\x07",
            "\x57"
            "AppName",
            "\x57Version", "\x53URL", "\x58Tarnwick",
            "\x62\x00"
            "1\x00.\0"s,
            "\x5f\x10\x12https://a.example/"}),
        binaryList({"\xa6\x01\x02\x03\x04\x05\x06", "\x09", "\x13\xff\xff\xff\xff\xff\xff\xff\xff",
            "\x22\x3f\xc0\0\0"s, "\x33\x41\0\0\0\0\0\0\0"s, "\x42\x01\x02", "\x81\x01\x02"}),
    };
}

/// An answer to a request behind the head that the target reads.
template<typename Request>
std::string answer(const std::string& payload, EngineTextDetail detail = EngineTextDetail::isPlain)
{
    PayloadWriter head;
    head.put(static_cast<std::uint8_t>(static_cast<int>(Request::kind) - 1));
    head.put(std::uint16_t{2});
    head.put(static_cast<std::uint8_t>(detail));
    head.put(std::uint16_t{0}); // a tile of a single pixel
    return head.bytes() + payload;
}

std::string textAnswer(EngineTextDetail detail)
{
    TextResult result;
    result.characters = std::vector<char32_t>{0x61, 0x1f600, 0x0a};
    if (detail == EngineTextDetail::isWithQuads)
        result.quads = std::vector<EngineQuad>(3, {{{{0, 1}, {2, 3}, {4, 5}, {6, 7}}}});
    if (detail == EngineTextDetail::isWithAttributes)
        result.runs = {{3, 10.5f, true, true, 0xff102030u, "ABCDEF+Arial,BoldItalicMT"}};
    return answer<TextRequest>(packed(result), detail);
}

std::string checkAnswer(EngineFindingCode code, const std::string& words)
{
    CheckResult result;
    result.findings = {{code, 0, 7, 15, 2, words}};
    std::vector<std::uint32_t> counts(engineFindingCodes);
    counts.at(static_cast<std::size_t>(code)) = 1;
    result.counts = std::move(counts);
    result.encryption = {true, 4, 4, 128, "AES", -44, false};
    result.members = 9;
    result.objectStreams = 2;
    result.pagesLookedAt = 1;
    return answer<CheckRequest>(packed(result));
}

Seeds answers()
{
    const EngineTarget target = {0, 5, 6, {}};
    return {
        answer<OpenRequest>(packed(OpenedAnswer{2, 1, 7, -1, 3, 612, 792})),
        answer<MeasureRequest>(
            packed(MeasureResult{{{612, 792, true, "iv"}, {612, 792, false, {}}}})),
        answer<DigestRequest>(packed(DigestResult{{{4, true, {1, 2, 3, 4}}, {5, false, {}}}})),
        answer<TileRequest>(packed(TileResult{std::vector<std::uint32_t>{0xff123456u}})),
        answer<LinksRequest>(
            packed(LinksResult{{{1, 2, 30, 40, {-1, 5, 6, "https://a.example/"}}}})),
        answer<OutlineRequest>(packed(
            OutlineResult{EngineLoss::isDamaged, {{0, "Title", target}, {1, "Title", target}}})),
        answer<FlatRequest>(
            packed(WrittenResult{1000, 3, {{0, EngineLoss::isDamaged}, {1, EngineLoss::isDamaged}},
                std::vector<std::uint32_t>{7, 0, 3}})),
        answer<TableRequest>(packed(TableResult{9, 9, false, false,
            std::vector<EngineTableRow>{{15, 2, 0, 0, 0, 3, 0, 3, {}}, {0, 4, 2, 1, 2, 0, 1, 3, {}},
                {40, 5, 0, 0, 0, 1, 0, 1, {}}},
            {{"Page"}, {"Font"}}, std::vector<std::uint32_t>{2, 4},
            std::vector<std::uint32_t>{2}})),
        answer<ObjectRequest>(
            packed(ObjectResult{EngineObjectState::isPresent, 0, 15, 7, 2, "<<\n  /Type /Page\n>>",
                true, true, {{"/FlateDecode", "<< /Predictor 12 >>"}}, 3, 45})),
        answer<FactsRequest>(packed(
            FactsResult{EngineObjectKind::isFont, {{EngineFactKind::isGlyphs, "12 \xc3\x97"}}})),
        answer<PictureRequest>(packed(PictureResult{2, 3, EnginePictureEnd::isDamaged, "what"})),
        answer<StreamRequest>(
            packed(StreamResult{1000, EngineStreamEnd::isDamaged, "zlib error: what"})),
        answer<SignRequest>(packed(
            SignResult{7, 1, 2, std::vector<EngineObjectSign>(1, {5, 6, 1, 2, 2, 1, 0, {}, {}, {}}),
                std::vector<EngineObjectLink>{{9, 1, 1}}})),
        answer<CrossReferenceRequest>(packed(CrossReferenceResult{
            {{EngineSectionForm::isTable, 9, 99, 1, 2, true, true, 1},
                {EngineSectionForm::isStream, -1, -1, -1, -1, false, false, 1}},
            std::vector<EngineRow>{{15, 1, 0, 1, {}}, {7, 3, 2, 2, {}}}})),
        checkAnswer(EngineFindingCode::isRebuilt, "cannot find startxref"),
        textAnswer(EngineTextDetail::isPlain),
        textAnswer(EngineTextDetail::isWithQuads),
        textAnswer(EngineTextDetail::isWithAttributes),
    };
}

/// A request as the target reads it.
template<typename Request> std::string framed(const Request& request)
{
    const std::string payload = packed(request);
    return std::string{static_cast<char>(Request::kind), static_cast<char>(payload.size())}
    + payload;
}

/// Answers that no sound engine gives: numbers out of all ranges, orders, and counts of nothing.
Seeds hostileAnswers()
{
    constexpr float infinite = std::numeric_limits<float>::infinity();
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    constexpr EngineLoss damaged = EngineLoss::isDamaged;
    const std::string noText = "\xff\xfe\xed\xa0\x80";
    const std::string countless = "\0\xf0\xff\xff\xff"s + std::string(16, '\1');
    TextResult pair;
    pair.characters = std::vector<char32_t>{0xd800, 0, 0x110000, 0xffffffffu};
    pair.quads = std::vector<EngineQuad>(
        4, {{{{none, -infinite}, {3e38f, none}, {-infinite, 3e38f}, {none, infinite}}}});
    return {
        answer<OpenRequest>(packed(OpenedAnswer{-5, -1, 2'000'000'000, -1, 7, infinite, 1e9f})),
        answer<OpenRequest>(packed(OpenedAnswer{2'000'000'000, 1, 7, 1, 1, none, -1})),
        answer<MeasureRequest>(packed(MeasureResult{
            {{none, -1e30f, true, std::string(255, '\xff')}, {infinite, 0, true, noText}}})),
        answer<MeasureRequest>(packed(MeasureResult())),
        answer<TileRequest>(packed(TileResult{std::vector<std::uint32_t>(2)})),
        answer<LinksRequest>(packed(LinksResult{
            {{none, infinite, -infinite, 3e38f, {0x7fffffff, none, 10, "file:///etc/hosts"}},
                {90, 90, -90, -90, {-77, 10, infinite, noText}}}})),
        answer<OutlineRequest>(packed(OutlineResult{
            damaged, {{400, noText, {2, none, -infinite, {}}}, {-9, {}, {0x7fffffff, 0, 0, {}}}}})),
        answer<FlatRequest>(packed(WrittenResult{9, 2, {{1, damaged}, {0, damaged}}, {}})),
        answer<FlatRequest>(packed(WrittenResult{9, 2, {{1, damaged}, {1, damaged}}, {}})),
        answer<FlatRequest>(packed(WrittenResult{9, 0xffffffffu, {{2, damaged}}, {}})),
        answer<CrossReferenceRequest>(
            packed(CrossReferenceResult{{{EngineSectionForm::isTable, 9, 9, 1, 1, true, false, 2}},
                std::vector<EngineRow>{{~0ull, ~0u, ~0u, 2, {}}, {9, 1, 0, 3, {}}}})),
        answer<PictureRequest>(packed(PictureResult{0, 3, EnginePictureEnd::isDrawn, {}})),
        answer<PictureRequest>(packed(PictureResult{1, 1, EnginePictureEnd::isUnreadable, {}})),
        answer<TextRequest>(packed(pair), EngineTextDetail::isWithQuads),
        answer<TextRequest>(countless),
        answer<LinksRequest>(countless.substr(1)),
        answer<OutlineRequest>(countless),
    };
}

Seeds savedFiles()
{
    using Form = SavedFile::Form;
    const SavedFile start(PdfBuilder().addPage("A page").bytes());
    return {
        SavedFile(start).object(4, "(new)").freed(3).save().bytes(),
        SavedFile(start).packed(20, {{6, "1"}, {7, "2"}}).save(Form::isStream).bytes(),
        SavedFile(start).packed(20, {{6, "1"}}).freed(6).save(Form::isHybrid).bytes(),
        SavedFile(start).object(6, "(%%EOF)").save(Form::isTable, 5).bytes(),
    };
}

Seeds allAnswers()
{
    Seeds all = answers();
    const Seeds hostile = hostileAnswers();
    all.insert(all.end(), hostile.begin(), hostile.end());
    return all;
}

Seeds requests()
{
    const MeasureRequest pages = {0, 3};
    const std::string first(1, '\0'); // the document
    const std::string opening = framed(OpenRequest());
    std::string raw;
    appendRequest(raw, pages);
    return {
        first + framed(pages) + framed(TileRequest{0, 0.5, 1, 10, 20, 8, 8})
            + framed(TextRequest{0, EngineTextDetail::isWithAttributes}) + framed(LinksRequest{1})
            + framed(OutlineRequest()),
        first + framed(FlatRequest()) + opening,
        first + framed(CheckRequest()) + framed(pages) + framed(DigestRequest{0, 2}),
        first + framed(TableRequest{0}) + framed(ObjectRequest{4}) + framed(StreamRequest{4, EngineStreamForm::isDecoded, 9})
            + framed(StreamRequest{4, EngineStreamForm::isRaw, 90}) + framed(FactsRequest{3})
            + framed(PictureRequest{4}),
        first + framed(SignRequest{0, std::vector<std::uint32_t>{1, 4}}) + framed(SignRequest()),
        first + framed(CrossReferenceRequest{{{9}, {400}, {~0ull}}, 0}) + opening,
        first + framed(PrintRequest{595, 842, 18, 18, {{1, 0, 0, 559, 806, 0.9}}}) + opening,
        first + opening + std::string(1, '\0') + raw,
    };
}

Seeds texts()
{
    return {
        "\x05\x11\xff\0"s + wide(u"Gr\u00fc\u00dfe {a}\\b\n\t\u65e5\u672c\U0001f600"),
        "\0\x00\xd8"s + wide(u"a\u0001\u2028\u202e\u05d0"),
        "\0"s + wide(u"{\\rtf1 \\par} \\'e9\n\tpar\tx\n\n1\u00e91\u03b12-3") + "\x00\xdc\x00\xd8"s,
    };
}

Seeds searches()
{
    return {
        "\1\3"s + wide(u"stra\u00dfe STRASSE Stra-\nsse e\u0301 \u00e9"),
        "\0\2"s + wide(u"ab xab\r\nab abab"),
        "\2\1"s + wide(u"1\u65e5\u672c\n\u8a9e\U0001f469\u200d\U0001f4bb"),
        "\0\4"s + wide(u" 150 %"),
    };
}

/// Characters side by side, of 2.5 points each.
Seeds lines()
{
    Seeds seeds;
    for (const std::vector<int>& choices :
        {std::vector{1, 0, 16, 7, 8, 9, 16, 2, 1, 0}, std::vector{3, 4, 5, 6, 13, 7, 14, 10, 11}}) {
        PayloadWriter line;
        line.put(std::uint16_t{0x0a01});
        std::int16_t place = 0;
        for (const int choice : choices) {
            line.put(static_cast<std::uint8_t>(choice));
            line.put(place);
            line.put(std::uint8_t{10});
            place = static_cast<std::int16_t>(place + 10);
        }
        seeds.push_back(line.bytes());
    }
    return seeds;
}

Seeds panes()
{
    return {
        "\0\2\0ab AB\r\nabab\n\n\x0c\x85"
        "end"s,
        "\2\10\xff"
        "a word, and words, "s, // across the end of a stretch of 64 K
        "\1\2\1"s + wide(u"\u00e4\u00c4 \U0001f600\u2028x\u2029\u65e5\u672c\u8a9e"),
    };
}

Seeds bytes()
{
    const std::string file = "mail\r\n%PDF-1.7\n1 0 obj\n<<>>\nendobj\n%%EOF \r\n\0\0after"s;
    return {
        "\0"s + file,
        "\3obj"s + file,
        "\x0e"
        "0x6F ?? 6? 0a0"s
            + file,
        "\2aa"s + std::string(40, 'a'),
        "\6@0x1,0"s + file,
    };
}

void write(const std::filesystem::path& folder, const Seeds& seeds)
{
    std::filesystem::create_directories(folder);
    for (std::size_t index = 0; index < seeds.size(); ++index) {
        std::ofstream file(folder / std::to_string(index), std::ios::binary);
        require((file << seeds[index]).good(), "a seed cannot be written");
    }
}

/// Files with all that a check looks at, and the sources.
std::vector<std::string> files()
{
    std::vector<std::string> seeds = sources();
    PdfBuilder builder;
    builder.addPage("text", "/AA << /O << /S /JavaScript /JS (7 0 R) >> >>");
    builder.addStream("1 0 0 1 0 0 cm % 2 0 R\n%%EOF", "/Type /EmbeddedFile");
    builder.addUpdate(1, "<< /Type /Catalog /Pages 2 0 R /Next 1 0 R /Prev 99999999999 0 R >>");
    seeds.push_back(builder.bytes());
    seeds.push_back(builder.setXref(PdfBuilder::Xref::isStream).bytes());
    seeds.push_back("7 0 obj 1 endobj\n8\n0\nobj\n<</Length 7 0 R>>stream\nx\nendstream endobj\n"
                    "xref\n0 1\n0000000000 65535 f\n7 2\n0000000000 00000 n\n0000000017 00000 n\n"
                    "trailer\n<</Root 8 0 R/Prev 79/Encrypt 7 0 R>>\nstartxref\n79\n%%EOF\njunk");
    return seeds;
}

} // namespace

int main(int argc, char** argv)
{
    require(argc == 2, "usage: fuzz_make_seeds FOLDER");
    const std::filesystem::path folder = argv[1];
    write(folder / "analysis", sources());
    write(folder / "finding", files());
    write(folder / "versions", savedFiles());
    write(folder / "bytes", bytes());
    write(folder / "property_lists", propertyLists());
    write(folder / "engine_answers", allAnswers());
    write(folder / "engine_requests", requests());
    write(folder / "engine_document", documents());
    write(folder / "line_order", lines());
    write(folder / "panes", panes());
    write(folder / "rtf", texts());
    write(folder / "search", searches());
}
