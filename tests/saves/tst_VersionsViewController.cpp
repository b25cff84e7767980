#include "saves/VersionsViewController.h"

#include "InfoText.h"
#include "VersionReading.h"
#include "VersionReport.h"
#include "document/Document.h"
#include "frame/DocumentWindow.h"
#include "pdf/PDFSavedVersions.h"
#include "saves/VersionsFact.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"
#include "support/SavedFile.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

PdfBuilder contract(const std::string& info = "<< /Producer (First) >>")
{
    PdfBuilder builder;
    return builder.setInfo(info).addPage("The price is 1,000");
}

/// Another price, then a comment that names a marker, a signature, and bytes behind the end.
std::string updatedContract()
{
    SavedFile file(contract().bytes());
    file.object(4, "<< /Length 0 >>\nstream\n\nendstream").freed(3).save();
    file.object(7, "<< /Type /Annot /Contents (see %%EOF ) >>");
    file.object(8, "<< /Type /Sig /ByteRange [0 1 2 3] >>").save();
    return file.bytes() + "\nmore";
}

} // namespace

class TestVersionsViewController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(u"en_GB"_s)); }
    void cleanup();
    void saysHowManyThereAre_data();
    void saysHowManyThereAre();
    void tellsOfEachVersion();
    void commandsWorkOnTheChosenRows();
    void reportsWhatItShows();
    void stopsAndGoesWhileItReads();
    void readsTextsAndDates_data();
    void readsTextsAndDates();

private:
    void open(const std::string& bytes);
    QString cell(int row, const QString& column) const;
    void select(int row) { theView->versionTable()->selectRow(row); }

    WindowRegistry<Document> theRegistry;
    std::unique_ptr<Document> theDocument;
    std::unique_ptr<VersionsViewController> theView;
};

void TestVersionsViewController::cleanup()
{
    theView.reset();
    theDocument.reset();
}

