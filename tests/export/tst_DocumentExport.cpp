#include "ExportPanel.h"
#include "NoticeLine.h"
#include "export/DocumentExport.h"
#include "frame/DocumentWindow.h"

#include "support/FileSizeLimit.h"
#include "support/Files.h"
#include "support/LostPages.h"
#include "support/Panels.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestDocumentExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setQuitOnLastWindowClosed(false);
        std::signal(SIGXFSZ, SIG_IGN); // as the program does
    }
    void init();
    void cleanup();
    void panelOffersItsTypes();
    void severalPanelsWriteTheirOwnFiles();
    void addsTheEndingBeforeItAsks_data();
    void addsTheEndingBeforeItAsks();
    void writesLoneSurrogatesAndPairsAsUtf8();
    void asksForADocumentWithoutPages();
    void refusesTheOpenedFileBeforeItAsks();
    void proposesNoOpenedFile();
    void aFailedExportKeepsWhatStoodThere();
    void saysWhatIsMissing();
    void panelGoesWithADocumentThatIsStillWanted();
    void whatWasTakenOutlivesTheDocument();

private:
    void open(const PdfBuilder& builder);
    ExportPanel* begin(ExportKind kind)
    {
        ExportSource source;
        source.filePath = path(u"a.pdf"_s);
        source.displayName = u"a.pdf"_s;
        source.document = theDocument.get();
        source.text = theText.get();
        source.window = theWindow.get();
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
    /// What the window says, and forgets then.
    QString notice()
    {
        const QList<Notice> unread = theWindow->noticeLine()->unread();
        theWindow->noticeLine()->closeAll();
        return unread.size() == 1 ? unread.first().text : QString::number(unread.size());
    }
    static bool isIdle() { return qApp->findChildren<DocumentExport*>().isEmpty(); }

    std::unique_ptr<QTemporaryDir> theHome;
    std::unique_ptr<DocumentWindow> theWindow;
    std::unique_ptr<PDFDocument> theDocument;
    std::unique_ptr<PDFDocumentText> theText;
};

void TestDocumentExport::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    PdfBuilder builder;
    open(builder.addPage("First page").addPage("Second\nline"));
    theWindow = std::make_unique<DocumentWindow>(u"Test Window"_s);
    theWindow->show();
    writeFile(path(u"a.pdf"_s), "the opened file");
}

