#pragma once

#include "text/TextPalette.h"
#include "text/TextPosition.h"
#include "text/TextStorage.h"
#include "text/TextViewLayout.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QBasicTimer>
#include <QMenu>

#include <memory>

class QAction;
class QMenu;

namespace tarnwick {

class FindBar;
class LinkPointer;
class ScrollAxis;
class TextFinder;
class TextGutter;

/// Shows a text of any size, to be read, selected, copied, searched and printed.
///
/// Only what shows is laid out and kept, so a gigabyte opens as fast as a page. The text comes from
/// a storage, line by line, with a colour for each line; the colours follow the palette.
///
/// Its public slots are the commands of the menu; validateCommand() says which are possible now.
class PlainTextView : public QAbstractScrollArea
{
    Q_OBJECT
    Q_PROPERTY(bool wrapping READ isWrapping WRITE setWrapping NOTIFY wrappingChanged)

public:
    explicit PlainTextView(QWidget* parent = nullptr);
    ~PlainTextView() override;

    /// Shows another text from its beginning, nothing being selected; null shows an empty one.
    void setTextStorage(std::shared_ptr<const TextStorage> storage);
    /// Shows a text that begins as the present one does: what is selected and what shows stay.
    void growTextStorage(std::shared_ptr<const TextStorage> storage);
    /// Never null.
    std::shared_ptr<const TextStorage> textStorage() const { return theStorage; }
    /// Shows a string in the default colour.
    void setPlainText(const QString& text);
    void clear();

    /// A place where something is missing from the text that the view shows: a row of its own with
    /// a note, which is no part of the text and is neither selected, copied, found, counted nor
    /// printed.
    struct Gap
    {
        qsizetype line = 0; ///< above which it stands
        QString note;
    };
    /// @param gaps in the order of their lines; notes for one line are joined. A new storage has
    /// none. @param missing all that is missing, in some sentences, which printing tells at its
    /// end.
    void setGaps(const QList<Gap>& gaps, const QStringList& missing = {});
    const QList<Gap>& gaps() const { return theGaps; }
    /// The note at a point of the viewport; empty where there is none.
    QString gapNoteAt(const QPointF& viewportPoint) const;

    /// The font without zoom: by default the application's. Listings ask for the system's
    /// fixed-pitch font.
    void setTextFont(const QFont& font);
    void useFixedPitchFont();

    /// Whether lines are broken at the view's width, as they are by default.
    bool isWrapping() const { return theLayout.isWrapping(); }
    void setWrapping(bool wrap);

    /// Font size in percent of the text font's, 25 to 800.
    void setZoomPercent(int percent);

    /// Whether Ctrl+F, F3 and the find commands are the view's own, as they are by default. A
    /// window with a search field of its own turns them off.
    void setFindBarEnabled(bool enabled);
    bool isFindBarEnabled() const { return theIsFindBarEnabled; }

    /// What can be told beside the lines; it is no part of the text.
    enum class Gutter
    {
        isNone, ///< at first
        isLinesAndOffsets,
        isOffsets,
    };
    /// Offers it to the command toggleGutter(), whose state all views share and the settings keep.
    void setGutter(Gutter gutter);
    bool isGutterShown() const { return theGutter != nullptr; }

    TextRange selection() const { return TextRange::between(theAnchor, theCaret); }
    bool hasSelection() const { return theAnchor != theCaret; }
    TextPosition caret() const { return theCaret; }
    /// The end of the selection that stays when the caret moves with Shift.
    TextPosition anchor() const { return theAnchor; }
    /// Selects from anchor to caret, places outside the text being moved into it, and shows the
    /// caret.
    void setSelection(TextPosition anchor, TextPosition caret);
    /// Selects a stretch that somebody has been led to, and shows it with some of what stands
    /// before it, the caret at its beginning.
    void goTo(TextRange range);
    /// Scrolls until a place shows.
    void scrollTo(TextPosition position);
    /// The selected characters, at most limit UTF-16 units of them.
    QString selectedText(qsizetype limit = 1'000'000) const;

    /// The link that holds a place or ends there, as the text's storage has it.
    std::optional<TextRange> linkAt(TextPosition position) const;

    /// Where a place is in the viewport, when its row shows there.
    std::optional<QRectF> caretRect(TextPosition position) const;
    TextPosition positionAt(const QPointF& viewportPoint) const;

    Q_INVOKABLE virtual bool validateCommand(const QString& command) const;
    Q_INVOKABLE bool commandIsChecked(const QString& command) const;

public slots:
    virtual void copy();
    void selectAll();
    /// Opens the find bar, with the selected text where that is short.
    void performFind();
    void doFindNext();
    void doFindPrev();
    /// Finds the selected text's next occurrence.
    void doFindSelection();
    void zoomIn();
    void zoomOut();
    void actualSize();
    void toggleWrap();
    /// Shows or hides the gutters of all views that have one.
    void toggleGutter();
    /// Prints the text by its window's title, laid out for the paper, whatever the view's size,
    /// zoom and colours.
    void print();

signals:
    /// A link was followed: by a click while Ctrl is held, or by Enter with the caret on it.
    void linkFollowed(tarnwick::TextRange link);
    /// A context menu for a place is about to open; what is added to it stands at its beginning
    /// when it is inserted before `before`.
    void contextMenuOpening(QMenu* menu, QAction* before, tarnwick::TextPosition place);
    void selectionChanged();
    void wrappingChanged(bool wrap);

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

