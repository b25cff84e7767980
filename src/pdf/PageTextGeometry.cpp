#include "pdf/PageTextGeometry.h"

#include <QLineF>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwick {

namespace {

constexpr int upperLeft = 0;
constexpr int upperRight = 1;
constexpr int lowerRight = 2;
constexpr int lowerLeft = 3;
constexpr qsizetype corners = 4;

double squaredDistance(const QRectF& box, const QPointF& point)
{
    const double x = std::max({0.0, box.left() - point.x(), point.x() - box.right()});
    const double y = std::max({0.0, box.top() - point.y(), point.y() - box.bottom()});
    // Lines are long and low: beside a line its own end is meant, not a longer line above or below.
    return x * x + 16 * y * y;
}

qsizetype nearestCharacter(const PDFPageText& text, const QPointF& point, double& distance)
{
    qsizetype nearest = -1;
    distance = std::numeric_limits<double>::infinity();
    constexpr qsizetype step = PDFPageText::quadBlock;
    for (qsizetype start = 0; start < text.quads.size(); start += step) {
        const qsizetype block = start / step;
        if (block < text.blocks.size() && squaredDistance(text.blocks.at(block), point) >= distance)
            continue;
        for (qsizetype index = start; index < std::min(start + step, text.quads.size()); ++index) {
            const PDFQuad& quad = text.quads.at(index);
            if (quad.isEmpty())
                continue;
            const double candidate = squaredDistance(quad.boundingRect(), point);
            if (candidate < distance) {
                nearest = index;
                distance = candidate;
            }
        }
    }
    return nearest;
}

QPointF middleOf(const PDFQuad& quad)
{
    return (quad.at(upperLeft) + quad.at(upperRight) + quad.at(lowerRight) + quad.at(lowerLeft))
        / 4;
}

/// Whether the text goes on to the left of a character. Blanks and punctuation tell by the
/// character behind them, or at a line's end by the one before them.
bool runsLeft(const PDFPageText& text, qsizetype index)
{
    const QString& string = text.string;
    const QChar unit = string.at(index);
    const bool isPair = unit.isHighSurrogate() && index + 1 < string.size();
    const char32_t character
        = isPair ? QChar::surrogateToUcs4(unit, string.at(index + 1)) : unit.unicode();
    const QChar::Direction direction = QChar::direction(character);
    if (direction == QChar::DirR || direction == QChar::DirAL)
        return true;
    if (direction == QChar::DirL || direction == QChar::DirEN || direction == QChar::DirAN)
        return false;
    const auto isPlaced = [&text](qsizetype place) {
        return place >= 0 && place < text.quads.size() && text.quads.at(place).size() >= corners;
    };
    const qsizetype other = isPlaced(index + 1) ? index + 1 : index - 1;
    if (!isPlaced(other))
        return false;
    const PDFQuad& quad = text.quads.at(index);
    const QPointF along = quad.at(upperRight) - quad.at(upperLeft);
    const QPointF to = middleOf(text.quads.at(other)) - middleOf(quad);
    return (QPointF::dotProduct(to, along) < 0) == (other > index);
}

/// Whether a point lies in the half of a character that is nearer to what follows it.
bool isBehindMiddle(const PDFPageText& text, qsizetype index, const QPointF& point)
{
    const PDFQuad& quad = text.quads.at(index);
    const QPointF along = quad.at(upperRight) - quad.at(upperLeft);
    const double right = QPointF::dotProduct(point - middleOf(quad), along);
    return runsLeft(text, index) ? right < 0 : right > 0;
}

/// Makes a quad part of an outline where they stand side by side on one line, whichever is on the
/// left. @returns whether they do.
bool join(QPolygonF& run, const PDFQuad& next)
{
    const double height = QLineF(run.at(upperLeft), run.at(lowerLeft)).length();
    const double slack = std::max(0.5, height * 0.4);
    const auto meet = [&](int upper, int lower, int nextUpper, int nextLower) {
        return QLineF(run.at(upper), next.at(nextUpper)).length() < slack
            && QLineF(run.at(lower), next.at(nextLower)).length() < slack;
    };
    const auto extend = [&](int upper, int lower) {
        run[upper] = next.at(upper);
        run[lower] = next.at(lower);
    };
    const QPointF along = next.at(upperRight) - next.at(upperLeft);
    if (meet(upperRight, lowerRight, upperLeft, lowerLeft)) {
        if (QPointF::dotProduct(next.at(upperRight) - run.at(upperRight), along) > 0)
            extend(upperRight, lowerRight);
        return true;
    }
    if (meet(upperLeft, lowerLeft, upperRight, lowerRight)) {
        if (QPointF::dotProduct(next.at(upperLeft) - run.at(upperLeft), along) < 0)
            extend(upperLeft, lowerLeft);
        return true;
    }
    return false;
}

PDFSelection::Range stretchAround(
    QTextBoundaryFinder::BoundaryType type, const QString& string, int page, qsizetype index)
{
    if (index < 0 || index >= string.size())
        return {page, 0, 0};
    // A finder looks at the whole of its text first; a line is enough for a word.
    const qsizetype lineStart = index == 0 ? 0 : string.lastIndexOf(u'\n', index - 1) + 1;
    qsizetype lineEnd = string.indexOf(u'\n', index);
    lineEnd = lineEnd < 0 ? string.size() : std::max(lineEnd, index + 1);
    const QStringView line = QStringView(string).mid(lineStart, lineEnd - lineStart);
    QTextBoundaryFinder finder(type, line.data(), line.size());
    finder.setPosition(index - lineStart + 1);
    qsizetype end = finder.isAtBoundary() ? finder.position() : finder.toNextBoundary();
    end = end < 0 ? line.size() : end;
    finder.setPosition(index - lineStart);
    qsizetype start = finder.isAtBoundary() ? finder.position() : finder.toPreviousBoundary();
    start = std::max<qsizetype>(start, 0);
    return {page, lineStart + start, end - start};
}

} // namespace

