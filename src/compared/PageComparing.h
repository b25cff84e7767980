#pragma once

#include "compared/ComparedPage.h"
#include "work/Work.h"

#include <QImage>
#include <QObject>
#include <QSizeF>
#include <QString>

#include <functional>
#include <memory>

namespace tarnwick {

class PDFDocument;
class PDFRequest;

/// Draws and reads the two pages of one pair, and compares them.
class PageComparing : public QObject
{
    Q_OBJECT

public:
    /// Both borrowed.
    PageComparing(PDFDocument* before, PDFDocument* after, QObject* parent);

    /// Compares a pair; gives up the one before.
    void start(const PagePair& pair);
    void cancel();

signals:
    void finished(const tarnwick::ComparedPage& page);

private:
    /// What was drawn and read of the two pages.
    struct Material
    {
        std::array<QImage, 2> images;
        std::array<QString, 2> texts;
        double scale = 1; ///< pixels for a point
        std::array<QSizeF, 2> sizes; ///< of the pages, in points
    };
    std::array<QSizeF, 2> presentSizes(const PagePair& pair) const;
    void ask(std::size_t side, int page);
    void askForText(std::size_t side, int page);
    void oneIsDone();
    void compare();

    std::array<PDFDocument*, 2> theDocuments;
    ComparedPage thePage;
    Material theMaterial;
    std::unique_ptr<QObject> theRequests; ///< owner of those under way
    int theOpenCount = 0;
    Work theWork;
};

} // namespace tarnwick
