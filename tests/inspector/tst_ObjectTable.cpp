#include "InspectedFile.h"
#include "PlacePanel.h"
#include "support/PdfBuilder.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestObjectTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { theInspector.reset(); }
    void isOffAtFirstAndRemembered();
    void filters_data();
    void filters();
    void selectionGoesBothWays_data();
    void selectionGoesBothWays();
    void goesWithHistoryOnEnterAlone();
    void saysWhyItIsEmpty();
    void livesThroughAnotherFilling();

private:
    void open();
    QString status() const { return theInspector->findChild<QLabel*>(u"objectCount"_s)->text(); }
    QTableView& table() const { return *theInspector->findChild<QTableView*>(u"objectTable"_s); }
    QString cell(int row, int column) const
    {
        return table().model()->index(row, column).data().toString();
    }
    QString currentNumber() const
    {
        const QModelIndexList rows = table().selectionModel()->selectedRows();
        return rows.isEmpty() ? QString() : rows.first().data().toString();
    }
    QString lineOfCaret() const
    {
        const PlainTextView& view = *theInspector->lowerTextView();
        return view.textStorage()->line(view.caret().line).text;
    }

    std::unique_ptr<InspectedFile> theFile;
    std::unique_ptr<SourceViewController> theInspector;
};

void TestObjectTable::init()
{
    QSettings().clear();
    PdfBuilder builder;
    builder.addPage("One").addPage("Two"); // 4 to 7
    builder.addUpdate(3, "<< /Type /Font /Later 1 >>");
    theFile = std::make_unique<InspectedFile>(builder.bytes());
}

void TestObjectTable::open()
{
    theInspector = theFile->inspector();
    theInspector->toggleObjectTable();
    QTRY_COMPARE(status(), u"10 objects"_s); // two of them trailers
}

void TestObjectTable::isOffAtFirstAndRemembered()
{
    theInspector = theFile->inspector();
    QVERIFY(!table().isVisible());
    QVERIFY(!theInspector->commandIsChecked(u"toggleObjectTable"_s));
    theInspector->filterObjects();
    QVERIFY(theInspector->commandIsChecked(u"toggleObjectTable"_s));
    QVERIFY(theInspector->findChild<QLineEdit*>(u"objectFilter"_s)->hasFocus());

    theInspector = theFile->inspector();
    QVERIFY(table().isVisible());
    table().setFocus();
    theInspector->toggleObjectTable();
    QVERIFY(theInspector->lowerTextView()->hasFocus());
    QVERIFY(!theFile->inspector()->commandIsChecked(u"toggleObjectTable"_s));
}

void TestObjectTable::filters_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("count");
    QTest::addColumn<QString>("mistake");
    QTest::addColumn<QStringList>("row"); // the first one, as far as that
    QTest::addRow("a kind") << u"font"_s << u"2 of 10 objects"_s << QString()
                            << QStringList{u"3"_s, u"0"_s, u"1"_s, u"Font"_s};
    QTest::addRow("nothing") << u"font v:7"_s << u"0 of 10 objects"_s << QString() << QStringList();
    QTest::addRow("not understood in part")
        << u"font v:x"_s << u"2 of 10 objects"_s << u"“v:x”"_s << QStringList{u"3"_s};
}

void TestObjectTable::filters()
{
    QFETCH(QString, filter);
    QFETCH(QString, count);
    QFETCH(QString, mistake);
    QFETCH(QStringList, row);
    open();
    table().horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
    table().setFocus(); // typing there goes on in the filter
    QTest::keyClicks(&table(), filter.first(1));
    auto* field = theInspector->findChild<QLineEdit*>(u"objectFilter"_s);
    QVERIFY(field->hasFocus());
    QTest::keyClicks(field, filter.sliced(1));
    QCOMPARE(field->text(), filter);
    QTRY_COMPARE(status(), count);
    const auto* said = theInspector->findChild<QLabel*>(u"objectFilterMistake"_s);
    QCOMPARE(said->isVisible(), !mistake.isEmpty());
    QVERIFY(said->text().contains(mistake));
    for (int column = 0; column < row.size(); ++column)
        QCOMPARE(cell(0, column), row[column]);
}

void TestObjectTable::selectionGoesBothWays_data()
{
    QTest::addColumn<bool>("summary");
    QTest::addColumn<QString>("line");
    QTest::addRow("a listing") << true << u"7 0 obj"_s;
    QTest::addRow("an object list") << false << u"7 0 1 Page"_s;
}

void TestObjectTable::selectionGoesBothWays()
{
    QFETCH(bool, summary);
    QFETCH(QString, line);
    theFile->flags.summary = summary;
    open();
    table().setFocus();
    table().selectRow(6);
    QCOMPARE(currentNumber(), u"7"_s);
    QVERIFY2(lineOfCaret().startsWith(line), qPrintable(lineOfCaret()));
    QVERIFY(table().hasFocus());

    PlainTextView& view = *theInspector->lowerTextView();
    view.setSelection({0, 0}, {0, 0});
    QCOMPARE(currentNumber(), summary ? QString() : u"1"_s);
    view.setFocus();
    theInspector->goToObject();
    auto* field = theInspector->findChild<QLineEdit*>(u"goToField"_s);
    field->setText(u"3"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(currentNumber(), u"3"_s);
    QCOMPARE(cell(table().currentIndex().row(), 2), u"2"_s);
    QVERIFY(view.hasFocus());
}

void TestObjectTable::goesWithHistoryOnEnterAlone()
{
    open();
    PlainTextView& view = *theInspector->lowerTextView();
    PlainTextView& other = *theInspector->upperTextView();
    other.setFocus();
    other.setSelection({1, 0}, {1, 0});
    table().setFocus();
    table().selectRow(2);
    QTest::keyClick(&table(), Qt::Key_Down);
    QVERIFY(!theInspector->validateCommand(u"goBack"_s));
    theInspector->showUsers(); // of the row's object, whatever pane had the keyboard
    const auto* panel = theInspector->findChild<PlacePanel*>();
    QTRY_VERIFY(panel->title().contains(u"object 4"_s));
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_Return);
    QVERIFY(view.hasFocus());
    QCOMPARE(lineOfCaret(), u"4 0 obj"_s);
    theInspector->goBack();
    QVERIFY(other.hasFocus());
    QCOMPARE(other.caret(), (TextPosition{1, 0}));
}

void TestObjectTable::saysWhyItIsEmpty()
{
    theFile->flags.raw = true;
    theInspector = theFile->inspector();
    theInspector->toggleObjectTable();
    QVERIFY2(status().contains(u"Show Raw Source"_s), qPrintable(status()));
    QCOMPARE(table().model()->rowCount(), 0);
}

void TestObjectTable::livesThroughAnotherFilling()
{
    open();
    theInspector->findChild<QLineEdit*>(u"objectFilter"_s)->setText(u"page"_s); // being made
    QSignalSpy filled(theInspector.get(), &SourceViewController::filled);
    theInspector->hide();
    theInspector->show();
    table().selectRow(0);
    QVERIFY(filled.wait(30'000));
    QTRY_COMPARE(status(), u"3 of 10 objects"_s);
    table().selectRow(2);
    QCOMPARE(lineOfCaret(), u"7 0 obj"_s);
}

QTEST_MAIN(TestObjectTable)

#include "tst_ObjectTable.moc"
