#pragma once

#include "pdf/PDFSelection.h"
#include "viewer/PageMarks.h"

#include <QList>
#include <QPointer>
#include <QWidget>

#include <memory>

class QAbstractScrollArea;
class QCheckBox;
class QComboBox;
class QLabel;
class QMenu;
class QSplitter;
namespace Ui {
class ViewController;
}

namespace tarnwick {

class DocumentFindings;
class DocumentSearch;
class OutlineModel;
class PDFDocument;
class PDFDocumentText;
class PDFLosses;
class PDFOutlineRequest;
class PDFThumbnailView;
class PDFView;
class PageControls;
class PlainTextView;
class SearchField;
class SearchStepper;
class TextFeed;
class ViewFlags;

/// Content of a document's main window: the pages with thumbnails and outline, the document's text
/// with its count line, the search, and the marked pages.
///
/// It sets itself up each time that it appears, which is each time that its hidden window is shown
/// by the program; a window that comes back from being minimised has not been hidden. Pages are
/// counted from 0. Its public slots are the commands of menus and controls that are its own; those
/// of pages are the page view's, which is the controller's focus proxy.
class ViewController : public QWidget
{
    Q_OBJECT

public:
    /// @param document open, borrowed. @param text its text, borrowed. @param flags read at
    ///   construction and at each appearance, borrowed. All outlive the controller.
    ViewController(PDFDocument* document, PDFDocumentText* text, const ViewFlags& flags,
        QWidget* parent = nullptr);
    ~ViewController() override;

    /// Has a line above the pages tell of what is wrong with the file, as soon as the text has been
    /// read. @param findings borrowed, outlives the controller.
    void setFindings(DocumentFindings* findings);

    /// The matches of the latest search, in document order.
    const QList<PDFSelection>& theFindList() const { return theMatches; }
    /// The marked pages, latest mark first.
    const std::vector<int>& theMPagelist() const { return theMarks.pages(); }
    /// The template of the menu of recent searches; null before the first appearance.
    QMenu* searchMenu() const { return theSearchMenu.get(); }
    /// A search is waiting for the document's text or under way.
    bool isSearching() const;

    // The controls that the commands work on, at first those of the window's layout. A setter
    // exchanges the control for all that it is used for: it is read, written and listened to from
    // then on, the one before no longer. What shows a document, a text or a menu shows it from the
    // next appearance on. Borrowed; each lives until another takes its place or the controller
    // goes.
    QSplitter* theSplitView() const { return theOutlets.splitView; }
    void setTheSplitView(QSplitter* view);
    PDFView* thePDFView() const { return theOutlets.pdfView; }
    void setThePDFView(PDFView* view);
    PDFThumbnailView* theThumbnailView() const { return theOutlets.thumbnailView; }
    void setTheThumbnailView(PDFThumbnailView* view) { theOutlets.thumbnailView = view; }
    /// What scrolls the text: held for the layout's sake.
    QAbstractScrollArea* theTextScroller() const { return theOutlets.textScroller; }
    void setTheTextScroller(QAbstractScrollArea* scroller) { theOutlets.textScroller = scroller; }
    PlainTextView* theTextView() const { return theOutlets.textView; }
    void setTheTextView(PlainTextView* view);
    SearchField* searchField() const { return theOutlets.searchField; }
    void setSearchField(SearchField* field);
    /// Where the search text is read and written.
    SearchField* searchFieldCell() const { return theOutlets.searchFieldCell; }
    void setSearchFieldCell(SearchField* field) { theOutlets.searchFieldCell = field; }
    QLabel* countText() const { return theOutlets.countText; }
    void setCountText(QLabel* label) { theOutlets.countText = label; }
    QCheckBox* caseSensitiveButton() const { return theOutlets.caseSensitiveButton; }
    void setCaseSensitiveButton(QCheckBox* button) { theOutlets.caseSensitiveButton = button; }
    QCheckBox* literalButton() const { return theOutlets.literalButton; }
    void setLiteralButton(QCheckBox* button) { theOutlets.literalButton = button; }
    SearchStepper* searchStepper() const { return theOutlets.searchStepper; }
    void setSearchStepper(SearchStepper* stepper);
    QComboBox* markPageMenu() const { return theOutlets.markPageMenu; }
    void setMarkPageMenu(QComboBox* menu);

