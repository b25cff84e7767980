#include "document/Document.h"

#include "OpenFailureAlert.h"
#include "PasswordPrompt.h"
#include "files/OpenedFiles.h"
#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "frame/RecentFiles.h"
#include "support/Files.h"
#include "support/Panels.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"
#include "support/SavedFile.h"
#include "versions/VersionCuts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestDocument : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void opensAFile();
    void commandsOpenWindowsOfTheirOwn();
    void goesWithItsLastWindow();
    void openFileComesToTheFront();
    void saysWhyAFileDoesNotOpen_data();
    void saysWhyAFileDoesNotOpen();
    void failuresShareAnAlert();
    void asksForThePassword();
    void opensASavedVersion();
    void saysWhyAVersionDoesNotOpen();
    void triesThePasswordOfTheFileOnItsVersions();
    void recentFilesAreTenLatestFirst();

private:
    QString path(const QString& name) const;
    QString writePdf(const QString& name, PdfBuilder builder = {}) const;
    Document* open(const QString& path);
    Document* openVersion(Document* document, std::size_t number);

    std::unique_ptr<QTemporaryDir> theFolder;
    WindowRegistry<Document> theRegistry;
    std::unique_ptr<DocumentController> theController;
};

void TestDocument::init()
{
    QSettings().clear();
    theFolder = std::make_unique<QTemporaryDir>();
    theRegistry = {};
    for (const QString& identifier : {WindowIdentifiers::document, WindowIdentifiers::source}) {
        theRegistry.add(identifier, [this, identifier](Document* document) {
            auto* window = new DocumentWindow(identifier, document);
            window->setContent(new QWidget);
            theController->addWindow(window);
            return window;
        });
    }
    theController = std::make_unique<DocumentController>(
        [this] { return std::make_unique<Document>(&theRegistry); });
}

void TestDocument::cleanup()
{
    theController.reset();
    qDeleteAll(allShown<OpenFailureAlert>());
}

QString TestDocument::path(const QString& name) const
{
    return theFolder->filePath(name);
}

QString TestDocument::writePdf(const QString& name, PdfBuilder builder) const
{
    writeFile(path(name), QByteArray::fromStdString(builder.addPage("Hello").bytes()));
    return path(name);
}

