#include "comparison/ComparisonViewController.h"

#include "PagePairPane.h"
#include "compared/DocumentComparison.h"
#include "pages/PDFView.h"
#include "text/PlainTextView.h"

#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QListView>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// A file with a page for each word.
std::string pages(const QByteArray& words, const std::string& entries = {})
{
    PdfBuilder builder;
    for (const QByteArray& word : words.split(' '))
        builder.addPage("The price is " + word.toStdString() + " EUR today", entries);
    return builder.bytes();
}

} // namespace

class TestComparisonViewController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(u"en_GB"_s)); }
    void cleanup() { theView.reset(); }
    void listsChanges_data();
    void listsChanges();
    void comparesVersionsOfOneFile();
    void showsTextsInOne();
    void pagesGoTogether();
    void saysWhatDoesNotOpen();

private:
    void compare(const std::string& before, const std::string& after);
    void waitForEnd();
    /// The rows of a tab.
    QStringList changes(int tab) const;
    QString label(const QString& name) const { return theView->findChild<QLabel*>(name)->text(); }

    QTemporaryDir theFolder;
    std::unique_ptr<ComparisonViewController> theView;
};

void TestComparisonViewController::compare(const std::string& before, const std::string& after)
{
    const QString paths[] = {theFolder.filePath(u"a.pdf"_s), theFolder.filePath(u"b.pdf"_s)};
    for (const auto& [path, bytes] : {std::pair(paths[0], before), std::pair(paths[1], after)}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes.data(), qint64(bytes.size()));
    }
    theView = std::make_unique<ComparisonViewController>();
    theView->resize(1000, 700);
    theView->show();
    theView->compare({nullptr, paths[0], {}}, {nullptr, paths[1], {}});
    waitForEnd();
}

