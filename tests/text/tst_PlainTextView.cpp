#include "text/PlainTextView.h"

#include "TextGutter.h"
#include "analysis/SourceText.h"
#include "support/ScrollBars.h"
#include "support/Wheel.h"
#include "text/HexStorage.h"
#include "text/ListedLines.h"
#include "text/PlainTextStorage.h"
#include "text/StyledTextStorage.h"
#include "text/SyntaxTextStorage.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestPlainTextView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void keysMoveAndSelect();
    void clicksSelect();
    void copiesTheSelection();
    void horizontalBarShowsWhatIsInView();
    void wheelsOfAnyFinenessGoAsFar();
    void replacingLeavesNothing();
    void gapsStandBetweenTheLines();
    void coloursFollowThePalette();
    void stretchesThatTouchHaveTheirColours();
    void gutterTellsLines();
    void gutterIsNoPartOfTheText();

private:
    QPoint pointOf(TextPosition position) const
    {
        return theView->caretRect(position)->center().toPoint();
    }

    std::unique_ptr<PlainTextView> theView;
};

namespace {

QByteArray shown(TextPosition position)
{
    return QByteArray::number(position.line) + ':' + QByteArray::number(position.unit);
}

} // namespace

void TestPlainTextView::init()
{
    QSettings().clear();
    theView = std::make_unique<PlainTextView>();
    theView->useFixedPitchFont();
    theView->resize(600, 400);
    theView->show();
    QVERIFY(QTest::qWaitForWindowExposed(theView.get()));
}

void TestPlainTextView::keysMoveAndSelect()
{
    // Where a key leads; with the shift key, it selects as far as that.
    const auto end = [this](const QString& text, TextPosition start, Qt::Key key,
                         Qt::KeyboardModifiers modifiers = {}) -> QByteArray {
        theView->setPlainText(text);
        theView->setSelection(start, start);
        QTest::keyClick(theView.get(), key, modifiers);
        const TextPosition reached = theView->caret();
        const bool isClear = !theView->hasSelection();
        theView->setSelection(start, start);
        QTest::keyClick(theView.get(), key, modifiers | Qt::ShiftModifier);
        const bool isSelected = theView->selection() == TextRange::between(start, reached);
        return isClear && isSelected ? shown(reached) : "selects otherwise";
    };
    const QString text = u"one two\n\nfour five six\nend"_s;
    QCOMPARE(end(text, {0, 7}, Qt::Key_Right), "1:0");
    QCOMPARE(end(text, {2, 0}, Qt::Key_Left), "1:0");
    QCOMPARE(end(u"\U0001F469\u200D\U0001F680x"_s, {0, 0}, Qt::Key_Right), "0:5"); // an emoji
    QCOMPARE(end(u"\u05D0\u05D1\u05D2"_s, {0, 0}, Qt::Key_Left), "0:1"); // Hebrew
    QCOMPARE(end(text, {2, 0}, Qt::Key_Right, Qt::ControlModifier), "2:5");
    QCOMPARE(end(text, {2, 12}, Qt::Key_Left, Qt::ControlModifier), "2:10");
    QCOMPARE(end(text, {2, 0}, Qt::Key_Left, Qt::ControlModifier), "1:0"); // over an empty line
    QCOMPARE(end(text, {2, 5}, Qt::Key_Home), "2:0");
    QCOMPARE(end(text, {2, 5}, Qt::Key_End), "2:13");
    QCOMPARE(end(text, {2, 5}, Qt::Key_Home, Qt::ControlModifier), "0:0");
    QCOMPARE(end(text, {2, 5}, Qt::Key_End, Qt::ControlModifier), "3:3");
    QCOMPARE(end(text, {0, 5}, Qt::Key_Down), "1:0");
    QCOMPARE(end(text, {0, 5}, Qt::Key_Up), "0:0"); // in the first line goes to its beginning
    QCOMPARE(end(text, {0, 2}, Qt::Key_PageDown), "3:3");
}

void TestPlainTextView::clicksSelect()
{
    theView->setPlainText(u"alpha beta gamma\nsecond line\n"_s);
    QWidget* viewport = theView->viewport();
    const QPoint beta = pointOf({0, 8});
    QTest::mouseClick(viewport, Qt::LeftButton, {}, beta);
    QCOMPARE(shown(theView->caret()), "0:8");
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, beta);
    QCOMPARE(theView->selectedText(), u"beta"_s);
    QTest::mouseClick(viewport, Qt::LeftButton, {}, beta);
    QCOMPARE(theView->selectedText(), u"alpha beta gamma\n"_s);
    QTest::mouseClick(viewport, Qt::LeftButton, {}, pointOf({0, 2}));
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::ShiftModifier, pointOf({1, 3}));
    QCOMPARE(theView->selectedText(), u"pha beta gamma\nsec"_s);
}

