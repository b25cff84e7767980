#include "FakePages.h"
#include "PageDetails.h"
#include "TileLoader.h"
#include "support/Rows.h"

#include <QSignalSpy>
#include <QTest>

using namespace tarnwick;

class TestPageLoading : public QObject
{
    Q_OBJECT

private slots:
    void asksForTiles_data();
    void asksForTiles();
    void givesUpWhatTakesLong_data();
    void givesUpWhatTakesLong();
    void asksForDetails_data();
    void asksForDetails();
};

namespace {

/// Deeds parted by "|" and what comes of each.
using Deeds = Rows<QString, QString>;

QStringList deedsOf(const QString& text)
{
    QStringList deeds;
    for (const QString& deed : text.split(u'|'))
        deeds.append(deed.trimmed());
    return deeds;
}

void doWithTiles(const QString& deed, TileLoader& loader, FakePages& pages)
{
    const QStringList words = deed.split(u' ');
    const QString& verb = words.first();
    QList<TileKey> keys;
    for (const QString& name : words.sliced(1))
        keys.append(FakePages::keyOf(name));
    if (verb == u"want")
        loader.want(keys, {0, 9}, 0, 1);
    else if (verb == u"come" || verb == u"fail")
        pages.answer(words.last(), verb == u"come" ? PDFFailure::isNone : PDFFailure::isDamaged);
    else if (verb == u"drop")
        loader.dropPage(keys.first().page);
    else if (verb == u"clear")
        loader.clear();
    else
        loader.setPaused(verb == u"pause");
}

} // namespace

void TestPageLoading::asksForTiles_data()
{
    const Deeds row;
    // The engine serves the latest first: of what is asked for in one go, the nearest comes last.
    row("three at a time, the nearest last", "want 1a 2a 3a 4a 5a", "+3a +2a +1a");
    row("the next when one has come", "want 1a 2a 3a 4a | come 2a | come 1a", "+3a +2a +1a|+4a|");
    row("nothing twice", "want 1a 2a | want 2a 1a | come 1a | want 1a 2a", "+2a +1a|||");
    row("what is not wanted is given up, but for what the engine is at",
        "want 1a 2a 3a | want 7a | come 3a", "+3a +2a +1a|-2a -1a +7a|");
    row("what comes late is kept", "want 1a | want 2a | come 1a | want 1a", "+1a|+2a||");
    row("a page that fails takes its other tiles along", "want 1a 1b 2a 1c | fail 1b | want 1a 3a",
        "+2a +1b +1a|-1a|+3a");
    row("another comes first", "want 1a | pause | want 2a 1a | resume", "+1a|||+2a");
    row("a page that changes its size is asked for again",
        "want 1a 2a | come 1a | drop 1a | want 1a 2a", "+2a +1a|||+1a");
    row("what is under way is dropped with it", "want 1a 2a | drop 1a", "+2a +1a|-1a");
    row("nobody looks", "want 1a 2a 3a 4a | clear | want 1a", "+3a +2a +1a|-3a -2a -1a|+1a");
}

void TestPageLoading::asksForTiles()
{
    const auto [deeds, record] = Deeds::fetch();
    TileLoader loader(1 << 20, 100, nullptr);
    FakePages& pages = *new FakePages;
    loader.setSource(std::unique_ptr<PageSource>(&pages));
    QSignalSpy busy(&loader, &TileLoader::busyChanged);
    QStringList found;
    for (const QString& deed : deedsOf(deeds)) {
        doWithTiles(deed, loader, pages);
        found.append(pages.takeRecord());
        QCOMPARE(busy.isEmpty() ? false : busy.last().first().toBool(), loader.isBusy());
    }
    QCOMPARE(found.join(u'|'), record);
    QCOMPARE(loader.failure(1) == PDFFailure::isDamaged, deeds.contains(u"fail 1"));
}

using GivesUpWhatTakesLong = Rows<QString, QString, bool>;

void TestPageLoading::givesUpWhatTakesLong_data()
{
    const GivesUpWhatTakesLong row;
    row("what nobody wants any more", "want 1a | want 2a", "-1a", false);
    row("what another waits for, to be tried again", "want 1a 2a | pause", "-2a", false);
    row("what takes longer than it is worth", "patience | want 1a 2a", "-1a +2a", true);
}

/// These wait for the loader's own second to be over, not for a time of the test's.
void TestPageLoading::givesUpWhatTakesLong()
{
    const auto [deeds, record, isFailure] = GivesUpWhatTakesLong::fetch();
    TileLoader loader(1 << 20, 100, nullptr);
    FakePages& pages = *new FakePages;
    loader.setSource(std::unique_ptr<PageSource>(&pages));
    for (const QString& deed : deedsOf(deeds)) {
        if (deed == u"patience")
            loader.setPatience(1);
        else
            doWithTiles(deed, loader, pages);
    }
    QTRY_VERIFY2(pages.record().join(u' ').contains(record), qPrintable(pages.takeRecord()));
    QCOMPARE(loader.failure(1), isFailure ? PDFFailure::isTimedOut : PDFFailure::isNone);
    QCOMPARE(loader.losses().isEmpty(), !isFailure);
}

void TestPageLoading::asksForDetails_data()
{
    const Deeds row;
    row("one page at a time, texts and links apart",
        "want 3 5 | t3 9 | l3 0 | t4 9 | t5 9 | l4 2 | l5 1", "+t3 +l3|+t4|+l4|+t5||+l5|");
    row("nothing twice, be it empty", "want 3 3 | t3 0 | l3 0 | want 3 3", "+t3 +l3|||");
    row("pages out of view are given up", "want 3 5 | t3 9 | want 5 6",
        "+t3 +l3|+t4|-t4 -l3 +t5 +l5");
    row("pages near by are kept", "want 1 1 | t1 9 | l1 2 | want 2 2 | want 1 1",
        "+t1 +l1|||+t2 +l2|-t2 -l2");
    row("far texts are forgotten when there are many characters",
        "want 1 1 | t1 400000 | l1 2 | want 2 2 | want 1 1", "+t1 +l1|||+t2 +l2|-t2 -l2 +t1");
    row("far links when there are many", "want 1 1 | t1 9 | l1 40000 | want 2 2 | want 1 1",
        "+t1 +l1|||+t2 +l2|-t2 -l2 +l1");
    row("nothing more is fetched beyond all sense", "want 1 3 | t1 6000001 | l1 200001",
        "+t1 +l1||");
    row("until that is out of view", "want 1 3 | t1 6000001 | l1 200001 | want 2 3",
        "+t1 +l1|||+t2 +l2");
}

void TestPageLoading::asksForDetails()
{
    const auto [deeds, record] = Deeds::fetch();
    PageDetails details(nullptr);
    FakePages& pages = *new FakePages;
    details.setSource(std::unique_ptr<PageSource>(&pages));
    QStringList found;
    for (const QString& deed : deedsOf(deeds)) {
        const QStringList words = deed.split(u' ');
        if (words.first() == u"want")
            details.want({words.at(1).toInt(), words.at(2).toInt()});
        else
            pages.answer(words.at(0), PDFFailure::isNone, words.at(1).toLongLong());
        found.append(pages.takeRecord());
    }
    QCOMPARE(found.join(u'|'), record);
    QVERIFY(!details.text(99) && details.links(99).isEmpty());
}

QTEST_GUILESS_MAIN(TestPageLoading)
#include "tst_PageLoading.moc"
