#include "versions/VersionHashes.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QTest>

using namespace tarnwick;

class TestVersionHashes : public QObject
{
    Q_OBJECT

private slots:
    void areThoseOfThePrefixes();
};

namespace {

QByteArray randomBytes(qsizetype size)
{
    QByteArray bytes(size, '\0');
    QRandomGenerator generator(1);
    for (char& byte : bytes)
        byte = static_cast<char>(generator.generate());
    return bytes;
}

std::string hashOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().toStdString();
}

} // namespace

void TestVersionHashes::areThoseOfThePrefixes()
{
    const QByteArray bytes = randomBytes(15 << 20);
    const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const std::vector<std::size_t> ends{5, 1000, 5U << 20U, view.size()};
    std::stop_source stop;
    std::uint64_t told = 0;
    const auto take = [&](std::size_t index, const Sha256::Digest& digest) {
        QCOMPARE(hexadecimal(digest), hashOf(bytes.first(static_cast<qsizetype>(ends[index]))));
        told += index;
    };
    const auto tell = [&](std::uint64_t done, std::uint64_t total) {
        QCOMPARE(total, view.size());
        if (told == 3 && done > (6U << 20U))
            stop.request_stop();
    };
    QVERIFY(hashVersions(view, ends, take));
    QCOMPARE(told, 6U);
    told = 0;
    QVERIFY(!hashVersions(view, ends, take, stop.get_token(), tell)); // before the last one
    QCOMPARE(told, 3U);
}

QTEST_APPLESS_MAIN(TestVersionHashes)
#include "tst_VersionHashes.moc"
