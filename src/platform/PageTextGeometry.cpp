#include "platform/PageTextGeometry.h"

#include <QLineF>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <limits>

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
    for (qsizetype index = 0; index < text.quads.size(); ++index) {
        const QPolygonF& quad = text.quads.at(index);
        if (quad.size() < corners)
            continue;
        const double candidate = squaredDistance(quad.boundingRect(), point);
        if (candidate < distance) {
            nearest = index;
            distance = candidate;
        }
    }
    return nearest;
}

/// Whether a point lies in the second half of a character along its line's direction.
bool isBehindMiddle(const QPolygonF& quad, const QPointF& point)
{
    const QPointF along = quad.at(upperRight) - quad.at(upperLeft);
    const QPointF middle
        = (quad.at(upperLeft) + quad.at(upperRight) + quad.at(lowerRight) + quad.at(lowerLeft)) / 4;
    return QPointF::dotProduct(point - middle, along) > 0;
}

/// Whether a quad goes on where another ends, on the same line.
bool continues(const QPolygonF& run, const QPolygonF& next)
{
    const double height = QLineF(run.at(upperLeft), run.at(lowerLeft)).length();
    const double slack = std::max(0.5, height * 0.4);
    return QLineF(run.at(upperRight), next.at(upperLeft)).length() < slack
        && QLineF(run.at(lowerRight), next.at(lowerLeft)).length() < slack;
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
    return isBehindMiddle(text.quads.at(index), point) ? cluster.start + cluster.length
                                                       : cluster.start;
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
    bool mayContinue = false;
    for (qsizetype index = first; index < end; ++index) {
        const QPolygonF& quad = text.quads.at(index);
        if (quad.size() < corners) {
            mayContinue = false;
        } else if (mayContinue && continues(runs.last(), quad)) {
            runs.last()[upperRight] = quad.at(upperRight);
            runs.last()[lowerRight] = quad.at(lowerRight);
        } else {
            // The second unit of a surrogate pair and the letters of a ligature may share a quad.
            if (!mayContinue || runs.last() != quad)
                runs.append(quad);
            mayContinue = true;
        }
    }
    return runs;
}