void TestVersionsViewController::open(const std::string& bytes)
{
    cleanup();
    theDocument = std::make_unique<Document>(&theRegistry);
    theDocument->setFileURL(QUrl::fromLocalFile(u"/somewhere/re<b>port.pdf"_s));
    theDocument->readFromData(*FileBytes::copy(bytes));
    theView = std::make_unique<VersionsViewController>(theDocument.get());
    theView->show();
    QTRY_VERIFY_WITH_TIMEOUT(!theView->reading()->isRunning(), 30'000);
}

QString TestVersionsViewController::cell(int row, const QString& column) const
{
    const QAbstractItemModel* const model = theView->versionTable()->model();
    for (int place = 0; place < model->columnCount(); ++place) {
        if (model->headerData(place, Qt::Horizontal).toString() == column)
            return model->index(row, place).data().toString();
    }
    return u"no such column"_s;
}

using SaysHowManyThereAre = Rows<QByteArray, QString, QString>;

void TestVersionsViewController::saysHowManyThereAre_data()
{
    const SaysHowManyThereAre row;
    const auto bytes = [](const std::string& text) { return QByteArray::fromStdString(text); };
    row("no marker", "%PDF-1.7\n", "No saved version: the file has no marker “%%EOF”.", "");
    row("one", bytes(contract().bytes()), "1 saved version.", "");
    row("two", bytes(SavedFile(contract().bytes()).save().bytes()), "2 saved versions.",
        "2 saved versions");
    row("a marker that ends no version", bytes(updatedContract()),
        "3 saved versions, 4 markers “%%EOF”. Marker 3 is inside an object.",
        "3 saved versions, 4 markers");
    row("nothing that can be read", "%%EOF\n%%EOF\n",
        "0 saved versions, 2 markers “%%EOF”. Markers 1, 2 have no cross-reference of their own.",
        "2 markers of saved versions");
}

void TestVersionsViewController::saysHowManyThereAre()
{
    const auto [bytes, summary, fact] = SaysHowManyThereAre::fetch();
    open(bytes.toStdString());
    QCOMPARE(theView->findChild<QLabel*>(u"summaryLine"_s)->text(), summary);
    QCOMPARE(versionsFact(*theDocument->savedVersions()), fact);
}

void TestVersionsViewController::tellsOfEachVersion()
{
    open(updatedContract());
    QCOMPARE(theView->versionTable()->model()->rowCount(), 4);
    const QString columns[]{u"Version"_s, u"Save"_s, u"Pages"_s, u"Added"_s, u"Replaced"_s,
        u"Freed"_s, u"Signatures"_s, u"Notes"_s, u"Producer"_s};
    const QStringList expected{u"4|3|1|2|0|0|1|Bytes behind the last marker: 5|"_s,
        u"3||||||0|Marker inside a string or comment|"_s, u"2|2|1|0|1|1|0||"_s,
        u"1|1|1||||0||First"_s};
    for (int row = 0; row < expected.size(); ++row) {
        QStringList cells;
        for (const QString& column : columns)
            cells << cell(row, column);
        QCOMPARE(cells.join(u'|'), expected.at(row));
    }
}

void TestVersionsViewController::commandsWorkOnTheChosenRows()
{
    open(updatedContract());
    const QSignalSpy wanted(theDocument.get(), &FrameDocument::versionWanted);
    select(2);
    QTest::keyClick(theView->versionTable(), Qt::Key_Return);
    QCOMPARE(wanted.size(), 1);
    const auto version = wanted[0][0].value<FileVersion>();
    QCOMPARE(version.number, 2U);
    QVERIFY(version.bytes.view().ends_with("%%EOF\n"));
    emit theDocument->versionRefused(2, u"It is <broken>."_s);
    QCOMPARE(cell(2, u"Notes"_s), u"Does not open: It is <broken>."_s);
    theView->selectAll();
    QVERIFY(!theView->validateCommand(u"openVersion"_s));
    theView->copyHash();
    const QStringList hashes = QGuiApplication::clipboard()->text().split(u'\n');
    QCOMPARE(hashes.size(), 4);
    QCOMPARE(
        hashes.at(1), QString::fromStdString(hexadecimal(*theView->reading()->rows()[1].hash)));
    theView->copy();
    QVERIFY(QGuiApplication::clipboard()->text().startsWith(u"4\t3\t"_s));
    QVERIFY(QGuiApplication::clipboard()->text().contains(hashes.at(3)));
}

void TestVersionsViewController::reportsWhatItShows()
{
    open(updatedContract());
    const VersionReport report(
        *theView->reading(), {theDocument->displayName(), u"a.pdf"_s}, u"Program"_s);
    const QByteArray page = report.html();
    QVERIFY(page.contains("re&lt;b&gt;port.pdf") && !page.contains("<b>"));
    const QJsonObject json = QJsonDocument::fromJson(report.json()).object();
    const QJsonObject file = json[u"file"_s].toObject();
    QCOMPARE(file[u"size"_s].toInteger(), qint64(theDocument->theData().size()));
    QVERIFY(page.contains(file[u"sha256"_s].toString().toLatin1()));
    const Sha256::Digest& second = *theView->reading()->rows()[1].hash;
    QVERIFY(page.contains(QByteArray::fromStdString(hexadecimal(second) + "  a-002.pdf\n")));
    QVERIFY(json[u"time"_s].toString().endsWith(u'Z') && json[u"isComplete"_s].toBool());
    const QJsonArray versions = json[u"versions"_s].toArray();
    QCOMPARE(versions.size(), 4);
    QCOMPARE(versions[1][u"freed"_s], QJsonArray({3}));
    QCOMPARE(versions[2][u"flags"_s], QJsonArray({u"marker-in-object"_s}));
    QVERIFY(versions[2][u"save"_s].isNull() && versions[2][u"added"_s].isNull());
    QCOMPARE(versions[3][u"added"_s], QJsonArray({7, 8}));
}

void TestVersionsViewController::stopsAndGoesWhileItReads()
{
    std::string bytes = contract().bytes();
    for (int save = 0; save < 50; ++save)
        bytes = SavedFile(bytes).object(3, "null").save().bytes();
    theDocument = std::make_unique<Document>(&theRegistry);
    theDocument->readFromData(*FileBytes::copy(bytes));
    for (const bool stops : {true, false}) {
        theView = std::make_unique<VersionsViewController>(theDocument.get());
        const QSignalSpy rows(theView->reading(), &VersionReading::rowsKnown);
        QTRY_COMPARE_WITH_TIMEOUT(rows.size(), 1, 30'000);
        QVERIFY(!theView->validateCommand(u"saveReport"_s));
        if (stops)
            theView->findChild<QToolButton*>(u"stopButton"_s)->click();
        QCOMPARE(theView->validateCommand(u"saveReport"_s), stops);
        QCOMPARE(theView->reading()->isRunning(), !stops);
        theView.reset();
    }
}

using ReadsTextsAndDates = Rows<QByteArray, QString, QString>;

void TestVersionsViewController::readsTextsAndDates_data()
{
    const ReadsTextsAndDates row;
    row("nothing", "null", "", "");
    row("entries of others", "<< /A << /Producer (x) >> /B [ /Producer (x) ] >>", "", "");
    row("escapes and PDFDocEncoding", R"(<< /Producer (a\(b\)\134\1012\r\200) >>)", "a(b)\\A2 •",
        "");
    row("UTF-16", "<< /Producer <FEFF00C4D83DDE00> >>", "Ä😀", "");
    row("UTF-8", "<< /Producer <EFBBBFC384> >>", "Ä", "");
    row("with a zone", "<< /ModDate (D:20240131013000+05'30') >>", "", "2024-01-30 20:00:00 UTC");
    row("without one", "<< /ModDate (D:20240131) >>", "", "2024-01-31 00:00:00");
    row("in UTC", "<< /ModDate (20240131120000Z) >>", "", "2024-01-31 12:00:00 UTC");
    row("none", "<< /ModDate (yesterday) /Producer 3 >>", "", "yesterday");
}

void TestVersionsViewController::readsTextsAndDates()
{
    const auto [source, producer, modified] = ReadsTextsAndDates::fetch();
    const InfoText info = InfoText::read(source);
    QCOMPARE(info.producer, producer);
    QCOMPARE(info.modified, modified);
}

QTEST_MAIN(TestVersionsViewController)
#include "tst_VersionsViewController.moc"
