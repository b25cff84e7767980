#include "text/PlainTextView.h"

#include "text/ListedLines.h"

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestTextViewAccessible : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void aSmallTextIsWhole();
    void readersMoveAndSelect();
    void aHugeTextIsReadAroundTheCaret();

private:
    std::unique_ptr<PlainTextView> theView;
    QAccessibleInterface* theInterface = nullptr;
    QAccessibleTextInterface* theText = nullptr;
};

void TestTextViewAccessible::init()
{
    theView = std::make_unique<PlainTextView>();
    theView->resize(500, 300);
    theView->setAccessibleName(u"Listing"_s);
    theView->show();
    QVERIFY(QTest::qWaitForWindowExposed(theView.get()));
    theInterface = QAccessible::queryAccessibleInterface(theView.get());
    QVERIFY(theInterface);
    theText = theInterface->textInterface();
    QVERIFY(theText);
}

void TestTextViewAccessible::aSmallTextIsWhole()
{
    theView->setPlainText(u"first\r\n\nthird \U0001F600"_s);
    QCOMPARE(theInterface->text(QAccessible::Name), u"Listing"_s);
    QCOMPARE(theInterface->role(), QAccessible::EditableText);
    QVERIFY(theInterface->state().readOnly && theInterface->state().multiLine);
    QCOMPARE(theText->text(0, theText->characterCount()), u"first\n\nthird \U0001F600"_s);
    QCOMPARE(theText->text(2, 5), u"rst"_s);
    int start = 0;
    int end = 0;
    QCOMPARE(theText->textAtOffset(8, QAccessible::LineBoundary, &start, &end).trimmed(),
        u"third \U0001F600"_s);
    const QRect character = theText->characterRect(1);
    QVERIFY(character.width() > 0 && character.height() > 0);
    QCOMPARE(theText->offsetAtPoint(character.center() - QPoint(1, 0)), 1);
}

void TestTextViewAccessible::readersMoveAndSelect()
{
    theView->setTextStorage(std::make_shared<ListedLines>(
        QList<TextLine>{{u"plain"_s, ColourRole::isDefault}, {u"red"_s, ColourRole::isRed}}));
    theText->setCursorPosition(7);
    QCOMPARE(theText->cursorPosition(), 7);
    QVERIFY(theView->caret() == (TextPosition{1, 1}));
    theText->setSelection(0, 3, 8);
    QCOMPARE(theView->selectedText(), u"in\nre"_s);
    int start = 0;
    int end = 0;
    theText->selection(0, &start, &end);
    QCOMPARE(start, 3);
    QCOMPARE(end, 8);
    QVERIFY(theText->attributes(6, &start, &end).startsWith(u"color:rgb("_s));
    QCOMPARE(start, 6);
    theText->removeSelection(0);
    QCOMPARE(theText->selectionCount(), 0);
}

void TestTextViewAccessible::aHugeTextIsReadAroundTheCaret()
{
    const qsizetype billion = 1'000'000'000;
    for (const auto& [lines, length] : {std::pair(billion, qsizetype{30}), {1, billion}}) {
        theView->setTextStorage(std::make_shared<EndlessLines>(lines, length));
        QVERIFY(theText->characterCount() < 200'000);
        QVERIFY(theText->text(0, 10).startsWith(u"0...."_s));
        for (const TextPosition place : {TextPosition{lines / 2, length / 2},
                 TextPosition{lines - 1, length}, TextPosition{0, 3}}) {
            theView->setSelection(place, place);
            const QRectF inView(theView->viewport()->rect());
            QVERIFY(inView.contains(theView->caretRect(place)->center()));
            const int offset = theText->cursorPosition();
            theText->setCursorPosition(offset);
            QVERIFY(theView->caret() == place);
            QVERIFY(offset > 1000 || place.line == 0);
            theText->setCursorPosition(offset > 5 ? offset - 1 : offset + 1);
            QCOMPARE(std::abs(theView->caret().unit - place.unit), 1);
        }
    }
}

QTEST_MAIN(TestTextViewAccessible)
#include "tst_TextViewAccessible.moc"
