#include "LinkFollower.h"
#include "PageReader.h"
#include "SelectableText.h"
#include "TextDrag.h"
#include "TextSelector.h"
#include "support/Rows.h"

#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// Lines of characters 10 wide and 12 high, 20 apart, from (20, 20) on.
PDFPageText pageOf(const QString& string)
{
    PDFPageText text;
    text.string = string;
    QRectF box(20, 20, 10, 12);
    for (const QChar unit : string) {
        text.quads.append(unit == u'\n' ? PDFQuad() : PDFQuad(QPolygonF(box).first(4)));
        if (unit == u'\n')
            box.moveTo(20, box.y() + 20);
        else
            box.translate(10, 0);
    }
    return text;
}

/// The middle of the left half of a character on the first page.
QPointF at(int line, int column)
{
    return {-150 + 200 + 23 + 10.0 * column, 10 + 26 + 20.0 * line};
}

/// Ten pages with a text that arrives as the test wants.
struct Text : SelectableText
{
    bool isThere() const override { return true; }
    int arrivedCount() const override { return arrived; }
    qsizetype lengthOf(int page) const override { return page < arrived ? content.size() : 0; }
    void fetch() override { ++fetches; }
    QString string(const PDFSelection& selection) const override
    {
        QStringList parts;
        for (const PDFSelection::Range& range : selection.ranges())
            parts.append(content.mid(range.start, range.length));
        return parts.join(u'/');
    }

    QString content = u"Alpha beta\ngamma, delta"_s;
    int arrived = 10;
    int fetches = 0;
};

} // namespace

class TestTextSelecting : public QObject
{
    Q_OBJECT

private slots:
    void drags();
    void scrollsOnBeyondTheEdge();
    void selectsAsTextsArrive();
    void followsLinks_data();
    void followsLinks();
};

void TestTextSelecting::drags()
{
    using Unit = TextDrag::Unit;
    const auto selected = [](Unit unit, const QList<QPointF>& points) {
        PageReader reader(QList<QSizeF>(10, QSizeF(300, 400)));
        Text text;
        const PDFPageText page = pageOf(text.content);
        const TextPlaces places(reader.viewport, [&page](int) { return &page; });
        TextSelector selector(text, nullptr);
        TextDrag drag(reader.viewport, places, selector, reader.scroller, nullptr);
        drag.begin(points.first(), unit);
        for (const QPointF& point : points.sliced(1))
            drag.dragTo(point);
        return text.string(selector.selection());
    };
    QCOMPARE(selected(Unit::isCharacter, {at(0, 3)}), QString()); // a click
    QCOMPARE(selected(Unit::isCharacter, {at(0, 2), at(0, 5)}), u"pha"_s);
    QCOMPARE(selected(Unit::isCharacter, {at(0, 5), at(0, 2)}), u"pha"_s);
    QCOMPARE(selected(Unit::isCharacter, {at(0, 2), at(1, 9), at(0, 3)}), u"p"_s); // and back
    QCOMPARE(selected(Unit::isCharacter, {at(0, 6), at(1, 5)}), u"beta\ngamma"_s);
    QCOMPARE(selected(Unit::isCharacter, {at(0, 6), at(0, 11)}), u"beta"_s); // beside the page
    QCOMPARE(selected(Unit::isWord, {at(0, 7)}), u"beta"_s);
    QCOMPARE(selected(Unit::isWord, {at(0, 7), at(1, 2)}), u"beta\ngamma"_s);
    QCOMPARE(selected(Unit::isWord, {at(1, 8), at(0, 1)}), Text().content); // keeps the first
    QCOMPARE(selected(Unit::isLine, {at(1, 4)}), u"gamma, delta"_s);
}

