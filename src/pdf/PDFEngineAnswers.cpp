#include "PDFEngineAnswers.h"

#include "PDFFontName.h"
#include "pdf/PageTextGeometry.h"
#include "protocol/EngineMessages.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnwick {

namespace {

/// A coordinate that painters can take: hostile files place things at infinity.
double soundCoordinate(float number)
{
    return std::isfinite(number) ? std::clamp(double{number}, -1e6, 1e6) : 0;
}

QPointF soundPoint(float x, float y)
{
    return {soundCoordinate(x), soundCoordinate(y)};
}

double soundSide(float side)
{
    return std::isfinite(side) ? std::clamp(double{side}, 1.0, 14400.0) : 1.0;
}

std::optional<int> soundCount(int count)
{
    return count >= 0 ? std::optional<int>(count) : std::nullopt;
}

int soundPage(int page, int pageCount)
{
    return page >= 0 && page < pageCount ? page : -1;
}

PDFLoss lossOf(EngineLoss loss)
{
    switch (loss) {
    case EngineLoss::isNone:
        break;
    case EngineLoss::isDamaged:
        return PDFLoss::isDamaged;
    case EngineLoss::isDamagedInPart:
        return PDFLoss::isDamagedInPart;
    case EngineLoss::isCut:
        return PDFLoss::isCut;
    }
    return PDFLoss::isNone;
}

} // namespace

std::optional<PDFOpenedAnswer> readOpenedAnswer(std::string_view payload)
{
    const auto message = unpacked<OpenedAnswer>(payload);
    if (!message)
        return std::nullopt;
    PDFOpenedAnswer answer;
    answer.facts.pageCount = message->pageCount;
    answer.facts.majorVersion = std::clamp(message->majorVersion, 0, 99);
    answer.facts.minorVersion = std::clamp(message->minorVersion, 0, 99);
    answer.facts.infoEntryCount = soundCount(message->infoEntries);
    answer.facts.catalogEntryCount = soundCount(message->catalogEntries);
    answer.firstPageSize = {soundSide(message->firstWidth), soundSide(message->firstHeight)};
    return answer;
}

std::optional<QList<PDFPageMeasure>> readMeasureAnswer(std::string_view payload, int count)
{
    const auto message = unpacked<MeasureResult>(payload);
    if (!message || message->pages.size() != static_cast<std::size_t>(std::max(count, 0)))
        return std::nullopt;
    QList<PDFPageMeasure> measures;
    for (const PageMeasure& page : message->pages) {
        PDFPageMeasure measure;
        measure.size = {soundSide(page.width), soundSide(page.height)};
        if (page.hasLabel)
            measure.label = QString::fromStdString(page.label).left(longestShownLabel);
        measures.append(measure);
    }
    return measures;
}

std::optional<QImage> readTileAnswer(const QByteArray& payload, const QSize& size)
{
    const auto message = unpacked<TileResult>(viewOf(payload));
    const qsizetype count = qsizetype{size.width()} * size.height();
    if (!message || count <= 0 || message->pixels.size() != static_cast<std::size_t>(count))
        return std::nullopt;
    const char* const pixels = message->pixels.bytes().data();
    auto* const owner = new QByteArray(payload);
    return QImage(
        reinterpret_cast<const uchar*>(pixels), size.width(), size.height(),
        qsizetype{size.width()} * 4, QImage::Format_RGB32,
        [](void* bytes) { delete static_cast<QByteArray*>(bytes); }, owner);
}

