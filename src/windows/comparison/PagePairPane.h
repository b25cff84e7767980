#pragma once

#include "compared/ComparedPage.h"
#include "pages/PDFView.h"

#include <QWidget>

#include <array>

class QLabel;

namespace tarnwick {

class DocumentComparison;

/// The pages of two documents beside each other, scrolled and zoomed together, or in one place to
/// be looked at by turns. Where they differ is framed.
class PagePairPane : public QWidget
{
    Q_OBJECT

public:
    explicit PagePairPane(QWidget* parent = nullptr);

    /// @param comparison borrowed; whose documents are shown from now on.
    void setComparison(DocumentComparison* comparison, const QString& before, const QString& after);
    /// Shows nothing any more: what the comparison has borrowed is about to go.
    void clear();
    PDFView* view(ComparedSide side) const { return theParts[static_cast<std::size_t>(side)].view; }

    /// Shows a pair of pages, its first area of change in view.
    void showPair(int pair);
    /// The pair that shows; -1 without one.
    int presentPair() const;

    enum class Mode
    {
        isSideBySide,
        isByTurns,
    };
    void setMode(Mode mode);
    Mode mode() const { return theMode; }
    /// By turns: shows the other one.
    void turn();
    ComparedSide shownSide() const { return theShownSide; }

signals:
    void presentPairChanged(int pair);
    /// The user has pressed the space bar in one of the views.
    void turnWanted();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Part
    {
        QWidget* whole = nullptr;
        QLabel* name = nullptr;
        PDFView* view = nullptr;
    };
    Part makePart(ComparedSide side);
    void follow(ComparedSide side);
    void followScale(ComparedSide side);
    void place();
    PDFView::Place partnerOf(ComparedSide side, const PDFView::Place& place) const;
    QList<QRectF> areasOn(ComparedSide side, int page) const;

    std::array<Part, 2> theParts;
    DocumentComparison* theComparison = nullptr;
    Mode theMode = Mode::isSideBySide;
    ComparedSide theShownSide = ComparedSide::isAfter;
    int thePresentPair = -1;
    bool isFollowing = false;
};

} // namespace tarnwick