void TestTextSelecting::scrollsOnBeyondTheEdge()
{
    PageReader reader(QList<QSizeF>(10, QSizeF(300, 400)));
    Text text;
    const PDFPageText page = pageOf(text.content);
    bool isThere = true;
    const TextPlaces places(reader.viewport, [&](int) { return isThere ? &page : nullptr; });
    TextSelector selector(text, nullptr);
    TextDrag drag(reader.viewport, places, selector, reader.scroller, nullptr);
    QSignalSpy runs(&drag, &TextDrag::ranOn);
    QVERIFY(drag.begin(at(0, 6), TextDrag::Unit::isCharacter));
    drag.dragTo({200, 900});
    QCOMPARE(reader.viewport.origin().y(), 120.0); // never further at a time
    QTRY_COMPARE(reader.scroller.currentPage(), 9); // by itself
    QTRY_COMPARE(selector.selection().ranges().size(), 10);
    drag.dragTo({200, -400});
    QTRY_COMPARE(reader.viewport.origin().y(), 0.0);
    QCOMPARE(text.string(selector.selection()), u"beta"_s);
    drag.dragTo(at(0, 8));
    QCOMPARE(text.string(selector.selection()), u"be"_s);
    drag.end();
    QVERIFY(drag.beginExtending(at(1, 5))); // from where it began
    QCOMPARE(text.string(selector.selection()), u"beta\ngamma"_s);
    isThere = false;
    QVERIFY(!drag.begin(at(0, 6), TextDrag::Unit::isCharacter));
    QVERIFY(runs.size() > 30);
}

void TestTextSelecting::selectsAsTextsArrive()
{
    Text text;
    text.arrived = 2;
    TextSelector selector(text, nullptr);
    QSignalSpy changes(&selector, &TextSelector::changed);
    selector.selectBetween({3, 5}, {1, 6}); // backwards
    QCOMPARE(text.fetches, 1);
    QCOMPARE(text.string(selector.selection()), u"beta\ngamma, delta"_s);
    QApplication::clipboard()->clear();
    selector.copy();
    QCOMPARE(QApplication::clipboard()->text(), QString());
    text.arrived = 5;
    for (const int page : {2, 3})
        selector.pageArrived(page);
    QTRY_COMPARE(changes.size(), 2); // both at a time
    QCOMPARE(
        QApplication::clipboard()->text(), u"beta\ngamma, delta/Alpha beta\ngamma, delta/Alpha"_s);
    // What ends without its text is copied as far as it has come.
    selector.selectBetween({0, 0}, {9, 1});
    selector.copy();
    selector.textStopped();
    QCOMPARE(QApplication::clipboard()->text().count(u'/'), 4);
    selector.clear();
    text.arrived = 10;
    selector.textCompleted();
    QVERIFY(selector.selection().isEmpty());
}

using FollowsLinks = Rows<QString, int, QMessageBox::StandardButton>;

void TestTextSelecting::followsLinks_data()
{
    const FollowsLinks row;
    row("a page: at once", "", 4, QMessageBox::NoButton);
    row("the web: asks, and no is the answer", "https://example.org/a", -1, QMessageBox::Cancel);
    row("mail: likewise", "mailto:a@example.org", -1, QMessageBox::Cancel);
    row("a file: never", "file:///bin/sh", -1, QMessageBox::Ok);
    row("a script: never", "javascript:alert(1)", -1, QMessageBox::Ok);
    row("another program: never", "ssh://host/", -1, QMessageBox::Ok);
}

void TestTextSelecting::followsLinks()
{
    const auto [url, page, buttons] = FollowsLinks::fetch();
    const PDFLink link{{0, 0, 100, 100}, page, {}, QUrl(url)};
    QWidget surface;
    PageReader reader({QSizeF(300, 400)});
    LinkFollower links(
        reader.viewport, [&link](int) { return QList<PDFLink>{link}; }, &surface, nullptr);
    QSignalSpy jumps(&links, &LinkFollower::pageWanted);
    QVERIFY(!links.press({10, 10})); // beside the page
    links.release();
    QVERIFY(links.press({60, 30}));
    links.release();
    links.release(); // follows once
    QVERIFY(links.press({60, 30}));
    links.forgetPress(); // another document came
    links.release();
    QCOMPARE(jumps.size(), page < 0 ? 0 : 1);
    const auto boxes = surface.findChildren<QMessageBox*>();
    QCOMPARE(boxes.size(), page < 0 ? 1 : 0);
    if (page >= 0)
        return;
    QCOMPARE(boxes.first()->standardButtons(), buttons);
    QVERIFY(boxes.first()->informativeText().contains(link.url.toString()));
    if (buttons == QMessageBox::Cancel)
        QCOMPARE(
            boxes.first()->buttonRole(boxes.first()->defaultButton()), QMessageBox::RejectRole);
}

QTEST_MAIN(TestTextSelecting)
#include "tst_TextSelecting.moc"
