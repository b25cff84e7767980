#pragma once

#include "pages/PDFView.h"
#include "pdf/PDFDocumentText.h"

#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"
#include "support/Wheel.h"

#include <QTest>

namespace tarnwick {

/// Ten pages with two lines each.
inline std::string tenPages()
{
    PdfBuilder builder;
    for (int page = 0; page < 10; ++page)
        builder.addPage("Alpha beta " + std::to_string(page) + "\nsecond line");
    return builder.bytes();
}

/// A page view of 400 x 500 pixels that shows a document.
struct Shown
{
    explicit Shown(const std::string& bytes)
        : document(bytes)
    {
        text = std::make_unique<PDFDocumentText>(document.get());
        view.resize(400, 500);
        view.setDocument(document.get(), text.get());
        view.show();
    }

    /// Whether the present page is there to be read and clicked.
    bool waitForText()
    {
        return QTest::qWaitFor([this] { return !view.characterRect(0).isNull(); }, 20'000);
    }
    QPoint at(qsizetype character) const
    {
        const QRect rect = view.characterRect(character);
        return {rect.left() + rect.width() / 4, rect.center().y()};
    }
    QString selected() const { return text->string(view.currentSelection()); }

    OpenedDocument document;
    std::unique_ptr<PDFDocumentText> text;
    PDFView view;
};

inline QColor colourAt(PDFView& view, const QPoint& point)
{
    return view.viewport()->grab().toImage().pixelColor(point);
}

} // namespace tarnwick
