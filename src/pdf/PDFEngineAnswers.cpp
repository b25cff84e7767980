#include "PDFEngineAnswers.h"

#include "PDFFontName.h"
#include "pdf/PageTextGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tarnwick {

namespace {

constexpr qsizetype longestShownLabel = 255; ///< UTF-16 units

QString textOf(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// A coordinate that painters can take: hostile files place things at infinity.
double soundCoordinate(float number)
{
    return std::isfinite(number) ? std::clamp(double{number}, -1e6, 1e6) : 0;
}

double soundSide(float side)
{
    return std::isfinite(side) ? std::clamp(double{side}, 1.0, 14400.0) : 1.0;
}

QPointF takePoint(PayloadReader& reader)
{
    const double x = soundCoordinate(reader.take<float>());
    const double y = soundCoordinate(reader.take<float>());
    return {x, y};
}

QSizeF takeSize(PayloadReader& reader)
{
    const double width = soundSide(reader.take<float>());
    const double height = soundSide(reader.take<float>());
    return {width, height};
}

/// The bytes of a text in an answer. A longer one is read as nothing, and the answer is then none.
std::string_view takeText(PayloadReader& reader, std::size_t longest)
{
    const auto size = reader.take<std::uint32_t>();
    return reader.takeBytes(size <= longest ? size : std::numeric_limits<std::size_t>::max());
}

std::optional<PDFLoss> takeLoss(PayloadReader& reader)
{
    switch (static_cast<EngineLoss>(reader.take<quint8>())) {
    case EngineLoss::isNone:
        return PDFLoss::isNone;
    case EngineLoss::isDamaged:
        return PDFLoss::isDamaged;
    case EngineLoss::isDamagedInPart:
        return PDFLoss::isDamagedInPart;
    case EngineLoss::isCut:
        return PDFLoss::isCut;
    }
    return std::nullopt;
}

std::optional<int> soundCount(int count)
{
    return count >= 0 ? std::optional<int>(count) : std::nullopt;
}

} // namespace

std::optional<PDFOpenedAnswer> readOpenedAnswer(PayloadReader& reader)
{
    PDFOpenedAnswer answer;
    answer.facts.pageCount = reader.take<int>();
    answer.facts.majorVersion = std::clamp(reader.take<int>(), 0, 99);
    answer.facts.minorVersion = std::clamp(reader.take<int>(), 0, 99);
    answer.facts.infoEntryCount = soundCount(reader.take<int>());
    answer.facts.catalogEntryCount = soundCount(reader.take<int>());
    answer.firstPageSize = takeSize(reader);
    const int pages = answer.facts.pageCount;
    if (!reader.isDone() || pages < 0 || pages > maximumPageCount)
        return std::nullopt;
    return answer;
}

std::optional<QList<PDFPageMeasure>> readMeasureAnswer(PayloadReader& reader, int count)
{
    QList<PDFPageMeasure> measures;
    for (int page = 0; page < count && reader.isGood(); ++page) {
        PDFPageMeasure measure;
        measure.size = takeSize(reader);
        const bool hasLabel = reader.take<quint8>() != 0;
        const QString label = textOf(takeText(reader, longestLabel));
        if (hasLabel)
            measure.label = label.left(longestShownLabel);
        measures.append(measure);
    }
    if (!reader.isDone())
        return std::nullopt;
    return measures;
}

std::optional<QImage> readTileAnswer(
    PayloadReader& reader, const QByteArray& payload, const QSize& size)
{
    const qsizetype rowSize = qsizetype{size.width()} * 4;
    const std::string_view pixels
        = reader.takeBytes(static_cast<std::size_t>(rowSize * size.height()));
    if (!reader.isDone() || pixels.empty())
        return std::nullopt;
    auto* const owner = new QByteArray(payload);
    return QImage(
        reinterpret_cast<const uchar*>(pixels.data()), size.width(), size.height(), rowSize,
        QImage::Format_RGB32, [](void* bytes) { delete static_cast<QByteArray*>(bytes); }, owner);
}

namespace {

/// Takes count code points; the result has one UTF-16 unit more for each that needs two.
QString takeString(PayloadReader& reader, std::uint32_t count)
{
    QString string;
    if (!reader.holds(count, sizeof(char32_t)))
        return string;
    string.reserve(static_cast<qsizetype>(count));
    for (std::uint32_t index = 0; index < count; ++index) {
        const auto character = static_cast<char32_t>(reader.take<std::uint32_t>());
        const bool isSound
            = character != 0 && character <= 0x10ffff && !QChar::isSurrogate(character);
        string.append(QChar::fromUcs4(isSound ? character : char32_t{QChar::ReplacementCharacter}));
    }
    return string;
}

PDFQuad takeQuad(PayloadReader& reader)
{
    std::array<QPointF, 4> corners;
    for (QPointF& corner : corners)
        corner = takePoint(reader);
    return PDFQuad(corners);
}

/// One quad for each UTF-16 unit; the engine sends one for each code point.
QList<PDFQuad> takeQuads(PayloadReader& reader, std::uint32_t count, const QString& string)
{
    QList<PDFQuad> quads;
    if (!reader.holds(count, 8 * sizeof(float)))
        return quads;
    quads.reserve(string.size());
    while (quads.size() < string.size()) {
        const QChar unit = string.at(quads.size());
        const PDFQuad quad = takeQuad(reader);
        quads.append(unit == u'\n' ? PDFQuad() : quad);
        if (unit.isHighSurrogate())
            quads.append(quad);
    }
    return quads;
}

/// The next run, whose code points lie in string from unit start on. @returns its length in units,
/// 0 when it makes no sense.
qsizetype runLength(const QString& string, qsizetype start, std::uint32_t codePoints)
{
    qsizetype end = start;
    for (; codePoints > 0 && end < string.size(); --codePoints)
        end += string.at(end).isHighSurrogate() ? 2 : 1;
    return codePoints == 0 ? end - start : 0;
}

bool takeRuns(PayloadReader& reader, const QString& string, QList<PDFTextRun>& runs)
{
    constexpr std::size_t smallestRun = 21;
    const auto count = reader.take<std::uint32_t>();
    if (count > maximumTextRuns || !reader.holds(count, smallestRun))
        return false;
    qsizetype end = 0;
    for (std::uint32_t index = 0; index < count && reader.isGood(); ++index) {
        PDFTextRun run;
        reader.take<std::uint32_t>(); // where the run starts: right behind the one before
        run.start = end;
        run.length = runLength(string, end, reader.take<std::uint32_t>());
        const float size = reader.take<float>();
        run.sizeInPoints = std::isfinite(size) ? std::clamp(double{size}, 0.1, 10'000.0) : 1;
        const auto flags = reader.take<std::uint8_t>();
        const auto colour = reader.take<std::uint32_t>();
        const PDFFontName font = parseFontName(textOf(takeText(reader, longestFontName)));
        run.family = font.family;
        run.isBold = (flags & 1) || font.isBold;
        run.isItalic = (flags & 2) || font.isItalic;
        run.colour = QColor::fromRgb(QRgb{colour & 0xffffffu});
        if (run.length == 0)
            return false;
        end += run.length;
        runs.append(run);
    }
    return reader.isGood() && end == string.size();
}

} // namespace

std::optional<PDFPageText> readTextAnswer(PayloadReader& reader, PDFTextDetail detail)
{
    PDFPageText text;
    const std::optional<PDFLoss> loss = takeLoss(reader);
    if (!loss)
        return std::nullopt;
    text.loss = *loss;
    const auto count = reader.take<std::uint32_t>();
    if (count > maximumPageCharacters)
        return std::nullopt;
    text.string = takeString(reader, count);
    if (detail == PDFTextDetail::isWithQuads) {
        text.quads = takeQuads(reader, count, text.string);
        text.blocks = PageTextGeometry::blocksOf(text.quads);
    }
    if (detail == PDFTextDetail::isWithAttributes && !takeRuns(reader, text.string, text.runs))
        return std::nullopt;
    if (!reader.isDone())
        return std::nullopt;
    return text;
}

namespace {

struct Target
{
    int page = -1;
    QPointF point;
    QString address;
};

/// Takes titles and addresses while they are no longer, in all, than an answer's may be.
class TargetTexts
{
public:
    explicit TargetTexts(PayloadReader& reader)
        : theReader(reader)
    {
    }
    QString take()
    {
        const std::string_view text = takeText(theReader, std::min(longestTargetText, theRoom));
        theRoom -= text.size();
        return textOf(text);
    }

private:
    PayloadReader& theReader;
    std::size_t theRoom = maximumTargetTexts;
};

Target takeTarget(PayloadReader& reader, TargetTexts& texts, int pageCount)
{
    Target target;
    target.page = reader.take<int>();
    target.point = takePoint(reader);
    target.address = texts.take();
    if (target.page < 0 || target.page >= pageCount)
        target.page = -1;
    return target;
}

} // namespace

std::optional<QList<PDFLink>> readLinksAnswer(PayloadReader& reader, int pageCount)
{
    constexpr std::size_t smallestLink = 32;
    QList<PDFLink> links;
    const auto count = reader.take<std::uint32_t>();
    if (count > maximumLinks || !reader.holds(count, smallestLink))
        return std::nullopt;
    TargetTexts texts(reader);
    for (std::uint32_t index = 0; index < count && reader.isGood(); ++index) {
        PDFLink link;
        const QPointF corner = takePoint(reader);
        link.area = QRectF(corner, takePoint(reader)).normalized();
        const Target target = takeTarget(reader, texts, pageCount);
        link.page = target.page;
        link.point = target.point;
        link.url = QUrl(target.address);
        links.append(link);
    }
    if (!reader.isDone())
        return std::nullopt;
    return links;
}

std::optional<PDFOutline> readOutlineAnswer(PayloadReader& reader, int pageCount)
{
    constexpr std::size_t smallestEntry = 24;
    PDFOutline outline;
    const std::optional<PDFLoss> loss = takeLoss(reader);
    if (!loss)
        return std::nullopt;
    outline.loss = *loss;
    const auto count = reader.take<std::uint32_t>();
    if (count > maximumOutlineEntries || !reader.holds(count, smallestEntry))
        return std::nullopt;
    TargetTexts texts(reader);
    int deepest = 0; // an entry is at most one level below the one before it
    for (std::uint32_t index = 0; index < count && reader.isGood(); ++index) {
        PDFOutlineEntry entry;
        entry.depth = std::clamp(reader.take<int>(), 0, deepest);
        deepest = std::min(entry.depth + 1, maximumOutlineDepth - 1);
        entry.title = texts.take();
        const Target target = takeTarget(reader, texts, pageCount);
        entry.page = target.page;
        entry.point = target.point;
        outline.entries.append(entry);
    }
    if (!reader.isDone())
        return std::nullopt;
    return outline;
}

std::optional<PDFWrittenAnswer> readWrittenAnswer(PayloadReader& reader, int pageCount)
{
    constexpr std::size_t lossSize = 5;
    PDFWrittenAnswer answer;
    answer.size = reader.take<std::uint64_t>();
    answer.lostObjects = reader.take<std::uint32_t>();
    const auto count = reader.take<std::uint32_t>();
    if (!reader.holds(count, lossSize))
        return std::nullopt;
    int next = 0; // pages grow
    for (std::uint32_t index = 0; index < count; ++index) {
        const int page = reader.take<int>();
        const std::optional<PDFLoss> loss = takeLoss(reader);
        if (!loss || page < next || page >= pageCount)
            return std::nullopt;
        answer.losses.add(page, *loss);
        next = page + 1;
    }
    if (!reader.isDone())
        return std::nullopt;
    return answer;
}

} // namespace tarnwick