Document* TestDocument::open(const QString& path)
{
    QSignalSpy opened(theController.get(), &DocumentController::documentOpened);
    theController->openFiles({path});
    if (!opened.wait(30'000))
        qFatal("a file of the test does not open");
    return qobject_cast<Document*>(opened.at(0).at(0).value<FrameDocument*>());
}

/// Null where none has been opened anew.
Document* TestDocument::openVersion(Document* document, std::size_t number)
{
    QSignalSpy opened(theController.get(), &DocumentController::documentOpened);
    document->openVersion(number, versionCuts(document->theData().view()).at(number - 1));
    if (theController->isOpening() && !opened.wait(30'000))
        qFatal("a version of the test does not open");
    return opened.isEmpty() ? nullptr
                            : qobject_cast<Document*>(opened[0][0].value<FrameDocument*>());
}

void TestDocument::opensAFile()
{
    const QString path = writePdf(u"a b.PDF"_s);
    Document* document = open(path);
    QCOMPARE(document->fileURL(), QUrl::fromLocalFile(path));
    QCOMPARE(document->displayName(), u"a b.PDF"_s);
    QCOMPARE(document->thePDFDocument()->pageCount(), 1);
    QCOMPARE(QByteArray::fromStdString(std::string(document->theData().view())), contentOf(path));
    QVERIFY(!document->isIncr());
    QVERIFY(!document->validateCommand(u"exportPDFversions"_s));
    QCOMPARE(document->windows().size(), 1);
    QCOMPARE(document->windowForSheet(), document->windows().at(0));
    QCOMPARE(theController->recentFiles()->paths(), {path});

    PdfBuilder updated;
    updated.addUpdate(3, "<< /Type /Font /Subtype /Type1 /BaseFont /Courier >>");
    document = open(writePdf(u"updated.pdf"_s, updated));
    QVERIFY(document->isIncr());
    QVERIFY(document->validateCommand(u"exportPDFversions"_s));
}

void TestDocument::commandsOpenWindowsOfTheirOwn()
{
    Document* document = open(writePdf(u"a.pdf"_s));
    document->openSource();
    document->openSource();
    QCOMPARE(document->windows().size(), 3);
    QVERIFY(document->windows().at(1) != document->windows().at(2));
    QCOMPARE(document->windows().at(2)->identifier(), WindowIdentifiers::source);
    QVERIFY(document->windows().at(2)->isVisible());
    // No factory makes plain windows here.
    QVERIFY(document->validateCommand(u"openSource"_s));
    QVERIFY(!document->validateCommand(u"openPlainPDF"_s));
}

void TestDocument::goesWithItsLastWindow()
{
    QSignalSpy lastClosed(theController.get(), &DocumentController::lastWindowClosed);
    const QPointer<Document> document = open(writePdf(u"a.pdf"_s));
    document->openSource();
    document->windows().at(0)->close();
    QTRY_COMPARE(allShown<DocumentWindow>().size(), 1);
    QTest::qWait(0);
    QVERIFY(document);
    QVERIFY(lastClosed.isEmpty());
    document->windows().at(0)->close();
    QTRY_VERIFY(!document);
    QVERIFY(theController->documents().isEmpty());
    QTRY_COMPARE(lastClosed.size(), 1);
}

void TestDocument::openFileComesToTheFront()
{
    const QString path = writePdf(u"a.pdf"_s);
    const QString link = theFolder->filePath(u"link.pdf"_s);
    const QString hardLink = theFolder->filePath(u"hard.pdf"_s);
    QVERIFY(QFile::link(path, link));
    QCOMPARE(::link(qPrintable(path), qPrintable(hardLink)), 0);
    Document* document = open(path);
    document->openSource();
    for (const QString& name : {link, hardLink}) {
        document->windows().at(0)->showMinimized();
        theController->openFiles({name});
        QVERIFY(!document->windows().at(0)->isMinimized());
    }
    QCOMPARE(theController->documents().size(), 1);
    // Its main window has been closed meanwhile: another one comes.
    document->windows().at(0)->close();
    QCOMPARE(document->windows().size(), 1);
    theController->openFiles({path});
    QCOMPARE(document->windows().size(), 2);
    QVERIFY(!theController->isOpening());
}

using SaysWhyAFileDoesNotOpen = Rows<QString, QString>;

void TestDocument::saysWhyAFileDoesNotOpen_data()
{
    const SaysWhyAFileDoesNotOpen row;
    row("missing", "missing.pdf", "There is no such file.");
    row("a name in Latin-1", "caf\xEF\xBF\xBD.pdf",
        "Its name is not in UTF-8. Rename it to open it.");
    row("folder", "folder", "It is a folder.");
    row("link to nothing", "dangling.pdf", "The link leads to no file.");
    row("device", "/dev/null", "It is not a regular file.");
    row("empty", "empty.pdf", "");
    row("markers, but no PDF", "markers.pdf", "");
    row("a cross-reference that leads back to itself", "ring.pdf",
        "The file has no document catalog, so it cannot be read as a PDF.");
}

void TestDocument::saysWhyAFileDoesNotOpen()
{
    const auto [name, reason] = SaysWhyAFileDoesNotOpen::fetch();
    QDir(theFolder->path()).mkdir(u"folder"_s);
    QFile::link(theFolder->filePath(u"nowhere"_s), theFolder->filePath(u"dangling.pdf"_s));
    writeFile(path(u"empty.pdf"_s), {});
    writeFile(path(u"markers.pdf"_s), "%%EOF\n%%EOF\n" + QByteArray(40, ' '));
    SavedFile ring(PdfBuilder().addPage("Hello").bytes());
    ring.object(4, "null");
    ring.save(SavedFile::Form::isTable, ring.bytes().size());
    writeFile(path(u"ring.pdf"_s), QByteArray::fromStdString(ring.bytes()));

    QSignalSpy nothing(theController.get(), &DocumentController::nothingOpened);
    theController->openFiles({QDir(theFolder->path()).filePath(name)});
    QTRY_COMPARE_WITH_TIMEOUT(allShown<OpenFailureAlert>().size(), 1, 30'000);
    const OpenFailureAlert* alert = shown<OpenFailureAlert>();
    QVERIFY(alert->text().contains(QFileInfo(name).fileName()));
    QVERIFY(!alert->informativeText().isEmpty());
    if (!reason.isEmpty())
        QCOMPARE(alert->informativeText(), reason);
    QVERIFY(!alert->isModal());
    QCOMPARE(nothing.size(), 1);
    QVERIFY(theController->documents().isEmpty());
}

void TestDocument::failuresShareAnAlert()
{
    theController->openFiles(
        {theFolder->filePath(u"one.pdf"_s), theFolder->filePath(u"two.pdf"_s)});
    QTRY_VERIFY(!theController->isOpening());
    QCOMPARE(allShown<OpenFailureAlert>().size(), 1);
    const QPointer<OpenFailureAlert> alert = shown<OpenFailureAlert>();
    const QString text = alert->informativeText();
    QVERIFY(text.contains("one.pdf"_L1) && text.contains("two.pdf"_L1));
    // It stays in front of what opens.
    const Document* document = open(writePdf(u"a.pdf"_s));
    QTRY_VERIFY(alert->isVisible());
    QCOMPARE(alert->parentWidget(), document->windows().at(0));
    const Document* next = open(writePdf(u"b.pdf"_s));
    QTRY_VERIFY(alert->isVisible());
    QCOMPARE(alert->parentWidget(), next->windows().at(0));
    theController->openFiles({path(u"a.pdf"_s)}); // comes up again
    QTRY_VERIFY(alert->isVisible());
    const QPointer<DocumentWindow> window = document->windows().at(0);
    QCOMPARE(alert->parentWidget(), window.data());
    window->close(); // unread, the alert does not go with it
    QTRY_VERIFY(!window);
    QVERIFY(alert && alert->isVisible());
    QCOMPARE(alert->parentWidget(), next->windows().at(0));
}

void TestDocument::asksForThePassword()
{
    QSignalSpy opened(theController.get(), &DocumentController::documentOpened);
    const QString locked = QString::fromLatin1(TARNWICK_TEST_DATA "/locked-aes-256.pdf");
    theController->openFiles({locked});
    QTRY_VERIFY_WITH_TIMEOUT(shown<PasswordPrompt>(), 30'000);
    auto* prompt = shown<PasswordPrompt>();
    auto* field = prompt->findChild<QLineEdit*>();
    const QSignalSpy entered(prompt, &PasswordPrompt::passwordEntered);
    for (const QString& attempt : {QString(), u"Geheim"_s}) {
        field->setText(attempt);
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY(!field->isEnabled()); // one attempt at a time
        QTRY_VERIFY_WITH_TIMEOUT(field->isEnabled(), 30'000);
        QVERIFY(prompt->isVisible());
        QVERIFY(!field->accessibleDescription().isEmpty());
    }
    field->setText(u"geheim"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(opened.size(), 1, 30'000);
    QCOMPARE(entered.size(), 3);
    QVERIFY(!shown<PasswordPrompt>());

    // Cancelled, it opens nothing.
    theController->documents().constFirst()->windows().at(0)->close();
    QTRY_VERIFY(theController->documents().isEmpty());
    QSignalSpy nothing(theController.get(), &DocumentController::nothingOpened);
    theController->openFiles({locked});
    QTRY_VERIFY_WITH_TIMEOUT(shown<PasswordPrompt>(), 30'000);
    QTest::keyClick(shown<PasswordPrompt>(), Qt::Key_Escape);
    QTRY_COMPARE(nothing.size(), 1);
    QVERIFY(!shown<OpenFailureAlert>());
    QVERIFY(theController->documents().isEmpty());
}

void TestDocument::opensASavedVersion()
{
    PdfBuilder updated;
    updated.addUpdate(2, "<< /Type /Pages /Count 0 /Kids [] >>")
        .addUpdate(3, "<< /Type /Font /Subtype /Type1 /BaseFont /Courier >>");
    const QString path = writePdf(u"report.pdf"_s, updated);
    Document* whole = open(path);
    const QPointer<Document> first = openVersion(whole, 1);
    QCOMPARE(whole->thePDFDocument()->pageCount(), 0);
    QCOMPARE(first->thePDFDocument()->pageCount(), 1);
    QCOMPARE(first->displayName(), u"report.pdf (version 1)"_s);
    QCOMPARE(first->pathOfCopy(), theFolder->filePath(u"report-001.pdf"_s));
    QCOMPARE(whole->pathOfCopy(), path);
    QCOMPARE(first->theData().view().data(), whole->theData().view().data());
    QVERIFY(!first->isIncr() && openVersion(whole, 2)->isIncr());
    QCOMPARE(theController->documents().size(), 3);
    QCOMPARE(theController->recentFiles()->paths(), {path});
    // Each is opened once, from whichever document, and the file beside its versions.
    QVERIFY(!openVersion(whole, 1) && !openVersion(openVersion(whole, 3), 1));
    QCOMPARE(theController->documents().size(), 4);
    theController->openFiles({path});
    QVERIFY(!theController->isOpening());
    const QPointer<Document> gone = whole;
    whole->windows().at(0)->close();
    QTRY_VERIFY(!gone);
    QVERIFY(OpenedFiles::contains(path.toStdString()));
    whole = open(path);
    QVERIFY(first && first->windows().size() == 1);
    // What is read now may be another file.
    QVERIFY(openVersion(whole, 1));
}

void TestDocument::saysWhyAVersionDoesNotOpen()
{
    Document* const document = open(writePdf(u"a.pdf"_s));
    const QSignalSpy refused(document, &FrameDocument::versionRefused);
    document->openVersion(1, 6);
    QTRY_COMPARE_WITH_TIMEOUT(refused.size(), 1, 30'000);
    const OpenFailureAlert* const alert = shown<OpenFailureAlert>();
    QVERIFY(alert && alert->text().contains(u"a.pdf (version 1)"_s));
    QCOMPARE(alert->informativeText(), refused[0][1].toString());
    QCOMPARE(theController->recentFiles()->paths().size(), 1);
}

void TestDocument::triesThePasswordOfTheFileOnItsVersions()
{
    const QByteArray locked
        = contentOf(QString::fromLatin1(TARNWICK_TEST_DATA "/locked-aes-256.pdf"));
    writeFile(path(u"locked.pdf"_s), locked + "\n%\n%%EOF\n");
    QSignalSpy opened(theController.get(), &DocumentController::documentOpened);
    theController->openFiles({path(u"locked.pdf"_s)});
    QTRY_VERIFY_WITH_TIMEOUT(shown<PasswordPrompt>(), 30'000);
    shown<PasswordPrompt>()->findChild<QLineEdit*>()->setText(u"geheim"_s);
    QTest::keyClick(shown<PasswordPrompt>()->findChild<QLineEdit*>(), Qt::Key_Return);
    QVERIFY(opened.wait(30'000));
    auto* const whole = qobject_cast<Document*>(opened[0][0].value<FrameDocument*>());
    QVERIFY(openVersion(whole, 1));
    // A version with another password asks, and as if nothing had been tried.
    emit whole->versionWanted({2, whole->theData(), u"other"_s});
    QTRY_VERIFY_WITH_TIMEOUT(shown<PasswordPrompt>(), 30'000);
    QVERIFY(shown<PasswordPrompt>()->findChild<QLineEdit*>()->accessibleDescription().isEmpty());
}

void TestDocument::recentFilesAreTenLatestFirst()
{
    RecentFiles files;
    QStringList expected;
    for (int number = 1; number <= 12; ++number) {
        files.add(u"/tmp/%1.pdf"_s.arg(number));
        expected.prepend(u"/tmp/%1.pdf"_s.arg(number));
    }
    QCOMPARE(files.paths(), expected.mid(0, 10));
    files.add(u"/tmp/5.pdf"_s);
    expected.removeOne(u"/tmp/5.pdf"_s);
    expected.prepend(u"/tmp/5.pdf"_s);
    QCOMPARE(files.paths(), expected.mid(0, 10));
    QCOMPARE(RecentFiles().paths(), files.paths()); // the next launch
    files.clear();
    QVERIFY(RecentFiles().paths().isEmpty());
}

QTEST_MAIN(TestDocument)
#include "tst_Document.moc"
