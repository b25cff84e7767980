#include "support/CompanionRun.h"
#include "support/Files.h"
#include "support/LostPages.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"
#include "support/SavedFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

QByteArray twoPages()
{
    PdfBuilder builder;
    builder.addPage("First page").addPage("Second\nline");
    return QByteArray::fromStdString(builder.bytes());
}

} // namespace

class TestEngineCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesWhatTheEngineMakes();
    void writesStraightIntoAPipe();
    void neverWritesItsInput();
    void saysWhyItFailed();
    void asksForThePassword();
    void findsItsHelpersWhereTheInstallationHasThem();
    void saysWhatIsMissing();
    void decodesStreams();
    void tellsWhatEachSaveChanged();
    void checksDocuments();
    void comparesVersions_data();
    void comparesVersions();
    void comparesFiles();

private:
    /// Runs a command in the test's folder, without a terminal that could be asked for passwords.
    CompanionRun run(const QStringList& arguments, const QByteArray& input = {}) const
    {
        return runCompanion(arguments, {theHome->path(), input, {}, [] { ::setsid(); }});
    }
    QString path(const QString& name) const { return theHome->filePath(name); }
    QStringList names() const
    {
        return QDir(theHome->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    std::unique_ptr<QTemporaryDir> theHome;
};

void TestEngineCommands::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    writeFile(path(u"a.pdf"_s), twoPages());
}

