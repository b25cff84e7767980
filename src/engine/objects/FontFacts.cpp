#include "FontFacts.h"

#include <algorithm>
#include <optional>

namespace tarnwick {

namespace {

using Fact = EngineFactKind;

constexpr std::size_t largestProgram = 64u << 20; ///< bytes that are read
constexpr std::size_t subsetLetters = 6;

/// "ABCDEF+Name" (ISO 32000-2, 9.9.2).
bool isSubset(std::string_view name)
{
    const auto isLetter = [](char one) { return one >= 'A' && one <= 'Z'; };
    return name.size() > subsetLetters && name[subsetLetters] == '+'
        && std::all_of(name.begin(), name.begin() + subsetLetters, isLetter);
}

void tellName(FactSheet& sheet, std::string_view name)
{
    if (isSubset(name)) {
        sheet.add(Fact::isName, name.substr(subsetLetters + 1));
        sheet.add(Fact::isSubset, name.substr(0, subsetLetters));
    } else {
        sheet.add(Fact::isName, name);
    }
}

std::string formatOf(std::string_view program)
{
    constexpr struct
    {
        std::string_view head;
        std::string_view name;
    } formats[] = {{std::string_view("\0\1\0\0", 4), "TrueType"}, {"true", "TrueType"},
        {"ttcf", "TrueType collection"}, {"OTTO", "OpenType with CFF"}, {"%!", "Type 1"},
        {"\x80\x01", "Type 1 (PFB)"}, {std::string_view("\1\0", 2), "CFF"}};
    for (const auto& [head, name] : formats) {
        if (program.starts_with(head))
            return std::string(name);
    }
    return "of no known format";
}

struct Program
{
    std::string format;
    std::string name;
    std::optional<int> glyphs; ///< nothing where it cannot be read
    std::size_t size = 0; ///< bytes, decoded
};

Program readProgram(const EngineDocument& document, int number)
{
    fz_context* const ctx = document.context();
    std::string bytes = decodedBeginning(document, number, largestProgram);
    Program program{formatOf(bytes), {}, {}, bytes.size()};
    fz_buffer* buffer = nullptr;
    fz_font* font = nullptr;
    fz_var(buffer);
    fz_var(font);
    const int error = attempt(ctx, [&] {
        buffer = fz_new_buffer_from_shared_data(
            ctx, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
        font = fz_new_font_from_buffer(ctx, nullptr, buffer, 0, 0);
    });
    if (!error) {
        program.glyphs = font->glyph_count;
        program.name = fz_font_name(ctx, font);
    }
    fz_drop_font(ctx, font);
    fz_drop_buffer(ctx, buffer);
    return program;
}

void tellGlyphs(FactSheet& sheet, const Program& program)
{
    if (program.glyphs)
        sheet.addCount(Fact::isGlyphs, *program.glyphs);
    else
        sheet.add(Fact::isGlyphs, "the font program cannot be read");
}

void tellEmbedding(FactSheet& sheet, const ObjectView& descriptor)
{
    for (const char* const key : {"FontFile", "FontFile2", "FontFile3"}) {
        const ObjectView file = descriptor.entry(key);
        if (file.isNone())
            continue;
        const Program program = readProgram(sheet.document(), file.number());
        sheet.add(Fact::isProgram,
            sheet.valueText(file) + ", " + program.format + ", " + std::to_string(program.size)
                + " bytes");
        return tellGlyphs(sheet, program);
    }
    sheet.add(Fact::isProgram, "not embedded");
}

void tellEncoding(FactSheet& sheet, const ObjectView& encoding)
{
    if (encoding.isNone())
        return sheet.add(Fact::isEncoding, "none stated");
    if (encoding.isName())
        return sheet.add(Fact::isEncoding, ObjectText::name(encoding.name()));
    const std::string place = encoding.isReference() ? sheet.valueText(encoding) : std::string();
    if (encoding.isStream())
        return sheet.add(
            Fact::isEncoding, place + ", " + ObjectText::name(encoding.entry("CMapName").name()));
    const ObjectView differences = encoding.entry("Differences");
    int count = 0;
    for (int index = 0; index < differences.size(); ++index)
        count += differences.at(index).isName() ? 1 : 0;
    const ObjectView base = encoding.entry("BaseEncoding");
    sheet.add(Fact::isEncoding,
        (encoding.isReference() ? std::to_string(encoding.number()) + " 0 R, " : std::string())
            + (base.isName() ? ObjectText::name(base.name()) : "the font's own") + " with "
            + std::to_string(count) + " differences");
}

void tellDescendant(FactSheet& sheet, const ObjectView& descendant)
{
    const ObjectView system = descendant.entry("CIDSystemInfo");
    const std::int64_t supplement = system.entry("Supplement").integer().value_or(0);
    std::string text
        = descendant.isReference() ? std::to_string(descendant.number()) + " 0 R, " : std::string();
    text += descendant.entry("Subtype").name() + ", " + system.entry("Registry").text() + '-'
        + system.entry("Ordering").text() + '-' + std::to_string(supplement);
    sheet.add(Fact::isDescendant, text);
}

} // namespace

void tellOfFont(FactSheet& sheet, const ObjectView& font)
{
    sheet.setKind(EngineObjectKind::isFont);
    if (font.entry("Type").name() == "FontDescriptor") {
        tellName(sheet, font.entry("FontName").name());
        return tellEmbedding(sheet, font);
    }
    const std::string type = font.entry("Subtype").name();
    const std::string base = font.entry("BaseFont").name();
    tellName(sheet, base.empty() ? font.entry("Name").name() : base);
    sheet.add(Fact::isType, type);
    const ObjectView descendant = font.entry("DescendantFonts").at(0);
    if (!descendant.isNone())
        tellDescendant(sheet, descendant);
    if (type == "Type3") {
        sheet.add(Fact::isProgram, "content streams, one for each glyph");
        sheet.addCount(Fact::isGlyphs, font.entry("CharProcs").size());
    } else {
        tellEmbedding(sheet, (descendant.isNone() ? font : descendant).entry("FontDescriptor"));
    }
    if (!type.starts_with("CIDFont")) {
        tellEncoding(sheet, font.entry("Encoding"));
        const ObjectView unicode = font.entry("ToUnicode");
        sheet.add(Fact::isToUnicode, unicode.isNone() ? "none" : sheet.valueText(unicode));
    }
    const auto first = font.entry("FirstChar").integer();
    const auto last = font.entry("LastChar").integer();
    if (first && last)
        sheet.add(Fact::isCharacters, std::to_string(*first) + " to " + std::to_string(*last));
}

void tellOfFontProgram(FactSheet& sheet, int number)
{
    sheet.setKind(EngineObjectKind::isFontProgram);
    const Program program = readProgram(sheet.document(), number);
    tellName(sheet, program.name);
    sheet.add(Fact::isType, program.format);
    tellGlyphs(sheet, program);
    sheet.addCount(Fact::isSize, static_cast<std::int64_t>(program.size), "bytes");
}

} // namespace tarnwick
