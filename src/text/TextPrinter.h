#pragma once

#include "text/TextPalette.h"
#include "text/TextSegments.h"

#include <QDeadlineTimer>
#include <QPainter>

#include <functional>
#include <memory>

class QPagedPaintDevice;

namespace tarnwick {

/// Prints a text: laid out for the width inside the page's margins, in light colours, split into
/// pages by height.
///
/// Rows are laid out as they are printed, so that no more than a segment of a line is in memory,
/// and in portions, so that an event loop can go on between them.
class TextPrinter
{
public:
    struct Choice
    {
        /// Whether a page, counted from 1, is printed; none prints every page.
        std::function<bool(int page)> isWanted;
        int lastPage = 0; ///< after which printing ends, or 0
        int copies = 1; ///< one after the other, each complete
    };

    /// @param device borrowed; its page layout holds from here on.
    TextPrinter(std::shared_ptr<const TextStorage> storage, const QFont& font,
        QPagedPaintDevice& device, Choice choice);

    /// Prints on until the deadline. @returns whether anything is left.
    bool advance(QDeadlineTimer deadline);

    /// The page that is being laid out, from 1.
    int page() const { return thePage; }
    /// How much of the text is laid out, 0 to 1, in each copy.
    double progress() const;
    /// The device could not be painted on; advance() then has nothing left.
    bool hasFailed() const { return theHasFailed; }

private:
    void printSegment(const TextSegment& segment, QDeadlineTimer deadline);
    bool beginRow();
    void beginPage();
    void endCopy();

    TextSegments theSegments;
    TextPalette theColours = TextPalette::forPaper();
    QPagedPaintDevice& theDevice;
    QPainter thePainter;
    Choice theChoice;
    qreal thePageHeight;

    qsizetype theLine = 0;
    qsizetype theSegment = 0;
    int theRow = 0;
    int thePage = 1;
    qreal theY = 0; ///< of the next row
    bool isOnPaper = false; ///< thePage is begun and wanted
    bool theIsDone = false;
    bool theHasFailed = false;
};

} // namespace tarnwick
