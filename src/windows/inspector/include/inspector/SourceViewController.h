#pragma once

#include "analysis/SourceText.h"
#include "frame/ViewFlags.h"
#include "inspector/SourceScan.h"
#include "pdf/PDFDocument.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>
#include <optional>

class QAbstractScrollArea;
class QLabel;
class QToolButton;
namespace Ui {
class SourceWindow;
}

namespace tarnwick {

class Document;
class GoToBar;
class ObjectPanel;
class PaneLayout;
class PlainTextView;
class SourceInquiry;
class SourceNavigator;
class TableLoader;

/// Content of the source inspector: three text panes.
///
/// The upper pane shows the flattened PDF, the document as the PDF engine writes it out again; the
/// lower one the file as stored; the bottom one what the engine tells of the document and the count
/// of objects in both. The view flags showRawSource and showSummarySource decide whether the two
/// show undecorated texts, listings, or object lists alone; they are read at every showing.
///
/// Every showing fills the panes anew. The engine and the scans work meanwhile; each pane says when
/// it is waiting, lets the user give up, and says what went wrong.
///
/// Of a document that is not opened, or not yet, the stored file shows all the same, with its
/// listing; the upper pane says why it is empty, and is filled when the document is opened.
class SourceViewController : public QWidget
{
    Q_OBJECT

public:
    /// @param document, flags borrowed for the view's life.
    SourceViewController(Document* document, const ViewFlags* flags, QWidget* parent = nullptr);
    ~SourceViewController() override;

    PDFDocument* theDocument() const { return theRenderedDocument; }
    /// The flattened PDF's source of the latest fill that had one; null before.
    std::shared_ptr<const SourceText> theFlatText() const { return theUpper.source; }
    /// The stored file's source likewise.
    std::shared_ptr<const SourceText> theSourceText() const { return theLower.source; }

    // The panes, at first those of the window's layout. A setter exchanges the pane for all that it
    // is used for; another one gets its text from the next filling on. Borrowed; each lives until
    // another takes its place or the controller goes.
    PlainTextView* upperTextView() const { return theUpper.view; }
    void setUpperTextView(PlainTextView* view);
    PlainTextView* lowerTextView() const { return theLower.view; }
    void setLowerTextView(PlainTextView* view);
    PlainTextView* bottomTextView() const { return theBottomView; }
    void setBottomTextView(PlainTextView* view);
    // What scrolls them: held for the layout's sake.
    QAbstractScrollArea* upperTextScroller() const { return theUpperScroller; }
    void setUpperTextScroller(QAbstractScrollArea* scroller) { theUpperScroller = scroller; }
    QAbstractScrollArea* lowerTextScroller() const { return theLowerScroller; }
    void setLowerTextScroller(QAbstractScrollArea* scroller) { theLowerScroller = scroller; }
    QAbstractScrollArea* bottomTextScroller() const { return theBottomScroller; }
    void setBottomTextScroller(QAbstractScrollArea* scroller) { theBottomScroller = scroller; }

    /// Replaces the whole content of a pane with a text in the default colour.
    void setUpperText(const QString& text);
    void setLowerText(const QString& text);
    void setBottomText(const QString& text);

    /// Whether a pane is still waiting for its text.
    bool isFilling() const;

    /// Shows a page's object as soon as the panes are filled. @param page from 0.
    void showSourceOfPage(int page);

    /// Tells how many saved versions there are, beside the tabs of the side panel, as a button for
    /// the window that tells of them. @param text empty for nothing.
    void setVersionsFact(const QString& text);

