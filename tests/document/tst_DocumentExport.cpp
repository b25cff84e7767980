#include "document/DocumentExport.h"
#include "document/ExportPanel.h"

#include "support/Files.h"
#include "support/Panels.h"
#include "support/PdfBuilder.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

using namespace Qt::StringLiterals;

class TestDocumentExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void init();
    void cleanup();
    void proposesTheDisplayName();
    void panelOffersItsTypes();
    void severalPanelsWriteTheirOwnFiles();
    void takesANameWithQuotes();
    void writesLoneSurrogatesAndPairsAsUtf8();
    void nothingHappensWithoutAnOpenDocument();
    void neverWritesTheOpenedFile();
    void aFileThatCannotBeWrittenIsPassedOver();
    void panelGoesWithADocumentThatIsStillWanted();
    void whatWasTakenOutlivesTheDocument();

private:
    ExportPanel* begin(ExportKind kind)
    {
        ExportSource source;
        source.filePath = path(u"a.pdf"_s);
        source.displayName = u"a.pdf"_s;
        source.document = theDocument.get();
        source.text = theText.get();
        const QList<ExportPanel*> before = allShown<ExportPanel>();
        DocumentExport::begin(kind, source);
        for (ExportPanel* panel : allShown<ExportPanel>()) {
            if (!before.contains(panel))
                return panel;
        }
        return nullptr;
    }
    static void confirm(const ExportPanel* panel)
    {
        QTest::keyClick(nameField(panel), Qt::Key_Return);
    }
    QString path(const QString& name) const { return theHome->filePath(name); }
    QStringList names() const
    {
        return QDir(theHome->path()).entryList(QDir::Files | QDir::Hidden);
    }
    static bool isIdle() { return qApp->findChildren<DocumentExport*>().isEmpty(); }

    std::unique_ptr<QTemporaryDir> theHome;
    std::unique_ptr<PDFDocument> theDocument;
    std::unique_ptr<PDFDocumentText> theText;
};

