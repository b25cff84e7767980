// The panel of one object, with real engines.

#include "ObjectPanel.h"
#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"
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
        thePanel.resize(500, 700);
        thePanel.show();
    }
    void go(int number, std::optional<ByteRange> range = {})
    {
        thePanel.showObject(number, range, true);
        wait();
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
    void saysThatAnotherObjectIsInUse();
    void decodesFurtherOnDemand();
};

void TestObjectPanel::saysWhatThereIs_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("place");
    QTest::newRow("an object") << 3 << u"Object 3 0"_s << u"At byte "_s;
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
    QTest::newRow("text") << std::string("0 0 m 1 1 l S") << std::string() << u"13 bytes decoded"_s
                          << 0;
    QTest::newRow("bytes") << std::string("\1\2\3\4\0\xff", 6) << std::string()
                           << u"6 bytes decoded"_s << 1;
    QTest::newRow("nothing that decodes")
        << std::string("what") << std::string("/Filter /FlateDecode")
        << u"Damaged after 0 bytes (zlib"_s << 0;
    QTest::newRow("an unknown filter")
        << std::string("what") << std::string("/Filter /What")
        << u"It cannot be decoded: The filter /What is not known."_s << 0;
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

void TestObjectPanel::saysThatAnotherObjectIsInUse()
{
    const std::string bytes
        = PdfBuilder().addPage("A page").addUpdate(3, "<< /Type /Font /New true >>").bytes();
    Shown panel(bytes);
    const std::size_t old = bytes.find("3 0 obj");
    const std::size_t latest = bytes.rfind("3 0 obj");
    panel.go(3, ByteRange{latest, latest + 40});
    QVERIFY(!panel.label(u"objectPlace"_s).contains(u"not in use"_s));
    panel.go(3, ByteRange{old, old + 40});
    QVERIFY(panel.label(u"objectPlace"_s).contains(u"not in use"_s));
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