    /// Tells something remarkable about the file in a line under the pages, as a button for the
    /// command that tells more. @param text empty for no such fact.
    void setFact(const QString& command, const QString& text);

    /// Whether a command of the slots below is possible now.
    Q_INVOKABLE bool validateCommand(const QString& command) const;

public slots:
    /// Pages fit the view's width again after the user has zoomed.
    void autoZoom();

    /// Searches the document for the search field's text and shows the first match. An empty text
    /// changes nothing. The stepper keeps its number.
    void doSearchAction();
    /// Shows the match whose index the stepper holds; beyond either end the ring goes on.
    void doSearchStepAction();
    void doFindNext();
    void doFindPrev();
    /// Searches for the text that is selected on the pages.
    void doFindSelection();
    /// Puts the cursor into the search field.
    void performFind();
    void cancelSearch();

    /// Marks the current page.
    void setPageMark();
    /// Goes to the page of the mark selected in the pop-up.
    void doChangePage();
    /// To the mark before (newer) and behind (older) the selected one.
    void goBackMark();
    void goForwardMark();

    /// Puts the cursor into the page field.
    void goToPageDialog();
    /// Opens or closes the strip of thumbnails and outline.
    void toggleSideBar(bool open);
    /// Asks for the source of the current page.
    void showPageSource();

signals:
    /// The user wants to see all findings.
    void findingsWanted();
    /// The user wants to see a page's object in the source. @param page from 0.
    void sourceOfPageWanted(int page);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void extendPageMenu(QMenu* menu, int page);
    struct Outlets
    {
        QSplitter* splitView = nullptr;
        PDFView* pdfView = nullptr;
        PDFThumbnailView* thumbnailView = nullptr;
        QAbstractScrollArea* textScroller = nullptr;
        PlainTextView* textView = nullptr;
        SearchField* searchField = nullptr;
        SearchField* searchFieldCell = nullptr;
        QLabel* countText = nullptr;
        QCheckBox* caseSensitiveButton = nullptr;
        QCheckBox* literalButton = nullptr;
        SearchStepper* searchStepper = nullptr;
        QComboBox* markPageMenu = nullptr;
    };

    template<class Control> void exchange(Control*& outlet, Control* control);
    void connectOutlets();
    void connectControls();
    void connectSearch();
    void connectSideBar();
    void viewDidLoad();
    void viewDidAppear();
    void attachThumbnails();
    void restoreSizes(bool isStripOpen);
    void saveSizes() const;
    bool isSideBarOpen() const;
    void showOutline(const PDFOutlineRequest& request);
    void updateControls();

    void leaveSearch();
    void makeSearchMenu();
    void takeMatches(const QList<PDFSelection>& matches, const PDFLosses& losses);
    void forgetMatches();
    void stepBy(int step);
    void showMatch(qsizetype index);
    void showSearchProgress(int done, int total);

    QString markTitle(int page) const;
    void rebuildMarkMenu();
    void renameMarks();
    void goToMark(std::optional<int> entry);

    std::unique_ptr<Ui::ViewController> ui;
    Outlets theOutlets;
    PDFDocument* theDocument;
    PDFDocumentText* theText;
    const ViewFlags& theFlags;
    QList<PDFSelection> theMatches;
    std::unique_ptr<QMenu> theSearchMenu;
    PageMarks theMarks;
    DocumentSearch* theSearch;
    OutlineModel* theOutline;
    PageControls* thePageControls = nullptr;
    TextFeed* theTextFeed = nullptr;
    QPointer<PDFThumbnailView> theAttachedStrip; ///< that follows the page view
};

} // namespace tarnwick