void TestComparisonViewController::waitForEnd()
{
    QTRY_VERIFY_WITH_TIMEOUT(theView->comparison(), 60'000);
    QTRY_VERIFY_WITH_TIMEOUT(!theView->comparison()->isRunning(), 60'000);
}

QStringList TestComparisonViewController::changes(int tab) const
{
    theView->findChild<QTabWidget*>(u"tabs"_s)->setCurrentIndex(tab);
    const QAbstractItemModel* const model = theView->changeList()->model();
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->index(row, 0).data().toString();
    return rows;
}

using ListsChanges = Rows<std::string, std::string, QString, QString, QString>;

void TestComparisonViewController::listsChanges_data()
{
    const ListsChanges row;
    row("the same file twice", pages("1 2"), pages("1 2"), "", "", "2 pages unchanged.");
    row("a changed price", pages("100 2"), pages("120 2"), "Page 1: 1 area differs",
        "Page 1: 100 \u2192 120", "1 page unchanged, 1 changed.");
    row("a page is inserted", pages("1 3"), pages("1 2 3"), "Page 2: added",
        "Page 2: added \u201cThe price is 2 EUR today\u201d", "2 pages unchanged, 1 added.");
    row("a page is removed", pages("1 2 3"), pages("1 3"), "Page 2: removed",
        "Page 2: removed \u201cThe price is 2 EUR today\u201d", "2 pages unchanged, 1 removed.");
    row("a page is moved", pages("1 2 3"), pages("2 3 1"), "Page 1 \u2192 3: moved", "",
        "2 pages unchanged, 1 moved.");
    row("another size", pages("1"), pages("1", "/MediaBox [ 0 0 612 800 ]"),
        "Page 1: another size, 2 areas differ", "", "0 pages unchanged, 1 changed.");
    row("what cannot be told apart unseen looks the same", pages("1"), pages("1", "/UserUnit 1.0"),
        "", "", "1 page unchanged.");
}

void TestComparisonViewController::listsChanges()
{
    const auto [before, after, pageRows, textRows, summary] = ListsChanges::fetch();
    compare(before, after);
    QCOMPARE(changes(0).join(u'|'), pageRows);
    QCOMPARE(changes(1).join(u'|'), textRows);
    QCOMPARE(label(u"stateLine"_s), summary);
    QCOMPARE(theView->comparison()->isEqual(), pageRows.isEmpty() && textRows.isEmpty());
}

/// Of which the later one has the contents of the second page in another place.
void TestComparisonViewController::comparesVersionsOfOneFile()
{
    PdfBuilder builder;
    builder.addPage("one").addPage("two");
    const FileBytes before = *FileBytes::copy(builder.bytes());
    const QByteArray content = "BT /F1 12 Tf 72 700 Td (three) Tj ET";
    builder.addUpdate(6,
        "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content.toStdString()
            + "\nendstream");
    const FileBytes after = *FileBytes::copy(builder.bytes());
    theView = std::make_unique<ComparisonViewController>();
    const QString path = u"/nowhere/report.pdf"_s;
    theView->compare(
        {nullptr, path, FileVersion{1, before, {}}}, {nullptr, path, FileVersion{2, after, {}}});
    QCOMPARE(theView->windowTitle(),
        u"Comparison: report.pdf (version 1) \u2013 report.pdf (version 2)"_s);
    waitForEnd();
    QVERIFY(theView->comparison()->areVersionsOfOneFile());
    QCOMPARE(changes(1).join(u'|'), u"Page 2: two \u2192 three"_s);
    theView->swapSides();
    waitForEnd();
    QCOMPARE(changes(1).join(u'|'), u"Page 2: three \u2192 two"_s);
}

void TestComparisonViewController::showsTextsInOne()
{
    compare(pages("100 2 5"), pages("120 2 6"));
    QCOMPARE(changes(1).size(), 2);
    const auto shows = [this](const QString& text) {
        QString shown;
        const auto storage = theView->textView()->textStorage();
        for (qsizetype line = 0; line < storage->lineCount(); ++line)
            shown += storage->line(line).text + u'\n';
        return shown.contains(text);
    };
    theView->goToPreviousChange(); // goes round to the last
    QTRY_VERIFY(shows(u"is [-5-] {+6+} EUR"_s));
    QCOMPARE(theView->textView()->selectedText(), u"[-5-] {+6+}"_s);
    QVERIFY(!shows(u"120"_s));
    auto* const wholeBox = theView->findChild<QCheckBox*>(u"wholeTextBox"_s);
    wholeBox->click();
    QTRY_VERIFY(shows(u"[-100-] {+120+}"_s));
    QVERIFY(shows(u"price is 2 EUR"_s) && shows(u"[-5-] {+6+}"_s));
    QCOMPARE(changes(1).join(u'|'), u"Page 1: 100 \u2192 120|Page 3: 5 \u2192 6"_s);
    wholeBox->click();
    QCOMPARE(changes(1).size(), 2);
}

void TestComparisonViewController::pagesGoTogether()
{
    compare(pages("1 2 3 4 5 6"), pages("1 9 2 3 4 5 7"));
    QCOMPARE(changes(0).join(u'|'), u"Page 2: added|Page 6 \u2192 7: 1 area differs"_s);
    PagePairPane* const pane = theView->pagePane();
    PDFView* const before = pane->view(ComparedSide::isBefore);
    PDFView* const after = pane->view(ComparedSide::isAfter);
    before->goToPage(2);
    QCOMPARE(after->currentPage(), 3);
    after->goToPage(2);
    QCOMPARE(before->currentPage(), 1);
    after->zoomIn();
    QCOMPARE(before->scaleFactor(), after->scaleFactor());
    after->rotateClockwise();
    QCOMPARE(before->rotation(), 1);
    theView->goToPreviousChange();
    QCOMPARE(pane->presentPair(), 6);
    QTest::keyClick(after, Qt::Key_Space);
    QCOMPARE(pane->mode(), PagePairPane::Mode::isByTurns);
    QTest::keyClick(after, Qt::Key_Space);
    QCOMPARE(pane->shownSide(), ComparedSide::isBefore);
    QTest::keyClick(before, Qt::Key_Escape);
    QCOMPARE(pane->mode(), PagePairPane::Mode::isSideBySide);
}

void TestComparisonViewController::saysWhatDoesNotOpen()
{
    theView = std::make_unique<ComparisonViewController>();
    theView->compare({nullptr, theFolder.filePath(u"none.pdf"_s), {}},
        {nullptr, u"/nowhere/x.pdf"_s, FileVersion{3, *FileBytes::copy("no PDF"), {}}});
    QTRY_VERIFY(label(u"stateLine"_s).contains(u"\u201cnone.pdf\u201d cannot be compared"_s)
        && label(u"stateLine"_s).contains(u"\u201cx.pdf (version 3)\u201d"_s));
    QVERIFY(!theView->validateCommand(u"swapSides"_s));
}

QTEST_MAIN(TestComparisonViewController)
#include "tst_ComparisonViewController.moc"
