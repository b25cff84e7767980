#include "TextPrinter.h"

#include "printing/PrintSettings.h"
#include "text/ListedLines.h"
#include "text/PlainTextStorage.h"

#include <QPdfWriter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// Prints to PDF files and reads them with poppler's tools.
class TestTextPrinter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyLineIsPrintedOnce();
    void coloursAreThoseOfPaper();
    void wrapsAtThePaper();

private:
    /// Pages of text as the printed file has them, without blank lines.
    QStringList print(std::shared_ptr<const TextStorage> storage, TextPrinter::Choice choice = {});
    QByteArray run(const QString& tool, const QStringList& arguments) const;
    QString file() const { return theFolder.filePath(u"printed.pdf"_s); }

    QTemporaryDir theFolder;
};

void TestTextPrinter::initTestCase()
{
    for (const QString& tool : {u"pdftotext"_s, u"pdftoppm"_s}) {
        if (QStandardPaths::findExecutable(tool).isEmpty())
            QSKIP("poppler-utils is not installed");
    }
}

QByteArray TestTextPrinter::run(const QString& tool, const QStringList& arguments) const
{
    QProcess process;
    process.start(tool, arguments);
    process.waitForFinished();
    return process.exitCode() == 0 ? process.readAllStandardOutput() : QByteArray();
}

QStringList TestTextPrinter::print(
    std::shared_ptr<const TextStorage> storage, TextPrinter::Choice choice)
{
    {
        QPdfWriter writer(file());
        writer.setPageSize(QPageSize(QPageSize::A5));
        PrintSettings::applyTo(writer);
        TextPrinter printer(std::move(storage), QFont(u"DejaVu Sans Mono"_s, 10), writer, choice);
        // A deadline that is always over: every portion is as small as can be.
        while (printer.advance(QDeadlineTimer(0))) { }
    }
    const QString text = QString::fromUtf8(run(u"pdftotext"_s, {u"-layout"_s, file(), u"-"_s}));
    QStringList pages = text.split(u'\f');
    pages.removeLast();
    for (QString& page : pages)
        page = page.split(u'\n', Qt::SkipEmptyParts).join(u' ').simplified();
    return pages;
}

void TestTextPrinter::everyLineIsPrintedOnce()
{
    QStringList lines;
    for (int index = 1000; index < 1200; ++index)
        lines += QString::number(index);
    const auto storage = std::make_shared<PlainTextStorage>(lines.join(u'\n'));
    const QStringList all = print(storage);
    QVERIFY(all.size() > 3);
    QCOMPARE(all.join(u' '), lines.join(u' '));
    TextPrinter::Choice choice;
    choice.isWanted = [](int page) { return page == 2 || page == 4; };
    choice.lastPage = 4;
    QCOMPARE(print(storage, choice), QStringList({all[1], all[3]}));
    choice.copies = 2;
    QCOMPARE(print(storage, choice), QStringList({all[1], all[3], all[1], all[3]}));
    QCOMPARE(print(storage, {{}, 0, 2}), all + all);

    QCOMPARE(print(std::make_shared<PlainTextStorage>()).size(), 1);
    print(std::make_shared<PlainTextStorage>(u"a\tb"_s));
    const QByteArray tabbed = run(u"pdftotext"_s, {u"-layout"_s, file(), u"-"_s}).trimmed();
    QVERIFY(tabbed.startsWith('a') && tabbed.endsWith('b') && !tabbed.contains('\n'));
}

void TestTextPrinter::coloursAreThoseOfPaper()
{
    QList<TextLine> lines;
    const QList roles{
        ColourRole::isDefault, ColourRole::isRed, ColourRole::isGreen, ColourRole::isBlue};
    for (const ColourRole role : roles)
        lines += {QString(10, u'\u2588'), role};
    print(std::make_shared<ListedLines>(lines));
    const QImage page = QImage::fromData(run(u"pdftoppm"_s, {u"-r"_s, u"72"_s, file()}), "PPM");
    QCOMPARE(page.size(), QSize(420, 595));
    const double row = QFontMetricsF(QFont(u"DejaVu Sans Mono"_s, 10)).height() * 72 / 96;
    for (int index = 0; index < roles.size(); ++index) {
        const QColor ink = page.pixelColor(90, static_cast<int>(72 + (index + 0.5) * row));
        QCOMPARE(ink, TextPalette::forPaper().colour(roles[index]));
    }
    // Nothing is printed in the margins.
    QCOMPARE(page.pixelColor(68, 80), QColor(Qt::white));
    QCOMPARE(page.pixelColor(90, 66), QColor(Qt::white));
}

void TestTextPrinter::wrapsAtThePaper()
{
    const QString text = QString(20'000, u'x');
    const QStringList pages = print(std::make_shared<PlainTextStorage>(text));
    QCOMPARE(pages.join(QString()).remove(u' '), text);
    const QImage page = QImage::fromData(run(u"pdftoppm"_s, {u"-r"_s, u"72"_s, file()}), "PPM");
    for (int y = 0; y < page.height(); ++y)
        QVERIFY(page.pixelColor(420 - 70, y) == QColor(Qt::white));
}

QTEST_MAIN(TestTextPrinter)
#include "tst_TextPrinter.moc"