void TestDocumentExport::open(const PdfBuilder& builder)
{
    theText.reset();
    theDocument = std::make_unique<PDFDocument>(*FileBytes::copy(builder.bytes()));
    QSignalSpy opened(theDocument.get(), &PDFDocument::opened);
    QVERIFY(opened.wait(20'000));
    theText = std::make_unique<PDFDocumentText>(theDocument.get());
}

void TestDocumentExport::cleanup()
{
    theText.reset();
    theDocument.reset();
    QTRY_VERIFY(isIdle());
    QVERIFY(!shown<QDialog>());
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
    QCOMPARE(proposedExportName(ExportKind::isRichText, {}), u"Untitled.rtf"_s);
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

using AddsTheEndingBeforeItAsks = Rows<ExportKind, QString, QString>;

void TestDocumentExport::addsTheEndingBeforeItAsks_data()
{
    const AddsTheEndingBeforeItAsks row;
    row("none", ExportKind::isPlainText, u"x"_s, u"x.text"_s);
    row("another's", ExportKind::isPlainText, u"p3.doc"_s, u"p3.doc.text"_s);
    row("its own second", ExportKind::isPlainText, u"p.txt"_s, u"p.txt"_s);
    row("in other letters", ExportKind::isPlainText, u"P.TXT"_s, u"P.TXT"_s);
    row("another's on rich text", ExportKind::isRichText, u"r.odt"_s, u"r.odt.rtf"_s);
    row("a number", ExportKind::isFlatPDF, u"v1.2"_s, u"v1.2.pdf"_s);
    row("nothing but an ending", ExportKind::isFlatPDF, u".pdf"_s, u".pdf.pdf"_s);
    row("quotes", ExportKind::isPlainText, u"x \"y\" z"_s, u"x \"y\" z.text"_s);
}

void TestDocumentExport::addsTheEndingBeforeItAsks()
{
    const auto [kind, typed, written] = AddsTheEndingBeforeItAsks::fetch();
    writeFile(path(written), "older");
    ExportPanel* const panel = begin(kind);
    nameField(panel)->setText(typed);
    for (const auto button : {QMessageBox::No, QMessageBox::Yes}) {
        QVERIFY(panel->isVisible());
        confirm(panel);
        QVERIFY(answer(button));
    }
    QTRY_VERIFY(isIdle());
    QVERIFY(contentOf(path(written)) != "older");
    QCOMPARE(names().size(), 2);
    QCOMPARE(notice(), u"“%1” has been written to “%2”."_s.arg(written, theHome->path()));
}

void TestDocumentExport::writesLoneSurrogatesAndPairsAsUtf8()
{
    // The pair stands across the end of the first slice that is written.
    theDocument.reset();
    const QString text = QString((1 << 20) - 1, u'x') + u"\U0001F600"_s + QChar(0xD800) + u'y';
    QByteArray written;
    QVERIFY(writeUtf8(text, [&](std::string_view bytes) {
        return written.append(bytes.data(), qsizetype(bytes.size())), true;
    }));
    QVERIFY(written.endsWith("x\xF0\x9F\x98\x80\xEF\xBF\xBDy"));
    QCOMPARE(written.size(), (1 << 20) - 1 + 4 + 3 + 1);
}

void TestDocumentExport::asksForADocumentWithoutPages()
{
    theDocument = std::make_unique<PDFDocument>(*FileBytes::copy("not a PDF"));
    QVERIFY2(!begin(ExportKind::isRichText), "nothing is open");
    open(PdfBuilder());
    QCOMPARE(theDocument->pageCount(), 0);
    ExportPanel* const panel = begin(ExportKind::isRichText);
    QVERIFY(panel);
    confirm(panel);
    QTRY_VERIFY(isIdle());
    QCOMPARE(names(), QStringList(u"a.pdf"_s));
    QCOMPARE(notice(), u"“a.pdf.rtf” has not been written: The document has no pages."_s);
}

void TestDocumentExport::refusesTheOpenedFileBeforeItAsks()
{
    const auto bytes = FileBytes::read(path(u"a.pdf"_s));
    QVERIFY(QFile::link(path(u"a.pdf"_s), path(u"link.rtf"_s)));
    ExportPanel* const panel = begin(ExportKind::isRichText);
    nameField(panel)->setText(u"link.rtf"_s);
    confirm(panel);
    QVERIFY(shown<QMessageBox>() && shown<QMessageBox>()->text().contains(u"link.rtf” is open"_s));
    QVERIFY(answer(QMessageBox::Ok));
    QVERIFY(panel->isVisible());
    panel->reject();
    QCOMPARE(contentOf(path(u"a.pdf"_s)), QByteArray("the opened file"));
}

void TestDocumentExport::proposesNoOpenedFile()
{
    writeFile(path(u"a.pdf-flat.pdf"_s), "of another window");
    const auto bytes = FileBytes::read(path(u"a.pdf-flat.pdf"_s));
    ExportPanel* const panel = begin(ExportKind::isFlatPDF);
    QCOMPARE(nameField(panel)->text(), u"a.pdf-flat-2.pdf"_s);
    panel->reject();
}

void TestDocumentExport::aFailedExportKeepsWhatStoodThere()
{
    for (const auto& [kind, name] : {std::pair{ExportKind::isPlainText, u"a.pdf.text"_s},
             {ExportKind::isRichText, u"a.pdf.rtf"_s},
             {ExportKind::isFlatPDF, u"a.pdf-flat.pdf"_s}}) {
        writeFile(path(name), "older");
        ExportPanel* const panel = begin(kind);
        {
            const FileSizeLimit full(10);
            confirm(panel);
            QVERIFY(answer(QMessageBox::Yes));
            QTRY_VERIFY(isIdle());
        }
        QVERIFY(!shown<QDialog>());
        QCOMPARE(contentOf(path(name)), QByteArray("older"));
        QCOMPARE(notice(), u"“%1” has not been written: File too large."_s.arg(name));
    }
    QCOMPARE(names().size(), 4);
}

/// What there is, is written; what is missing from it is said with the success.
void TestDocumentExport::saysWhatIsMissing()
{
    open(LostPages::secondOfThree());
    const std::tuple<ExportKind, QString, QString> kinds[] = {
        {ExportKind::isFlatPDF, u"a.pdf-flat.pdf"_s, u"Page 2 was written empty: "_s},
        {ExportKind::isPlainText, u"a.pdf.text"_s, u"No text from page 2: "_s},
        {ExportKind::isRichText, u"a.pdf.rtf"_s, u"No text from page 2: "_s},
    };
    for (const auto& [kind, name, sentence] : kinds) {
        confirm(begin(kind));
        QTRY_VERIFY(isIdle());
        QVERIFY(names().contains(name));
        QCOMPARE(theWindow->noticeLine()->unread().value(0).kind, Notice::Kind::isIncomplete);
        const QString said = notice();
        QVERIFY2(said.startsWith(sentence), qPrintable(said));
        QVERIFY2(said.contains(u"“%1” has been written"_s.arg(name)), qPrintable(said));
    }
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