void TestEngineCommands::writesWhatTheEngineMakes()
{
    const std::tuple<QString, QByteArray, QByteArray> commands[] = {
        {u"flat"_s, "%PDF-", "/Count 2"},
        {u"text"_s, "First page\n", "\nSecond\nline\n"},
        {u"rtf"_s, "{\\rtf1", "\nSecond\\par\nline\\par\n"},
    };
    const QString longest(255, u'n');
    for (const auto& [command, start, held] : commands) {
        writeFile(path(longest), QByteArray(100'000, 'o')); // is replaced
        const CompanionRun result = run({command, u"a.pdf"_s, u"-o"_s, longest});
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
        const QByteArray content = contentOf(path(longest));
        QVERIFY2(content.startsWith(start), content.constData());
        QVERIFY2(content.contains(held), content.constData());
        QCOMPARE(run({command, u"-"_s, u"-o"_s, u"-"_s}, twoPages()).output, content);
        QCOMPARE(names(), QStringList({u"a.pdf"_s, longest}));
    }
}

void TestEngineCommands::writesStraightIntoAPipe()
{
    QCOMPARE(::mkfifo(qPrintable(path(u"pipe"_s)), 0600), 0);
    QProcess reader;
    reader.start(u"cat"_s, {path(u"pipe"_s)});
    QCOMPARE(run({u"text"_s, u"a.pdf"_s, u"-o"_s, u"pipe"_s}).status, 0);
    QVERIFY(reader.waitForFinished());
    QVERIFY(reader.readAllStandardOutput().startsWith("First page\n"));
    QCOMPARE(run({u"text"_s, u"a.pdf"_s, u"-o"_s, u"/dev/stdout"_s}).output.left(11),
        QByteArray("First page\n"));
    QCOMPARE(names().size(), 2);
}

void TestEngineCommands::neverWritesItsInput()
{
    const std::string file = path(u"a.pdf"_s).toStdString();
    // With the file as standard input and, open at its end, as standard output.
    const auto inAndOut = [&file] {
        ::dup2(::open(file.c_str(), O_RDONLY), STDIN_FILENO);
        ::dup2(::open(file.c_str(), O_WRONLY | O_APPEND), STDOUT_FILENO);
    };
    QVERIFY(QFile::link(u"a.pdf"_s, path(u"link.pdf"_s)));
    writeFile(path(u"password"_s), "geheim\n");
    const QStringList commands[] = {
        {u"flat"_s, u"/dev/stdin"_s, u"-o"_s, u"a.pdf"_s},
        {u"flat"_s, u"-"_s, u"-o"_s, u"link.pdf"_s},
        {u"text"_s, u"/proc/self/fd/0"_s, u"-o"_s, u"./a.pdf"_s},
        {u"rtf"_s, u"link.pdf"_s, u"-o"_s, u"a.pdf"_s},
        {u"text"_s, u"a.pdf"_s, u"-o"_s, u"-"_s},
        {u"flat"_s, u"a.pdf"_s, u"-o"_s, u"/dev/stdout"_s},
        {u"flat"_s, u"a.pdf"_s, u"-o"_s, u"password"_s, u"--password-file"_s, u"password"_s},
        {u"listing"_s, u"a.pdf"_s},
        {u"versions"_s, u"-"_s},
        {u"versions"_s, u"-"_s, u"--json"_s},
    };
    for (const QStringList& words : commands) {
        const CompanionRun result = runCompanion(words, {theHome->path(), {}, {}, inAndOut});
        QVERIFY2(result.status == 1, qPrintable(words.join(u' ')));
        QVERIFY2(
            result.errors.contains("an opened file is never written"), result.errors.constData());
        QCOMPARE(contentOf(path(u"a.pdf"_s)), twoPages());
        QCOMPARE(contentOf(path(u"password"_s)), QByteArray("geheim\n"));
    }
    QCOMPARE(names(), QStringList({u"a.pdf"_s, u"link.pdf"_s, u"password"_s}));
}

void TestEngineCommands::saysWhyItFailed()
{
    writeFile(path(u"text.pdf"_s), "only text");
    QCOMPARE(::link(qPrintable(path(u"a.pdf"_s)), qPrintable(path(u"link.pdf"_s))), 0);
    const std::tuple<QString, QString, QByteArray> cases[] = {
        {u"none.pdf"_s, u"out"_s, "none.pdf: No such"},
        {u"."_s, u"out"_s, "directory"},
        {u"text.pdf"_s, u"out"_s, "text.pdf: "},
        {u"a.pdf"_s, u"link.pdf"_s, "an opened file is never written"},
        {u"a.pdf"_s, u"none/out"_s, "No such file"},
        {u"a.pdf"_s, u"/"_s, "irectory"},
        {u"a.pdf"_s, u"/dev/full"_s, "/dev/full: No space left"},
    };
    for (const auto& [file, output, reason] : cases) {
        for (const QString& command : {u"flat"_s, u"rtf"_s}) {
            const CompanionRun result = run({command, file, u"-o"_s, output});
            QCOMPARE(result.status, 1);
            QVERIFY2(result.errors.contains(reason), result.errors.constData());
        }
        QCOMPARE(names().size(), 3);
        QCOMPARE(contentOf(path(u"a.pdf"_s)), twoPages());
    }
}

void TestEngineCommands::asksForThePassword()
{
    const auto text = [this](const QStringList& options) {
        const QString locked = QStringLiteral(TARNWICK_TEST_DATA "/locked-aes-256.pdf");
        return run(QStringList({u"text"_s, locked, u"-o"_s, u"-"_s}) + options);
    };
    QVERIFY(text({}).errors.contains("A password is needed"));
    writeFile(path(u"wrong"_s), "Geheim\n");
    QVERIFY(text({u"--password-file"_s, u"wrong"_s}).errors.contains("not its password"));
    writeFile(path(u"right"_s), "geheim\r\nmore\n");
    const CompanionRun result = text({u"--password-file"_s, u"right"_s});
    QVERIFY2(result.output.contains("Hello (world)\n"), result.errors.constData());
    QCOMPARE(result.status, 0);
}

/// An installation is put together program by program, in a folder that no build knows of.
void TestEngineCommands::findsItsHelpersWhereTheInstallationHasThem()
{
    const QString built = QFileInfo(QStringLiteral(TARNWICK_INSPECT)).path() + u'/';
    const QString folder = path(u"moved/bin/"_s);
    const QString helpers = QDir::cleanPath(folder + QStringLiteral(TARNWICK_HELPER_FOLDER)) + u'/';
    if (!helpers.startsWith(theHome->path()))
        QSKIP("this build has its helpers in one fixed folder");
    const std::tuple<QString, QString, QByteArray> steps[] = {
        {folder, u"tarnwick-inspect"_s, "tarnwick-export: No such file"},
        {helpers, u"tarnwick-export"_s,
            QFile::encodeName(helpers) + "tarnwick-pdf-engine is missing or cannot be started."},
        {helpers, u"tarnwick-pdf-engine"_s, {}},
    };
    for (const auto& [place, program, complaint] : steps) {
        QVERIFY(QDir().mkpath(place) && QFile::copy(built + program, place + program));
        QProcess process;
        process.start(
            folder + u"tarnwick-inspect"_s, {u"text"_s, path(u"a.pdf"_s), u"-o"_s, u"-"_s});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), complaint.isEmpty() ? 0 : 1);
        const QByteArray errors = process.readAllStandardError();
        QVERIFY2(errors.contains(complaint), errors.constData());
        QCOMPARE(process.readAllStandardOutput().contains("First page"), complaint.isEmpty());
    }
}

