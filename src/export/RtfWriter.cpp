#include "RtfWriter.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr qsizetype partSize = 64 * 1024;

/// Sizes are counted in half points; more than 1638 points is not understood by readers.
qsizetype halfPoints(double sizeInPoints)
{
    return std::isfinite(sizeInPoints)
        ? static_cast<qsizetype>(std::lround(std::clamp(sizeInPoints * 2, 1.0, 3276.0)))
        : 24;
}

bool isLoneSurrogate(const QString& string, qsizetype index)
{
    const QChar unit = string.at(index);
    if (unit.isHighSurrogate())
        return index + 1 >= string.size() || !string.at(index + 1).isLowSurrogate();
    return unit.isLowSurrogate() && (index == 0 || !string.at(index - 1).isHighSurrogate());
}

/// A family name as the font table can hold it: its entries end at a semicolon.
QString tableName(const QString& family)
{
    QString name = family.left(255);
    name.replace(u';', u' ');
    name.replace(u'\n', u' ');
    return name.trimmed().isEmpty() ? u"Helvetica"_s : name;
}

} // namespace

RtfWriter::RtfWriter(const AttributedText& text)
    : theText(text)
{
}

QByteArray RtfWriter::write(const AttributedText& text)
{
    RtfWriter writer(text);
    QByteArray whole;
    for (QByteArray part = writer.next(); !part.isEmpty(); part = writer.next())
        whole.append(part);
    return whole;
}

QByteArray RtfWriter::next()
{
    thePart.clear();
    thePart.reserve(partSize + 1024);
    if (theStage == Stage::isHeader)
        writeHeader();
    if (theStage == Stage::isBody)
        writeBodyPart();
    return thePart;
}

void RtfWriter::writeHeader()
{
    thePart.append("{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n");
    writeFonts();
    writeColours();
    thePart.append("\\pard\\plain\n");
    theStage = Stage::isBody;
}

void RtfWriter::writeFonts()
{
    thePart.append("{\\fonttbl");
    for (qsizetype i = 0; i < theText.families().size(); ++i) {
        thePart.append('{');
        writeControl("f", i);
        thePart.append("\\fnil\\fcharset0 ");
        const QString name = tableName(theText.families().at(i));
        for (qsizetype index = 0; index < name.size(); ++index)
            writeCharacter(name, index);
        thePart.append(";}");
    }
    if (theText.families().isEmpty())
        thePart.append("{\\f0\\fnil\\fcharset0 Helvetica;}");
    thePart.append("}\n");
}

void RtfWriter::writeColours()
{
    // The entry before the first semicolon is the reader's own text colour; ours begin at 1.
    thePart.append("{\\colortbl;");
    for (const QRgb colour : theText.colours()) {
        writeControl("red", qRed(colour));
        writeControl("green", qGreen(colour));
        writeControl("blue", qBlue(colour));
        thePart.append(';');
    }
    thePart.append("}\n");
}

void RtfWriter::writeBodyPart()
{
    const QList<AttributedText::Run>& runs = theText.runs();
    for (; theRun < runs.size(); ++theRun) {
        const AttributedText::Run& run = runs.at(theRun);
        if (thePosition == run.start)
            writeAttributes(run);
        for (const qsizetype end = run.start + run.length; thePosition < end; ++thePosition) {
            if (thePart.size() >= partSize)
                return;
            writeCharacter(theText.string(), thePosition);
        }
    }
    thePart.append("}\n");
    theStage = Stage::isDone;
}

void RtfWriter::writeAttributes(const AttributedText::Run& run)
{
    writeControl("f", run.family);
    writeControl("fs", halfPoints(run.sizeInPoints));
    thePart.append(run.isBold ? "\\b" : "\\b0");
    thePart.append(run.isItalic ? "\\i" : "\\i0");
    writeControl("cf", run.colour + 1);
    thePart.append(' ');
}

void RtfWriter::writeControl(const char* word, qsizetype value)
{
    thePart.append('\\');
    thePart.append(word);
    thePart.append(QByteArray::number(value));
}

void RtfWriter::writeCharacter(const QString& string, qsizetype index)
{
    constexpr char16_t replacement = 0xFFFD;
    const char16_t unit = isLoneSurrogate(string, index) ? replacement : string.at(index).unicode();
    if (unit == u'\n') {
        // The line end in the file ends the control word and keeps its lines short.
        thePart.append("\\par\n");
    } else if (unit == u'\t') {
        thePart.append("\\tab ");
    } else if (unit == u'\\' || unit == u'{' || unit == u'}') {
        thePart.append('\\');
        thePart.append(static_cast<char>(unit));
    } else if (unit >= 0x20 && unit < 0x7F) {
        thePart.append(static_cast<char>(unit));
    } else if (unit >= 0xA0 && unit <= 0xFF) {
        thePart.append("\\'");
        thePart.append(QByteArray::number(unit, 16));
    } else if (unit > 0xFF) {
        // Sixteen bits with a sign, then what readers without Unicode show.
        writeControl("u", static_cast<qint16>(unit));
        thePart.append('?');
    }
}

} // namespace tarnwick
