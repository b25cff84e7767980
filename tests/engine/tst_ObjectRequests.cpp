// What single objects say and what their streams hold, asked of real engines.

#include "pdf/FailureText.h"
#include "pdf/PDFObjectEngines.h"
#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QFile>

#include <csignal>

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

/// "2 placed; 3 in 6.0 Font >4 >5; free 4 @321; roots 1", the object streams' members by number.
QString summaryOf(const CrossReference& table)
{
    QStringList parts{u"%1 placed"_s.arg(table.placed.size())};
    for (std::size_t index = 0; index < table.members.size(); ++index) {
        const CrossReference::Member& member = table.members[index];
        QString part = u"%1 in %2.%3 "_s.arg(member.number).arg(member.container).arg(member.index)
            + (member.isReadable ? QString::fromStdString(table.kinds[member.kind]) : u"?"_s);
        const std::size_t end = index + 1 < table.members.size()
            ? table.members[index + 1].firstReference
            : table.references.size();
        for (std::size_t at = member.firstReference; at < end; ++at)
            part += u" >%1"_s.arg(table.references[at]);
        parts += part;
    }
    for (const CrossReference::Freed& freed : table.freed)
        parts += u"free %1 @%2"_s.arg(freed.number).arg(freed.section);
    for (const std::uint32_t root : table.roots)
        parts += u"root %1"_s.arg(root);
    return parts.join(u"; "_s) + (table.wasRepaired ? u"; repaired"_s : QString());
}

/// A save that frees object 3.
std::string freed(const std::string& file)
{
    const std::string before = file.substr(file.rfind("startxref") + 10);
    return file + "xref\n3 1\n0000000000 00001 f \ntrailer\n<< /Size 6 /Root 1 0 R /Prev "
        + before.substr(0, before.find('\n')) + " >>\nstartxref\n" + std::to_string(file.size())
        + "\n%%EOF\n";
}