/// A file that lacks something of the document is there, and that it lacks something is said.
void TestEngineCommands::saysWhatIsMissing()
{
    writeFile(path(u"lost.pdf"_s), QByteArray::fromStdString(LostPages::secondOfThree().bytes()));
    const std::tuple<QString, QByteArray> commands[] = {
        {u"flat"_s, "lost.pdf: Page 2 was written empty: it is too damaged to be read.\n"},
        {u"text"_s, "lost.pdf: No text from page 2: it is too damaged to be read.\n"},
        {u"rtf"_s, "lost.pdf: No text from page 2: it is too damaged to be read.\n"},
    };
    for (const auto& [command, sentence] : commands) {
        const CompanionRun result = run({command, u"lost.pdf"_s, u"-o"_s, u"out"_s});
        QCOMPARE(result.status, 4);
        QVERIFY2(result.errors.contains(sentence), result.errors.constData());
        const QByteArray written = contentOf(path(u"out"_s));
        QVERIFY(command == u"flat" || written.contains("last page"));
        const CompanionRun json = run({command, u"lost.pdf"_s, u"-o"_s, u"-"_s, u"--json"_s});
        QCOMPARE(json.status, 4);
        QCOMPARE(json.output, written);
        const QJsonObject object = QJsonDocument::fromJson(json.errors).object();
        const QJsonObject range = object.value(u"missing").toArray().at(0).toObject();
        QCOMPARE(range.value(u"first").toInt(), 2);
        QCOMPARE(range.value(u"last").toInt(), 2);
        QCOMPARE(range.value(u"reason").toString(), u"damaged"_s);
        QCOMPARE(range.value(u"partial").toBool(true), false);
        QCOMPARE(object.value(u"lostObjects").toInt(), command == u"flat" ? 1 : 0);
    }
}

void TestEngineCommands::decodesStreams()
{
    const std::string locked = std::string(TARNWICK_TEST_DATA) + "/locked-aes-256.pdf";
    PdfBuilder builder;
    const int hex = builder.addPage("A page").addStream("48692e>", "/Filter /ASCIIHexDecode");
    const int unknown = builder.addStream("x", "/Filter /What");
    const int damaged = builder.addStream("not deflated", "/Filter /FlateDecode");
    writeFile(path(u"b.pdf"_s), QByteArray::fromStdString(builder.bytes()));
    writeFile(path(u"secret"_s), "geheim\n");
    const std::tuple<QStringList, int, QByteArray, QByteArray> commands[] = {
        {{u"b.pdf"_s, QString::number(hex)}, 0, "Hi.", ""},
        {{u"b.pdf"_s, QString::number(unknown)}, 1, "", "The filter /What is not known."},
        {{u"b.pdf"_s, QString::number(damaged)}, 4, "", "is damaged after 0 bytes: zlib"},
        {{u"b.pdf"_s, u"1"_s}, 1, "", "It has no stream"},
        {{u"b.pdf"_s, u"99999999999"_s}, 1, "", "It has no stream"},
        {{u"b.pdf"_s, u"1"_s, u"--raw"_s}, 2, "", "--decoded stands alone"},
        {{QString::fromStdString(locked), u"6"_s, u"--password-file"_s, u"secret"_s}, 0, "Tj", ""},
    };
    for (const auto& [words, status, output, errors] : commands) {
        const CompanionRun result = run(QStringList{u"object"_s, u"--decoded"_s} + words);
        QVERIFY2(result.errors.contains(errors), result.errors.constData());
        QCOMPARE(result.status, status);
        QVERIFY2(result.output.contains(output), result.output.constData());
    }
}

