// The panel of one object, with real engines.

#include "ObjectPanel.h"
#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"
#include "text/HexView.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// A panel on a document, shown.
class Shown
{
public:
    explicit Shown(const std::string& bytes)
        : theDocument(bytes)
    {
        thePanel.setDocument(theDocument.get(), u"/tmp"_s, u"file"_s);
        const auto source = std::make_shared<SourceText>(SharedBytes::ofString(bytes));
        source->scan({});
        thePanel.setStoredSource(source);
        thePanel.resize(500, 700);
        thePanel.show();
    }
    void go(int number, std::optional<ByteRange> range = {})
    {
        thePanel.showObject({number, range}, true);
        wait();
    }
    QString text(const QString& name)
    {
        const auto storage = part<PlainTextView>(name)->textStorage();
        QStringList lines;
        for (qsizetype line = 0; line < storage->lineCount(); ++line)
            lines << storage->line(line).text;
        return lines.join(u'\n');
    }
    void wait()
    {
        QVERIFY(QTest::qWaitFor([this] { return !thePanel.isWaiting(); }, 30'000));
    }
    QString label(const QString& name) { return thePanel.findChild<QLabel*>(name)->text(); }
    template<class Kind> Kind* part(const QString& name) { return thePanel.findChild<Kind*>(name); }
    ObjectPanel* operator->() { return &thePanel; }
    ObjectPanel* get() { return &thePanel; }

private:
    OpenedDocument theDocument;
    ObjectPanel thePanel;
};

} // namespace

class TestObjectPanel : public QObject
{
    Q_OBJECT

private slots:
    void saysWhatThereIs_data();
    void saysWhatThereIs();
    void showsStreams_data();
    void showsStreams();
    void followsReferences();
    void showsWhatWasReplaced_data();
    void showsWhatWasReplaced();
    void showsFactsAndColours();
    void listsUsers();
    void decodesFurtherOnDemand();
};

void TestObjectPanel::saysWhatThereIs_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("place");
    QTest::newRow("an object") << 3 << u"Object 3 0 · Font"_s << u"At byte "_s;
    QTest::newRow("0") << 0 << u"Object 0"_s << u"No object: 0"_s;
    QTest::newRow("none") << 99 << u"Object 99"_s << u"The file has no object"_s;
    QTest::newRow("a negative number") << -1 << u"Object -1"_s << u"The file has no object"_s;
    QTest::newRow("in an object stream") << 1 << u"Object 1 0"_s << u"In object stream "_s;
}

void TestObjectPanel::saysWhatThereIs()
{
    QFETCH(int, number);
    QFETCH(QString, place);
    PdfBuilder builder;
    if (number == 1)
        builder.setXref(PdfBuilder::Xref::isStream);
    Shown panel(builder.addPage("A page").bytes());
    panel.go(number);
    QTEST(panel.label(u"objectTitle"_s), "title");
    QVERIFY2(
        panel.label(u"objectPlace"_s).startsWith(place), qPrintable(panel.label(u"objectPlace"_s)));
}

void TestObjectPanel::showsStreams_data()
{
    QTest::addColumn<std::string>("data");
    QTest::addColumn<std::string>("entries");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<int>("tab");
    std::string many;
    for (int time = 0; time < 70; ++time)
        many += "/FlateDecode ";
    QTest::newRow("text") << std::string("0 0 m 1 1 l S") << std::string() << u"13 bytes decoded"_s
                          << 1;
    QTest::newRow("bytes") << std::string("\1\2\3\4\0\xff", 6) << std::string()
                           << u"6 bytes decoded"_s << 2;
    QTest::newRow("a picture") << std::string("\x80")
                               << std::string("/Subtype /Image /Width 1 /Height 1 "
                                              "/BitsPerComponent 8 /ColorSpace /DeviceGray")
                               << u"1 byte decoded"_s << 0;
    QTest::newRow("nothing that decodes")
        << std::string("what") << std::string("/Filter /FlateDecode")
        << u"Damaged after 0 bytes (zlib"_s << 1;
    QTest::newRow("seventy filters")
        << std::string("what") << "/Filter [ " + many + "]"
        << u"It cannot be decoded: The stream names 70 filters."_s << 1;
    QTest::newRow("an unknown filter")
        << std::string("what") << std::string("/Filter /What")
        << u"It cannot be decoded: The filter /What is not known."_s << 1;
}

void TestObjectPanel::showsStreams()
{
    QFETCH(std::string, data);
    QFETCH(std::string, entries);
    QFETCH(QString, outcome);
    PdfBuilder builder;
    const int number = builder.addPage("A page").addStream(data, entries);
    Shown panel(builder.bytes());
    panel.go(number);
    QVERIFY2(panel.label(u"streamOutcome"_s).startsWith(outcome),
        qPrintable(panel.label(u"streamOutcome"_s)));
    QVERIFY(panel.label(u"streamPacking"_s).size() < 200); // it is not all of the panel
    QTEST(panel.part<QTabWidget>(u"streamTabs"_s)->currentIndex(), "tab");
    QVERIFY(panel.part<QPushButton>(u"streamMore"_s)->isHidden());
    panel.part<QComboBox>(u"streamForm"_s)->setCurrentIndex(1);
    panel.wait();
    QCOMPARE(panel.part<HexView>(u"streamHex"_s)->hexStorage().size(), data.size());
    panel.go(1); // the catalog has none
    QVERIFY(panel.part<QTabWidget>(u"streamTabs"_s)->isHidden()
        || !panel.part<QTabWidget>(u"streamTabs"_s)->isVisible());
}

