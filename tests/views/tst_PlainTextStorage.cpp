#include "views/PlainTextStorage.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestPlainTextStorage : public QObject
{
    Q_OBJECT

private slots:
    void cutsLines_data();
    void cutsLines();
    void findsEveryLineOfALongText();
    void servesStretches();
    void keepsBytesAlive();
};

namespace {

QStringList linesOf(const TextStorage& storage)
{
    QStringList lines;
    for (qsizetype index = 0; index < storage.lineCount(); ++index)
        lines += storage.line(index).text;
    return lines;
}

SharedBytes bytes(const QByteArray& text)
{
    return SharedBytes::ofString(text.toStdString());
}

} // namespace

void TestPlainTextStorage::cutsLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char* name, const QString& text, const QStringList& lines) {
        QTest::newRow(name) << text << lines;
    };
    row("an empty text has one empty line", {}, {{}});
    row("without a line end", u"abc"_s, {u"abc"_s});
    row("a final line end opens an empty line", u"abc\n"_s, {u"abc"_s, {}});
    row("CR LF is one end", u"a\r\nb\r\n"_s, {u"a"_s, u"b"_s, {}});
    row("LF CR is two", u"a\n\rb"_s, {u"a"_s, {}, u"b"_s});
    row("CR CR LF is two", u"a\r\r\nb"_s, {u"a"_s, {}, u"b"_s});
    row("CR at the very end", u"a\r"_s, {u"a"_s, {}});
    row("every control that ends lines", u"a\vb\fc\u0085d"_s, {u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    row("NUL is a character", u"a"_s + QChar(0) + u"b"_s, {u"a"_s + QChar(0) + u"b"_s});
    row("characters above ASCII", u"\u00E4\u00FF\n\u00A0"_s, {u"\u00E4\u00FF"_s, u"\u00A0"_s});
}

void TestPlainTextStorage::cutsLines()
{
    QFETCH(QString, text);
    QFETCH(QStringList, lines);
    QCOMPARE(linesOf(PlainTextStorage(text)), lines);
    QCOMPARE(linesOf(PlainTextStorage(bytes(text.toLatin1()))), lines);
}

// Line starts are kept here and there only; these lengths and ends meet every way of finding one.
void TestPlainTextStorage::findsEveryLineOfALongText()
{
    QStringList expected;
    QString text;
    for (int index = 0; index < 3000; ++index) {
        const qsizetype length = index % 700 == 99 ? 70'000 : index % 5;
        expected += QString(length, QChar(u'a' + index % 26));
        text += expected.back() + (index % 3 == 0 ? u"\r\n"_s : u"\n"_s);
    }
    expected += QString();
    for (const PlainTextStorage& storage :
        {PlainTextStorage(text), PlainTextStorage(bytes(text.toLatin1()))}) {
        QCOMPARE(storage.lineCount(), expected.size());
        for (qsizetype index = expected.size() - 1; index >= 0; --index) {
            QCOMPARE(storage.lineLength(index), expected[index].size());
            QCOMPARE(storage.line(index).text, expected[index]);
        }
    }
}

void TestPlainTextStorage::servesStretches()
{
    const QString text = u"first\nsecond line\n"_s;
    for (const PlainTextStorage& storage :
        {PlainTextStorage(text), PlainTextStorage(bytes(text.toLatin1()))}) {
        QCOMPARE(storage.line(1, 7, 2).text, u"li"_s);
        QCOMPARE(storage.line(1, 7, 100).text, u"line"_s);
        QCOMPARE(storage.line(1, 11, 100).text, QString());
    }
    QCOMPARE(PlainTextStorage(u"a\u2028b\u2029c"_s).lineCount(), 3);
}

void TestPlainTextStorage::keepsBytesAlive()
{
    auto shared = std::make_unique<SharedBytes>(bytes(QByteArray(100, 'x')));
    const std::weak_ptr<const void> owner = shared->owner;
    auto storage = std::make_unique<PlainTextStorage>(*shared);
    shared.reset();
    QCOMPARE(storage->line(0).text, QString(100, u'x'));
    storage.reset();
    QVERIFY(owner.expired());
}

QTEST_APPLESS_MAIN(TestPlainTextStorage)
#include "tst_PlainTextStorage.moc"
