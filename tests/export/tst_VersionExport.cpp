#include "ExportPanel.h"
#include "export/VersionExport.h"

#include "NoticeLine.h"
#include "frame/DocumentWindow.h"

#include "support/Files.h"
#include "support/Panels.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

const QByteArray file = "%PDF-1.7\n%%EOF\nsecond\n%%EOF\nthird\n%%EOF\r\n";

} // namespace

class TestVersionExport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void panelProposesAFolder();
    void writesTheVersions();
    void writesTheChosenOnesAndReplacesNone();
    void asksBeforeItUsesAFolderWithFiles();
    void refusesAFolderWithTheOpenedFile();
    void saysWhatWasWritten();
    void endsWithItsWindow();

private:
    ExportPanel* open(const QString& path, const QString& displayName = {},
        const std::vector<std::size_t>& chosen = {})
    {
        ExportSource source;
        source.filePath = path;
        source.displayName = displayName;
        source.bytes = *FileBytes::copy({file.constData(), std::size_t(file.size())});
        source.window = theWindow.get();
        VersionExport::begin(source, chosen);
        return shown<ExportPanel>();
    }
    QString path(const QString& name) const { return theHome->filePath(name); }
    QStringList names(const QString& folder) const
    {
        return QDir(path(folder)).entryList(QDir::Files | QDir::Hidden);
    }

    std::unique_ptr<QTemporaryDir> theHome;
    std::unique_ptr<DocumentWindow> theWindow;
};

void TestVersionExport::init()
{
    QApplication::setQuitOnLastWindowClosed(false);
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    theWindow = std::make_unique<DocumentWindow>(u"Test Window"_s);
    theWindow->show();
}

void TestVersionExport::cleanup()
{
    if (auto* const panel = shown<ExportPanel>())
        panel->reject();
    QTRY_COMPARE(qApp->findChildren<VersionExport*>().size(), 0);
    theWindow.reset();
    QVERIFY(!shown<QDialog>());
}

void TestVersionExport::panelProposesAFolder()
{
    const std::array<QString, 3> cases[] = {
        {u"/none/report.pdf"_s, u"x"_s, u"report-Copy-pdf"_s},
        {u""_s, u"1/2"_s, u"1-2-Copy"_s},
        {u""_s, u""_s, u"Untitled-Copy"_s},
    };
    for (const auto& [opened, displayName, proposed] : cases) {
        ExportPanel* const panel = open(opened, displayName);
        QVERIFY(panel);
        QCOMPARE(panel->windowModality(), Qt::WindowModal);
        QCOMPARE(panel->parentWidget(), theWindow.get());
        QCOMPARE(nameField(panel)->text(), proposed);
        QCOMPARE(panel->findChild<QLabel*>(u"messageLabel"_s)->text(),
            u"Enter the name of a new folder to contain versions"_s);
        const auto* const box = panel->findChild<QDialogButtonBox*>();
        QCOMPARE(box->button(QDialogButtonBox::Save)->text(), u"Save to folder"_s);
        panel->reject();
    }
}

void TestVersionExport::writesTheVersions()
{
    for (const QString& name : {u"report-Copy-pdf"_s, u"a/b c/d"_s, u"a\"b\"c"_s}) {
        const ExportPanel* const panel = open(path(u"report.pdf"_s));
        nameField(panel)->setText(name);
        QTest::keyClick(nameField(panel), Qt::Key_Return);
        QTRY_COMPARE(names(name).size(), 3);
        QCOMPARE(names(name).first(), u"report-001.pdf"_s);
        QCOMPARE(contentOf(path(name + u"/report-002.pdf")), file.first(28));
        QCOMPARE(contentOf(path(name + u"/report-003.pdf")), file.first(file.size() - 1));
        QTRY_VERIFY(!shown<ExportPanel>());
    }
}

