// What single objects say and what their streams hold, asked of real engines.

#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"

#include <QFile>

#include <zlib.h>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

std::string deflated(const std::string& bytes)
{
    uLongf size = compressBound(bytes.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size,
        reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
    packed.resize(size);
    return packed;
}

std::string deflated(int times, std::string bytes)
{
    for (int time = 0; time < times; ++time)
        bytes = deflated(bytes);
    return bytes;
}

std::string repeated(int times, const std::string& text)
{
    std::string all;
    for (int time = 0; time < times; ++time)
        all += text;
    return all;
}

/// So long that unpacking it gives bytes before the damage: what does not pack well.
std::string numbers()
{
    std::string text;
    for (int number = 0; text.size() < 3000; ++number)
        text += std::to_string(number * 7919 % 10007) + ' ';
    return text;
}

PDFObject objectOf(OpenedDocument& document, int number)
{
    const PDFObjectRequest* const request = document->requestObject(number, document.get());
    OpenedDocument::waitFor(request);
    return request->object();
}

/// "whole", "stopped", ... with the number of bytes, or why there is no answer.
QString endOf(const PDFStreamRequest* request)
{
    OpenedDocument::waitFor(request);
    if (!request->succeeded())
        return u"failed "_s + QString::number(static_cast<int>(request->failure()));
    static const QStringList names
        = {u"whole"_s, u"stopped"_s, u"damaged"_s, u"unknown"_s, u"none"_s};
    return names.at(static_cast<int>(request->stream().end)) + u' '
        + QString::number(request->stream().bytes.size());
}

} // namespace

class TestObjectRequests : public QObject
{
    Q_OBJECT

private slots:
    void setsObjectsOut_data();
    void setsObjectsOut();
    void saysWhatANumberStandsFor_data();
    void saysWhatANumberStandsFor();
    void readsStreams_data();
    void readsStreams();
    void saysHowFarDamageLets_data();
    void saysHowFarDamageLets();
    void readsWhatIsEncrypted();
    void usesAFreshEngineForEachStream();
};

void TestObjectRequests::setsObjectsOut_data()
{
    QTest::addColumn<std::string>("body");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isCut");
    QTest::newRow("an entry a line")
        << std::string("<< /B [ 0 0 612 792 ] /R 3 0 R /In << /S (a\\(b) /T <00FF> >> /E << >> >>")
        << u"<<\n  /B [ 0 0 612 792 ]\n  /R 3 0 R\n  /In <<\n    /S (a\\(b)\n    /T <00FF>\n  >>\n"
           "  /E <<\n  >>\n>>"_s
        << false;
    QTest::newRow("names of any bytes") << std::string("/A#20B#ff") << u"/A#20B#FF"_s << false;
    QTest::newRow("numbers and words") << std::string("[ -1 .50 true null [ ] ]")
                                       << u"[\n  -1\n  0.5\n  true\n  null\n  [ ]\n]"_s << false;
    QTest::newRow("long arrays in lines of whole references")
        << "[ " + repeated(20, "123 0 R ") + "]"
        << QString::fromStdString("[" + repeated(10, " 123 0 R")) << false;
    QTest::newRow("as deep as may be")
        << repeated(99, "[ ") + repeated(99, "] ") << QString() << false;
    QTest::newRow("deeper") << repeated(120, "[ ") + repeated(120, "] ") << QString() << true;
    QTest::newRow("a long name") << "/" + std::string(300, 'n') << u'/' + QString(300, u'n')
                                 << false;
    QTest::newRow("longer than is told")
        << "(" + std::string(5u << 20, 's') + ")" << QString() << true;
}

void TestObjectRequests::setsObjectsOut()
{
    QFETCH(std::string, body);
    QFETCH(QString, text);
    PdfBuilder builder;
    const int number = builder.addPage("A page").addObject(body);
    OpenedDocument document(builder.bytes());
    const PDFObject object = objectOf(document, number);
    QCOMPARE(object.state, PDFObjectState::isPresent);
    if (QByteArray(QTest::currentDataTag()).startsWith("long arrays"))
        QCOMPARE(object.text.section(u'\n', 0, 0), text);
    else if (!text.isEmpty())
        QCOMPARE(object.text, text);
    QTEST(object.isCut, "isCut");
    QVERIFY(object.text.size() <= qsizetype{longestObjectText});
}

