#include "protocol/EngineMessages.h"

#include <QTest>

using namespace tarnwick;

namespace {

enum class Colour : std::uint8_t
{
    isRed,
    isBlue,
};

struct Part
{
    std::string name;

    static constexpr void describe(auto& fields, auto& part) { fields.text(part.name, 4); }
};

/// A field of each sort.
struct Sample
{
    int number = 1;
    double ratio = 0.5;
    bool isSet = false;
    Colour colour = Colour::isRed;
    std::string text;
    std::vector<Part> parts;
    PackedItems<char32_t> items;

    static constexpr void describe(auto& fields, auto& sample)
    {
        fields.number(sample.number, 1, 9);
        fields.number(sample.ratio, 0.0, 1.0);
        fields.flag(sample.isSet);
        fields.choice(sample.colour, Colour::isBlue);
        fields.textsWithin(9);
        fields.text(sample.text, 6);
        fields.list(sample.parts, 2);
        fields.items(sample.items, 3);
    }
};

/// What a sample says, as its parts lie in a payload; any of them may be wrong.
struct Bytes
{
    int number = 1;
    double ratio = 0.5;
    quint8 isSet = 1;
    quint8 colour = 1;
    QByteArray text = "abc";
    quint32 parts = 1;
    QByteArray part = "de";
    quint32 items = 2;
    int itemsThere = 2;

    std::string payload() const
    {
        PayloadWriter writer;
        const auto putText = [&writer](const QByteArray& bytes) {
            writer.put(static_cast<quint32>(bytes.size()));
            writer.putBytes(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        };
        writer.put(number);
        writer.put(ratio);
        writer.put(isSet);
        writer.put(colour);
        putText(text);
        writer.put(parts);
        for (quint32 index = 0; index < std::min(parts, 5u); ++index)
            putText(part);
        writer.put(items);
        for (int index = 0; index < itemsThere; ++index)
            writer.put(quint32{0x61});
        return writer.takeBytes();
    }
};

} // namespace

Q_DECLARE_METATYPE(Bytes)

class TestMessageFields : public QObject
{
    Q_OBJECT

private slots:
    void takesWhatWasPut();
    void refusesWhatGoesBeyondALimit_data();
    void refusesWhatGoesBeyondALimit();
    void putsNoMoreThanIsTaken();
    void knowsHowLargeMessagesAre();
};

void TestMessageFields::takesWhatWasPut()
{
    const std::vector<char32_t> items = {0x61, 0x1f600};
    const std::string payload
        = packed(Sample{7, 0.25, true, Colour::isBlue, "abc", {{"de"}, {""}}, items});
    const std::optional<Sample> taken = unpacked<Sample>(payload);
    QVERIFY(taken);
    QCOMPARE(taken->number, 7);
    QCOMPARE(taken->ratio, 0.25);
    QVERIFY(taken->isSet && taken->colour == Colour::isBlue && taken->text == "abc");
    QVERIFY(taken->parts.size() == 2 && taken->parts[0].name == "de" && taken->items.size() == 2);
    QCOMPARE(taken->items[1], items[1]);
    for (std::size_t size = 0; size < payload.size(); ++size)
        QVERIFY2(!unpacked<Sample>(std::string_view(payload).substr(0, size)), "broken off");
    QVERIFY2(!unpacked<Sample>(payload + '\0'), "followed by a byte");
}

void TestMessageFields::refusesWhatGoesBeyondALimit_data()
{
    QTest::addColumn<Bytes>("bytes");
    QTest::addColumn<bool>("isTaken");
    const auto row = [](const char* name, auto member, auto value, bool isTaken = false) {
        Bytes bytes;
        bytes.*member = value;
        QTest::newRow(name) << bytes << isTaken;
    };
    row("nothing", &Bytes::number, 1, true);
    row("a number below its range", &Bytes::number, 0);
    row("a number above its range", &Bytes::number, 10);
    row("a number that is none", &Bytes::ratio, std::numeric_limits<double>::quiet_NaN());
    row("a number without end", &Bytes::ratio, std::numeric_limits<double>::infinity());
    row("a flag of another sort", &Bytes::isSet, quint8{2});
    row("a choice that does not exist", &Bytes::colour, quint8{2});
    row("the longest text", &Bytes::text, QByteArray("abcdef"), true);
    row("a longer one", &Bytes::text, QByteArray("abcdefg"));
    row("the longest text of a part", &Bytes::part, QByteArray("defg"), true);
    row("a longer one of a part", &Bytes::part, QByteArray("defgh"));
    row("as many parts as may be", &Bytes::parts, 2u, true);
    row("more parts than may be", &Bytes::parts, 3u);
    row("countless parts", &Bytes::parts, 0xfffffff0u);
    row("countless items", &Bytes::items, 0xfffffff0u);
    row("more items than there are", &Bytes::items, 3u);
    Bytes longInAll;
    longInAll.text = "abcdef";
    longInAll.part = "defg";
    QTest::newRow("texts that are too long in all") << longInAll << false;
    Bytes many;
    many.items = 4;
    many.itemsThere = 4;
    QTest::newRow("more items than may be") << many << false;
}

void TestMessageFields::refusesWhatGoesBeyondALimit()
{
    QFETCH(Bytes, bytes);
    QFETCH(bool, isTaken);
    QCOMPARE(unpacked<Sample>(bytes.payload()).has_value(), isTaken);
}

/// So that no end forgets a limit: what is too much is left out, characters whole.
void TestMessageFields::putsNoMoreThanIsTaken()
{
    Sample sample;
    sample.text = "abcde\xe2\x82\xac";
    sample.parts = {{"defg"}, {"h"}, {"i"}};
    sample.items = std::vector<char32_t>(7, U'a');
    std::optional<Sample> taken = unpacked<Sample>(packed(sample));
    QVERIFY(taken);
    QCOMPARE(taken->text, std::string("abcde"));
    QVERIFY(taken->parts.size() == 2 && taken->items.size() == 3);
    QCOMPARE(taken->parts[0].name + taken->parts[1].name, std::string("defg"));
    sample.text = std::string(9, '\x80'); // of no characters
    taken = unpacked<Sample>(packed(sample));
    QVERIFY(taken && taken->text.size() > 2 && taken->text.size() <= 6);
}

void TestMessageFields::knowsHowLargeMessagesAre()
{
    const Sample full{
        9, 1, true, Colour::isBlue, "abcdef", {{"def"}, {""}}, std::vector<char32_t>(3, U'a')};
    QCOMPARE(mostSize<Sample>(), packed(full).size());
    QCOMPARE(leastSize<Sample>(), packed(Sample()).size());
    // A request has to fit into memory at the other end.
    QVERIFY(EngineRequests::largestRequest() < 64u << 20);
    QVERIFY(EngineRequests::largestResult() < 160u << 20);
    TileRequest tile;
    tile.width = tile.height = maximumTileSide;
    QCOMPARE(std::size_t{largestResult(tile)}, mostSize<TileResult>());
}

QTEST_APPLESS_MAIN(TestMessageFields)
#include "tst_MessageFields.moc"
