#include "ObjectFactWords.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

struct FactWords
{
    Q_DECLARE_TR_FUNCTIONS(FactWords)
};

QString nameOf(EngineFactKind kind)
{
    switch (kind) {
    case EngineFactKind::isName:
        return FactWords::tr("Name");
    case EngineFactKind::isType:
        return FactWords::tr("Type");
    case EngineFactKind::isSubset:
        return FactWords::tr("Subset");
    case EngineFactKind::isDescendant:
        return FactWords::tr("Descendant");
    case EngineFactKind::isProgram:
        return FactWords::tr("Program");
    case EngineFactKind::isGlyphs:
        return FactWords::tr("Glyphs");
    case EngineFactKind::isEncoding:
        return FactWords::tr("Encoding");
    case EngineFactKind::isToUnicode:
        return FactWords::tr("ToUnicode");
    case EngineFactKind::isCharacters:
        return FactWords::tr("Codes");
    case EngineFactKind::isPixels:
        return FactWords::tr("Pixels");
    case EngineFactKind::isBits:
        return FactWords::tr("Bits");
    case EngineFactKind::isColours:
        return FactWords::tr("Colours");
    case EngineFactKind::isMask:
        return FactWords::tr("Mask");
    case EngineFactKind::isDecode:
        return FactWords::tr("Decode");
    case EngineFactKind::isBox:
        return FactWords::tr("Box");
    case EngineFactKind::isMatrix:
        return FactWords::tr("Matrix");
    case EngineFactKind::isResources:
        return FactWords::tr("Resources");
    case EngineFactKind::isGroup:
        return FactWords::tr("Group");
    case EngineFactKind::isComponents:
        return FactWords::tr("Components");
    case EngineFactKind::isDescription:
        return FactWords::tr("Description");
    case EngineFactKind::isSize:
        return FactWords::tr("Size");
    case EngineFactKind::isDate:
        return FactWords::tr("Date");
    case EngineFactKind::isObjects:
        return FactWords::tr("Objects");
    case EngineFactKind::isExtended:
        return FactWords::tr("Goes on from");
    case EngineFactKind::isFile:
        return FactWords::tr("Embedded");
    }
    return {};
}

} // namespace

QString objectKindText(PDFObjectKind kind)
{
    switch (kind) {
    case PDFObjectKind::isOther:
        return {};
    case PDFObjectKind::isImage:
        return FactWords::tr("Image");
    case PDFObjectKind::isForm:
        return FactWords::tr("Form");
    case PDFObjectKind::isFont:
        return FactWords::tr("Font");
    case PDFObjectKind::isFontProgram:
        return FactWords::tr("Font program");
    case PDFObjectKind::isColourProfile:
        return FactWords::tr("Colour profile");
    case PDFObjectKind::isEmbeddedFile:
        return FactWords::tr("Embedded file");
    case PDFObjectKind::isFileSpec:
        return FactWords::tr("File specification");
    case PDFObjectKind::isMetadata:
        return FactWords::tr("Metadata");
    case PDFObjectKind::isObjectStream:
        return FactWords::tr("Object stream");
    case PDFObjectKind::isCrossReference:
        return FactWords::tr("Cross-reference stream");
    }
    return {};
}

QString factLines(const QList<PDFFact>& facts)
{
    qsizetype longest = 0;
    for (const PDFFact& fact : facts)
        longest = std::max(longest, nameOf(fact.kind).size());
    QStringList lines;
    for (const PDFFact& fact : facts)
        lines << nameOf(fact.kind).leftJustified(longest) + u"  "_s + fact.text;
    return lines.join(u'\n');
}

} // namespace tarnwick