void TestObjectRequests::saysWhatANumberStandsFor_data()
{
    QTest::addColumn<bool>("isPacked");
    QTest::addColumn<int>("number");
    QTest::addColumn<PDFObjectState>("state");
    QTest::newRow("object 0") << false << 0 << PDFObjectState::isFree;
    QTest::newRow("negative") << false << -3 << PDFObjectState::isMissing;
    QTest::newRow("beyond the table") << false << 500 << PDFObjectState::isMissing;
    QTest::newRow("beyond all tables") << false << 2'000'000'000 << PDFObjectState::isMissing;
    QTest::newRow("an object") << false << 3 << PDFObjectState::isPresent;
    QTest::newRow("one in an object stream") << true << 3 << PDFObjectState::isPresent;
}

void TestObjectRequests::saysWhatANumberStandsFor()
{
    QFETCH(bool, isPacked);
    QFETCH(int, number);
    const std::string bytes
        = PdfBuilder()
              .setXref(isPacked ? PdfBuilder::Xref::isStream : PdfBuilder::Xref::isTable)
              .addPage("A page")
              .bytes();
    OpenedDocument document(bytes);
    const PDFObject object = objectOf(document, number);
    QTEST(object.state, "state");
    if (object.state != PDFObjectState::isPresent)
        return;
    QCOMPARE(object.place.container > 0, isPacked);
    if (isPacked)
        QVERIFY(objectOf(document, object.place.container).isStream);
    else
        QCOMPARE(object.place.offset, bytes.find("3 0 obj"));
}

void TestObjectRequests::readsStreams_data()
{
    QTest::addColumn<std::string>("data");
    QTest::addColumn<std::string>("entries");
    QTest::addColumn<quint64>("limit");
    QTest::addColumn<QString>("end");
    const auto row
        = [](const char* name, const std::string& data, const std::string& entries, quint64 limit,
              const QString& end) { QTest::newRow(name) << data << entries << limit << end; };
    const std::string flate = "/Filter /FlateDecode ";
    const std::string text = numbers();
    row("plain", "0 0 m", "", usualStream, u"whole 5"_s);
    row("packed", deflated(text), flate, usualStream, u"whole %1"_s.arg(text.size()));
    row("at the limit", deflated(text), flate, text.size(), u"whole %1"_s.arg(text.size()));
    row("beyond the limit", deflated(text), flate, 1000, u"stopped 1000"_s);
    row("nothing wanted", deflated(text), flate, 0, u"stopped 0"_s);
    row("packed twice", deflated(2, text), "/Filter [ /FlateDecode /FlateDecode ]", usualStream,
        u"whole %1"_s.arg(text.size()));
    row("an unknown filter", "x", "/Filter [ /FlateDecode /No#20such ]", usualStream,
        u"unknown 0"_s);
    row("a thousand filters", "x", "/Filter [ " + repeated(1000, "/AHx ") + "]", usualStream,
        u"unknown 0"_s);
    row("filters that name themselves", "x", "/Filter [ 6 0 R ] /DecodeParms 6 0 R", usualStream,
        u"unknown 0"_s);
    row("an image that stays packed", "x", "/Filter /JPXDecode", usualStream, u"whole 1"_s);
    row("a Length that lies", "0 0 m 1 1 l", "/Length 3", usualStream, u"whole 11"_s);
    // A bomb: 4 KB unpack to 2 GB.
    row("a bomb", deflated(2, deflated(std::string(200u << 20, '\0'))),
        "/Filter [ /FlateDecode /FlateDecode /FlateDecode ]", 50u << 20, u"stopped 52428800"_s);
}

