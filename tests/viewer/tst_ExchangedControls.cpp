#include "ViewerFixture.h"

#include "SearchField.h"
#include "SearchStepper.h"
#include "pages/PDFThumbnailView.h"
#include "text/ListedLines.h"
#include "text/PlainTextView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSplitter>
#include <QToolButton>

#include <functional>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// A second set of the controls that a window's content works on, in a window that shows.
struct SpareControls
{
    QWidget host;
    QSplitter panes{&host};
    PDFThumbnailView strip;
    PDFView pages;
    PlainTextView text;
    SearchField field{&host};
    SearchField cell{&host};
    QLabel count{&host};
    QCheckBox caseButton{&host};
    QCheckBox literalButton{&host};
    SearchStepper stepper{&host};
    QComboBox marks{&host};

    SpareControls()
    {
        panes.addWidget(&strip);
        panes.addWidget(&pages);
        panes.addWidget(&text);
        panes.resize(900, 600);
        host.show();
    }
    void putInto(ViewController& viewer)
    {
        viewer.setTheSplitView(&panes);
        viewer.setThePDFView(&pages);
        viewer.setTheThumbnailView(&strip);
        viewer.setTheTextScroller(&text);
        viewer.setTheTextView(&text);
        viewer.setSearchField(&field);
        viewer.setSearchFieldCell(&cell);
        viewer.setCountText(&count);
        viewer.setCaseSensitiveButton(&caseButton);
        viewer.setLiteralButton(&literalButton);
        viewer.setSearchStepper(&stepper);
        viewer.setMarkPageMenu(&marks);
    }
};

} // namespace

/// Everything that works with a control of the main window works with what is set in its place.
class TestExchangedControls : public QObject
{
    Q_OBJECT

private slots:
    void areHonouredEverywhere();
};

void TestExchangedControls::areHonouredEverywhere()
{
    SpareControls spare;
    ViewerFixture viewer(labelledPages());
    spare.putInto(*viewer);
    QVERIFY(viewer.appear());
    const auto search = [&](const QString& text) {
        spare.cell.setText(text);
        QTest::keyClick(&spare.field, Qt::Key_Return);
    };
    const auto click = [&](const char* button) { viewer.child<QToolButton>(button)->click(); };
    struct Fact
    {
        const char* name;
        std::function<void()> act;
        std::function<bool()> isTrue;
    };
    const Fact facts[] = {
        {"the pages are shown in it alone", [] {},
            [&] {
                return spare.pages.document() && !viewer.child<PDFView>("thePDFView")->document();
            }},
        {"keys go to it", [] {}, [&] { return viewer->focusProxy() == &spare.pages; }},
        {"the page field tells its page", [&] { spare.pages.goToPage(3); },
            [&] { return viewer.child<QLineEdit>("pageField")->text() == u"i"; }},
        {"the arrows turn its pages", [&] { click("nextPageButton"); },
            [&] { return spare.pages.currentPage() == 4; }},
        {"the zoom buttons zoom it", [&] { click("zoomInButton"); },
            [&] { return !spare.pages.autoScales(); }},
        {"Auto Zoom fits it", [&] { viewer->autoZoom(); },
            [&] { return spare.pages.autoScales(); }},
        {"the thumbnails are its pages, in one strip alone", [] {},
            [&] {
                return spare.strip.pdfView() == &spare.pages
                    && !viewer.child<PDFThumbnailView>("theThumbnailView")->pdfView();
            }},
        {"the side bar is its first pane", [&] { viewer->toggleSideBar(false); },
            [&] { return spare.panes.sizes().at(0) == 0; }},
        {"whose button follows its divider",
            [&] {
                spare.panes.setSizes({200, 400, 200});
                emit spare.panes.splitterMoved(200, 1);
            },
            [&] { return viewer.child<QToolButton>("sideBarButton")->isChecked(); }},
        {"the text is in it, without a find bar", [] {},
            [&] {
                return linesOf(*spare.text.textStorage()).contains(u"page 7"_s)
                    && !spare.text.isFindBarEnabled();
            }},
        {"the count is in it", [] {},
            [&] { return spare.count.text().startsWith(u"20  words  "_s); }},
        {"the recent searches hang on it", [] {},
            [&] { return spare.field.searchMenuTemplate() == viewer->searchMenu(); }},
        {"Return in it searches for the cell's text", [&] { search(u"PAGE"_s); },
            [&] { return viewer->theFindList().size() == 10; }},
        {"the stepper steps", [&] { spare.stepper.nextButton()->click(); },
            [&] { return spare.pages.currentSelection() == viewer->theFindList().at(1); }},
        {"its case button counts",
            [&] {
                spare.caseButton.setChecked(true);
                search(u"PAGE"_s);
            },
            [&] { return viewer->theFindList().isEmpty() && !spare.stepper.isEnabled(); }},
        {"its literal button counts",
            [&] {
                spare.caseButton.setChecked(false);
                search(u"PAGE"_s);
                spare.literalButton.setChecked(true);
                search(u"PAGE"_s);
            },
            [&] { return viewer->theFindList().isEmpty(); }},
        {"Escape in it leaves the search",
            [&] {
                spare.field.setFocus();
                QTest::keyClick(&spare.field, Qt::Key_Escape);
            },
            [&] { return spare.host.focusWidget() == &spare.pages; }},
        {"marks are listed in it", [&] { viewer->setPageMark(); },
            [&] { return spare.marks.count() == 1; }},
        {"and chosen from it",
            [&] {
                spare.pages.goToPage(9);
                emit spare.marks.activated(0);
            },
            [&] { return spare.pages.currentPage() == viewer->theMPagelist().at(0); }},
    };
    for (const Fact& fact : facts) {
        fact.act();
        QTRY_VERIFY2(fact.isTrue(), fact.name);
    }
}

QTEST_MAIN(TestExchangedControls)
#include "tst_ExchangedControls.moc"