void TestVersionExport::writesTheChosenOnesAndReplacesNone()
{
    ExportPanel* const panel = open(path(u"report.pdf"_s), {}, {2, 3});
    QVERIFY(QDir(theHome->path()).mkpath(u"a"_s));
    writeFile(path(u"a/report-003.pdf"_s), "another");
    nameField(panel)->setText(u"a"_s);
    QTest::keyClick(nameField(panel), Qt::Key_Return);
    QVERIFY(answer(QMessageBox::Ok) && panel->isVisible());
    QCOMPARE(contentOf(path(u"a/report-003.pdf"_s)), "another");
    nameField(panel)->setText(u"b"_s);
    QTest::keyClick(nameField(panel), Qt::Key_Return);
    QTRY_COMPARE(names(u"b"_s), QStringList({u"report-002.pdf"_s, u"report-003.pdf"_s}));
    QCOMPARE(contentOf(path(u"b/report-002.pdf"_s)), file.first(28));
}

void TestVersionExport::asksBeforeItUsesAFolderWithFiles()
{
    QVERIFY(QDir(theHome->path()).mkpath(u"report-Copy-pdf/sub"_s));
    ExportPanel* const panel = open(path(u"report.pdf"_s));
    QLineEdit* const edit = nameField(panel);
    for (const auto button : {QMessageBox::No, QMessageBox::Yes}) {
        QVERIFY(panel->isVisible());
        QTest::keyClick(edit, Qt::Key_Return);
        QVERIFY(answer(button));
    }
    QTRY_COMPARE(names(u"report-Copy-pdf"_s).size(), 3);
}

void TestVersionExport::refusesAFolderWithTheOpenedFile()
{
    const QString opened = path(u"report.pdf"_s);
    writeFile(opened, file);
    const auto bytes = FileBytes::read(opened);
    QVERIFY(QDir(theHome->path()).mkdir(u"versions"_s));
    QVERIFY(QFile::link(opened, path(u"versions/report-002.pdf"_s)));
    ExportPanel* const panel = open(opened);
    for (const QString& folder : {u"versions"_s, u"report.pdf"_s}) { // which is a file itself
        nameField(panel)->setText(folder);
        QTest::keyClick(nameField(panel), Qt::Key_Return);
        QVERIFY(answer(QMessageBox::Ok));
        QVERIFY(panel->isVisible());
    }
    panel->reject();
    QCOMPARE(names(u"versions"_s), QStringList(u"report-002.pdf"_s));
    QCOMPARE(contentOf(opened), file);
}

void TestVersionExport::saysWhatWasWritten()
{
    const auto exported = [this](const QString& folder) {
        ExportPanel* const panel = open(path(u"report.pdf"_s));
        nameField(panel)->setText(folder);
        QTest::keyClick(nameField(panel), Qt::Key_Return);
        if (QDir(folder).exists())
            answer(QMessageBox::Yes);
        const auto& unread = theWindow->noticeLine()->unread();
        const bool isTold = QTest::qWaitFor([&unread] { return !unread.isEmpty(); });
        const QString text = isTold ? unread.first().text : u"nothing"_s;
        theWindow->noticeLine()->closeAll();
        return text;
    };
    const QString whole = path(u"new"_s);
    QCOMPARE(exported(whole), u"3 versions have been written to “%1”."_s.arg(whole));
    const QString part = path(u"part"_s);
    QVERIFY(QDir().mkpath(part + u"/report-002.pdf"));
    QCOMPARE(exported(part),
        u"“report-002.pdf” has not been written: Is a directory. 1 version has been written to "
        u"“%1”."_s.arg(part));
    QVERIFY(!shown<QDialog>());
    QCOMPARE(names(u"part"_s), QStringList(u"report-001.pdf"_s));
}

void TestVersionExport::endsWithItsWindow()
{
    QPointer<ExportPanel> panel = open(path(u"report.pdf"_s));
    theWindow.reset();
    QVERIFY(!panel);
    QTRY_COMPARE(qApp->findChildren<VersionExport*>().size(), 0);
}

QTEST_MAIN(TestVersionExport)
#include "tst_VersionExport.moc"
