#include "platform/RtfWriter.h"

#include "platform/RtfReader.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

PDFTextRun run(qsizetype start, qsizetype length, const char* family, double size, QRgb colour,
    const QByteArray& style = {})
{
    PDFTextRun result;
    result.start = start;
    result.length = length;
    result.family = QString::fromUtf8(family);
    result.sizeInPoints = size;
    result.isBold = style.contains('b');
    result.isItalic = style.contains('i');
    result.colour = QColor(colour);
    return result;
}

AttributedText attributed(const QString& string, const QList<PDFTextRun>& runs = {})
{
    AttributedText text;
    text.append({string, {}, runs});
    return text;
}

} // namespace

class TestRtfWriter : public QObject
{
    Q_OBJECT

private slots:
    void charactersSurvive_data();
    void charactersSurvive();
    void everyPlaneSurvives();
    void attributesSurvive();
    void looksFollowTheRuns_data();
    void looksFollowTheRuns();
    void partsAreBounded();
    void anotherReaderAgrees();
};

void TestRtfWriter::charactersSurvive_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("read");
    const auto row = [](const char* name, const QString& written, const QString& read) {
        QTest::newRow(name) << written << read;
    };
    const auto same = [&row](const char* name, const QString& text) { row(name, text, text); };
    same("empty", u""_s);
    same("what RTF itself is made of", u"{\\rtf1 \\par} \\'e9 \\u233?"_s);
    same("a letter behind a control word", u"\n\tpar\tx\n\n1"_s);
    same("digits behind Latin-1 and others", u"\u00e91\u03b12-3"_s);
    same("Latin-1", u"\u00a0\u00df\u00ff"_s);
    same("beyond the sign of sixteen bits", u"\u7fff\u8000\ufffd\uffee"_s);
    same("surrogate pairs", u"\U0001F600\U0010FFFD"_s);
    same("bidirectional and combining", u"\u202e\u05d0\u0301\u200d"_s);
    same("line and paragraph separators", u"a\u2028b\u2029c"_s);
    row("NUL and control characters go", u"a\0b\u0001\u001b\r\u007f\u0085z"_s, u"abz"_s);
    row("lone surrogates are replaced", QString(QChar(0xD800)) + u'a' + QChar(0xDC00),
        u"\ufffda\ufffd"_s);
    row("a pair the wrong way round", QString(QChar(0xDC00)) + QChar(0xD800), u"\ufffd\ufffd"_s);
}

void TestRtfWriter::charactersSurvive()
{
    QFETCH(QString, written);
    const RtfReader reader(RtfWriter::write(attributed(written)));
    QTEST(reader.text, "read");
    QVERIFY(reader.isBalanced);
}

void TestRtfWriter::everyPlaneSurvives()
{
    QString all;
    for (char32_t c = 0xA0; c <= 0x10FFFF; c += c < 0x10000 ? 1U : 0x101U) {
        if (!QChar::isSurrogate(c))
            all.append(QChar::fromUcs4(c));
    }
    const QByteArray rtf = RtfWriter::write(attributed(all));
    QVERIFY(RtfReader(rtf).text == all);
    const auto isPlain = [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); };
    QVERIFY(std::all_of(rtf.begin(), rtf.end(), isPlain));
}

void TestRtfWriter::attributesSurvive()
{
    AttributedText text = attributed(u"Title\nbody"_s,
        {run(0, 6, "Times New Roman", 18, 0xff0000, "b"), run(6, 4, "DejaVu Sans", 10.5, 0)});
    text.append({});
    text.append({u"body, slanted"_s, {},
        {run(0, 6, "DejaVu Sans", 10.5, 0), run(6, 7, "Times New Roman", 18, 0x20ff, "bi")}});
    const RtfReader reader(RtfWriter::write(text));
    QCOMPARE(reader.text, u"Title\nbodybody, slanted"_s);
    QCOMPARE(reader.looks,
        QStringList({u"Times New Roman/36/1/0/ff0000: Title\n"_s,
            u"DejaVu Sans/21/0/0/000000: bodybody, "_s,
            u"Times New Roman/36/1/1/0020ff: slanted"_s}));
    QCOMPARE(text.runs().size(), 3);
}

