#include "Lies.h"

#include "AppDelegate.h"
#include "PDFEngineProcess.h"
#include "SearchField.h"
#include "Windows.h"
#include "document/Document.h"
#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "inspector/SourceViewController.h"
#include "pages/PDFThumbnailView.h"
#include "pages/PDFView.h"
#include "pdf/PDFObjectEngines.h"
#include "pdf/PDFPageDigests.h"
#include "pdf/PDFSavedVersions.h"
#include "support/Files.h"
#include "support/OpenedDocument.h"
#include "viewer/ViewController.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTreeView>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// What the program may take for anything that an engine says. Three million matches, which are the
/// user's wish, take most of it.
#ifdef TARNWICK_SANITIZED // whose shadow and quarantine take several times as much
constexpr qint64 mostMebibytes = 8000;
#else
constexpr qint64 mostMebibytes = 1500;
#endif

/// A line of /proc/self/status, in mebibytes.
qint64 mebibytes(const QByteArray& name)
{
    for (const QByteArray& line : contentOf(u"/proc/self/status"_s).split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size() + 1).trimmed().split(' ').first().toLongLong() / 1024;
    }
    return 0;
}

/// Starts the count of the most memory anew.
void forgetPeak()
{
    QFile file(u"/proc/self/clear_refs"_s);
    file.open(QIODevice::WriteOnly);
    file.write("5");
}

std::string fileThatSays(const std::string& lie)
{
    return "%PDF-1.7\n%lie " + lie + "\nstartxref\n9\n%%EOF\n";
}

/// Which requests fail on a document, asked one after the other: the first words of their kinds.
QString failures(PDFDocument* document, const FileBytes& bytes)
{
    if (document->state() != PDFDocument::State::isOpen)
        return u"open"_s;
    QStringList failed;
    const auto ask = [&failed](const QString& name, const PDFRequest* request) {
        QEventLoop loop; // without a pause, as a program reads what comes
        QObject::connect(request, &PDFRequest::finished, &loop, &QEventLoop::quit);
        loop.exec();
        if (!request->succeeded())
            failed << name;
    };
    ask(u"outline"_s, document->requestOutline(document));
    ask(u"links"_s, document->requestLinks(0, document));
    ask(u"tile"_s, document->requestTile(0, 1, 0, QRect(0, 0, 300, 400), document));
    PDFTextRequest* const text = document->requestText(0, 0, PDFTextDetail::isWithQuads, document);
    ask(u"text"_s, text);
    ask(u"flat"_s, document->requestFlat(document));
    ask(u"object"_s, document->requestObject(1, document));
    ask(u"table"_s, document->requestTable(document));
    ask(u"stream"_s, document->requestStream(1, PDFStreamForm::isDecoded, usualStream, document));
    ask(u"signs"_s, document->requestSigns({}, document));
    PDFSavedVersions versions(bytes);
    QEventLoop loop;
    QObject::connect(&versions, &PDFSavedVersions::finished, &loop, &QEventLoop::quit);
    loop.exec();
    if (versions.failure() != PDFFailure::isNone)
        failed << u"versions"_s;
    ask(u"check"_s, document->requestCheck(document));
    PDFObjectEngines* const engines = document->objectEngines();
    ask(u"facts"_s, engines->requestFacts(1, document));
    ask(u"picture"_s, engines->requestPicture(1, document));
    PDFPageDigests digests(bytes, {}, 1, PDFPageDigests::Form::isOfContent);
    QObject::connect(&digests, &PDFPageDigests::finished, &loop, &QEventLoop::quit);
    loop.exec();
    if (!digests.digests().first().isKnown)
        failed << u"digest"_s;
    return failed.join(u' ');
}