void TestObjectPanel::followsReferences()
{
    Shown panel(PdfBuilder().addPage("A page").bytes());
    panel.go(1);
    const QSignalSpy wanted(panel.get(), &ObjectPanel::objectWanted);
    auto* const text = panel.part<PlainTextView>(u"objectText"_s);
    for (qsizetype line = 0; line < text->textStorage()->lineCount(); ++line) {
        const QString said = text->textStorage()->line(line).text;
        if (const qsizetype unit = said.indexOf(u"2 0 R"_s); unit >= 0)
            text->setSelection({line, unit + 1}, {line, unit + 1});
    }
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(wanted.size(), 1);
    QCOMPARE(wanted.first().first().toInt(), 2);
}

/// As the version says it that it belongs to; where there is none, as it stands in the file.
void TestObjectPanel::showsWhatWasReplaced_data()
{
    const Rows<std::string, QString, QString, QString> row; // found by, notice, text, stream
    row("an object", "3 0 obj", u"a later one has replaced it. At byte"_s, u"<<\n  /Type /Font"_s,
        QString());
    row("a stream", "6 0 obj", u"a later one has replaced it. At byte"_s, u"  /Length 3"_s,
        u"old"_s);
    row("what belongs to no version", "6 0 obj\n<</Junk", u"readers take an earlier one"_s,
        u"6 0 obj\n<</Junk true/Length 4>>\nstream"_s, u"junk"_s);
    row("what the table does not know", "99 0 obj", u"the file's table does not lead to it"_s,
        u"99 0 obj null "_s, QString());
}

void TestObjectPanel::showsWhatWasReplaced()
{
    const auto [head, notice, text, stream] = Rows<std::string, QString, QString, QString>::fetch();
    PdfBuilder builder;
    builder.addPage("A page").addStream("old");
    builder.addUpdate(3, "<< /Type /Font /New true >>");
    builder.addUpdate(6, "<< /Length 3 >>\nstream\nnew\nendstream");
    const std::string bytes = builder.bytes()
        + "6 0 obj\n<</Junk true/Length 4>>\nstream\njunk\nendstream endobj\n99 0 obj null "
          "endobj\n";
    Shown panel(bytes);
    const std::size_t begin = bytes.find(head);
    panel.go(std::stoi(head), ByteRange{begin, bytes.find("endobj", begin) + 6});
    QVERIFY2(panel.label(u"objectNotice"_s).contains(notice),
        qPrintable(panel.label(u"objectNotice"_s)));
    QVERIFY2(panel.text(u"objectText"_s).contains(text), qPrintable(panel.text(u"objectText"_s)));
    QCOMPARE(panel.text(u"streamText"_s), stream);
    panel.part<QPushButton>(u"objectInUse"_s)->click();
    panel.wait();
    QCOMPARE(panel.label(u"objectNotice"_s), QString());
}

void TestObjectPanel::showsFactsAndColours()
{
    Shown panel(PdfBuilder().addPage("A page").bytes());
    panel.go(3);
    QVERIFY(panel.label(u"objectTitle"_s).endsWith(u"Font"_s));
    QVERIFY(panel.text(u"objectFacts"_s).startsWith(u"Name       Helvetica\n"_s));
    panel.go(4); // the page's content
    const TextLine line = panel.part<PlainTextView>(u"streamText"_s)->textStorage()->line(0);
    QCOMPARE(line.marks.first(), (TextMark{0, 2, TextMark::Kind::isColoured, ColourRole::isRed}));
    QVERIFY(line.text.startsWith(u"BT"_s));
}

void TestObjectPanel::listsUsers()
{
    Shown panel(PdfBuilder().addPage("A page").bytes());
    panel.go(2);
    panel.part<QPushButton>(u"objectUsers"_s)->click();
    QTRY_COMPARE(panel.label(u"placesTitle"_s), u"Users of object 2: 2"_s);
    const QSignalSpy wanted(panel.get(), &ObjectPanel::placeWanted);
    QTest::keyClick(panel.part<QWidget>(u"placesView"_s), Qt::Key_Return);
    QCOMPARE(wanted.size(), 1);
}

void TestObjectPanel::decodesFurtherOnDemand()
{
    std::string runs; // each of 128 characters
    for (int run = 0; run < 2'200'000; ++run)
        runs += "\x81x";
    PdfBuilder builder;
    const int number
        = builder.addPage("A page").addStream(runs + '\x80', "/Filter /RunLengthDecode");
    Shown panel(builder.bytes());
    panel.go(number);
    QVERIFY(panel.label(u"streamOutcome"_s).startsWith(u"Stopped at 268,435,456 bytes"_s));
    auto* const more = panel.part<QPushButton>(u"streamMore"_s);
    QVERIFY(!more->isHidden());
    more->click();
    panel.wait();
    QCOMPARE(panel.label(u"streamOutcome"_s), u"281,600,000 bytes decoded"_s);
    QVERIFY(more->isHidden());
}

QTEST_MAIN(TestObjectPanel)
#include "tst_ObjectPanel.moc"
