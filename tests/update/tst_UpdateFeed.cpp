#include "update/UpdateFeed.h"

#include "support/Rows.h"

#include <QTest>

#include <vector>

using namespace tarnwick;

namespace {

const std::u16string prefix = u"https://site.example/app/";

} // namespace

using Entries = std::optional<std::vector<FeedEntry>>;

class TestUpdateFeed : public QObject
{
    Q_OBJECT

private slots:
    void outcome_data();
    void outcome();
    void comparesAsReadersDo();
    void acceptsAnswers();
};

using Outcome = Rows<Entries, FeedOutcome>;

void TestUpdateFeed::outcome_data()
{
    const Outcome table;
    const auto row = [&table](const char* name, const std::vector<FeedEntry>& entries, bool isHeld,
                         const std::vector<UpdateOffer>& offers) {
        table(name, entries, {{}, isHeld, offers});
    };
    const std::u16string good = prefix + u"2";
    table("no list", {}, {UpdateTexts::unreadable, false, {}});
    table("an empty list", Entries(std::in_place), {UpdateTexts::noEntries, false, {}});
    row("another application", {{u"Other", u"2", good}}, false, {});
    row("the name in another case", {{u"tarnwick", u"2", good}}, false, {});
    row("up to date", {{u"Tarnwick", u"1.0", good}}, true, {});
    row("a newer version", {{u"Tarnwick", u"1.1", good}}, true, {{u"1.1", good}});
    row("equal as a number only", {{u"Tarnwick", u"1.00", good}}, true, {{u"1.00", good}});
    row("another site", {{u"Tarnwick", u"2", u"https://else.example/app/"}}, true, {});
    row("the prefix in the middle", {{u"Tarnwick", u"2", u"x?https://site.example/app/"}}, true,
        {{u"2", u"x?https://site.example/app/"}});
    row("no version", {{u"Tarnwick", {}, good}}, true, {});
    row("no address", {{u"Tarnwick", u"2", {}}}, true, {});
    row("two entries, a faulty one between",
        {{u"Tarnwick", u"2", good}, {u"Tarnwick", {}, {}}, {u"Other", u"5", good},
            {u"Tarnwick", u"3", good}},
        true, {{u"2", good}, {u"3", good}});
}

void TestUpdateFeed::outcome()
{
    const auto [entries, expected] = Outcome::fetch();
    QVERIFY(readFeed(entries, u"1.0", prefix) == expected);
}

void TestUpdateFeed::comparesAsReadersDo()
{
    QVERIFY(isSameText(u"1.0 \u00e9", u"1.0 e\u0301"));
    QVERIFY(isSameText(u"1.0 e\u0301", u"1.0 \u00e9"));
    QVERIFY(!isSameText(u"\ufb01", u"fi")); // of one appearance only
    QVERIFY(!isSameText(u"b1", u"B1"));
    QVERIFY(!isSameText(u"1.0", u"1.0 "));
    QVERIFY(!isSameText(u"\xd800", u"\xd801"));
    // Grows three times in decomposition, past any guess at its length.
    const QString marks(1000, QChar(0x1f82));
    QVERIFY(isSameText(
        marks.toStdU16String(), marks.normalized(QString::NormalizationForm_D).toStdU16String()));
}

void TestUpdateFeed::acceptsAnswers()
{
    QVERIFY(isFeedAnswer(200, "text/xml"));
    QVERIFY(isFeedAnswer(299, " text/plain ; charset=utf-8"));
    QVERIFY(!isFeedAnswer(199, "text/xml"));
    QVERIFY(!isFeedAnswer(300, "text/xml"));
    QVERIFY(!isFeedAnswer(200, "text/xml-dtd"));
    QVERIFY(!isFeedAnswer(200, "text/html; x=text/xml"));
    QVERIFY(!isFeedAnswer(200, ""));
}

QTEST_APPLESS_MAIN(TestUpdateFeed)
#include "tst_UpdateFeed.moc"
