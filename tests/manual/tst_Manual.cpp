#include "ManualLayout.h"
#include "PdfFinish.h"

#include "support/OpenedDocument.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

QByteArray paintedPages(int count)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        QPainter painter(&writer);
        for (int page = 0; page < count; ++page) {
            if (page > 0)
                writer.newPage();
            painter.drawText(100, 100, QString::number(page));
        }
    }
    return buffer.data();
}

PdfExtras sampleExtras()
{
    PdfExtras extras;
    extras.title = u"A \u00e9 (b)"_s;
    extras.language = "en";
    extras.pageHeight = 842;
    extras.bookmarks = {{u"One"_s, 1, {0, 50}}, {u"Inner"_s, 2, {1, 60}}, {u"Deep"_s, 3, {1, 70}},
        {u"Inner too"_s, 2, {1, 80}}, {u"Two"_s, 1, {2, 10}}};
    extras.links = {{0, QRectF(10, 20, 30, 10), PdfPlace{2, 100}, {}},
        {0, QRectF(10, 40, 30, 10), std::nullopt, QUrl(u"https://a.example/(b)"_s)}};
    return extras;
}

struct Made
{
    QStringList problems;
    PdfExtras extras;
};

Made layOut(const QString& source)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
    ManualLayout layout(writer, source, QString());
    layout.paint();
    return {layout.problems(), layout.extras()};
}

} // namespace

class TestManual : public QObject
{
    Q_OBJECT

private slots:
    void finishedFileIsSound();
    void samePagesGiveTheSameBytes();
    void replacesWhatThePainterWrote();
    void refusesWhatItDoesNotKnow();
    void headingsBecomeBookmarks();
    void linksLeadToHeadings();
    void tellsWhatIsWrong();
};

void TestManual::finishedFileIsSound()
{
    const std::optional<QByteArray> file = finishPdf(paintedPages(3), sampleExtras());
    QVERIFY(file);
    const QString qpdf = QStandardPaths::findExecutable(u"qpdf"_s);
    if (qpdf.isEmpty())
        QSKIP("qpdf is not installed");
    QTemporaryDir folder;
    QFile stored(folder.filePath(u"a.pdf"_s));
    QVERIFY(stored.open(QIODevice::WriteOnly));
    stored.write(*file);
    stored.close();
    QProcess check;
    check.start(qpdf, {u"--check"_s, stored.fileName()});
    QVERIFY(check.waitForFinished());
    QCOMPARE(check.exitCode(), 0); // 3 would be a warning

    OpenedDocument document(file->toStdString());
    const PDFOutlineRequest* const outline = document->requestOutline(document.get());
    QVERIFY(OpenedDocument::waitFor(outline));
    QStringList entries;
    for (const PDFOutlineEntry& entry : outline->outline().entries)
        entries << u"%1 %2, page %3"_s.arg(entry.depth).arg(entry.title).arg(entry.page);
    QCOMPARE(entries,
        QStringList({u"0 One, page 0"_s, u"1 Inner, page 1"_s, u"2 Deep, page 1"_s,
            u"1 Inner too, page 1"_s, u"0 Two, page 2"_s}));
}

void TestManual::samePagesGiveTheSameBytes()
{
    const QByteArray first = paintedPages(2);
    QByteArray later = first;
    // As painted at another time.
    const qsizetype date = later.indexOf("/CreationDate");
    QVERIFY(date > 0);
    const qsizetype digits = later.indexOf("(D:", date) + 3;
    later.replace(digits, 4, "1999");
    PdfExtras extras = sampleExtras();
    extras.bookmarks.removeLast();
    extras.links.removeFirst();
    QCOMPARE(finishPdf(later, extras).value(), finishPdf(first, extras).value());
}

void TestManual::replacesWhatThePainterWrote()
{
    const QByteArray file = finishPdf(paintedPages(3), sampleExtras()).value();
    QCOMPARE(file.count("\n/Annots"), 3); // one for each page, the painter's own or ours
    QCOMPARE(file.count("/Subtype /Link"), 2);
    QVERIFY(file.contains("/URI (https://a.example/%28b%29)"));
    QVERIFY(file.contains("/XYZ 0 742.00 null")); // 100 points below the upper edge
}

void TestManual::refusesWhatItDoesNotKnow()
{
    QVERIFY(!finishPdf("", {}));
    QVERIFY(!finishPdf("%PDF-1.7\nstartxref\n5\n%%EOF\n", {}));
    QVERIFY(!finishPdf(paintedPages(1).chopped(200), {}));
    QVERIFY(!finishPdf(paintedPages(2), sampleExtras())); // places on page 3
}

void TestManual::headingsBecomeBookmarks()
{
    QString source = u"# Title\n\nA line.\n\n## First\n\n"_s;
    for (int i = 0; i < 90; ++i)
        source += u"Text in a paragraph of its own.\n\n"_s;
    source += u"### Part\n\nText.\n\n## Second\n\nText.\n"_s;
    const Made made = layOut(source);
    QCOMPARE(made.problems, QStringList());
    QCOMPARE(made.extras.title, u"Title"_s);
    QStringList shown;
    for (const PdfBookmark& mark : made.extras.bookmarks)
        shown << QString::number(mark.level) + mark.title;
    QCOMPARE(shown, QStringList({u"1Title"_s, u"2First"_s, u"3Part"_s, u"2Second"_s}));
    QCOMPARE(made.extras.bookmarks.at(0).place.page, 0);
    QCOMPARE(made.extras.bookmarks.at(1).place.page, 1);
    QVERIFY(made.extras.bookmarks.at(2).place.page >= 2);
}

void TestManual::linksLeadToHeadings()
{
    const Made made = layOut(u"# T\n\nGo to [it](#the-first-one) or "
                             "[out](https://a.example/).\n\n## The first, one\n\nA.\n"_s);
    QCOMPARE(made.problems, QStringList());
    // The contents' line, too.
    QCOMPARE(made.extras.links.size(), 3);
    QVERIFY(made.extras.links.at(0).place);
    QCOMPARE(made.extras.links.at(0).place->page, 1);
    QCOMPARE(made.extras.links.at(1).address, QUrl(u"https://a.example/"_s));
    QVERIFY(made.extras.links.at(0).area.right() < made.extras.links.at(1).area.left());
}

void TestManual::tellsWhatIsWrong()
{
    QCOMPARE(layOut(u"# T\n\n[a](#none)\n\n## C\n\n![p](none.png)\n"_s).problems,
        QStringList({u"none.png: no such picture"_s, u"#none: no such heading"_s}));
    QCOMPARE(layOut(u"only text"_s).problems, QStringList(u"no title or no chapter"_s));
}

QTEST_MAIN(TestManual)
#include "tst_Manual.moc"
