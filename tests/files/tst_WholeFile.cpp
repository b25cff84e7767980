#include "files/FileIdentity.h"
#include "files/OpenedFiles.h"
#include "files/StraightFile.h"
#include "files/WholeFile.h"

#include "support/Files.h"
#include "support/Rows.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

int writeWhole(const QString& path, const std::function<void()>& meanwhile = {})
{
    WholeFile file(path.toStdString());
    int error = file.open();
    if (error == 0)
        error = file.append("new");
    if (error == 0 && meanwhile)
        meanwhile();
    return error == 0 ? file.commit() : error;
}

OpenedFiles::Entry opened(const QString& path)
{
    const int file = ::open(path.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    OpenedFiles::Entry entry = OpenedFiles::add(file, path.toStdString());
    ::close(file);
    return entry;
}

} // namespace

class TestWholeFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void neverWritesAnOpenedFile_data();
    void neverWritesAnOpenedFile();
    void writesWhatIsOpenNoMore();
    void looksAgainBeforeItGivesTheName();
    void keepsAFileThatHasAppeared();
    void leavesWhatStoodThere();
    void replacesBehindALink();
    void keepsPermissions();
    void refusesWhatIsNoFile();
    void writesStraightIntoDescriptors();
    void neverWritesThroughAnotherMount(); // last: the process changes its view of the system

private:
    QString path(const QString& name) const { return theHome->filePath(name); }
    QStringList names() const
    {
        return QDir(theHome->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> theHome;
};

void TestWholeFile::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    writeFile(path(u"a.pdf"_s), "evidence");
}

using NeverWritesAnOpenedFile = Rows<QString, std::function<void(const QDir&)>>;

void TestWholeFile::neverWritesAnOpenedFile_data()
{
    const NeverWritesAnOpenedFile row;
    const auto linkTo = [](const char* old, const char* link) {
        return [=](const QDir& home) {
            ::symlink(old, home.filePath(QLatin1String(link)).toLocal8Bit().constData());
        };
    };
    row("by its name", "a.pdf", {});
    row("by another spelling", "./none/..//a.pdf", [](const QDir& home) { home.mkdir(u"none"_s); });
    row("by a symbolic link", "link", linkTo("a.pdf", "link"));
    row("by a link to a link", "far", [=](const QDir& home) {
        linkTo("a.pdf", "link")(home);
        linkTo("link", "far")(home);
    });
    row("by a linked folder", "folder/a.pdf", linkTo(".", "folder"));
    row("by a hard link", "hard", [](const QDir& home) {
        ::link(home.filePath(u"a.pdf"_s).toLocal8Bit().constData(),
            home.filePath(u"hard"_s).toLocal8Bit().constData());
    });
    row("moved away", "moved", [](QDir home) { home.rename(u"a.pdf"_s, u"moved"_s); });
    row("the place of a deleted one", "a.pdf", [](QDir home) { home.remove(u"a.pdf"_s); });
    row("what has replaced it", "a.pdf", [](QDir home) {
        writeFile(home.filePath(u"next"_s), "evidence too");
        home.remove(u"a.pdf"_s);
        home.rename(u"next"_s, u"a.pdf"_s);
    });
}

void TestWholeFile::neverWritesAnOpenedFile()
{
    const auto [target, prepare] = NeverWritesAnOpenedFile::fetch();
    const OpenedFiles::Entry entry = opened(path(u"a.pdf"_s));
    if (prepare)
        prepare(QDir(theHome->path()));
    const QStringList before = names();
    const QByteArray content = contentOf(path(target));
    QVERIFY(OpenedFiles::contains(path(target).toStdString()));
    QCOMPARE(writeWhole(path(target)), OutputFile::isOpenedFile);
    QCOMPARE(names(), before);
    QCOMPARE(contentOf(path(target)), content);
}

void TestWholeFile::writesWhatIsOpenNoMore()
{
    const QString other = path(u"b.pdf"_s);
    OpenedFiles::Entry entry = opened(path(u"a.pdf"_s));
    OpenedFiles::Entry again = entry;
    QCOMPARE(writeWhole(other), 0); // another file is nothing to it
    entry.reset();
    QCOMPARE(writeWhole(path(u"a.pdf"_s)), OutputFile::isOpenedFile);
    again.reset();
    QCOMPARE(writeWhole(path(u"a.pdf"_s)), 0);
    QCOMPARE(contentOf(path(u"a.pdf"_s)), QByteArray("new"));
}

void TestWholeFile::looksAgainBeforeItGivesTheName()
{
    OpenedFiles::Entry entry;
    const auto openIt = [&] { entry = opened(path(u"a.pdf"_s)); };
    QCOMPARE(writeWhole(path(u"a.pdf"_s), openIt), OutputFile::isOpenedFile);
    QCOMPARE(contentOf(path(u"a.pdf"_s)), QByteArray("evidence"));
    QCOMPARE(names(), QStringList(u"a.pdf"_s));
}

void TestWholeFile::keepsAFileThatHasAppeared()
{
    const QString target = path(u"b"_s);
    QCOMPARE(writeWhole(target, [&] { writeFile(target, "of somebody else"); }), EEXIST);
    QCOMPARE(contentOf(target), QByteArray("of somebody else"));
    QCOMPARE(names().size(), 2);
}

