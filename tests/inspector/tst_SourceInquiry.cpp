#include "InspectedFile.h"
#include "PlacePanel.h"
#include "support/PdfBuilder.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include <memory>

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

void TestSourceInquiry::listsAndLeads_data()
{
    QTest::addColumn<QByteArray>("before"); // the header
    QTest::addColumn<QString>("title");
    QTest::addColumn<qsizetype>("rows");
    QTest::addColumn<QString>("text"); // of the first one
    QTest::addColumn<QString>("line"); // that it leads to
    QTest::addRow("users") << QByteArray() << u"Users of object 3: 3"_s << qsizetype{3}
                           << u"3 0 R"_s << u"<< /Type /Page "_s;
    QTest::addRow("findings") << QByteArray("junk\n") << u"Findings in the stored file: "_s
                              << qsizetype{1} << u"7.5.2"_s << u"junk"_s;
}

void TestSourceInquiry::listsAndLeads()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, title);
    QFETCH(qsizetype, rows);
    QFETCH(QString, text);
    QFETCH(QString, line);
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
    auto* panel = inspector->findChild<PlacePanel*>();
    QTRY_COMPARE(panel->title().left(title.size()), title);
    QVERIFY(panel->rows().size() >= rows);
    QVERIFY2(panel->rows().constFirst().text.contains(text),
        qPrintable(panel->rows().constFirst().text));

    QTest::keyClick(inspector->findChild<QTreeView*>(u"placesView"_s), Qt::Key_Return);
    const QString there = view.textStorage()->line(view.caret().line).text;
    QVERIFY2(there.startsWith(line), qPrintable(there));
    QVERIFY(view.hasFocus());
    QTest::keyClick(panel, Qt::Key_Escape);
    QVERIFY(!panel->isVisible());
}

QTEST_MAIN(TestSourceInquiry)

#include "tst_SourceInquiry.moc"
