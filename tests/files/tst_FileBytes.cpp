#include "files/FileBytes.h"

#include "files/OpenedFiles.h"
#include "files/OutputFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestFileBytes : public QObject
{
    Q_OBJECT

private slots:
    void readsAFile();
    void saysWhyNothingIsRead();
    void keepsItsBytesFromEverybody();
    void takesOverAsMuchAsThereIs();
    void sharesItsBeginning();

private:
    QTemporaryDir theFolder;
};

void TestFileBytes::readsAFile()
{
    QFile file(theFolder.filePath(u"a\nb \u00e9.pdf"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray content(3'000'000, 'x');
    content[1'234'567] = '\0';
    file.write(content);
    file.close();
    const auto bytes = FileBytes::read(file.fileName());
    QVERIFY(bytes);
    QCOMPARE(QByteArray(bytes->view().data(), static_cast<qsizetype>(bytes->size())), content);
    std::stop_source stop;
    stop.request_stop();
    QVERIFY(!FileBytes::read(file.fileName(), nullptr, stop.get_token()));
}

void TestFileBytes::saysWhyNothingIsRead()
{
    const auto failureOf = [](const QString& path) {
        int failure = 0;
        return FileBytes::read(path, &failure) ? 0 : failure;
    };
    const QString fifo = theFolder.filePath(u"fifo"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    QCOMPARE(failureOf(theFolder.filePath(u"none"_s)), ENOENT);
    QCOMPARE(failureOf(theFolder.path()), EISDIR);
    for (const QString& endless : {fifo, u"/dev/zero"_s})
        QCOMPARE(failureOf(endless), int(OutputFile::isNoRegularFile));
}

void TestFileBytes::keepsItsBytesFromEverybody()
{
    const auto bytes = FileBytes::copy("content");
    QVERIFY(bytes);
    QCOMPARE(::pwrite(bytes->descriptor(), "X", 1, 0), -1);
    QCOMPARE(::ftruncate(bytes->descriptor(), 0), -1);
    QCOMPARE(
        ::mmap(nullptr, 7, PROT_READ | PROT_WRITE, MAP_SHARED, bytes->descriptor(), 0), MAP_FAILED);
}

/// What another process says of the memory that it has filled is only its word.
void TestFileBytes::takesOverAsMuchAsThereIs()
{
    QVERIFY(!FileBytes::adopt(::open("/dev/null", O_RDWR), 0));
    const auto filled = [](off_t size) {
        const int memory = ::memfd_create("filled", MFD_ALLOW_SEALING);
        const bool isReady = ::ftruncate(memory, size) == 0
            && ::fcntl(memory, F_ADD_SEALS, F_SEAL_GROW) == 0
            && ::write(memory, "document", 8) == 8;
        return isReady ? memory : -1;
    };
    QVERIFY(!FileBytes::adopt(filled(4096), 4097));
    QVERIFY(!FileBytes::adopt(filled(4096), ~std::size_t{0}));
    const auto bytes = FileBytes::adopt(filled(4096), 8);
    QVERIFY(bytes);
    QCOMPARE(bytes->view(), std::string_view("document"));
    const int mapped = filled(4096);
    void* const view = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, mapped, 0);
    QVERIFY(view != MAP_FAILED);
    QVERIFY(!FileBytes::adopt(mapped, 8));
    ::munmap(view, 4096);
}

void TestFileBytes::sharesItsBeginning()
{
    const QString path = theFolder.filePath(u"saved.pdf"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("first, second") == 13);
    file.close();
    std::optional<FileBytes> bytes = FileBytes::read(path);
    QVERIFY(bytes);
    std::optional<FileBytes> first = bytes->prefix(5);
    QCOMPARE(first->view(), std::string_view("first"));
    QCOMPARE(first->view().data(), bytes->view().data());
    QCOMPARE(first->descriptor(), bytes->descriptor());
    QCOMPARE(first->prefix(9).size(), 5U);
    QCOMPARE(bytes->prefix(99).size(), 13U);
    QCOMPARE(FileBytes().prefix(1).size(), 0U);
    bytes.reset();
    QCOMPARE(first->view(), std::string_view("first"));
    QVERIFY(OpenedFiles::contains(path.toStdString()));
    first.reset();
    QVERIFY(!OpenedFiles::contains(path.toStdString()));
}

QTEST_APPLESS_MAIN(TestFileBytes)
#include "tst_FileBytes.moc"
