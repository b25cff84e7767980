#include "ViewerFixture.h"

#include "LossLine.h"
#include "support/LostPages.h"
#include "support/Rows.h"
#include "text/ListedLines.h"
#include "text/PlainTextView.h"

#include <QDialog>
#include <QLabel>
#include <QScrollBar>
#include <QSettings>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// What the main window says of pages that cannot be read, and where its text stands meanwhile.
class TestMissingText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setOrganizationName(u"Tarnwick"_s); }
    void init() { QSettings().clear(); }
    void saysWhereTextIsMissing();
    void textGrowsBelowItsReader();
    void listsEveryLostPage();
    void saysWhatTheOutlineLacks_data();
    void saysWhatTheOutlineLacks();
    void saysWhichPagesWereNotSearched();
};

/// The text, its counts and its copies are those of the pages that are there; what is not is said
/// beside them.
void TestMissingText::saysWhereTextIsMissing()
{
    ShownViewer viewer(LostPages::secondOfThree());
    const QString whole = viewer.text().text().string();
    const QString note = u"No text from page 2: it is too damaged to be read."_s;
    const LossLine* const line = viewer.child<LossLine>("lossLine");
    QVERIFY(line->isVisible());
    QCOMPARE(line->text(), note);
    QCOMPARE(viewer->countText()->text(), u"4  words  %1  chars"_s.arg(whole.size()));
    PlainTextView* const pane = viewer->theTextView();
    QCOMPARE(linesOf(*pane->textStorage()).join(u'\n'), whole);
    QCOMPARE(pane->gaps().size(), 1);
    QCOMPARE(pane->gaps().first().note, note);
    const QStringList lines = linesOf(*pane->textStorage());
    QCOMPARE(pane->gaps().first().line, lines.indexOf(u"last page"_s));
    pane->selectAll();
    QCOMPARE(pane->selectedText(), whole);

    auto* const list = line->findChild<QToolButton*>(u"lossListButton"_s);
    QVERIFY2(list && !list->isVisible(), "the line names all pages");
}

/// Growing, the text stays where the reader is: at its beginning at first.
void TestMissingText::textGrowsBelowItsReader()
{
    PdfBuilder builder;
    for (int page = 0; page < 14; ++page)
        builder.addPage("one\ntwo\nthree\nfour\nfive\nsix\nseven\neight\nnine\nten\neleven");
    ShownViewer viewer(builder);
    const PlainTextView* const pane = viewer->theTextView();
    QTRY_VERIFY(!viewer->countText()->text().isEmpty());
    QCOMPARE(pane->verticalScrollBar()->value(), 0);
    QCOMPARE(pane->positionAt({0, 0}).line, 0);
}

void TestMissingText::listsEveryLostPage()
{
    PdfBuilder builder;
    for (int page = 0; page < 6; ++page)
        LostPages::addUnreadable(builder.addPage("text"));
    ShownViewer viewer(builder);
    auto* const line = viewer.child<LossLine>("lossLine");
    QCOMPARE(line->text(),
        u"No text from pages 2, 4, 6, 8 and 2 others: they are too damaged to be read."_s);
    auto* const button = line->findChild<QToolButton*>(u"lossListButton"_s);
    QVERIFY(button && button->isVisible());
    button->click();
    const auto* const dialog = line->findChild<QDialog*>();
    const auto* const list = dialog->findChild<PlainTextView*>();
    QCOMPARE(list->textStorage()->lineCount(), 7);
    QCOMPARE(list->textStorage()->line(5).text,
        u"No text from page 12: it is too damaged to be read."_s);
}

using SaysWhatTheOutlineLacks = Rows<std::string, int, QString>;

void TestMissingText::saysWhatTheOutlineLacks_data()
{
    const SaysWhatTheOutlineLacks row;
    row("nothing", "<< /First 5 0 R >>", 1, "");
    row("all of it", "<< /First 5 0 R /X ( >>", 0, "The outline is too damaged to be read.");
    row("an entry", "<< /First 6 0 R >>", 2, "Parts of the outline are too damaged to be read.");
}

void TestMissingText::saysWhatTheOutlineLacks()
{
    const auto [outlines, entries, note] = SaysWhatTheOutlineLacks::fetch();
    PdfBuilder builder;
    QCOMPARE(builder.addObject(outlines), 4);
    builder.addObject("<< /Title (One) /Parent 4 0 R >>");
    builder.addObject("<< /Title (Two) /Parent 4 0 R /Next 7 0 R >>");
    builder.addObject("<< /Title (Three) /X ( >>");
    builder.addPage("text");
    builder.setCatalogEntries("/Outlines 4 0 R");
    ViewerFixture viewer(builder, false);
    const auto* const tabs = viewer.child<QTabWidget>("sideTabs");
    QVERIFY(viewer.appear());
    QTRY_COMPARE(tabs->count(), 1);
    QCOMPARE(viewer.child<QTreeView>("outlineView")->model()->rowCount(), entries);
    QCOMPARE(viewer.child<QLabel>("outlineNote")->text(), note);
}

void TestMissingText::saysWhichPagesWereNotSearched()
{
    ShownViewer viewer(LostPages::secondOfThree());
    const auto* const line = viewer.child<QWidget>("searchProgress");
    const auto* const label = line->findChild<QLabel*>();
    for (const char* word : {"last", "nothing"}) {
        viewer.beginSearch(word);
        QVERIFY(!viewer->isSearching());
        QVERIFY(line->isVisible());
        QCOMPARE(label->text(), u"Not searched: page 2."_s);
        QCOMPARE(label->toolTip(), u"Page 2 was not searched: it is too damaged to be read."_s);
    }
}

QTEST_MAIN(TestMissingText)
#include "tst_MissingText.moc"
