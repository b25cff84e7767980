// Any text, in any runs, written as RTF and read back. The input: bytes that describe runs up to
// the first zero, then the text in UTF-16.

#include "FuzzTarget.h"

#include "RtfWriter.h"
#include "export/RtfReader.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

PDFTextRun runFrom(std::uint8_t byte, qsizetype start)
{
    static const QString families[] = {u"A"_s, u"a;}{\\f9 "_s, QString(), u"\u660e\u671d"_s,
        QString(QChar(0xd800)), u"\n\t\x01"_s};
    PDFTextRun run;
    run.start = start - byte % 3;
    run.length = byte % 7;
    run.family = families[byte % std::size(families)];
    run.sizeInPoints = byte * 100.0 - 1000;
    run.isBold = byte & 1;
    run.isItalic = byte & 2;
    run.colour = QColor::fromRgb(byte * 0x10203u);
    return run;
}

/// The text as a reader of the file is to have it.
QString expected(const QString& text)
{
    QString kept;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text.at(at);
        const bool isPair
            = at + 1 < text.size() && unit.isHighSurrogate() && text.at(at + 1).isLowSurrogate();
        if (isPair)
            kept.append(unit).append(text.at(++at));
        else if (unit.isSurrogate())
            kept.append(QChar::ReplacementCharacter);
        else if (unit == u'\n' || unit == u'\t' || unit.category() != QChar::Other_Control)
            kept.append(unit);
    }
    return kept;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PDFPageText page;
    std::size_t at = 0;
    for (; at < size && data[at] != 0; ++at)
        page.runs.append(runFrom(data[at], static_cast<qsizetype>(at) * 3));
    for (++at; at + 1 < size; at += 2)
        page.string.append(QChar(static_cast<char16_t>(data[at] | data[at + 1] << 8)));

    AttributedText text;
    text.append(page);
    text.append(page); // a second page, whose runs meet the first one's
    require(text.string() == page.string + page.string, "the pages' text");
    const QByteArray rtf = RtfWriter::write(text);
    require(std::all_of(
                rtf.begin(), rtf.end(), [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); }),
        "not plain ASCII");
    const RtfReader reader(rtf);
    require(reader.isBalanced, "groups that stay open");
    require(reader.text == expected(text.string()), "another text read back");
    return 0;
}