    Q_INVOKABLE bool validateCommand(const QString& command) const;
    Q_INVOKABLE bool commandIsChecked(const QString& command) const;

public slots:
    /// Follows the reference at the caret of the pane that has, or had, the keyboard.
    void followReference();
    /// Shows the object at the caret in the other of the two sources.
    void showInOtherSource();
    /// Lists who refers to the object at the caret.
    void showUsers();
    /// Lists what is remarkable about the stored file.
    void showFindings();
    void goBack();
    void goForward();
    /// The stored source beside the flattened one, or below it.
    void toggleSideBySide();
    /// The pane that has the keyboard alone, or all of them.
    void toggleOnlyThisPane();
    /// Gives the keyboard to another pane, round and round.
    void focusNextPane();
    void focusPreviousPane();
    /// Opens the strip in which one types an object, an offset or a page.
    void goToObject();
    /// The same: the key for pages leads to objects here.
    void goToPageDialog() { goToObject(); }
    /// Shows or hides the table of the stored file's objects, now and in later windows.
    void toggleObjectTable();
    /// Shows or hides the object that the caret is in, now and in later windows.
    void toggleObjectPanel();
    /// Gives the keyboard to the table's filter, showing the table.
    void filterObjects();

signals:
    /// The user wants to see a page, counted from 0.
    void pageWanted(int page);
    /// All panes have their final content.
    void filled();
    /// The object that was asked for shows beside the panes.
    void objectShown();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    /// A text pane with what stands above it.
    struct Pane
    {
        PlainTextView* view = nullptr;
        QLabel* note = nullptr; ///< what the pane is waiting for, or why it is empty
        QToolButton* cancel = nullptr;
        QPointer<QObject> work; ///< a request or scan under way, owned by the controller
        QString lastingNote; ///< what is to be said of the present text
        std::shared_ptr<const SourceText> source; ///< of the latest fill that had one
    };

    void connectOutlets();
    void fillPanes();
    bool isOpened() const;
    void fillFromEngine();
    void tellOpening();
    void takeOpening();
    void chooseContent();
    void showWantedPage(int page);
    void fillUpper();
    void takeFlattened(PDFFileRequest* request);
    void startScan(Pane& pane, const SharedBytes& bytes, const QString& lossNote = {});
    void beginWork(Pane& pane, QObject* work, const QString& note);
    void endWork(Pane& pane, const QString& note);
    static void setNote(Pane& pane, const QString& note);
    void cancelWork(Pane& pane);
    void finishPane(Pane& pane, const QString& note);
    void emptyUpper();
    void writeSummary();
    void connectNavigation();
    void tellNavigator();
    void goToWanted(const QString& text);
    void say(Pane& pane, const QString& sentence);
    void connectObjectPanel();
    void saveObjectPanel() const;
    void showObjectPanel(bool shows);
    void tellObjectPanel();
    void tellObjectSources();
    void showObjectOfCaret(bool isUrgent);
    void followCaret() { showObjectOfCaret(false); }
    void followToObject(int number);
    void connectTable();
    void saveTable() const;
    void showTable(bool shows);
    void tellTable();
    void tellTableLoader();
    void showUnlisted(int number, bool isWanted);
    void selectRowOfCaret();

    std::unique_ptr<Ui::SourceWindow> ui;
    Document* theOwner;
    const ViewFlags* theFlags;
    QPointer<PDFDocument> theRenderedDocument;
    SourceContent theContent = SourceContent::isObjectList;
    Pane theUpper;
    Pane theLower;
    SourceNavigator* theNavigator;
    GoToBar* theGoToBar;
    SourceInquiry* theInquiry = nullptr;
    ObjectPanel* theObjectPanel; ///< beside the panes
    FileBytes theFlatBytes; ///< of the latest fill; none before
    TableLoader* theTableLoader = nullptr; ///< of the stored file
    PaneLayout* thePaneLayout = nullptr;
    std::optional<int> thePageToShow; ///< once the panes are filled
    bool theTableLeads = false; ///< the caret moves because its row was chosen
    PlainTextView* theBottomView = nullptr;
    QAbstractScrollArea* theUpperScroller = nullptr;
    QAbstractScrollArea* theLowerScroller = nullptr;
    QAbstractScrollArea* theBottomScroller = nullptr;
};

} // namespace tarnwick
