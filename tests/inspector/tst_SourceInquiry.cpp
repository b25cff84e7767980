#include "InspectedFile.h"
#include "PlacePanel.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QLabel>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// The lists of the inspector: users of an object, and findings.
class TestSourceInquiry : public QObject
{
    Q_OBJECT

private slots:
    void listsAndLeads_data();
    void listsAndLeads();
};

/// What stands before the header, the title, the number of rows, the text of the first one and the
/// line that it leads to.
using ListsAndLeads = Rows<QByteArray, QString, qsizetype, QString, QString>;

void TestSourceInquiry::listsAndLeads_data()
{
    const ListsAndLeads row;
    row("users", "", "Users of object 3: 3", 3, "3 0 R", "<< /Type /Page ");
    row("findings", "junk\n", "Findings in the stored file: ", 1, "7.5.2", "junk");
}

void TestSourceInquiry::listsAndLeads()
{
    const auto [before, title, rows, text, line] = ListsAndLeads::fetch();
    PdfBuilder builder;
    builder.addPage("One").addPage("Two").addUpdate(8, "[ 3 0 R (3 0 R) ] % 3 0 R");
    InspectedFile file(before.toStdString() + builder.bytes());
    const auto inspector = file.inspector();
    PlainTextView& view = *inspector->lowerTextView();
    if (before.isEmpty()) {
        qsizetype header = 0;
        while (view.textStorage()->line(header).text != u"3 0 obj"_s)
            ++header;
        view.setSelection({header, 0}, {header, 0});
        inspector->showUsers();
    } else {
        auto* strip = inspector->findChild<QLabel*>(u"findingsText"_s);
        QTRY_VERIFY(strip->isVisible());
        inspector->showFindings();
    }
    auto* panel = inspector->findChild<PlacePanel*>(QString(), Qt::FindDirectChildrenOnly);
    QTRY_COMPARE(panel->title().left(title.size()), title);
    QVERIFY(panel->rows().size() >= rows);
    QVERIFY2(panel->rows().constFirst().text.contains(text),
        qPrintable(panel->rows().constFirst().text));

    QTest::keyClick(panel->findChild<QTreeView*>(), Qt::Key_Return);
    const QString there = view.textStorage()->line(view.caret().line).text;
    QVERIFY2(there.startsWith(line), qPrintable(there));
    QVERIFY(view.hasFocus());
    QTest::keyClick(panel, Qt::Key_Escape);
    QVERIFY(!panel->isVisible());
}

QTEST_MAIN(TestSourceInquiry)

#include "tst_SourceInquiry.moc"