/// Of files that no engine opens as well, and without a password.
void TestEngineCommands::tellsWhatEachSaveChanged()
{
    const QByteArray start = twoPages();
    const QByteArray saved = QByteArray::fromStdString(SavedFile(start.toStdString())
                                                           .object(4, "(new)")
                                                           .object(9, "null")
                                                           .freed(3)
                                                           .save()
                                                           .bytes());
    const auto save = [&saved](int number, qsizetype end, const QByteArray& rest) -> QByteArray {
        const QByteArray file = saved.first(end);
        const QByteArray count = QByteArray::number(number);
        return "{\"save\":" + count + ",\"marker\":" + count + ",\"end\":" + QByteArray::number(end)
            + ",\"sha256\":\"" + QCryptographicHash::hash(file, QCryptographicHash::Sha256).toHex()
            + "\",\"startxref\":" + QByteArray::number(file.lastIndexOf("\nxref") + 1)
            + ",\"prev\":" + rest + ",\"flags\":[]}";
    };
    const QByteArray table = QByteArray::number(start.lastIndexOf("\nxref") + 1);
    const QByteArray ends
        = QByteArray::number(start.size()) + ',' + QByteArray::number(saved.size());
    QCOMPARE(run({u"versions"_s, u"-"_s, u"--json"_s, u"--export"_s, u"out"_s}, saved).output,
        "{\"schema\":\"versions\",\"schemaVersion\":1,\"incremental\":true,\"cuts\":[" + ends
            + "],\"saves\":["
            + save(1, start.size(), "null,\"added\":[],\"replaced\":[],\"freed\":[]") + ','
            + save(2, saved.size(), table + ",\"added\":[9],\"replaced\":[4],\"freed\":[3]")
            + "],\"notListed\":0}\n");
    QCOMPARE(contentOf(path(u"out/stdin-002"_s)), saved);
    for (const QByteArray& file : {QByteArray("text\n%%EOF\n"),
             contentOf(QStringLiteral(TARNWICK_TEST_DATA "/locked-aes-256.pdf"))}) {
        const CompanionRun result = run({u"versions"_s, u"-"_s, u"--json"_s}, file);
        QCOMPARE(result.status, 0);
        QVERIFY2(result.output.contains("\"added\":[]"), result.output.constData());
    }
}

void TestEngineCommands::checksDocuments()
{
    const QString locked = QStringLiteral(TARNWICK_TEST_DATA "/locked-aes-256.pdf");
    const QByteArray lost = QByteArray::fromStdString(LostPages::secondOfThree().bytes());
    writeFile(path(u"secret"_s), "geheim\n");
    const std::tuple<QStringList, QByteArray, int, QByteArray, QByteArray> commands[] = {
        {{u"a.pdf"_s, u"--json"_s}, {}, 0, R"("engine":"open","findings":[],"counts":{}})", ""},
        {{u"-"_s}, twoPages().replace("/Count 2", "/Count 3"), 0, "page-count-differs\t-\t-\t", ""},
        {{u"-"_s}, lost, 0, "text-lost\t-\t-\tNo text from page 2: it is too damaged", ""},
        {{u"-"_s, u"--json"_s}, lost, 0, R"("object":null,"page":2,"sentence":"No text)", ""},
        {{u"-"_s}, "only text", 4, "no-header\t0\t-\t", "is missing: It is not a PDF"},
        {{locked}, {}, 4, "The document is encrypted. (7.6)", "is missing: A password is needed"},
        {{locked, u"--json"_s}, {}, 4, R"("engine":"locked")", "A password is needed"},
        {{locked, u"--password-file"_s, u"secret"_s}, {}, 0, "encrypted: AES with 256 bits", ""},
    };
    for (const auto& [words, input, status, output, errors] : commands) {
        const CompanionRun result = run(QStringList{u"check"_s} + words, input);
        QVERIFY2(result.output.contains(output), result.output.constData());
        QVERIFY2(result.errors.contains(errors), result.errors.constData());
        QCOMPARE(result.errors.isEmpty(), status == 0);
        QCOMPARE(result.status, status);
    }
}

using ComparesVersions = Rows<QStringList, std::string, int, QByteArray>;

