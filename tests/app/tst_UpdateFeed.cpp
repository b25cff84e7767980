#include "app/UpdateFeed.h"

#include <QTest>

#include <vector>

namespace {

const std::u16string prefix = u"https://site.example/app/";

} // namespace

using Entries = std::optional<std::vector<FeedEntry>>;
using Offers = std::vector<UpdateOffer>;
Q_DECLARE_METATYPE(Entries)
Q_DECLARE_METATYPE(Offers)

class TestUpdateFeed : public QObject
{
    Q_OBJECT

private slots:
    void outcome_data();
    void outcome();
    void comparesAsReadersDo_data();
    void comparesAsReadersDo();
    void acceptsAnswers_data();
    void acceptsAnswers();
};

void TestUpdateFeed::outcome_data()
{
    QTest::addColumn<Entries>("entries");
    QTest::addColumn<QString>("error");
    QTest::addColumn<bool>("isHeld");
    QTest::addColumn<Offers>("offers");

    const std::u16string good = prefix + u"2";
    const auto row = [](const char* name, const std::vector<FeedEntry>& entries, bool isHeld,
                         const Offers& offers) {
        QTest::newRow(name) << Entries(entries) << QString() << isHeld << offers;
    };
    QTest::newRow("no list") << Entries() << "Error in update Property List." << false << Offers();
    QTest::newRow("an empty list")
        << Entries(std::in_place) << "Update Property List has no entries." << false << Offers();
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
    QFETCH(Entries, entries);
    QFETCH(QString, error);
    QFETCH(bool, isHeld);
    QFETCH(Offers, offers);
    const FeedOutcome outcome = readFeed(entries, u"1.0", prefix);
    QCOMPARE(QString::fromStdU16String(std::u16string(outcome.error)), error);
    QCOMPARE(outcome.holdsThisApplication, isHeld);
    QCOMPARE(outcome.offers.size(), offers.size());
    QVERIFY(outcome.offers == offers);
}

void TestUpdateFeed::comparesAsReadersDo_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("isSame");
    const auto row = [](const char* name, const char16_t* one, const char16_t* other, bool same) {
        QTest::newRow(name) << QString::fromUtf16(one) << QString::fromUtf16(other) << same;
    };
    row("composed and decomposed", u"1.0 \u00e9", u"1.0 e\u0301", true);
    row("a compatibility form", u"\ufb01", u"fi", false);
    row("another case", u"b1", u"B1", false);
    row("a blank more", u"1.0", u"1.0 ", false);
    row("other lone surrogates", u"\xd800", u"\xd801", false);
    // Grows three times in decomposition, past any guess at its length.
    QTest::newRow("many marks") << QString(1000,
        QChar(0x1f82)) << QString(1000, QChar(0x1f82)).normalized(QString::NormalizationForm_D)
                                << true;
}

void TestUpdateFeed::comparesAsReadersDo()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    QFETCH(bool, isSame);
    QCOMPARE(isSameText(one.toStdU16String(), other.toStdU16String()), isSame);
    QCOMPARE(isSameText(other.toStdU16String(), one.toStdU16String()), isSame);
}

void TestUpdateFeed::acceptsAnswers_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isAccepted");
    const auto row = [](const char* name, int status, const char* type, bool isAccepted) {
        QTest::newRow(name) << status << QByteArray(type) << isAccepted;
    };
    row("XML", 200, "text/xml", true);
    row("plain text with a character set", 299, " text/plain ; charset=utf-8", true);
    row("the status below", 199, "text/xml", false);
    row("the status above", 300, "text/xml", false);
    row("a longer type", 200, "text/xml-dtd", false);
    row("the type in a parameter", 200, "text/html; x=text/xml", false);
    row("no type", 200, "", false);
}

void TestUpdateFeed::acceptsAnswers()
{
    QFETCH(int, status);
    QFETCH(QByteArray, type);
    QFETCH(bool, isAccepted);
    QCOMPARE(isFeedAnswer(status, type.toStdString()), isAccepted);
}

QTEST_APPLESS_MAIN(TestUpdateFeed)
#include "tst_UpdateFeed.moc"
