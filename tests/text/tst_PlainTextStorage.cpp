#include "text/PlainTextStorage.h"

#include "text/ListedLines.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestPlainTextStorage : public QObject
{
    Q_OBJECT

private slots:
    void cutsLines();
    void findsEveryLineOfALongText();
    void keepsBytesAlive();
};

namespace {

SharedBytes bytes(const QByteArray& text)
{
    return SharedBytes::ofString(text.toStdString());
}

} // namespace

void TestPlainTextStorage::cutsLines()
{
    const auto lines = [](const QString& text) {
        const QStringList ofText = linesOf(PlainTextStorage(text));
        const QStringList ofBytes = linesOf(PlainTextStorage(bytes(text.toLatin1())));
        return ofText == ofBytes ? ofText : QStringList(u"text and bytes differ"_s);
    };
    QCOMPARE(lines({}), QStringList(QString()));
    QCOMPARE(lines(u"abc"_s), QStringList(u"abc"_s));
    QCOMPARE(lines(u"abc\n"_s), QStringList({u"abc"_s, {}}));
    QCOMPARE(lines(u"a\r\nb\r\n"_s), QStringList({u"a"_s, u"b"_s, {}}));
    QCOMPARE(lines(u"a\n\rb"_s), QStringList({u"a"_s, {}, u"b"_s}));
    QCOMPARE(lines(u"a\r\r\nb"_s), QStringList({u"a"_s, {}, u"b"_s}));
    QCOMPARE(lines(u"a\r"_s), QStringList({u"a"_s, {}}));
    QCOMPARE(lines(u"a\vb\fc\u0085d"_s), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    QCOMPARE(lines(u"a\0b"_s), QStringList(u"a\0b"_s));
    QCOMPARE(PlainTextStorage(u"a\u2028b\u2029c"_s).lineCount(), 3);
    QCOMPARE(lines(u"\u00E4\u00FF\n\u00A0"_s), QStringList({u"\u00E4\u00FF"_s, u"\u00A0"_s}));
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
