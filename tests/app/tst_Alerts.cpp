#include "AppDelegate.h"

#include "ClipboardText.h"
#include "ExportPanel.h"
#include "OpenFailureAlert.h"
#include "dialogs/Alert.h"
#include "files/FileBytes.h"
#include "pages/PDFView.h"
#include "printing/PrintPanel.h"
#include "text/PlainTextStorage.h"
#include "update/UpdateCheck.h"

#include "support/Files.h"
#include "support/LoopbackServer.h"
#include "support/Panels.h"
#include "support/Rows.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// What alerts come up in front of and are about.
struct Scene
{
    Scene()
    {
        writeFile(path(u"opened.pdf"_s), "the opened file");
        opened = FileBytes::read(path(u"opened.pdf"_s));
        writeFile(path(u"file.pdf"_s), {});
        QDir(folder.path()).mkpath(u"full/sub"_s);
        window.show();
    }
    QString path(const QString& name) const { return folder.filePath(name); }
    void confirm(ExportPanel* panel, const QString& name)
    {
        panel->propose(folder.path(), name);
        nameField(panel)->setText(name);
        panel->open();
        QTest::keyClick(nameField(panel), Qt::Key_Return);
    }
    void exportFile(const QString& name)
    {
        confirm(new ExportPanel(u"Export"_s, QStringList(u"pdf"_s), u"PDF"_s, &window), name);
    }
    void exportFolder(const QString& name)
    {
        confirm(new ExportPanel(u"Export"_s, u"Save"_s, u"Where"_s, &window), name);
    }
    void print(const QString& name)
    {
        printer.setOutputFormat(QPrinter::PdfFormat);
        auto* const panel = new PrintPanel(&printer, &window);
        panel->open();
        panel->findChild<QLineEdit*>(u"filename"_s)->setText(path(name));
        panel->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    }
    void follow(const char* address)
    {
        PDFLink link;
        link.page = -1;
        link.url = QUrl(QString::fromLatin1(address));
        view.followLink(link);
    }
    void fail(const QStringList& names, bool hasSource = false)
    {
        OpenFailureAlert::OpenSource open;
        if (hasSource)
            open = [] { };
        for (const QString& name : names)
            OpenFailureAlert::report(&window, name, u"It is a folder."_s, open);
    }
    void checkForUpdates(const QString& version)
    {
        server.answer("/",
            "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nConnection: close\r\n\r\n"
            "({ AppName = Tarnwick; Version = \"<b>2\"; URL = \"http://a/\"; })");
        check.setDownloadPrefix(u"http://a/"_s);
        check.start(version, server.address());
    }

    QTemporaryDir folder;
    std::optional<FileBytes> opened;
    QPrinter printer;
    AppDelegate delegate;
    QWidget window;
    PDFView view{&window};
    LoopbackServer server;
    UpdateCheck check;
};

} // namespace

/// Every alert of the program: what it says, blocks, and does for Enter and Escape.
class TestAlerts : public QObject
{
    Q_OBJECT

private slots:
    void saysAndAnswers_data();
    void saysAndAnswers();
    void answersWhatWasChosen();
};

using Raise = std::function<void(Scene&)>;
using SaysAndAnswers = Rows<Raise, QString, QString, QString>;