void TestPlainTextView::copiesTheSelection()
{
    const QString text = u"one\r\ntwo\nthree\rfour\ffive\u0085six\vseven\r"_s; // as it stands
    theView->setPlainText(text);
    QVERIFY(!theView->validateCommand(u"copy"_s));
    QTest::keyClick(theView.get(), Qt::Key_A, Qt::ControlModifier);
    QVERIFY(theView->validateCommand(u"copy"_s));
    QTest::keyClick(theView.get(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), text);
    // Collected in portions, and cut between the two halves of a line end never.
    const QString longText = u"0123456\r\n"_s.repeated(100'000);
    theView->setPlainText(longText);
    theView->selectAll();
    theView->copy();
    QTRY_COMPARE(QGuiApplication::clipboard()->text(), longText);
    QCOMPARE(theView->selectedText(longText.size() - 1), longText.chopped(2));
}

void TestPlainTextView::horizontalBarShowsWhatIsInView()
{
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        theView->setLayoutDirection(direction);
        theView->setWrapping(false);
        theView->setPlainText(QString(10'000, u'x'));
        for (const qsizetype unit : {10'000, 0}) {
            theView->setSelection({0, unit}, {0, unit});
            const QPoint corner = theView->viewport()->rect().center();
            const bool isLeftShown = theView->positionAt(corner).unit < 5'000;
            QCOMPARE(isLeftShown, unit == 0);
            QCOMPARE(isHandleAtTheLeft(*theView->horizontalScrollBar()), isLeftShown);
        }
    }
}

void TestPlainTextView::wheelsOfAnyFinenessGoAsFar()
{
    theView->setPlainText(u"a line\n"_s.repeated(1000));
    for (const int turns : {1, 8, 120}) {
        theView->verticalScrollBar()->setValue(0);
        for (int turn = 0; turn < turns; ++turn)
            turnWheel(*theView->viewport(), {0, -120 / turns});
        const qreal row = theView->caretRect({10, 0})->height();
        QCOMPARE(theView->caretRect({10, 0})->top(),
            10 * row - std::round(QApplication::wheelScrollLines() * row));
    }
}

void TestPlainTextView::replacingLeavesNothing()
{
    theView->setTextStorage(std::make_shared<EndlessLines>(1'000'000, 20));
    theView->setSelection({500'000, 3}, {500'001, 3});
    QSignalSpy changes(theView.get(), &PlainTextView::selectionChanged);
    theView->setPlainText(u"short"_s);
    QCOMPARE(changes.size(), 1);
    QVERIFY(!theView->hasSelection());
    QCOMPARE(shown(theView->caret()), "0:0");
    QCOMPARE(theView->verticalScrollBar()->maximum(), 0);
    QCOMPARE(shown(theView->positionAt({5, 5})), "0:0");
    theView->clear();
    QCOMPARE(theView->textStorage()->lineCount(), 1);
}

/// A gap moves the lines below it down by a row, and is no place in the text.
void TestPlainTextView::gapsStandBetweenTheLines()
{
    QString text;
    for (int line = 0; line < 1000; ++line)
        text += QString::number(line) + u'\n';
    for (const bool isWrapping : {true, false}) {
        theView->setWrapping(isWrapping);
        theView->setPlainText(text);
        const auto top = [this](qsizetype line) { return theView->caretRect({line, 0})->top(); };
        const qreal row = theView->caretRect({0, 0})->height();
        theView->setGaps(
            {{0, u"before all"_s}, {2, u"two"_s}, {2, u"of them"_s}, {1000, u"end"_s}});
        QCOMPARE(top(0), row);
        QCOMPARE(top(2), 4 * row);
        QCOMPARE(theView->gapNoteAt({50, row / 2}), u"before all"_s);
        QCOMPARE(theView->gapNoteAt({50, 3.5 * row}), u"two of them"_s);
        QCOMPARE(theView->gapNoteAt({50, 4.5 * row}), QString());
        QCOMPARE(theView->positionAt({0, 3.5 * row}).line, 2);
        QCOMPARE(theView->positionAt({0, 2.5 * row}).line, 1);
        theView->selectAll();
        QCOMPARE(theView->selectedText(), text);

        theView->verticalScrollBar()->setValue(theView->verticalScrollBar()->maximum());
        QCOMPARE(theView->gapNoteAt({50, top(1000) - row / 2}), u"end"_s);
        QTest::keyClick(theView.get(), Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(top(0), row);
        theView->setPlainText(text);
        QCOMPARE(top(0), 0);
        QVERIFY(theView->gaps().isEmpty());
    }
}

void TestPlainTextView::coloursFollowThePalette()
{
    theView->setTextStorage(std::make_shared<ListedLines>(
        QList<TextLine>{{QString(40, u'\u2588'), ColourRole::isGreen}}));
    const auto inkAt = [this] {
        return theView->viewport()->grab().toImage().pixelColor(pointOf({0, 20}) + QPoint(3, 0));
    };
    const QColor light = inkAt();
    QPalette dark = theView->palette();
    dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
    dark.setColor(QPalette::Text, Qt::white);
    theView->setPalette(dark);
    QVERIFY(light.green() > light.red() && light.green() > light.blue());
    QCOMPARE(inkAt(), TextPalette(dark).colour(ColourRole::isGreen));
    QVERIFY(inkAt() != light);
}

void TestPlainTextView::stretchesThatTouchHaveTheirColours()
{
    theView->setTextStorage(std::make_shared<const SyntaxTextStorage>(
        SharedBytes::ofString("BI ID mmmm"))); // the operator red, behind it faint data
    const QImage shot = theView->viewport()->grab().toImage();
    const QRect cell = theView->caretRect({0, 7})->toRect().adjusted(0, 0, 20, 0);
    int darkest = 255;
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
        for (int x = cell.left(); x <= cell.right(); ++x)
            darkest = std::min(darkest, shot.pixelColor(x, y).lightness());
    }
    QVERIFY2(darkest > 60 && darkest < 200, qPrintable(QString::number(darkest)));
}

void TestPlainTextView::gutterTellsLines()
{
    const auto told = [](const TextStorage& storage) {
        QStringList labels;
        for (qsizetype line = 0; line < storage.lineCount(); ++line) {
            const TextGutter::Label label = TextGutter::labelOf(storage, line);
            labels += label.number + u' ' + label.offset;
        }
        return labels.join(u',');
    };
    const SharedBytes bytes = SharedBytes::ofString("%PDF-1.4\n\n1 0 obj\r\n<<>> endobj\n");
    SourceText source(bytes); // an empty line behind endobj, the object list
    QCOMPARE(told(PlainTextStorage(bytes)), u"1 0,2 ,3 10,4 19,5 "_s);
    QCOMPARE(told(PlainTextStorage(u"a\nb"_s)), u"1 ,2 "_s); // a string has no offsets
    QCOMPARE(told(StyledTextStorage(source.makeListing(true))), u"1 0,2 10,3 19,4 ,5 10,6 "_s);
    QCOMPARE(told(HexStorage(bytes)), u"1 0,2 16"_s);
}

void TestPlainTextView::gutterIsNoPartOfTheText()
{
    QVERIFY(!theView->validateCommand(u"toggleGutter"_s)); // a text that offers none
    PlainTextView other;
    const auto offer = [](PlainTextView& view) {
        view.setGutter(PlainTextView::Gutter::isLinesAndOffsets);
        return view.isGutterShown();
    };
    QVERIFY(!offer(*theView) && !offer(other)); // off at first
    const QString text = u"one\ntwo\n"_s.repeated(50);
    theView->setPlainText(text);
    const int left = theView->viewport()->x();
    theView->toggleGutter();
    QVERIFY(theView->commandIsChecked(u"toggleGutter"_s) && other.isGutterShown());
    QVERIFY(offer(*std::make_unique<PlainTextView>())); // kept in the settings
    QVERIFY(theView->viewport()->x() > left);
    auto* const gutter = theView->findChild<TextGutter*>();
    for (const Qt::LayoutDirection direction : {Qt::RightToLeft, Qt::LeftToRight}) {
        theView->setLayoutDirection(direction);
        QTRY_COMPARE(gutter->geometry().right() + 1, theView->viewport()->x());
    }
    QTest::mouseClick(theView->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(shown(theView->caret()), "0:0");
    QTest::mouseClick(gutter, Qt::LeftButton, {}, QPoint(5, 100));
    QCOMPARE(shown(theView->caret()), "0:0");
    theView->selectAll();
    theView->copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), text);
    theView->toggleGutter();
    QCOMPARE(theView->viewport()->x(), left);
    QVERIFY(!other.isGutterShown());
}

QTEST_MAIN(TestPlainTextView)
#include "tst_PlainTextView.moc"
