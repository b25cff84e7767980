#include "TextFinder.h"

#include "text/FindBar.h"
#include "text/ListedLines.h"
#include "text/PlainTextStorage.h"
#include "text/PlainTextView.h"

#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

using Kind = TextFinder::Answer::Kind;

class TestTextFinder : public QObject
{
    Q_OBJECT

private slots:
    void stepsInARing();
    void countsFromTheMiddle();
    void barFindsWhileTyping();
    void whoGoesElsewhereStays();
    void barIsTheWindowsWhenDisabled();
};

namespace {

QString places(const QList<TextRange>& matches)
{
    QStringList texts;
    for (const TextRange& match : matches)
        texts += u"%1:%2-%3"_s.arg(match.begin.line).arg(match.begin.unit).arg(match.end.unit);
    return texts.join(u' ');
}

QString place(const TextFinder::Answer& answer)
{
    return answer.kind == Kind::isFound ? places({answer.match}) : QString();
}

} // namespace

void TestTextFinder::stepsInARing()
{
    TextFinder finder;
    finder.start(
        std::make_shared<PlainTextStorage>(u"x a\na\nb a"_s), u"a"_s, Qt::CaseSensitive, {1, 1});
    QCOMPARE(finder.next({0, 0}).kind, Kind::isUnknown);
    QTRY_VERIFY(finder.isComplete());
    QCOMPARE(finder.count(), 3);
    QCOMPARE(place(finder.next({0, 0})), u"0:2-3"_s);
    QCOMPARE(place(finder.next({0, 3})), u"1:0-1"_s);
    QVERIFY(!finder.next({1, 1}).isWrapped);
    QCOMPARE(place(finder.next({2, 3})), u"0:2-3"_s);
    QVERIFY(finder.next({2, 3}).isWrapped);
    QCOMPARE(place(finder.previous({2, 2})), u"1:0-1"_s);
    QCOMPARE(place(finder.previous({0, 2})), u"2:2-3"_s);
    QVERIFY(finder.previous({0, 2}).isWrapped);
    QCOMPARE(finder.number({{2, 2}, {2, 3}}), 3);
    finder.start(std::make_shared<PlainTextStorage>(u"x"_s), u"y"_s, Qt::CaseSensitive, {});
    QTRY_VERIFY(finder.isComplete());
    QCOMPARE(finder.next({}).kind, Kind::isNone);
    QCOMPARE(finder.previous({}).kind, Kind::isNone);
}

void TestTextFinder::countsFromTheMiddle()
{
    TextFinder finder;
    const qsizetype lines = 60'000;
    finder.start(
        std::make_shared<EndlessLines>(lines, 20), u"7.."_s, Qt::CaseSensitive, {40'000, 3});
    QTRY_VERIFY(finder.isComplete());
    QCOMPARE(finder.count(), lines / 10);
    const TextRange match{{59'997, 4}, {59'997, 7}};
    QCOMPARE(finder.number(match), lines / 10);
    QCOMPARE(finder.number({{7, 0}, {7, 3}}), 1);
    QCOMPARE(place(finder.next({59'990, 0})), places({match}));
    QCOMPARE(place(finder.previous({7, 0})), places({match}));
}

void TestTextFinder::barFindsWhileTyping()
{
    PlainTextView view;
    view.resize(700, 300);
    view.setPlainText(u"one two\nTwo three\ntwo"_s);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
    auto* bar = view.findChild<FindBar*>();
    QVERIFY(bar && bar->isVisible());
    auto* field = bar->findChild<QLineEdit*>();
    QTest::keyClicks(field, u"two"_s);
    QTRY_COMPARE(bar->status(), u"1 of 3"_s);
    QCOMPARE(view.selectedText(), u"two"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QTRY_COMPARE(bar->status(), u"2 of 3"_s);
    QTest::keyClick(field, Qt::Key_F3);
    QTest::keyClick(field, Qt::Key_F3);
    QTRY_COMPARE(bar->status(), u"1 of 3, continued from the other end"_s);
    QTest::keyClick(field, Qt::Key_F3, Qt::ShiftModifier);
    QTRY_COMPARE(view.caret().line, 2);
    QTest::keyClicks(field, u"x"_s);
    QTRY_COMPARE(bar->status(), u"Not found"_s);
    view.setPlainText(u"another text with twox in it"_s);
    QTRY_COMPARE(bar->status(), u"1 match"_s);
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(!bar->isVisible());
    QVERIFY(view.hasFocus());
    const QString longText(100'000, u'x');
    view.setPlainText(u"y"_s + longText);
    view.performFind();
    field->setText(longText + u'y');
    QTRY_COMPARE(bar->status(), u"Not found"_s);
    field->setText(longText);
    QTRY_COMPARE(bar->status(), u"1 of 1"_s);
}

/// A match that the thread finds later does not take the user away from where he clicked.
void TestTextFinder::whoGoesElsewhereStays()
{
    PlainTextView view;
    view.resize(700, 300);
    view.setTextStorage(std::make_shared<EndlessLines>(60'000, 20));
    view.show();
    view.performFind();
    auto* const bar = view.findChild<FindBar*>();
    bar->findChild<QLineEdit*>()->setText(u"59999"_s);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    QTRY_COMPARE(bar->status(), u"1 match"_s);
    QCOMPARE(view.caret().line, 0);
    view.doFindNext();
    QTRY_COMPARE(view.caret().line, 59'999);
}

void TestTextFinder::barIsTheWindowsWhenDisabled()
{
    PlainTextView view;
    view.setPlainText(u"word word"_s);
    view.setSelection({0, 0}, {0, 4});
    QVERIFY(view.validateCommand(u"doFindSelection"_s));
    view.doFindSelection();
    QTRY_COMPARE(view.selection().begin.unit, 5);
    view.setFindBarEnabled(false);
    for (const QString& command :
        {u"performFind"_s, u"doFindNext"_s, u"doFindPrev"_s, u"doFindSelection"_s})
        QVERIFY(!view.validateCommand(command));
    QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(!view.findChild<FindBar*>()->isVisibleTo(&view));
}

QTEST_MAIN(TestTextFinder)
#include "tst_TextFinder.moc"
