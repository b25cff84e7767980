#include "frame/RecentFiles.h"
#include "settings/StoredList.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

const QString addition = u"--add"_s;

} // namespace

class TestStoredList : public QObject
{
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }
    void programsSeeWhatOthersAdded();
    void programsAtOnceLoseNothing();
};

void TestStoredList::programsSeeWhatOthersAdded()
{
    RecentFiles one;
    RecentFiles other;
    QSignalSpy changed(&one, &RecentFiles::changed);
    one.add(u"/a.pdf"_s);
    other.add(u"/b.pdf"_s);
    const QStringList both = {u"/b.pdf"_s, u"/a.pdf"_s};
    QCOMPARE(RecentFiles().paths(), both);
    QCOMPARE(other.paths(), both);
    one.refresh();
    QCOMPARE(one.paths(), both);
    QCOMPARE(changed.size(), 2);
    one.remove(u"/x.pdf"_s); // nothing to tell anybody
    QCOMPARE(changed.size(), 2);
}

/// Each of the programs is this one, started with texts to add.
void TestStoredList::programsAtOnceLoseNothing()
{
    constexpr int programs = 4;
    constexpr int additions = 20;
    std::vector<std::unique_ptr<QProcess>> running;
    for (int program = 0; program < programs; ++program) {
        running.push_back(std::make_unique<QProcess>());
        running.back()->start(QCoreApplication::applicationFilePath(),
            {addition, QString::number(program), QString::number(additions)});
    }
    for (const auto& program : running) {
        QVERIFY(program->waitForFinished(120'000));
        QCOMPARE(program->exitCode(), 0);
    }
    QStringList texts = StoredList(u"texts"_s).texts();
    texts.removeDuplicates();
    QCOMPARE(texts.size(), programs * additions);
}

namespace {

void add(const QString& program, int count)
{
    const StoredList list(u"texts"_s);
    for (int number = 0; number < count; ++number) {
        list.change([&](QStringList& texts) { texts.append(u"%1/%2"_s.arg(program).arg(number)); });
    }
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"Tarnwick"_s);
    QCoreApplication::setApplicationName(u"tst_StoredList"_s);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == addition) {
        add(arguments.value(2), arguments.value(3).toInt());
        return 0;
    }
    TestStoredList test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_StoredList.moc"