/// "whole", "stopped", ... with the number of bytes, or why there is no answer.
QString endOf(const PDFStreamRequest* request)
{
    OpenedDocument::waitFor(request);
    if (!request->succeeded())
        return u"failed "_s + QString::number(static_cast<int>(request->failure()));
    static const QStringList names
        = {u"whole"_s, u"stopped"_s, u"damaged"_s, u"lost"_s, u"unknown"_s, u"none"_s};
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
    void tellsTheTable_data();
    void tellsTheTable();
    void readsStreams_data();
    void readsStreams();
    void saysHowFarDamageLets_data();
    void saysHowFarDamageLets();
    void tellsFacts_data();
    void tellsFacts();
    void drawsPictures_data();
    void drawsPictures();
    void readsWhatIsEncrypted();
    void keepsWhatCameBeforeTheEngineEnded();
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

void TestObjectRequests::tellsTheTable_data()
{
    QTest::addColumn<std::string>("file");
    QTest::addColumn<QString>("table");
    PdfBuilder plain;
    const std::string file = plain.addPage("A page").bytes();
    PdfBuilder packed;
    const std::string small = packed.setXref(PdfBuilder::Xref::isStream).addPage("A page").bytes();
    QTest::newRow("a table") << file << u"5 placed; root 1"_s;
    QTest::newRow("object streams")
        << small
        << u"3 placed; 1 in 6.0 Catalog >2; 2 in 6.1 Pages >5; 3 in 6.2 Font; "
           "5 in 6.3 Page >2 >3 >4; root 1"_s;
    QTest::newRow("freed by a later save")
        << freed(file) << u"4 placed; free 3 @%1; root 1"_s.arg(file.size());
    QTest::newRow("no table") << file.substr(0, file.find("xref\n"))
            + "trailer\n<< /Root 1 0 R >>\n"
                              << u"5 placed; root 1; repaired"_s;
}

void TestObjectRequests::tellsTheTable()
{
    QFETCH(std::string, file);
    OpenedDocument document(file);
    const PDFTableRequest* const request = document->requestTable(document.get());
    QVERIFY(OpenedDocument::waitFor(request));
    QVERIFY(request->table());
    QTEST(summaryOf(*request->table()), "table");
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

void TestObjectRequests::tellsFacts_data()
{
    const Rows<std::string, std::string, QString> row;
    const auto dictionary = [&](const char* name, const std::string& body, const QString& facts) {
        row(name, body, "", facts);
    };
    dictionary("a font that is not embedded",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
        u"Helvetica|Type1|not embedded|/WinAnsiEncoding|none"_s);
    dictionary("a subset with differences",
        "<< /Type /Font /Subtype /TrueType /BaseFont /ABCDEF+Name#20x /FirstChar 32 /LastChar 90 "
        "/Encoding << /Differences [ 1 /a /b 9 /c ] >> /ToUnicode 4 0 R >>",
        u"Name x|ABCDEF|TrueType|not embedded|the font's own with 3 differences|4 0 R|32 to 90"_s);
    dictionary("a composite font without anything",
        "<< /Type /Font /Subtype /Type0 /BaseFont /A /DescendantFonts [ << /Subtype /CIDFontType2 "
        "/CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >> >> ] "
        "/Encoding /Identity-H >>",
        u"A|Type0|CIDFontType2, Adobe-Identity-0|not embedded|/Identity-H|none"_s);
    dictionary("drawn glyphs", "<< /Type /Font /Subtype /Type3 /CharProcs << /a 4 0 R >> >>",
        u"Type3|content streams, one for each glyph|1|none stated|none"_s);
    dictionary("an embedded program that is none",
        "<< /Type /FontDescriptor /FontName /A /FontFile2 4 0 R >>",
        u"A|4 0 R, of no known format, 43 bytes|the font program cannot be read"_s);
    dictionary("a file", "<< /Type /Filespec /UF <FEFF00E9> /EF << /F 4 0 R >> >>", u"é|4 0 R"_s);
    dictionary("a number", "7", QString());
    row("an image", "x",
        "/Subtype /Image /Width 3 /Height 2 /BitsPerComponent 8 /ColorSpace /DeviceRGB /SMask 4 0 "
        "R",
        u"3 × 2|8|/DeviceRGB, 3 components|soft mask 4 0 R"_s);
    row("a form", "x",
        "/Subtype /Form /BBox [ 0 0 1 1 ] /Resources << /Font << /F1 3 0 R /F2 3 0 R >> >> "
        "/Group << /S /Transparency >>",
        u"[ 0 0 1 1 ]|/Font: /F1 /F2|<< /S /Transparency >>"_s);
    row("a font program", std::string("\0\1\0\0", 4), "/Length1 4",
        u"TrueType|the font program cannot be read|4 bytes"_s);
    row("an embedded file", "x", "/Type /EmbeddedFile /Params << /Size 9 >>",
        u"9 bytes as stated"_s);
    row("a profile",
        std::string("\0\0\0\xb0"
                    "none\2\x40\0\0mntrRGB XYZ ",
            24)
            + std::string(12, '\0') + "acsp" + std::string(88, '\0')
            + std::string("\0\0\0\1desc\0\0\0\x90\0\0\0\x11"
                          "desc\0\0\0\0\0\0\0\5sRGB\0",
                33),
        "/N 3 /Alternate /DeviceRGB", u"sRGB|3|RGB to XYZ, class mntr, version 2.4|/DeviceRGB"_s);
}

void TestObjectRequests::tellsFacts()
{
    const auto [body, entries, expected] = Rows<std::string, std::string, QString>::fetch();
    PdfBuilder builder;
    builder.addPage("A page");
    const int number = entries.empty() ? builder.addObject(body) : builder.addStream(body, entries);
    OpenedDocument document(builder.bytes());
    const auto* const request = document->objectEngines()->requestFacts(number, document.get());
    OpenedDocument::waitFor(request);
    QStringList told;
    for (const PDFFact& fact : request->facts().facts)
        told << fact.text;
    QCOMPARE(told.join(u'|'), expected);
}

/// The first pixel, and the size that is brought.
void TestObjectRequests::drawsPictures_data()
{
    const Rows<std::string, std::string, QString> row;
    const std::string gray = "/BitsPerComponent 8 /ColorSpace /DeviceGray ";
    const std::string image = "/Subtype /Image /Width 2 /Height 1 ";
    row("grey", "\x80\xff", image + gray, u"2x1 ff808080"_s);
    row("colours", std::string("\xff\0\0\0\xff\0", 6),
        image + "/BitsPerComponent 8 /ColorSpace /DeviceRGB", u"2x1 ffff0000"_s);
    row("a table of colours", "\x40",
        image + "/BitsPerComponent 1 /ColorSpace [ /Indexed /DeviceRGB 1 <0000ff00ff00> ]",
        u"2x1 ff0000ff"_s);
    row("a stencil mask", "\x40", image + "/ImageMask true", u"2x1 fe000000"_s);
    row("transparent by its mask", "\x80\x80", image + gray + "/SMask 6 0 R", u"2x1 00000000"_s);
    row("by a colour", "\x80\xff", image + gray + "/Mask [ 128 128 ]", u"2x1 00000000"_s);
    row("reduced", std::string(10'000, '\x80'), "/Subtype /Image /Width 10000 /Height 1 " + gray,
        u"4096x1 ff808080"_s);
    row("far too large", "x", "/Subtype /Image /Width 60000 /Height 60000 " + gray,
        u"The image has 60000 x 60000 pixels, which is more than is drawn."_s);
    row("wider than wide", "x", "/Subtype /Image /Width 900000000000 /Height 1 " + gray,
        u"image width is zero (or less)"_s);
    row("a mask that is too large", "x", image + gray + "/SMask 7 0 R",
        u"The image has 2 x 1 pixels, which is more than is drawn."_s);
    row("without sides", "x", "/Subtype /Image", u"image width is zero (or less)"_s);
    row("half of its data", "\x80", image + gray, u"damaged 2x1 ff808080"_s);
    row("no JPEG 2000", "what", image + "/Filter /JPXDecode",
        u"openjpeg error: JP2H box missing. Required."_s);
    row("no JPEG", "what", image + gray + "/Filter /DCTDecode", u"damaged 2x1 ff000000"_s);
    row("no CCITT", "what", image + "/BitsPerComponent 1 /Filter /CCITTFaxDecode",
        u"2x1 ffffffff"_s);
    row("no JBIG2", "what", image + "/BitsPerComponent 1 /Filter /JBIG2Decode",
        u"damaged 2x1 00000000"_s);
    row("a mask of itself", "x", image + gray + "/SMask 8 0 R", u"damaged 2x1 77383838"_s);
}

void TestObjectRequests::drawsPictures()
{
    const auto [data, entries, expected] = Rows<std::string, std::string, QString>::fetch();
    PdfBuilder builder;
    builder.addPage("A page");
    const std::string mask = "/Subtype /Image /BitsPerComponent 8 /ColorSpace /DeviceGray ";
    builder.addStream(std::string(2, '\0'), mask + "/Width 2 /Height 1");
    builder.addStream("x", mask + "/Width 50000 /Height 50000");
    const int number = builder.addStream(data, entries);
    OpenedDocument document(builder.bytes());
    const auto* const request = document->objectEngines()->requestPicture(number, document.get());
    OpenedDocument::waitFor(request);
    QVERIFY(request->succeeded());
    const PDFPicture& picture = request->picture();
    QString told = picture.remark;
    if (!picture.image.isNull())
        told = u"%1%2x%3 %4"_s.arg(picture.end == PDFPictureEnd::isDamaged ? u"damaged "_s : u""_s)
                   .arg(picture.image.width())
                   .arg(picture.image.height())
                   .arg(picture.image.pixel(0, 0), 8, 16, QLatin1Char('0'));
    QCOMPARE(told, expected);
}

void TestObjectRequests::readsWhatIsEncrypted()
{
    for (const char* file : {"/locked-rc4-40.pdf", "/locked-aes-256.pdf"}) {
        OpenedDocument document(
            *FileBytes::read(QString::fromLatin1(TARNWICK_TEST_DATA) + QLatin1String(file)));
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

void TestObjectRequests::keepsWhatCameBeforeTheEngineEnded()
{
    PdfBuilder builder;
    const int number
        = builder.addPage("A page").addStream(deflated(3, std::string(200u << 20, 'x')),
            "/Filter [ /FlateDecode /FlateDecode /FlateDecode ]");
    OpenedDocument document(builder.bytes());
    const QList<qint64> others = document->engineProcessIds();
    const PDFStreamRequest* const request
        = document->requestStream(number, PDFStreamForm::isDecoded, usualStream, document.get());
    QObject::connect(request, &PDFRequest::progressed, document.get(), [&] {
        for (const qint64 engine : document->engineProcessIds()) {
            if (!others.contains(engine))
                ::kill(static_cast<pid_t>(engine), SIGKILL);
        }
    });
    QVERIFY(endOf(request).startsWith(u"lost "_s));
    QCOMPARE(request->stream().failure, PDFFailure::isEngineDead);
    const std::string_view bytes = request->stream().bytes.view();
    QVERIFY(!bytes.empty() && bytes.find_first_not_of('x') == std::string_view::npos);
}

void TestObjectRequests::usesAFreshEngineForEachStream()
{
    OpenedDocument document(PdfBuilder().addPage("A page").bytes());
    const QList<qint64> before = document->engineProcessIds();
    for (int time = 0; time < 2; ++time)
        QVERIFY(endOf(document->requestStream(4, PDFStreamForm::isRaw, usualStream, document.get()))
                    .startsWith(u"whole "_s));
    QCOMPARE(document->engineProcessIds(), before);
    // A long one gets longer, and its failure would say so.
    const int most = document->requestStream(4, PDFStreamForm::isRaw, largestStream, document.get())
                         ->timeLimit();
    QCOMPARE(failureReason(PDFFailure::isTimedOut, most), u"it took longer than 80 seconds"_s);
}

QTEST_MAIN(TestObjectRequests)
#include "tst_ObjectRequests.moc"
