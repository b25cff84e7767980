#pragma once

#include "pdf/PDFSelection.h"
#include "pdf/PDFText.h"

#include <QList>
#include <QObject>
#include <QVariantAnimation>

class QPainter;
class QPalette;
class QRect;

namespace tarnwick {

class PageViewport;

/// Marks on the pages what is selected and what a search has found.
class TextOverlay : public QObject
{
    Q_OBJECT

public:
    /// @param viewport borrowed.
    TextOverlay(const PageViewport& viewport, QObject* parent);
    ~TextOverlay() override;

    /// Matches of a search, in document order.
    void setMatches(const QList<PDFSelection>& matches);
    /// Draws attention to the selection for half a second.
    void pulse() { thePulse.start(); }
    void endPulse() { thePulse.stop(); }

    /// Marks a page whose image is there. @param text with quads. @param exposed what of the view
    /// needs painting.
    void paint(QPainter& painter, int page, const PDFPageText& text, const PDFSelection& selection,
        const QRect& exposed, const QPalette& palette) const;

signals:
    /// It looks different now.
    void changed();

private:
    const PageViewport& theViewport;
    QList<PDFSelection> theMatches;
    QVariantAnimation thePulse;
};

} // namespace tarnwick