/// Objects 1 to 5: catalog, pages, font, content, page.
void TestEngineCommands::comparesVersions_data()
{
    const ComparesVersions row;
    const std::string once = PdfBuilder().addPage("A page").bytes();
    const auto start = [&once] { return SavedFile(once); };
    const QStringList plain = {u"compare"_s, u"a.pdf"_s};
    row("another price", plain,
        start().object(4, "<< /Length 9 >>\nstream\n(9) Tj %%9\nendstream").save().bytes(), 3,
        "replaced\t4\t4\tpage-content\tstream\n");
    row("an entry more, one less", plain,
        start()
            .object(5,
                "<< /Type /Page /Parent 2 0 R /Rotate 90 /MediaBox [ 0 0 612 792 ]"
                " /Contents 4 0 R >>")
            .save()
            .bytes(),
        3, "replaced\t5\t5\tpage-content\t/Resources /Rotate\n");
    row("other spelling, other order", plain,
        start().object(3, "<</BaseFont/Helvetic#61/Subtype/Type1/Type/Font>>").save().bytes(), 0,
        "rewritten\t3\t3\tfonts-and-images\t\n");
    row("a value for a field", plain,
        start()
            .object(6, "<< /FT /Tx /T (a) >>")
            .save()
            .object(6, "<< /FT /Tx /T (a) /V (b) >>")
            .save()
            .bytes(),
        3, "replaced\t6\t6\tannotations-and-forms\t/V\n");
    row("moved to another number", plain,
        start().object(6, "(said)").save().freed(6).object(7, "(said)").save().bytes(), 0,
        "moved\t6\t7\tother\t\n");
    row("added, freed", plain, start().object(6, "(a)").freed(3).save().bytes(), 3,
        "added\t-\t6\tother\t\nfreed\t3\t-\tfonts-and-images\t\n");
    row("nothing", plain, start().save().bytes(), 0, "");
    row("the lengths of streams with them", plain,
        start()
            .object(6, "<< /Length 7 0 R >>\nstream\nab\nendstream")
            .object(7, "2")
            .save()
            .object(6, "<< /Length 7 0 R >>\nstream\nabc\nendstream")
            .object(7, "3")
            .save()
            .bytes(),
        3, "replaced\t6\t6\tother\tstream\n");
    row("two that are not neighbours",
        {u"compare"_s, u"a.pdf"_s, u"--from"_s, u"1"_s, u"--to"_s, u"3"_s},
        start().object(6, "(a)").save().object(7, "(b)").save().bytes(), 3,
        "added\t-\t6\tother\t\nadded\t-\t7\tother\t\n");
    row("one with itself", {u"compare"_s, u"a.pdf"_s, u"--from"_s, u"1"_s, u"--to"_s, u"1"_s}, once,
        0, "");
    row("no version before", plain, once, 2, "");
    row("no such version", {u"compare"_s, u"a.pdf"_s, u"--to"_s, u"9"_s}, once, 2, "");
    row("a version that has to be repaired", plain,
        SavedFile(once).raw("startxref\n7\n%%EOF\n").object(6, "(a)").save().bytes(), 0, "");
}

void TestEngineCommands::comparesVersions()
{
    const auto [words, file, status, lines] = ComparesVersions::fetch();
    writeFile(path(u"a.pdf"_s), QByteArray::fromStdString(file));
    const CompanionRun result = run(words);
    QCOMPARE(result.output, lines);
    QCOMPARE(result.status, status);
    QCOMPARE(result.errors.isEmpty(), status != 2);
}

/// Renumbered, packed otherwise, without and with a change.
void TestEngineCommands::comparesFiles()
{
    writeFile(path(u"a.pdf"_s), twoPages());
    QProcess qpdf;
    qpdf.setWorkingDirectory(theHome->path());
    qpdf.start(
        u"qpdf"_s, {u"--object-streams=generate"_s, u"--linearize"_s, u"a.pdf"_s, u"b.pdf"_s});
    QVERIFY(qpdf.waitForFinished());
    const CompanionRun moved = run({u"compare"_s, u"a.pdf"_s, u"b.pdf"_s});
    QCOMPARE(moved.status, 0);
    QVERIFY2(moved.output.startsWith("moved"), moved.output.constData());
    const QByteArray other = twoPages().replace("(First page) Tj", "(Other page) Tj");
    const CompanionRun changed = run({u"compare"_s, u"b.pdf"_s, u"-"_s, u"--json"_s}, other);
    QCOMPARE(changed.status, 3);
    const QJsonObject json = QJsonDocument::fromJson(changed.output).object();
    QCOMPARE(json[u"equal"_s], QJsonValue(false));
    const QJsonArray objects = json[u"objects"_s].toArray();
    QCOMPARE(std::count_if(objects.begin(), objects.end(),
                 [](const QJsonValue& one) {
                     return one[u"change"_s] == u"replaced"_s && one[u"stream"_s].toBool()
                         && one[u"entries"_s].toArray().isEmpty();
                 }),
        1);
}

QTEST_APPLESS_MAIN(TestEngineCommands)
#include "tst_EngineCommands.moc"
