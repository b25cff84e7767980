#include "bytes/BytesViewController.h"

#include "BytesSearch.h"
#include "document/Document.h"
#include "frame/DocumentWindow.h"
#include "support/Rows.h"
#include "text/HexView.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <QCheckBox>
#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestBytesViewController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(u"en_GB"_s)); }
    void saysWhatIsStray_data();
    void saysWhatIsStray();
    void goesToOffsets_data();
    void goesToOffsets();
    void findsBytes_data();
    void findsBytes();
    void escapeStopsAndThenCloses();
    void documentShowsBytes();

private:
    void open(const QByteArray& bytes);
    QString place() const { return theView->findChild<QLabel*>(u"placeLine"_s)->text(); }
    QString found() const { return theView->findChild<QLabel*>(u"findStatus"_s)->text(); }
    void type(const QString& field, const QString& text);

    WindowRegistry<Document> theRegistry;
    std::unique_ptr<Document> theDocument;
    std::unique_ptr<BytesViewController> theView;
};

/// Shows bytes, whatever the engine makes of them, and waits for what is stray of them.
void TestBytesViewController::open(const QByteArray& bytes)
{
    theView.reset();
    theDocument = std::make_unique<Document>(&theRegistry);
    theDocument->setFileURL(QUrl::fromLocalFile(u"/somewhere/report.pdf"_s));
    theDocument->readFromData(FileBytes::copy({bytes.data(), std::size_t(bytes.size())}).value());
    theView = std::make_unique<BytesViewController>(theDocument.get());
    QSignalSpy isKnown(theView.get(), &BytesViewController::strayBytesFound);
    theView->show();
    QVERIFY(QTest::qWaitForWindowActive(theView.get()));
    QTRY_COMPARE(isKnown.size(), 1);
    QCOMPARE(theView->windowTitle(), u"Bytes: report.pdf"_s);
}

void TestBytesViewController::type(const QString& field, const QString& text)
{
    auto* const edit = theView->findChild<QLineEdit*>(field);
    QVERIFY(edit->hasFocus());
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
}

using SaysWhatIsStray = Rows<QByteArray, QString, QString>;

void TestBytesViewController::saysWhatIsStray_data()
{
    const SaysWhatIsStray row;
    const QString behind = u" behind the last end-of-file marker (%%EOF)."_s;
    row("whole", QByteArray("%PDF-1.7\n%%EOF\n"), QString(), "Offset 15 (0xF), the file's end");
    row("both", QByteArray("x%PDF-1.7\n%%EOF\n\0\0", 18),
        u"1 byte before the header (%PDF-). 2 bytes"_s + behind,
        "Offset 18 (0x12), the file's end");
    row("zeros, 64 MB", QByteArray(64 << 20, '\0'),
        "There is no header (%PDF-). There is no end-of-file marker (%%EOF).",
        "Offset 67,108,864 (0x4000000), the file's end");
    row("empty", QByteArray(),
        "There is no header (%PDF-). There is no end-of-file marker (%%EOF).",
        "Offset 0 (0x0), the file's end");
}

