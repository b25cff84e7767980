#include "Shapes.h"

#include "Documents.h"

#include <array>
#include <cstdint>

namespace tarnwick {

namespace shapes {
namespace {

/// Numbers that look random and are the same everywhere.
class Noise
{
public:
    std::uint64_t next()
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state;
    }

private:
    std::uint64_t state = 0x9E3779B97F4A7C15;
};

constexpr std::size_t oneMegabyte = std::size_t{1} << 20;

std::string header(std::size_t number)
{
    return std::to_string(number) + " 0 obj\n";
}

std::string stream(Noise& noise, std::size_t length)
{
    std::string text
        = "<< /Length " + std::to_string(length) + " /Filter /FlateDecode >>\nstream\n";
    for (std::size_t done = 0; done < length; done += 8) {
        const std::uint64_t value = noise.next();
        for (int shift = 0; shift < 64; shift += 8)
            text += static_cast<char>(static_cast<unsigned char>(value >> shift));
    }
    return text + "\nendstream\n";
}

std::string closing(std::size_t objects)
{
    std::string text = "xref\n0 " + std::to_string(objects) + '\n';
    for (std::size_t number = 0; number < objects; ++number)
        text += "0000000000 65535 f \n";
    return text + "trailer\n<< /Size " + std::to_string(objects)
        + " /Root 1 0 R >>\nstartxref\n12345\n%%EOF\n";
}

void streams(std::size_t megabytes, const Sink& sink)
{
    Noise noise;
    for (std::size_t number = 1; number <= megabytes * 8; ++number)
        sink(header(number) + stream(noise, oneMegabyte / 8 - 100) + "endobj\n");
    sink(closing(1));
}

void objects(std::size_t count, const Sink& sink)
{
    static constexpr std::array bodies{
        "<< /Type /Annot /Subtype /Link /Rect [72 700 200 712] /Border [0 0 0] /A 17 0 R >>",
        "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources 5 0 R /MediaBox 6 0 R >>",
        "[ 12 0 R /XYZ 72 720 null 13 0 R /FitH 512 14 0 R /Fit 15 0 R /FitB 16 0 R /Z ]",
        "<< /Type /StructElem /S /P /P 99 0 R /K [ 1 2 3 ] /Pg 12 0 R /Lang (en) /T () >>",
    };
    std::string block;
    for (std::size_t number = 1; number <= count; ++number) {
        block += header(number) + bodies[number % bodies.size()] + "\nendobj\n";
        if (block.size() > oneMegabyte || number == count) {
            sink(block);
            block.clear();
        }
    }
    sink(closing(1));
}

void updates(std::size_t megabytes, const Sink& sink)
{
    Noise noise;
    for (std::size_t save = 0; save < megabytes * 4; ++save) {
        std::string text = "1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"
                           "2 0 obj\n<< /Type /Pages /Kids [ 3 0 R 4 0 R ] /Count 2 >>\nendobj\n";
        for (std::size_t number = 3; text.size() < oneMegabyte / 4; ++number)
            text += header(number)
                + (number % 50 == 0 ? stream(noise, 4096)
                                    : "<< /Type /Page\n/Parent 2 0 R\n/Contents 7 0 R\n>>\n")
                + "endobj\n";
        sink(text + closing(300));
    }
}

void repeat(std::string_view text, std::size_t count, const Sink& sink)
{
    std::string block;
    while (block.size() < oneMegabyte)
        block += text;
    const std::size_t perBlock = block.size() / text.size();
    for (; count >= perBlock; count -= perBlock)
        sink(block);
    sink(std::string_view(block).substr(0, count * text.size()));
}

void endobjLines(std::size_t count, const Sink& sink)
{
    sink("1 0 obj\n<< /Length 5 >>\n");
    repeat("endobj\n", count, sink);
}

void growingObject(std::size_t count, const Sink& sink)
{
    sink("1 0 obj\n<< /Length 5 >>\n");
    repeat("x\nendobj\n", count, sink);
}

void growingPage(std::size_t count, const Sink& sink)
{
    sink("1 0 obj\n");
    repeat("/Type /Page /Parent 2 0 R\nendobj\n", count, sink);
}

void growingNode(std::size_t count, const Sink& sink)
{
    sink("2 0 obj\n<< /Type /Pages\n");
    repeat("/Kids [ 3 0 R ]\nendobj\n", count, sink);
}

void manyKids(std::size_t count, const Sink& sink)
{
    sink("2 0 obj\n<< /Type /Pages /Kids [ ");
    repeat("3 0 R ", count, sink);
    sink("] >>\nendobj\n");
}

void manySlashes(std::size_t count, const Sink& sink)
{
    sink("2 0 obj\n<< /Type /Catalog ");
    repeat("/Names 4 0 R", count, sink);
    sink("\nendobj\n");
}

void sameNumber(std::size_t count, const Sink& sink)
{
    repeat("7 0 obj\nx\nendobj\n", count, sink);
}

void fallingNumbers(std::size_t count, const Sink& sink)
{
    for (std::size_t number = count; number > 0; --number)
        sink(header(number) + "x\nendobj\n");
}

void streamLines(std::size_t count, const Sink& sink)
{
    repeat("stream\n", count, sink);
}
void endstreamLines(std::size_t count, const Sink& sink)
{
    repeat("endstream\n", count, sink);
}
void streamWords(std::size_t count, const Sink& sink)
{
    repeat("stream /XML", count, sink);
}
void markers(std::size_t count, const Sink& sink)
{
    repeat("%%EOF\n", count, sink);
}
void startxrefs(std::size_t count, const Sink& sink)
{
    repeat("x\nstartxref\n", count, sink);
}
void letterS(std::size_t count, const Sink& sink)
{
    repeat("s", count, sink);
}
void letterM(std::size_t count, const Sink& sink)
{
    repeat("m", count, sink);
}
void letterSInStream(std::size_t count, const Sink& sink)
{
    sink("stream\n");
    repeat("s", count, sink);
}
void letterMInStream(std::size_t count, const Sink& sink)
{
    sink("stream\n");
    repeat("m", count, sink);
}
void nearlyWords(std::size_t count, const Sink& sink)
{
    repeat("endstrea ob %%EO /XM", count, sink);
}
void lineEnds(std::size_t count, const Sink& sink)
{
    repeat("\n", count, sink);
}
void spaces(std::size_t count, const Sink& sink)
{
    repeat(" ", count, sink);
}
void shortLines(std::size_t count, const Sink& sink)
{
    repeat("x\n", count, sink);
}

} // namespace

const std::vector<Shape>& all()
{
    static constexpr std::size_t million = 1'000'000;
    static constexpr std::size_t gigabyte = std::size_t{1} << 30;
    static const std::vector<Shape> shapes{
        {"streams", "streams of 128 KB of noise; megabytes", 1024, false, streams},
        {"objects", "tiny objects of 107 bytes; objects", 10 * million, false, objects},
        {"updates", "saves of 256 KB, objects and streams; megabytes", 1024, false, updates},
        {"manual", "a manual that viewers open; pages", 2400, false, documents::writeManual},
        {"book", "a book of dense text; pages", 1200, false, documents::writeBook},

        {"endobj-lines", "endobj lines without an obj line between", million, true, endobjLines},
        {"growing-object", "one more line at every endobj", million, true, growingObject},
        {"growing-page", "the same, of a page", million, true, growingPage},
        {"growing-node", "a page tree node with one kid more at every endobj", 4000, true,
            growingNode},
        {"many-kids", "one array of kids", 20 * million, true, manyKids},
        {"many-slashes", "one catalog of many entries on a line", 20 * million, true, manySlashes},
        {"same-number", "objects of one number", million, true, sameNumber},
        {"falling-numbers", "objects in falling order", 4 * million, true, fallingNumbers},
        {"stream-lines", "lines \"stream\"", 20 * million, true, streamLines},
        {"endstream-lines", "lines \"endstream\"", 10 * million, true, endstreamLines},
        {"stream-words", "one line of stream and /XML", 20 * million, true, streamWords},
        {"markers", "lines \"%%EOF\"", 20 * million, true, markers},
        {"startxrefs", "one more line at every startxref", million, true, startxrefs},
        {"letter-s", "one line of s", gigabyte / 2, true, letterS},
        {"letter-m", "one line of m", gigabyte / 2, true, letterM},
        {"letter-s-in-stream", "a stream of s without end", gigabyte / 2, true, letterSInStream},
        {"letter-m-in-stream", "a stream of m without end", gigabyte / 2, true, letterMInStream},
        {"nearly-words", "one line of words that are nearly keywords", 20 * million, true,
            nearlyWords},
        {"line-ends", "empty lines", gigabyte / 4, true, lineEnds},
        {"spaces", "one line of spaces", gigabyte / 2, true, spaces},
        {"short-lines", "lines of one letter", 50 * million, true, shortLines},
    };
    return shapes;
}

const Shape* named(std::string_view name)
{
    for (const Shape& shape : all())
        if (shape.name == name)
            return &shape;
    return nullptr;
}

std::string made(const Shape& shape, std::size_t size)
{
    std::string text;
    shape.write(size, [&](std::string_view stretch) { text += stretch; });
    return text;
}

} // namespace shapes

} // namespace tarnwick
