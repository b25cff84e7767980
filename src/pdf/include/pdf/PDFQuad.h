#pragma once

#include <QPolygonF>
#include <QRectF>

#include <algorithm>
#include <array>

namespace tarnwick {

/// Where a character stands: four corners in page space (PDFPageText), or none.
///
/// As flat as it can be: a page may have three million of them, to be made and freed in no time. It
/// reads like a polygon of four points, or of none.
class PDFQuad
{
public:
    /// No place.
    PDFQuad() = default;
    explicit PDFQuad(const std::array<QPointF, 4>& corners)
        : isThere(true)
    {
        for (std::size_t corner = 0; corner < corners.size(); ++corner)
            theCorners[corner] = {
                static_cast<float>(corners[corner].x()), static_cast<float>(corners[corner].y())};
    }
    /// A polygon of fewer than four points is no place.
    PDFQuad(const QPolygonF& polygon) // NOLINT: both mean the same
    {
        if (polygon.size() >= 4)
            *this = PDFQuad(
                std::array<QPointF, 4>{polygon.at(0), polygon.at(1), polygon.at(2), polygon.at(3)});
    }
    operator QPolygonF() const // NOLINT: likewise
    {
        return isThere ? QPolygonF({at(0), at(1), at(2), at(3)}) : QPolygonF();
    }

    bool isEmpty() const { return !isThere; }
    qsizetype size() const { return isThere ? 4 : 0; }
    /// Upper left, upper right, lower right, lower left. Precondition: !isEmpty().
    QPointF at(int corner) const
    {
        const Corner& one = theCorners[static_cast<std::size_t>(corner)];
        return {one.x, one.y};
    }
    void translate(double x, double y)
    {
        for (Corner& corner : theCorners) {
            corner.x += static_cast<float>(x);
            corner.y += static_cast<float>(y);
        }
    }
    /// Null without a place.
    QRectF boundingRect() const
    {
        const auto [left, right]
            = std::minmax({theCorners[0].x, theCorners[1].x, theCorners[2].x, theCorners[3].x});
        const auto [top, bottom]
            = std::minmax({theCorners[0].y, theCorners[1].y, theCorners[2].y, theCorners[3].y});
        return {QPointF(left, top), QPointF(right, bottom)};
    }

    bool operator==(const PDFQuad&) const = default;

private:
    struct Corner
    {
        float x = 0;
        float y = 0;
        bool operator==(const Corner&) const = default;
    };
    std::array<Corner, 4> theCorners;
    bool isThere = false;
};

} // namespace tarnwick

Q_DECLARE_TYPEINFO(tarnwick::PDFQuad, Q_PRIMITIVE_TYPE);
