#pragma once

#include "SearchField.h"
#include "frame/ViewFlags.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocumentText.h"
#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"
#include "viewer/ViewController.h"

#include <QTest>

namespace tarnwick {

/// Ten pages with the labels 1, 2, 3, i, ii, A-1, A-1, then plain numbers again from 8.
inline PdfBuilder labelledPages()
{
    PdfBuilder builder;
    for (int page = 1; page <= 10; ++page)
        builder.addPage("page " + std::to_string(page));
    builder.setCatalogEntries("/PageLabels << /Nums [ 0 << /S /D >> 3 << /S /r >> "
                              "5 << /P (A-1) >> 7 << /S /D /St 8 >> 9 << >> ] >>");
    return builder;
}

/// View flags that a test sets.
class TestFlags : public ViewFlags
{
public:
    bool showThumbnail() const override { return isShowingThumbnails; }
    bool showRawSource() const override { return false; }
    bool showSummarySource() const override { return false; }

    bool isShowingThumbnails = true;
};

/// A main window's content on a built document, that has been opened.
class ViewerFixture
{
public:
    explicit ViewerFixture(const PdfBuilder& builder, bool showsThumbnails = true)
        : theDocument(builder.bytes())
    {
        theFlags.isShowingThumbnails = showsThumbnails;
        theText = std::make_unique<PDFDocumentText>(theDocument.get());
        theController
            = std::make_unique<ViewController>(theDocument.get(), theText.get(), theFlags);
        theController->resize(1024, 700);
    }

    ViewController* operator->() { return theController.get(); }
    ViewController& operator*() { return *theController; }
    TestFlags& flags() { return theFlags; }
    PDFDocument& document() { return *theDocument.get(); }
    PDFDocumentText& text() { return *theText; }
    PDFView& pages() { return *theController->thePDFView(); }
    template<class Widget> Widget* child(const char* name)
    {
        return theController->findChild<Widget*>(QLatin1String(name));
    }

    /// Shows the controller and waits for the whole text. @returns whether it came.
    bool appear()
    {
        theController->show();
        return QTest::qWaitFor([this] { return theText->isWhole(); }, 30'000);
    }

    /// Begins a search as its field does.
    void beginSearch(const char* text)
    {
        theController->searchFieldCell()->setStringValue(QString::fromLatin1(text));
        theController->doSearchAction();
    }

    void destroyController() { theController.reset(); }

private:
    TestFlags theFlags;
    OpenedDocument theDocument;
    std::unique_ptr<PDFDocumentText> theText;
    std::unique_ptr<ViewController> theController;
};

/// The same, showing its whole text.
class ShownViewer : public ViewerFixture
{
public:
    explicit ShownViewer(const PdfBuilder& builder = labelledPages(), bool showsThumbnails = true)
        : ViewerFixture(builder, showsThumbnails)
    {
        if (!appear())
            qFatal("the text does not come");
    }
};

} // namespace tarnwick