    // What a view of something else than running text does otherwise:
    enum class SelectBy
    {
        isCharacter,
        isWord,
        isLine,
    };
    /// What a click selects at a place, and what a drag from or to it includes.
    virtual TextRange unitAt(TextPosition position, SelectBy by) const;
    /// Moves both ends of a selection to where they may stand.
    virtual void settle(TextPosition& anchor, TextPosition& caret) const;
    /// What shows as selected of a line: ranges of it, or that begin or end outside.
    virtual QList<TextRange> selectedRanges(qsizetype line) const;
    /// Matches of a search that show.
    virtual QList<TextRange> visibleMatches() const;
    /// Shows others of them.
    void updateMatches();
    virtual void offerPrimarySelection();
    virtual void fillContextMenu(QMenu& menu);
    /// Adds an item for one of the commands, enabled as validateCommand() says.
    template<class View>
    QAction* addCommand(QMenu& menu, const QString& title, const QString& command,
        void (View::*slot)(), const QKeySequence& keys = {})
    {
        QAction* const action = menu.addAction(title, static_cast<View*>(this), slot);
        action->setShortcut(keys);
        action->setEnabled(validateCommand(command));
        return action;
    }
    void addZoomMenu(QMenu& menu);

private:
    void applyFont();
    void applyPalette();
    void relayout();
    void updateView();
    void placeFindBar();
    void placeMargins();
    void showGutter(bool show);
    /// Where the digits end, in pixels from the gutter's left edge.
    struct GutterColumns
    {
        qreal numberRight = 0;
        qreal offsetRight = 0;
    };
    GutterColumns gutterColumns() const;
    qreal gutterWidth() const;
    void updateGutter();
    void paintGutter(QPainter& painter) const;
    void scrollVertically(double from, double to, bool isDragged);
    void paintSegment(QPainter& painter, const TextSegment& segment, QPointF origin) const;
    QList<QTextLayout::FormatRange> formatsOf(const TextSegment& segment) const;
    QList<TextRange> shownLinks() const;
    void paintSelectedLineEnd(QPainter& painter, const TextSegment& segment, QPointF origin) const;
    void paintGap(QPainter& painter, const QString& note, qreal y) const;
    void paintCaret(QPainter& painter) const;
    QPalette::ColorGroup selectionGroup() const;
    void restartBlinking();

    void moveCaret(TextPosition caret, bool extend);
    void select(TextPosition anchor, TextPosition caret);
    bool handleMovement(QKeyEvent* event);
    bool handleCommandKey(QKeyEvent* event);
    bool followCaret(const QKeyEvent& event);
    void moveRows(int rows, bool extend);
    void movePage(int direction, bool extend);
    void beginDrag(const QPointF& point, SelectBy by, bool extend);
    void autoScroll();
    void scrollByWheel(QPointF delta);
    void extendTo(TextPosition position);
    void tellAccessibility(bool textIsNew);

    enum class Seek
    {
        isNothing,
        isNext,
        isPrevious,
    };
    void openFindBar();
    void closeFindBar();
    bool isFindBarOpen() const;
    QString findableSelection() const;
    bool prepareToStep();
    void startSearch(TextPosition from);
    void seek(Seek direction, TextPosition from);
    void endSeek();
    void resolveSeek();
    void updateFindStatus();

    std::shared_ptr<const TextStorage> theStorage;
    Gutter theGutterKind = Gutter::isNone;
    TextGutter* theGutter = nullptr; ///< while it is shown
    qsizetype theGutterDigits = 0; ///< of the longest offset that has shown
    QList<Gap> theGaps;
    QStringList theMissing;
    TextViewLayout theLayout;
    TextPalette theColours;
    QFont theTextFont;
    bool isFontOwn = false;
    int theZoomPercent = 100;

    std::unique_ptr<LinkPointer> theLinkPointer;
    std::unique_ptr<ScrollAxis> theVertical;
    std::unique_ptr<ScrollAxis> theHorizontal;
    QBasicTimer theEstimateTimer;
    QBasicTimer theBlinkTimer;
    bool isCaretVisible = true;

    TextPosition theAnchor;
    TextPosition theCaret;
    qreal theGoal = -1; ///< pixels from the line start that up and down keep, or -1

    SelectBy theSelectBy = SelectBy::isCharacter;
    TextRange theFirstUnit; ///< that the drag began with
    bool isDragging = false;
    QPointF theDragPoint;
    QPointF theTripleClickPoint;
    QBasicTimer theTripleClickTimer;
    QBasicTimer theAutoScrollTimer;
    int theZoomDelta = 0; ///< eighths of a degree that are no notch yet
    qreal theWheelRest = 0; ///< of a pixel that the wheel has turned the text up, -0.5 to 0.5

    bool theIsFindBarEnabled = true;
    FindBar* theFindBar = nullptr; ///< made when first needed
    TextFinder* theFinder;
    Seek theSeek = Seek::isNothing; ///< waiting for the finder
    TextPosition theSeekFrom;
    bool isMatchWrapped = false;
    TextRange theMatch; ///< found last, empty when none was
    QList<TextRange> theVisibleMatches;
    QList<TextRange> theShownLinks; ///< of the painting under way
};

} // namespace tarnwick