void TestWholeFile::leavesWhatStoodThere()
{
    {
        WholeFile file(path(u"a.pdf"_s).toStdString());
        QCOMPARE(file.open(), 0);
        QCOMPARE(file.append("half"), 0);
    }
    QCOMPARE(contentOf(path(u"a.pdf"_s)), QByteArray("evidence"));
    QCOMPARE(names(), QStringList(u"a.pdf"_s));
}

void TestWholeFile::replacesBehindALink()
{
    const QString link = path(u"link"_s);
    QVERIFY(QDir(theHome->path()).mkdir(u"sub"_s));
    writeFile(path(u"sub/old"_s), "old");
    QVERIFY(QFile::link(u"sub/old"_s, link));
    QCOMPARE(writeWhole(link), 0);
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(contentOf(path(u"sub/old"_s)), QByteArray("new"));
}

void TestWholeFile::keepsPermissions()
{
    const QByteArray name = path(u"a.pdf"_s).toLocal8Bit();
    for (const mode_t mode : {0640U, 0440U}) {
        QCOMPARE(::chmod(name.constData(), mode), 0);
        QCOMPARE(writeWhole(path(u"a.pdf"_s)), 0);
        struct stat status = {};
        QCOMPARE(::stat(name.constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777U, mode);
    }
}

void TestWholeFile::refusesWhatIsNoFile()
{
    QCOMPARE(::mkfifo(path(u"pipe"_s).toLocal8Bit().constData(), 0600), 0);
    QVERIFY(QFile::link(u"/dev/null"_s, path(u"device"_s)));
    QVERIFY(QFile::link(u"/proc/self/fd/0"_s, path(u"input"_s)));
    QVERIFY(QFile::link(u"none"_s, path(u"dangling"_s)));
    QVERIFY(QFile::link(u"loop"_s, path(u"loop"_s)));
    const QStringList before = names();
    const std::pair<const char*, int> cases[] = {
        {"pipe", OutputFile::isNoRegularFile},
        {"device", OutputFile::isNoRegularFile},
        {"input", OutputFile::isNoRegularFile},
        {"dangling", OutputFile::isDanglingLink},
        {"loop", ELOOP},
        {".", EISDIR},
        {"a.pdf/", EISDIR},
        {"a.pdf/b", ENOTDIR},
        {"none/b", ENOENT},
    };
    for (const auto& [name, error] : cases) {
        QCOMPARE(writeWhole(path(QLatin1String(name))), error);
        QCOMPARE(names(), before);
    }
}

void TestWholeFile::writesStraightIntoDescriptors()
{
    const QString target = path(u"log"_s);
    writeFile(target, "before,");
    const int file = ::open(target.toLocal8Bit().constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    const auto write = [&](const std::string& output) {
        const std::unique_ptr<OutputFile> straight = outputFileFor(output);
        const int error = straight->open();
        return error != 0 ? error : straight->append("x") + straight->commit();
    };
    QCOMPARE(write("/dev/fd/" + std::to_string(file)), 0);
    QCOMPARE(write("/proc/self/fd/" + std::to_string(file)), 0);
    QCOMPARE(contentOf(target), QByteArray("before,xx"));
    QCOMPARE(write("/dev/full"), ENOSPC);
    const OpenedFiles::Entry entry = opened(target);
    QCOMPARE(write("/dev/fd/" + std::to_string(file)), OutputFile::isOpenedFile);
    ::close(file);
}

void TestWholeFile::neverWritesThroughAnotherMount()
{
    const QByteArray home = theHome->path().toLocal8Bit();
    const QByteArray mount = path(u"mount"_s).toLocal8Bit();
    QCOMPARE(::mkdir(mount.constData(), 0700), 0);
    const OpenedFiles::Entry entry = opened(path(u"a.pdf"_s));
    if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
        QSKIP("the system lets nobody mount");
    ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
    if (::mount(home.constData(), mount.constData(), nullptr, MS_BIND, nullptr) != 0)
        QSKIP("the system lets nobody mount");
    QCOMPARE(writeWhole(path(u"mount/a.pdf"_s)), OutputFile::isOpenedFile);
    QCOMPARE(::umount(mount.constData()), 0);
    QCOMPARE(::rmdir(mount.constData()), 0);
    // The folder's own file system under one that is stacked on it.
    for (const char* name : {"low", "high", "work", "stack"})
        QCOMPARE(::mkdir(path(QLatin1String(name)).toLocal8Bit().constData(), 0700), 0);
    writeFile(path(u"low/b.pdf"_s), "evidence");
    const QByteArray options
        = "lowerdir=" + home + "/low,upperdir=" + home + "/high,workdir=" + home + "/work";
    const QByteArray stack = home + "/stack";
    if (::mount("overlay", stack.constData(), "overlay", 0, options.constData()) != 0)
        QSKIP("the system stacks no file systems here");
    const OpenedFiles::Entry stacked = opened(path(u"stack/b.pdf"_s));
    QCOMPARE(writeWhole(path(u"low/b.pdf"_s)), OutputFile::isOpenedFile);
    QCOMPARE(writeWhole(path(u"stack/b.pdf"_s)), OutputFile::isOpenedFile);
    QCOMPARE(::umount(stack.constData()), 0);
}

QTEST_APPLESS_MAIN(TestWholeFile)
#include "tst_WholeFile.moc"