void TestBytesViewController::saysWhatIsStray()
{
    const auto [bytes, note, atEnd] = SaysWhatIsStray::fetch();
    open(bytes);
    const auto* const label = theView->findChild<QLabel*>(u"strayNote"_s);
    QCOMPARE(label->isVisible(), !note.isEmpty());
    static const QRegularExpression tags(u"<[^>]*>"_s);
    QCOMPARE(QString(label->text()).remove(tags), note);
    QTest::keyClick(theView->bytesView(), Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(place(), atEnd);
    if (!label->text().contains(u"#behind"))
        return;
    emit const_cast<QLabel*>(label)->linkActivated(u"#behind"_s);
    QCOMPARE(place(), u"Offset 16 (0x10), 2 bytes selected, behind the last end-of-file marker"_s);
    emit const_cast<QLabel*>(label)->linkActivated(u"#before"_s);
    QCOMPARE(place(), u"Offset 0 (0x0), 1 byte selected, before the header"_s);
}

using GoesToOffsets = Rows<QString, QString, bool>;

void TestBytesViewController::goesToOffsets_data()
{
    const GoesToOffsets row;
    row("decimal", "2317", "Offset 2,317 (0x90D)", true);
    row("hexadecimal", "@0x90d", "Offset 2,317 (0x90D)", true);
    row("the end", "5000", "Offset 5,000 (0x1388), the file's end", true);
    row("behind it", "@5001", "“5001” is behind the file's end, which is at 5,000 (0x1388).",
        false);
    row("hexadecimal without a sign", "@90D",
        "“90D” is no decimal number. For a hexadecimal one, enter 0x90D.", false);
    row("a word", "somewhere over the rainbow",
        "“somewhere over the rainb…” is no offset. Enter one like 2317 or 0x90D.", false);
    row("nothing", " ", "Enter an offset: 2317 or 0x90D.", false);
}

void TestBytesViewController::goesToOffsets()
{
    const auto [text, said, isThere] = GoesToOffsets::fetch();
    open("%PDF-" + QByteArray(4990, 'x') + "%%EOF");
    theView->goToOffset();
    type(u"offsetField"_s, text);
    QCOMPARE(place(), said);
    QCOMPARE(theView->bytesView()->hasFocus(), isThere);
    auto* const field = theView->findChild<QLineEdit*>(u"offsetField"_s);
    QCOMPARE(field->text(), text); // what is wrong can be mended
    if (isThere)
        return;
    QTest::keyClick(field, Qt::Key_Escape);
    QCOMPARE(place(), u"Offset 0 (0x0)"_s);
    QVERIFY(theView->bytesView()->hasFocus());
}

using FindsBytes = Rows<QString, bool, QStringList>; // typed, next, next, previous

void TestBytesViewController::findsBytes_data()
{
    const FindsBytes row;
    const QString first = u"Offset 5 (0x5), 3 bytes selected: 1 of 2"_s;
    const QString second = u"Offset 20 (0x14), 3 bytes selected: 2 of 2"_s;
    const QString wrap = u", continued from the other end"_s;
    const QString none = u"Offset 0 (0x0): Not found (upper and lower case differ)"_s;
    row("text", "bär", false, {u"Offset 10 (0xA), 4 bytes selected: 1 of 1"_s});
    row("text over a line of the view, and on from the end", "foo", false,
        {first, second, first + wrap, second + wrap});
    row("text in another case", "Foo", false, {none});
    row("digits are text as well", "66 6F", false, {none});
    row("digits", "66 ?? 6F", true, {first, second, first + wrap, second + wrap});
    row("wrong digits", "66 6", true,
        {u"Offset 0 (0x0): Half a byte: “6” lacks a second digit."_s});
    row("no digits", "foo", true, {u"Offset 0 (0x0): “o” is no hexadecimal digit."_s});
}

void TestBytesViewController::findsBytes()
{
    const auto [wanted, isHex, steps] = FindsBytes::fetch();
    open("%PDF-foo  b\xC3\xA4r      foo %%EOF");
    theView->performFind();
    auto* const field = theView->findChild<QLineEdit*>(u"findField"_s);
    QVERIFY(field->hasFocus());
    theView->findChild<QCheckBox*>()->setChecked(isHex);
    field->setText(wanted);
    for (qsizetype step = 0; step < steps.size(); ++step) {
        if (step > 0)
            QTest::keyClick(field, Qt::Key_Return, step == 3 ? Qt::ShiftModifier : Qt::NoModifier);
        QTRY_COMPARE(place() + u": " + found(), steps[step]);
    }
}

void TestBytesViewController::escapeStopsAndThenCloses()
{
    open(QByteArray(16 << 20, '\0'));
    theView->performFind();
    auto* const field = theView->findChild<QLineEdit*>(u"findField"_s);
    field->setText(u"x"_s);
    QVERIFY(found().startsWith(u"Searching…"_s));
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(found().startsWith(u"Stopped at "_s));
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(!field->isVisible());
    QVERIFY(theView->bytesView()->hasFocus());
    theView->doFindNext(); // what was stopped is searched after all
    QTRY_VERIFY(!theView->findChild<BytesSearch*>()->finder().isRunning());
    // What is selected is searched for as what it is.
    theView->bytesView()->selectBytes({3, 6});
    theView->performFind();
    QCOMPARE(field->text(), u"00 00 00"_s);
    QTRY_COMPARE_WITH_TIMEOUT(found(), u"2 of 5,592,405"_s, 60'000);
}

void TestBytesViewController::documentShowsBytes()
{
    int made = 0;
    theRegistry.add(WindowIdentifiers::bytes, [&made](Document* document) {
        ++made;
        auto* const window = new DocumentWindow(WindowIdentifiers::bytes, document);
        window->setContent(new BytesViewController(document));
        return window;
    });
    open("%PDF-" + QByteArray(4990, 'x') + "%%EOF");
    theDocument->showBytes(2317, 4);
    theDocument->showBytes(5000, 4); // in the same window
    QCOMPARE(made, 1);
    auto* const content
        = qobject_cast<BytesViewController*>(theDocument->windows().constFirst()->content());
    QCOMPARE(content->bytesView()->selectedBytes(), (HexView::Span{5000, 5000}));
    theDocument->showBytes(2317, 4);
    QCOMPARE(content->findChild<QLabel*>(u"placeLine"_s)->text(),
        u"Offset 2,317 (0x90D), 4 bytes selected"_s);
    theDocument->openBytes(); // a further one
    QCOMPARE(made, 2);
    theView.reset();
    theDocument.reset();
}

QTEST_MAIN(TestBytesViewController)
#include "tst_BytesViewController.moc"
