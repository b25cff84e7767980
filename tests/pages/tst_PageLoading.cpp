#include "FakePages.h"
#include "PageDetails.h"
#include "TileLoader.h"

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
void addRow(const char* name, const char* deeds, const char* record)
{
    QTest::newRow(name) << QString::fromLatin1(deeds) << QString::fromLatin1(record);
}

void addColumns()
{
    QTest::addColumn<QString>("deeds");
    QTest::addColumn<QString>("record");
}

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
    addColumns();
    // The engine serves the latest first: of what is asked for in one go, the nearest comes last.
    addRow("three at a time, the nearest last", "want 1a 2a 3a 4a 5a", "+3a +2a +1a");
    addRow(
        "the next when one has come", "want 1a 2a 3a 4a | come 2a | come 1a", "+3a +2a +1a|+4a|");
    addRow("nothing twice", "want 1a 2a | want 2a 1a | come 1a | want 1a 2a", "+2a +1a|||");
    addRow("what is not wanted is given up, but for what the engine is at",
        "want 1a 2a 3a | want 7a | come 3a", "+3a +2a +1a|-2a -1a +7a|");
    addRow("what comes late is kept", "want 1a | want 2a | come 1a | want 1a", "+1a|+2a||");
    addRow("a page that fails takes its other tiles along",
        "want 1a 1b 2a 1c | fail 1b | want 1a 3a", "+2a +1b +1a|-1a|+3a");
    addRow("another comes first", "want 1a | pause | want 2a 1a | resume", "+1a|||+2a");
    addRow("a page that changes its size is asked for again",
        "want 1a 2a | come 1a | drop 1a | want 1a 2a", "+2a +1a|||+1a");
    addRow("what is under way is dropped with it", "want 1a 2a | drop 1a", "+2a +1a|-1a");
    addRow("nobody looks", "want 1a 2a 3a 4a | clear | want 1a", "+3a +2a +1a|-3a -2a -1a|+1a");
}

void TestPageLoading::asksForTiles()
{
    QFETCH(QString, deeds);
    QFETCH(QString, record);
    TileLoader loader(1 << 20, 100, nullptr);
    auto source = std::make_unique<FakePages>();
    FakePages& pages = *source;
    loader.setSource(std::move(source));
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

void TestPageLoading::givesUpWhatTakesLong_data()
{
    addColumns();
    QTest::addColumn<bool>("isFailure");
    const auto row = [](const char* name, const char* deeds, const char* last, bool isFailure) {
        QTest::newRow(name) << QString::fromLatin1(deeds) << QString::fromLatin1(last) << isFailure;
    };
    row("what nobody wants any more", "want 1a | want 2a", "-1a", false);
    row("what another waits for, to be tried again", "want 1a 2a | pause", "-2a", false);
    row("what takes longer than it is worth", "patience | want 1a 2a", "-1a +2a", true);
}

/// These wait for the loader's own second to be over, not for a time of the test's.
void TestPageLoading::givesUpWhatTakesLong()
{
    QFETCH(QString, deeds);
    QFETCH(QString, record);
    QFETCH(bool, isFailure);
    TileLoader loader(1 << 20, 100, nullptr);
    auto source = std::make_unique<FakePages>();
    FakePages& pages = *source;
    loader.setSource(std::move(source));
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
    addColumns();
    addRow("one page at a time, texts and links apart",
        "want 3 5 | t3 9 | l3 0 | t4 9 | t5 9 | l4 2 | l5 1", "+t3 +l3|+t4|+l4|+t5||+l5|");
    addRow("nothing twice, be it empty", "want 3 3 | t3 0 | l3 0 | want 3 3", "+t3 +l3|||");
    addRow("pages out of view are given up", "want 3 5 | t3 9 | want 5 6",
        "+t3 +l3|+t4|-t4 -l3 +t5 +l5");
    addRow("pages near by are kept", "want 1 1 | t1 9 | l1 2 | want 2 2 | want 1 1",
        "+t1 +l1|||+t2 +l2|-t2 -l2");
    addRow("far texts are forgotten when there are many characters",
        "want 1 1 | t1 400000 | l1 2 | want 2 2 | want 1 1", "+t1 +l1|||+t2 +l2|-t2 -l2 +t1");
    addRow("far links when there are many", "want 1 1 | t1 9 | l1 40000 | want 2 2 | want 1 1",
        "+t1 +l1|||+t2 +l2|-t2 -l2 +l1");
    addRow("nothing more is fetched beyond all sense", "want 1 3 | t1 6000001 | l1 200001",
        "+t1 +l1||");
    addRow("until that is out of view", "want 1 3 | t1 6000001 | l1 200001 | want 2 3",
        "+t1 +l1|||+t2 +l2");
}

void TestPageLoading::asksForDetails()
{
    QFETCH(QString, deeds);
    QFETCH(QString, record);
    PageDetails details(nullptr);
    auto source = std::make_unique<FakePages>();
    FakePages& pages = *source;
    details.setSource(std::move(source));
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