namespace {

/// The result has one UTF-16 unit more for each code point that needs two.
QString stringOf(const PackedItems<char32_t>& characters)
{
    QString string;
    string.reserve(static_cast<qsizetype>(characters.size()));
    for (std::size_t index = 0; index < characters.size(); ++index) {
        const char32_t character = characters[index];
        const bool isSound
            = character != 0 && character <= 0x10ffff && !QChar::isSurrogate(character);
        string.append(QChar::fromUcs4(isSound ? character : char32_t{QChar::ReplacementCharacter}));
    }
    return string;
}

PDFQuad soundQuad(const EngineQuad& quad)
{
    std::array<QPointF, 4> corners;
    std::transform(quad.corners.begin(), quad.corners.end(), corners.begin(),
        [](const EngineQuad::Point& point) { return soundPoint(point.x, point.y); });
    return PDFQuad(corners);
}

/// One quad for each UTF-16 unit of the string; the engine sends one for each code point.
QList<PDFQuad> quadsOf(const PackedItems<EngineQuad>& sent, const QString& string)
{
    QList<PDFQuad> quads;
    quads.reserve(string.size());
    for (std::size_t index = 0; index < sent.size(); ++index) {
        const QChar unit = string.at(quads.size());
        const PDFQuad quad = unit == u'\n' ? PDFQuad() : soundQuad(sent[index]);
        quads.append(quad);
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

PDFTextRun lookOf(const EngineTextRun& sent)
{
    const PDFFontName font = parseFontName(QString::fromStdString(sent.fontName));
    PDFTextRun run;
    run.sizeInPoints = std::isfinite(sent.size) ? std::clamp(double{sent.size}, 0.1, 10'000.0) : 1;
    run.family = font.family;
    run.isBold = sent.isBold || font.isBold;
    run.isItalic = sent.isItalic || font.isItalic;
    run.colour = QColor::fromRgb(QRgb{sent.colour & 0xffffffu});
    return run;
}

/// @returns whether the runs cover the string.
bool readRuns(
    const std::vector<EngineTextRun>& sent, const QString& string, QList<PDFTextRun>& runs)
{
    qsizetype end = 0;
    for (const EngineTextRun& one : sent) {
        PDFTextRun run = lookOf(one);
        run.start = end;
        run.length = runLength(string, end, one.length);
        if (run.length == 0)
            return false;
        end += run.length;
        runs.append(run);
    }
    return end == string.size();
}

} // namespace

std::optional<PDFPageText> readTextAnswer(std::string_view payload, PDFTextDetail detail)
{
    const auto message = unpacked<TextResult>(payload);
    const bool wantsQuads = detail == PDFTextDetail::isWithQuads;
    if (!message || message->quads.size() != (wantsQuads ? message->characters.size() : 0))
        return std::nullopt;
    PDFPageText text;
    text.loss = lossOf(message->loss);
    text.string = stringOf(message->characters);
    text.quads = quadsOf(message->quads, text.string);
    text.blocks = PageTextGeometry::blocksOf(text.quads);
    if (detail == PDFTextDetail::isWithAttributes
        && !readRuns(message->runs, text.string, text.runs))
        return std::nullopt;
    return text;
}

std::optional<QList<PDFLink>> readLinksAnswer(std::string_view payload, int pageCount)
{
    const auto message = unpacked<LinksResult>(payload);
    if (!message)
        return std::nullopt;
    QList<PDFLink> links;
    links.reserve(static_cast<qsizetype>(message->links.size()));
    for (const EngineLink& sent : message->links) {
        PDFLink link;
        link.area = QRectF(soundPoint(sent.left, sent.top), soundPoint(sent.right, sent.bottom))
                        .normalized();
        link.page = soundPage(sent.target.page, pageCount);
        link.point = soundPoint(sent.target.x, sent.target.y);
        link.url = QUrl(QString::fromStdString(sent.target.address));
        links.append(link);
    }
    return links;
}

std::optional<PDFOutline> readOutlineAnswer(std::string_view payload, int pageCount)
{
    const auto message = unpacked<OutlineResult>(payload);
    if (!message)
        return std::nullopt;
    PDFOutline outline;
    outline.loss = lossOf(message->loss);
    outline.entries.reserve(static_cast<qsizetype>(message->entries.size()));
    int deepest = 0; // an entry is at most one level below the one before it
    for (const EngineOutlineEntry& sent : message->entries) {
        PDFOutlineEntry entry;
        entry.depth = std::clamp(sent.depth, 0, deepest);
        deepest = std::min(entry.depth + 1, maximumOutlineDepth - 1);
        entry.title = QString::fromStdString(sent.title);
        entry.page = soundPage(sent.target.page, pageCount);
        entry.point = soundPoint(sent.target.x, sent.target.y);
        outline.entries.append(entry);
    }
    return outline;
}

std::optional<PDFWrittenAnswer> readWrittenAnswer(std::string_view payload, int pageCount)
{
    const auto message = unpacked<WrittenResult>(payload);
    if (!message)
        return std::nullopt;
    PDFWrittenAnswer answer;
    answer.size = message->size;
    answer.lostObjects = message->lostObjects;
    int next = 0; // pages grow
    for (const EnginePageLoss& lost : message->losses) {
        if (lost.page < next || lost.page >= pageCount)
            return std::nullopt;
        answer.losses.add(lost.page, lossOf(lost.loss));
        next = lost.page + 1;
    }
    answer.origins.reserve(message->origins.size());
    for (std::size_t object = 0; object < message->origins.size(); ++object) {
        answer.origins.push_back(message->origins[object]);
        if (answer.origins.back() > maximumObjectNumber)
            return std::nullopt;
    }
    return answer;
}

} // namespace tarnwick
