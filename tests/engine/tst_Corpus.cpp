#include "analysis/SourceText.h"
#include "pdf/PDFDocument.h"

#include "support/OpenedDocument.h"

#include <QDirIterator>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// Flattens every file of a folder of real ones and scans the result: one catalog, one trailer that
/// tells Root and Size, and the document's pages, each of them readable again. Skipped without a
/// folder: set TARNWICK_CORPUS.
class TestCorpus : public QObject
{
    Q_OBJECT

private slots:
    void flattens_data();
    void flattens();
};

void TestCorpus::flattens_data()
{
    const QString folder = qEnvironmentVariable("TARNWICK_CORPUS");
    if (folder.isEmpty())
        QSKIP("TARNWICK_CORPUS names no folder");
    QTest::addColumn<QString>("path");
    QDirIterator files(folder, {u"*.pdf"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QTest::newRow(qPrintable(path.mid(folder.size()))) << path;
    }
}

void TestCorpus::flattens()
{
    QFETCH(QString, path);
    OpenedDocument document(*FileBytes::read(path));
    if (document->state() != PDFDocument::State::isOpen)
        QSKIP("cannot be opened, or only with a password");
    const FileBytes flat = document.flat();
    QVERIFY2(flat.size() > 0, "the engine has not written it");
    SourceText source({flat.view(), flat.owner()});
    source.makeListing(false);
    const ObjectCounts counts = source.theCatalog().counts();
    QCOMPARE(counts.catalogs, std::size_t{1});
    QCOMPARE(counts.trailers, std::size_t{1});
    QCOMPARE(counts.pages, static_cast<std::size_t>(document->pageCount()));
    QCOMPARE(counts.maximumVersion, std::int64_t{1});
    const pdfObject trailer = source.theCatalog().object(source.theCatalog().size() - 1);
    QCOMPARE(trailer.theSize(), static_cast<std::int64_t>(counts.total));
    QCOMPARE(OpenedDocument(flat)->pageCount(), document->pageCount());
}

QTEST_GUILESS_MAIN(TestCorpus)
#include "tst_Corpus.moc"