void TestObjectRequests::readsStreams()
{
    QFETCH(std::string, data);
    QFETCH(std::string, entries);
    QFETCH(quint64, limit);
    PdfBuilder builder;
    const int number = builder.addPage("A page").addStream(data, entries);
    OpenedDocument document(builder.bytes());
    const PDFStreamRequest* const request
        = document->requestStream(number, PDFStreamForm::isDecoded, limit, document.get());
    QTEST(endOf(request), "end");
    if (entries.find("JPXDecode") != std::string::npos)
        QCOMPARE(request->stream().remark, u"/JPXDecode is not undone"_s);
}

/// All bytes up to the damage are there, for the plain form of the one filter that most have.
void TestObjectRequests::saysHowFarDamageLets_data()
{
    QTest::addColumn<std::string>("entries");
    QTest::addColumn<int>("brokenAt");
    QTest::addColumn<int>("least");
    const int size = static_cast<int>(deflated(numbers()).size());
    QTest::newRow("in the middle") << std::string("/Filter /FlateDecode") << size / 2 << 1000;
    QTest::newRow("cut off") << std::string("/Filter [ /FlateDecode ]") << -size / 2 << 1000;
    QTest::newRow("within two filters")
        << std::string("/Filter [ /FlateDecode /ASCIIHexDecode ]") << size / 2 << 0;
    QTest::newRow("from the beginning") << std::string("/Filter /FlateDecode") << 0 << 0;
}

void TestObjectRequests::saysHowFarDamageLets()
{
    QFETCH(std::string, entries);
    QFETCH(int, brokenAt);
    QFETCH(int, least);
    const std::string text = numbers();
    std::string data = deflated(text);
    if (brokenAt < 0)
        data.resize(static_cast<std::size_t>(-brokenAt));
    else
        data.replace(static_cast<std::size_t>(brokenAt), 20, 20, '\xff');
    PdfBuilder builder;
    const int number = builder.addPage("A page").addStream(data, entries);
    OpenedDocument document(builder.bytes());
    const PDFStreamRequest* const request
        = document->requestStream(number, PDFStreamForm::isDecoded, usualStream, document.get());
    QVERIFY(endOf(request).startsWith(u"damaged "_s));
    QVERIFY(!request->stream().remark.isEmpty());
    const std::string_view bytes = request->stream().bytes.view();
    QVERIFY(bytes.size() >= static_cast<std::size_t>(least) && bytes.size() < text.size());
    if (least > 0)
        QVERIFY(text.substr(0, static_cast<std::size_t>(least))
            == bytes.substr(0, static_cast<std::size_t>(least)));
}

void TestObjectRequests::readsWhatIsEncrypted()
{
    for (const char* file : {"/locked-rc4-40.pdf", "/locked-aes-256.pdf"}) {
        OpenedDocument document(
            *FileBytes::read(QStringLiteral(TARNWICK_TEST_DATA) + QLatin1String(file)));
        QCOMPARE(objectOf(document, 6).state, PDFObjectState::isMissing); // none is opened
        document->unlock(u"geheim"_s);
        QTRY_COMPARE(document->state(), PDFDocument::State::isOpen);
        QCOMPARE(objectOf(document, 6).state, PDFObjectState::isPresent);
        const PDFStreamRequest* const content
            = document->requestStream(6, PDFStreamForm::isDecoded, usualStream, document.get());
        QVERIFY(endOf(content).startsWith(u"whole "_s));
        QVERIFY(content->stream().bytes.view().find("Tj") != std::string_view::npos);
    }
}

void TestObjectRequests::usesAFreshEngineForEachStream()
{
    OpenedDocument document(PdfBuilder().addPage("A page").bytes());
    const QList<qint64> before = document->engineProcessIds();
    for (int time = 0; time < 2; ++time)
        QVERIFY(endOf(document->requestStream(4, PDFStreamForm::isRaw, usualStream, document.get()))
                    .startsWith(u"whole "_s));
    QCOMPARE(document->engineProcessIds(), before);
}

QTEST_MAIN(TestObjectRequests)
#include "tst_ObjectRequests.moc"
