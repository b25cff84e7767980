#pragma once

#include "compare/PagePairs.h"
#include "pdf/PDFRequest.h"

#include <QImage>
#include <QScrollArea>

#include <array>
#include <memory>

class QLabel;

namespace tarnwick {

class DocumentComparison;

/// Two pages on each other: what only the earlier one has is red, what only the later one has is
/// blue-green, what both have is grey.
class OverlayView : public QScrollArea
{
    Q_OBJECT

public:
    explicit OverlayView(QWidget* parent = nullptr);

    /// Shows nothing until showPair(). @param comparison borrowed; null before it goes.
    void setComparison(const DocumentComparison* comparison);
    /// Shows a pair; draws it once the view shows.
    void showPair(int pair);
    /// What is drawn; null while nothing is.
    const QImage& image() const { return theImage; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void draw();
    void ask(std::size_t side, int page, double scale);
    void oneIsDone();
    void say(const QString& text);

    const DocumentComparison* theComparison = nullptr;
    QLabel* theLabel;
    int thePair = -1;
    std::array<QImage, 2> theSources;
    QString theProblem;
    int theOpenCount = 0;
    std::unique_ptr<QObject> theRequests;
    QImage theImage;
};

} // namespace tarnwick