/// Does with a document's windows what a user does, and waits for what that brings.
void useWindows(Document* document, ViewController* viewer)
{
    PDFDocumentText* const text = document->documentText();
    viewer->thePDFView()->selectAll();
    if (text->pageCount() <= 1000)
        QTRY_VERIFY_WITH_TIMEOUT(!text->isFetching(), 60'000);
    viewer->thePDFView()->followLink({{}, 0, {}, {}});
    for (const QPoint& point : {QPoint(100, 100), QPoint(300, 200)})
        QTest::mouseMove(viewer->thePDFView()->viewport(), point);
    viewer->searchField()->setStringValue(u"e"_s);
    viewer->doSearchAction();
    if (text->pageCount() > 1000)
        viewer->cancelSearch();
    QTRY_VERIFY_WITH_TIMEOUT(!viewer->isSearching(), 60'000);
    viewer->findChild<QTreeView*>(u"outlineView"_s)->expandAll();
    viewer->thePDFView()->goToLastPage();
    QTRY_VERIFY_WITH_TIMEOUT(!viewer->thePDFView()->isDrawing(), 60'000);
    viewer->grab();
    document->openSource();
    QTRY_VERIFY(QApplication::activeWindow());
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (const auto* const inspector = window->findChild<SourceViewController*>())
            QTRY_VERIFY_WITH_TIMEOUT(!inspector->isFilling(), 60'000);
    }
}

} // namespace

class TestLyingEngine : public QObject
{
    Q_OBJECT

private slots:
    void init() { setPDFEnginePathForTests(qApp->applicationDirPath() + u"/lying-pdf-engine"_s); }
    void isHeldByItsReaders_data();
    void isHeldByItsReaders();
    void isHeldInWindows_data();
    void isHeldInWindows();
    void asksForAPasswordNoMoreThanTheUserGivesOne();
};

/// Those that say nothing of a request give data within bounds; a page whose text cannot be read
/// has none.
void TestLyingEngine::isHeldByItsReaders_data()
{
    QTest::addColumn<QString>("failing");
    QTest::newRow("the truth") << u""_s;
    for (const Lie& lie : allLies())
        QTest::newRow(lie.name) << QString::fromLatin1(lie.failing);
}

void TestLyingEngine::isHeldByItsReaders()
{
    QFETCH(QString, failing);
    const qint64 before = mebibytes("VmRSS");
    forgetPeak();
    const FileBytes bytes = *FileBytes::copy(fileThatSays(QTest::currentDataTag()));
    OpenedDocument document(bytes);
    const QString failed = failures(document.get(), bytes);
    QVERIFY2(mebibytes("VmHWM") - before < mostMebibytes,
        qPrintable(u"%1 MiB"_s.arg(mebibytes("VmHWM") - before)));
    if (!failing.isNull())
        QCOMPARE(failed, failing);
}

void TestLyingEngine::isHeldInWindows_data()
{
    isHeldByItsReaders_data();
}

void TestLyingEngine::isHeldInWindows()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"lie.pdf"_s);
    writeFile(path, QByteArray::fromStdString(fileThatSays(QTest::currentDataTag())));
    const qint64 before = mebibytes("VmRSS");
    forgetPeak();
    {
        AppDelegate delegate;
        registerWindows(delegate);
        delegate.controller()->openFiles({path});
        const auto asks = [] { return qobject_cast<QDialog*>(QApplication::activeModalWidget()); };
        QTRY_VERIFY(!delegate.controller()->isOpening() || asks());
        if (QWidget* const dialog = QApplication::activeModalWidget())
            dialog->close();
        if (!delegate.controller()->documents().isEmpty()) {
            auto* const document
                = qobject_cast<Document*>(delegate.controller()->documents().first());
            auto* const window = DocumentWindow::of(document->windowForSheet());
            QVERIFY(window);
            useWindows(document, window->findChild<ViewController*>());
        }
        delegate.controller()->closeAll();
    }
    QVERIFY2(mebibytes("VmHWM") - before < mostMebibytes,
        qPrintable(u"%1 MiB"_s.arg(mebibytes("VmHWM") - before)));
}

/// An engine that is locked again and again without a word about the password has both processes
/// turn in a circle.
void TestLyingEngine::asksForAPasswordNoMoreThanTheUserGivesOne()
{
    OpenedDocument document(fileThatSays("locked whatever the password"));
    QCOMPARE(document->state(), PDFDocument::State::isLocked);
    document->unlock(u"secret"_s);
    QTRY_COMPARE(document->state(), PDFDocument::State::isRefused);
}

QTEST_MAIN(TestLyingEngine)
#include "tst_LyingEngine.moc"