qsizetype PageTextGeometry::characterAt(const PDFPageText& text, const QPointF& point)
{
    double distance = 0;
    const qsizetype index = nearestCharacter(text, point, distance);
    constexpr double slack = 2; // points
    return index >= 0 && distance <= slack * slack ? index : -1;
}

qsizetype PageTextGeometry::nearestPosition(const PDFPageText& text, const QPointF& point)
{
    double distance = 0;
    const qsizetype index = nearestCharacter(text, point, distance);
    if (index < 0)
        return 0;
    const PDFSelection::Range cluster
        = stretchAround(QTextBoundaryFinder::Grapheme, text.string, 0, index);
    return isBehindMiddle(text, index, point) ? cluster.start + cluster.length : cluster.start;
}

PDFSelection::Range PageTextGeometry::wordAt(const QString& string, int page, qsizetype index)
{
    return stretchAround(QTextBoundaryFinder::Word, string, page, index);
}

PDFSelection::Range PageTextGeometry::lineAt(const QString& string, int page, qsizetype index)
{
    if (index < 0 || index >= string.size())
        return {page, 0, 0};
    const qsizetype start = index == 0 ? 0 : string.lastIndexOf(u'\n', index - 1) + 1;
    const qsizetype end = string.indexOf(u'\n', index);
    return {page, start, (end < 0 ? string.size() : end) - start};
}

PDFSelection PageTextGeometry::selectionBetween(const PDFTextPosition& one,
    const PDFTextPosition& other, const std::function<qsizetype(int page)>& lengthOf)
{
    const PDFTextPosition& first = std::min(one, other);
    const PDFTextPosition& last = std::max(one, other);
    QList<PDFSelection::Range> ranges;
    for (int page = first.page; page <= last.page; ++page) {
        const qsizetype length = lengthOf(page);
        const qsizetype start = page == first.page ? std::min(first.index, length) : 0;
        const qsizetype end = page == last.page ? std::min(last.index, length) : length;
        if (end > start)
            ranges.append({page, start, end - start});
    }
    return PDFSelection(ranges);
}

QList<QPolygonF> PageTextGeometry::outlines(
    const PDFPageText& text, qsizetype start, qsizetype length)
{
    QList<QPolygonF> runs;
    const qsizetype first = std::clamp<qsizetype>(start, 0, text.quads.size());
    const qsizetype end
        = first + std::min(std::max<qsizetype>(length, 0), text.quads.size() - first);
    // Both units of a surrogate pair share a quad; marks and the further letters of a ligature have
    // none of their own: they stand without width within the run.
    const auto addsNothing = [&text](qsizetype index) {
        const PDFQuad& quad = text.quads.at(index);
        return quad == text.quads.at(index - 1) || quad.at(upperLeft) == quad.at(upperRight);
    };
    bool mayContinue = false;
    for (qsizetype index = first; index < end; ++index) {
        const PDFQuad& quad = text.quads.at(index);
        if (quad.size() < corners) {
            mayContinue = false;
        } else if (!mayContinue) {
            runs.append(quad);
            mayContinue = true;
        } else if (!addsNothing(index) && !join(runs.last(), quad)) {
            runs.append(quad);
        }
    }
    return runs;
}

QList<QRectF> PageTextGeometry::blocksOf(const QList<PDFQuad>& quads)
{
    QList<QRectF> blocks;
    blocks.reserve(quads.size() / PDFPageText::quadBlock + 1);
    for (qsizetype start = 0; start < quads.size(); start += PDFPageText::quadBlock) {
        const qsizetype end = std::min(start + PDFPageText::quadBlock, quads.size());
        double edges[] = {1e9, 1e9, -1e9, -1e9};
        for (qsizetype index = start; index < end; ++index) {
            if (quads.at(index).isEmpty())
                continue;
            const QRectF box = quads.at(index).boundingRect();
            edges[0] = std::min(edges[0], box.left());
            edges[1] = std::min(edges[1], box.top());
            edges[2] = std::max(edges[2], box.right());
            edges[3] = std::max(edges[3], box.bottom());
        }
        const bool hasPlaces = edges[0] <= edges[2];
        blocks.append(hasPlaces ? QRectF(QPointF(edges[0], edges[1]), QPointF(edges[2], edges[3]))
                                : QRectF());
    }
    return blocks;
}

QList<PageTextGeometry::Stretch> PageTextGeometry::stretchesIn(
    const PDFPageText& text, const QRectF& area)
{
    if (text.blocks.isEmpty())
        return {{0, text.string.size()}};
    constexpr qsizetype step = PDFPageText::quadBlock;
    QList<Stretch> stretches;
    for (qsizetype block = 0; block < text.blocks.size(); ++block) {
        const QRectF& box = text.blocks.at(block);
        // Characters without width show as well, once they are selected.
        if (box.left() > area.right() || box.right() < area.left() || box.top() > area.bottom()
            || box.bottom() < area.top())
            continue;
        if (stretches.isEmpty() || stretches.constLast().end < block * step)
            stretches.append({block * step, block * step});
        stretches.last().end = std::min((block + 1) * step, text.quads.size());
    }
    return stretches;
}

} // namespace tarnwick