void TestDocumentExport::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    PdfBuilder builder;
    builder.addPage("First page").addPage("Second\nline");
    theDocument = std::make_unique<PDFDocument>(*FileBytes::copy(builder.bytes()));
    QSignalSpy opened(theDocument.get(), &PDFDocument::opened);
    QVERIFY(opened.wait(20'000));
    theText = std::make_unique<PDFDocumentText>(theDocument.get());
    writeFile(path(u"a.pdf"_s), "the opened file");
}

void TestDocumentExport::cleanup()
{
    theText.reset();
    theDocument.reset();
    QTRY_VERIFY(isIdle());
    QVERIFY(!shown<QDialog>());
}

void TestDocumentExport::proposesTheDisplayName()
{
    QCOMPARE(proposedExportName(ExportKind::isFlatPDF, u"r.pdf"_s), u"r.pdf-flat.pdf"_s);
    QCOMPARE(proposedExportName(ExportKind::isPlainText, u"r"_s), u"r.text"_s);
    QCOMPARE(proposedExportName(ExportKind::isRichText, {}), u"Untitled.rtf"_s);
}

void TestDocumentExport::panelOffersItsTypes()
{
    const std::tuple<ExportKind, QString, QString> offered[] = {
        {ExportKind::isFlatPDF, u"(*.pdf)"_s, u"a.pdf-flat.pdf"_s},
        {ExportKind::isPlainText, u"(*.text *.txt)"_s, u"a.pdf.text"_s},
        {ExportKind::isRichText, u"(*.rtf)"_s, u"a.pdf.rtf"_s},
    };
    for (const auto& [kind, types, name] : offered) {
        ExportPanel* const panel = begin(kind);
        QVERIFY(panel->nameFilters().first().endsWith(types));
        QCOMPARE(nameField(panel)->text(), name);
        QVERIFY(!panel->isModal());
        QCOMPARE(panel->directory(), QDir(theHome->path()));
        panel->reject();
        QTRY_VERIFY(isIdle());
    }
    QCOMPARE(names(), QStringList(u"a.pdf"_s));
}

void TestDocumentExport::severalPanelsWriteTheirOwnFiles()
{
    ExportPanel* const text = begin(ExportKind::isPlainText);
    ExportPanel* const rich = begin(ExportKind::isRichText);
    ExportPanel* const flat = begin(ExportKind::isFlatPDF);
    confirm(flat);
    confirm(rich);
    confirm(text);
    QTRY_VERIFY(isIdle());
    QCOMPARE(contentOf(path(u"a.pdf.text"_s)), theText->text().string().toUtf8());
    QVERIFY(contentOf(path(u"a.pdf.text"_s)).startsWith("First page\n"));
    QVERIFY(contentOf(path(u"a.pdf.rtf"_s)).contains("First page\\par\n"));
    QVERIFY(contentOf(path(u"a.pdf-flat.pdf"_s)).startsWith("%PDF-"));
    QCOMPARE(names().size(), 4);
}

void TestDocumentExport::takesANameWithQuotes()
{
    ExportPanel* const panel = begin(ExportKind::isPlainText);
    nameField(panel)->setText(u"x \"y\" z"_s);
    confirm(panel);
    QTRY_VERIFY(isIdle());
    QVERIFY(names().contains(u"x \"y\" z.text"_s));
}

void TestDocumentExport::writesLoneSurrogatesAndPairsAsUtf8()
{
    // The pair stands across the end of the first slice that is written.
    theDocument.reset();
    const QString text = QString((1 << 20) - 1, u'x') + u"\U0001F600"_s + QChar(0xD800) + u'y';
    QByteArray written;
    QVERIFY(writeUtf8(
        text,
        [&](std::string_view bytes) {
            return written.append(bytes.data(), qsizetype(bytes.size())), true;
        },
        [](quint64, quint64) { return true; }));
    QVERIFY(written.endsWith("x\xF0\x9F\x98\x80\xEF\xBF\xBDy"));
    QCOMPARE(written.size(), (1 << 20) - 1 + 4 + 3 + 1);
}

void TestDocumentExport::nothingHappensWithoutAnOpenDocument()
{
    theDocument = std::make_unique<PDFDocument>(*FileBytes::copy("not a PDF"));
    for (const ExportKind kind :
        {ExportKind::isFlatPDF, ExportKind::isPlainText, ExportKind::isRichText})
        QVERIFY(!begin(kind));
    theDocument.reset();
    QVERIFY(!begin(ExportKind::isRichText));
}

void TestDocumentExport::neverWritesTheOpenedFile()
{
    QVERIFY(QFile::link(path(u"a.pdf"_s), path(u"link.rtf"_s)));
    ExportPanel* const panel = begin(ExportKind::isRichText);
    answerNext(QMessageBox::Yes); // whether to replace the file
    nameField(panel)->setText(u"link.rtf"_s);
    confirm(panel);
    QTRY_VERIFY(shown<QMessageBox>());
    QVERIFY(shown<QMessageBox>()->text().contains(u"link.rtf"_s));
    shown<QMessageBox>()->accept();
    QCOMPARE(contentOf(path(u"a.pdf"_s)), QByteArray("the opened file"));
}

void TestDocumentExport::aFileThatCannotBeWrittenIsPassedOver()
{
    QVERIFY(QFile::link(u"/proc/none"_s, path(u"link.rtf"_s)));
    ExportPanel* const panel = begin(ExportKind::isRichText);
    nameField(panel)->setText(u"link.rtf"_s);
    confirm(panel);
    QTRY_VERIFY(isIdle());
    QVERIFY(!shown<QDialog>());
    QCOMPARE(names().size(), 1);
}

void TestDocumentExport::panelGoesWithADocumentThatIsStillWanted()
{
    begin(ExportKind::isRichText);
    QCOMPARE(allShown<ExportPanel>().size(), 1);
    theText.reset();
    theDocument.reset();
    QTRY_VERIFY(isIdle());
    QTRY_VERIFY(!shown<ExportPanel>());
}

void TestDocumentExport::whatWasTakenOutlivesTheDocument()
{
    theText->fetch();
    QTRY_VERIFY(theText->isWhole());
    ExportPanel* const panel = begin(ExportKind::isPlainText);
    theText.reset();
    theDocument.reset();
    confirm(panel);
    QTRY_VERIFY(isIdle());
    QVERIFY(contentOf(path(u"a.pdf.text"_s)).startsWith("First page\n"));
}

QTEST_MAIN(TestDocumentExport)
#include "tst_DocumentExport.moc"