void TestRtfWriter::looksFollowTheRuns_data()
{
    QTest::addColumn<QList<PDFTextRun>>("runs");
    QTest::addColumn<QStringList>("looks");
    const auto row = [](const char* name, const QList<PDFTextRun>& runs, const QStringList& looks) {
        QTest::newRow(name) << runs << looks;
    };
    row("no runs", {}, {u"Helvetica/24/0/0/000000: abcdef"_s});
    row("runs that begin early, overlap, leave gaps and end late",
        {run(-2, 3, "A", 12, 0), run(0, 2, "B", 12, 0), run(4, 9, "C", 12, 0),
            run(90, 9, "D", 12, 0)},
        {u"A/24/0/0/000000: a"_s, u"B/24/0/0/000000: b"_s, u"Helvetica/24/0/0/000000: cd"_s,
            u"C/24/0/0/000000: ef"_s});
    row("sizes that no reader knows",
        {run(0, 1, "A", 0.01, 0), run(1, 1, "A", 1e9, 0), run(2, 1, "A", -4, 0),
            run(3, 3, "A", qQNaN(), 0)},
        {u"A/1/0/0/000000: a"_s, u"A/3276/0/0/000000: b"_s, u"A/1/0/0/000000: c"_s,
            u"A/24/0/0/000000: def"_s});
    row("families that would end the table",
        {run(0, 2, "A;}{\\f9 B", 12, 0), run(2, 2, " ", 12, 0), run(4, 2, "明朝", 12, 0)},
        {u"A }{\\f9 B/24/0/0/000000: ab"_s, u"Helvetica/24/0/0/000000: cd"_s,
            u"明朝/24/0/0/000000: ef"_s});
    row("neighbours that differ in colour alone",
        {run(0, 3, "A", 12, 0xffffff), run(3, 3, "A", 12, 1)},
        {u"A/24/0/0/ffffff: abc"_s, u"A/24/0/0/000001: def"_s});
}

void TestRtfWriter::looksFollowTheRuns()
{
    QFETCH(QList<PDFTextRun>, runs);
    QTEST(RtfReader(RtfWriter::write(attributed(u"abcdef"_s, runs))).looks, "looks");
}

void TestRtfWriter::partsAreBounded()
{
    const AttributedText text = attributed(QString(300'000, QChar(0x3042)));
    RtfWriter writer(text);
    QByteArray whole;
    qsizetype last = 0;
    for (QByteArray part = writer.next(); !part.isEmpty(); part = writer.next()) {
        QVERIFY(part.size() < 70'000);
        QVERIFY(writer.writtenLength() > last || last == text.length());
        last = writer.writtenLength();
        whole += part;
    }
    QCOMPARE(last, text.length());
    QVERIFY(RtfReader(whole).text == text.string());
}

void TestRtfWriter::anotherReaderAgrees()
{
    const QString unrtf = QStandardPaths::findExecutable(u"unrtf"_s);
    if (unrtf.isEmpty())
        QSKIP("unrtf is not installed");
    const QString text = u"Gr\u00fc\u00dfe {a} \u03b1\u05d0\u3042 \\end \U0001F600\n2nd \u20ac"_s;
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"a.rtf"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(RtfWriter::write(attributed(text)));
    file.close();
    QProcess process;
    process.start(unrtf, {u"--html"_s, u"--quiet"_s, file.fileName()});
    QVERIFY(process.waitForFinished());
    const QString html = QString::fromUtf8(process.readAllStandardOutput());
    const QString read = QTextDocumentFragment::fromHtml(html).toPlainText();
    QVERIFY2(read.contains(text), qPrintable(read));
}

QTEST_MAIN(TestRtfWriter)
#include "tst_RtfWriter.moc"
