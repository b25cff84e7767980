#include "RtfWriter.h"

#include "export/RtfReader.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace tarnwick;

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
    text.append({string, {}, {}, runs});
    return text;
}

} // namespace

class TestRtfWriter : public QObject
{
    Q_OBJECT

private slots:
    void everyCharacterSurvives();
    void attributesSurvive();
    void looksFollowTheRuns();
    void partsAreBounded();
    void anotherReaderAgrees();
};

void TestRtfWriter::everyCharacterSurvives()
{
    QString all;
    for (char32_t c = ' '; c <= 0x10FFFF; c += c < 0x10000 ? 1U : 0x101U) {
        if (!QChar::isSurrogate(c) && QChar::category(c) != QChar::Other_Control)
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
    text.append({u"body, slanted"_s, {}, {},
        {run(0, 6, "DejaVu Sans", 10.5, 0), run(6, 7, "Times New Roman", 18, 0x20ff, "bi")}});
    const RtfReader reader(RtfWriter::write(text));
    QCOMPARE(reader.text, u"Title\nbodybody, slanted"_s);
    QCOMPARE(reader.looks,
        QStringList({u"Times New Roman/36/1/0/ff0000: Title\n"_s,
            u"DejaVu Sans/21/0/0/000000: bodybody, "_s,
            u"Times New Roman/36/1/1/0020ff: slanted"_s}));
    QCOMPARE(text.runs().size(), 3);
}

void TestRtfWriter::looksFollowTheRuns()
{
    const auto looks = [](const QList<PDFTextRun>& runs) {
        return RtfReader(RtfWriter::write(attributed(u"abcdef"_s, runs))).looks;
    };
    QCOMPARE(looks({}), QStringList(u"Helvetica/24/0/0/000000: abcdef"_s));
    // Runs that begin early, overlap, leave gaps and end late.
    QCOMPARE(looks({run(-2, 3, "A", 12, 0), run(0, 2, "B", 12, 0), run(4, 9, "C", 12, 0),
                 run(90, 9, "D", 12, 0)}),
        QStringList({u"A/24/0/0/000000: a"_s, u"B/24/0/0/000000: b"_s,
            u"Helvetica/24/0/0/000000: cd"_s, u"C/24/0/0/000000: ef"_s}));
    // Sizes that no reader knows.
    QCOMPARE(looks({run(0, 1, "A", 0.01, 0), run(1, 1, "A", 1e9, 0), run(2, 1, "A", -4, 0),
                 run(3, 3, "A", qQNaN(), 0)}),
        QStringList({u"A/1/0/0/000000: a"_s, u"A/3276/0/0/000000: b"_s, u"A/1/0/0/000000: c"_s,
            u"A/24/0/0/000000: def"_s}));
    // Families that would end the table.
    QCOMPARE(
        looks({run(0, 2, "A;}{\\f9 B", 12, 0), run(2, 2, " ", 12, 0), run(4, 2, "明朝", 12, 0)}),
        QStringList({u"A }{\\f9 B/24/0/0/000000: ab"_s, u"Helvetica/24/0/0/000000: cd"_s,
            u"明朝/24/0/0/000000: ef"_s}));
    QCOMPARE(looks({run(0, 3, "A", 12, 0xffffff), run(3, 3, "A", 12, 1)}),
        QStringList({u"A/24/0/0/ffffff: abc"_s, u"A/24/0/0/000001: def"_s}));
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