void TestAlerts::saysAndAnswers_data()
{
    const auto row
        = [table = SaysAndAnswers()](const char* name, const Raise& raise, const char* kind,
              const char* said, const char* answers = "[OK], Escape: OK") {
              table(name, raise, kind, said, answers);
          };
    const auto exports = [](const char* name, bool isFolder) -> Raise {
        return [name = QString::fromUtf8(name), isFolder](
                   Scene& scene) { isFolder ? scene.exportFolder(name) : scene.exportFile(name); };
    };
    row(
        "a file that cannot be opened", [](Scene& s) { s.fail({u"<b>a.pdf"_s}); },
        "warning, blocks nothing", "“<b>a.pdf” could not be opened.|It is a folder.");
    row(
        "a file that could be read", [](Scene& s) { s.fail({u"<b>a.pdf"_s}, true); },
        "warning, blocks nothing", "“<b>a.pdf” could not be opened.|It is a folder.",
        "Open Source [OK], Escape: OK");
    row(
        "several",
        [](Scene& s) {
            s.fail({u"<b>a"_s, u"b"_s});
        },
        "warning, blocks nothing",
        "2 files could not be opened.|“<b>a”: It is a folder.\n“b”: It is a folder.");
    row(
        "about", [](Scene& s) { s.delegate.about(); }, "information, blocks nothing",
        "Tarnwick |Shows what a PDF file is made of: its pages, its source, its objects and its "
        "saved versions.\n\nFree software under the GNU Affero General Public License, version 3 "
        "or "
        "later. It comes with no warranty.");
    row(
        "no browser", [](Scene& s) { s.delegate.openSupport(); }, "information, blocks nothing",
        "No browser could be started.|The page’s address is https://www.tarnwick.example/support");
    row(
        "an update", [](Scene& s) { s.checkForUpdates(u"1"_s); }, "information, blocks all",
        "An update to this app to version <b>2 is available.|You are currently running Tarnwick "
        "version 1.\nPlease choose whether to download this update now in your default browser.",
        "Download [Ignore], Escape: Ignore");
    row(
        "no update check", [](Scene& s) { s.checkForUpdates({}); }, "critical, blocks all",
        "An error occurred:|Can't check for updates:\nNo app version string found.");
    row(
        "a copy that is too long",
        [](Scene& s) {
            const auto text
                = std::make_shared<PlainTextStorage>(QString(ClipboardText::mostUnits + 1, u'x'));
            ClipboardText::copy(text, {{0, 0}, {0, ClipboardText::mostUnits + 1}}, &s.window);
        },
        "warning, blocks its window",
        "The selection is too long to be copied whole.|At most 33,554,432 characters can be copied "
        "at once.",
        "Cancel [Copy the Beginning], Escape: Cancel");
    const char* const panel = "warning, blocks its window";
    row("an export over the opened file", exports("opened.pdf", false), panel,
        "“opened.pdf” is open, and an opened file is never written. Enter another name.|");
    row("an export over a file", exports("file.pdf", false), panel,
        "“file.pdf” already exists. Do you want to replace it?|", "Yes [No], Escape: No");
    row("an export into files", exports("full", true), panel,
        "The folder “full” already exists. Files in it that have the name of a version will be "
        "replaced.|",
        "Yes [No], Escape: No");
    row("an export into a file", exports("file.pdf", true), panel,
        "“file.pdf” is a file. Enter another name.|");
    row(
        "printing over the opened file", [](Scene& s) { s.print(u"opened.pdf"_s); }, panel,
        "“opened.pdf” is open, and an opened file is never written. Enter another name.|");
    row(
        "a link to a file", [](Scene& s) { s.follow("file:///bin/<b>sh"); },
        "information, blocks its window",
        "This link leads to a file or a program.|Such links are never "
        "followed:\nfile:///bin/%3Cb%3Esh");
    row(
        "a link to a page", [](Scene& s) { s.follow("https://a.example/?<b>"); },
        "question, blocks its window",
        "Open this address outside of the document?|https://a.example/?%3Cb%3E",
        "Open [Cancel], Escape: Cancel");
}

void TestAlerts::saysAndAnswers()
{
    const auto [raise, kind, said, answers] = SaysAndAnswers::fetch();
    Scene scene;
    raise(scene);
    QTRY_VERIFY_WITH_TIMEOUT(shown<Alert>(), 60'000);
    Alert* const alert = shown<Alert>();
    static const QHash<int, QString> icons
        = {{QMessageBox::Warning, u"warning"_s}, {QMessageBox::Information, u"information"_s},
            {QMessageBox::Critical, u"critical"_s}, {QMessageBox::Question, u"question"_s}};
    static const QHash<int, QString> modalities = {{Qt::NonModal, u"nothing"_s},
        {Qt::WindowModal, u"its window"_s}, {Qt::ApplicationModal, u"all"_s}};
    QCOMPARE(icons[alert->icon()] + u", blocks " + modalities[alert->windowModality()], kind);
    QCOMPARE(QString(alert->text() + u'|' + alert->informativeText()), said);
    for (const QLabel* label : alert->findChildren<QLabel*>())
        QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    QStringList texts;
    for (const QAbstractButton* button : alert->buttons())
        texts << (button == alert->defaultButton() ? u"[%1]"_s : u"%1"_s).arg(button->text());
    QString escaped;
    connect(alert, &QDialog::finished, this,
        [alert, &escaped] { escaped = alert->clickedButton()->text(); });
    const QPointer<Alert> closed = alert;
    QTest::keyClick(alert, Qt::Key_Escape);
    QTRY_VERIFY(!closed);
    texts.sort();
    QCOMPARE(QString(texts.join(u' ') + u", Escape: " + escaped).remove(u'&'), answers);
}

/// Only the answer that was given is heard; closing the alert gives the one that changes nothing.
void TestAlerts::answersWhatWasChosen()
{
    for (const QString& chosen : {u"A"_s, u"B"_s, QString()}) {
        QString heard;
        const QPointer<Alert> alert
            = new Alert(QMessageBox::Question, u"Title"_s, u"Text"_s, nullptr);
        QPushButton* const first
            = alert->addAnswer(QMessageBox::Cancel, [&heard] { heard += u'A'; });
        QPushButton* const second = alert->addAnswer(u"B"_s, [&heard] { heard += u'B'; });
        alert->comeUp();
        if (chosen.isEmpty())
            alert->close();
        else
            (chosen == u'A' ? first : second)->click();
        QTRY_VERIFY(!alert);
        QCOMPARE(heard, chosen.isEmpty() ? u"A"_s : chosen);
    }
}

QTEST_MAIN(TestAlerts)
#include "tst_Alerts.moc"
