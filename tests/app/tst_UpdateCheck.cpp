#include "app/UpdateCheck.h"
#include "app/UpdateDownload.h"
#include "support/LoopbackServer.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {

constexpr int patience = 60'000; // milliseconds: machines that test are busy
const QString prefix = QStringLiteral("https://site.example/app/");

QByteArray feed(const QList<QPair<QString, QString>>& versionsAndAddresses)
{
    QString text = QStringLiteral("(");
    for (const auto& [version, address] : versionsAndAddresses) {
        text += QStringLiteral("{ AppName = Tarnwick; Version = \"%1\"; URL = \"%2\"; },")
                    .arg(version, address);
    }
    return QString(text + QLatin1Char(')')).toUtf8();
}

QMessageBox* visibleAlert()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        auto* alert = qobject_cast<QMessageBox*>(window);
        if (alert && alert->isVisible())
            return alert;
    }
    return nullptr;
}

void press(const QMessageBox& alert, const char* button)
{
    const QList<QAbstractButton*> buttons = alert.buttons();
    for (QAbstractButton* each : buttons) {
        if (each->text() == QLatin1String(button))
            each->click();
    }
}

QStringList buttonTexts(const QMessageBox& alert)
{
    QStringList texts;
    const QList<QAbstractButton*> buttons = alert.buttons();
    for (const QAbstractButton* each : buttons)
        texts << each->text();
    return texts;
}

/// A check on a server of its own, which notes what it opens.
struct Fixture
{
    Fixture()
    {
        check.setDownloadPrefix(prefix);
        check.setAddressOpener([this](const QUrl& url) {
            opened << url.toString();
            return canOpen;
        });
    }

    void run(const QString& version = QStringLiteral("1.0"))
    {
        check.start(version, server.address());
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, patience);
    }

    LoopbackServer server;
    UpdateCheck check;
    QStringList opened;
    bool canOpen = true;
    QSignalSpy held{&check, &UpdateCheck::feedHeldThisApplication};
    QSignalSpy ended{&check, &UpdateCheck::ended};
};

const QByteArray typeHeader = "Content-Type: text/plain";

} // namespace

class TestUpdateCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void answers_data();
    void answers();
    void followsRedirects_data();
    void followsRedirects();
    void stopsReadingHugeBodies();
    void offersAnUpdate_data();
    void offersAnUpdate();
    void alertsFollowEachOther();
    void showsMarkupAsText();
    void endsWithAlertsOpen();
    void needsAVersion();
    void needsAWebServer();
};

void TestUpdateCheck::initTestCase()
{
    for (const char* variable : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
        qunsetenv(variable);
}

void TestUpdateCheck::cleanup()
{
    QVERIFY(!visibleAlert());
}

void TestUpdateCheck::answers_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<bool>("isHeld");
    QTest::addColumn<QString>("error");

    const auto row = [](const char* name, const QByteArray& status, const QByteArray& headers,
                         const QByteArray& body, bool isHeld, const char* error) {
        QTest::newRow(name) << "HTTP/1.1 " + status + "\r\n" + headers + "\r\n\r\n" + body << isHeld
                            << QString::fromLatin1(error);
    };
    const char* none = "";
    const char* unreadable = "Error in update Property List.";
    const QByteArray current = feed({{QStringLiteral("1.0"), prefix}});
    row("up to date", "200 OK", typeHeader, current, true, none);
    row("XML", "200 OK", "Content-Type: text/xml; charset=UTF-8",
        "<plist><array><dict><key>AppName</key><string>Tarnwick</string></dict></array></plist>",
        true, none);
    row("status 206", "206 Part", typeHeader, current, true, none);
    row("status 304", "304 Not Modified", typeHeader, "", false, none);
    row("status 404", "404 Not Found", typeHeader, current, false, none);
    row("status 500", "500 Broken", typeHeader, current, false, none);
    row("another media type", "200 OK", "Content-Type: application/xml", current, false, none);
    row("no media type", "200 OK", "X-Other: text/plain", current, false, none);
    row("an empty list", "200 OK", typeHeader, "()", false, "Update Property List has no entries.");
    row("random bytes", "200 OK", typeHeader, "\x93\x01\xfe\x80(", false, unreadable);
    row("no body", "200 OK", typeHeader + "\r\nContent-Length: 0", "", false, unreadable);
    row("a dictionary", "200 OK", typeHeader, "{ AppName = Tarnwick; }", false, unreadable);
    row("entries that are none", "200 OK", typeHeader, "(a, (), <00>, {}, { AppName = (); })",
        false, none);
    row("version and address of other kinds", "200 OK", typeHeader,
        "({ AppName = Tarnwick; Version = (2); URL = {}; })", true, none);
    row("a body that breaks off", "200 OK", typeHeader + "\r\nContent-Length: 9999", current, false,
        none);
    QTest::newRow("no HTTP") << QByteArray("220 mail.example\r\n") << false << QString();
    QTest::newRow("hangs up") << QByteArray() << false << QString();
}

void TestUpdateCheck::answers()
{
    QFETCH(QByteArray, response);
    QFETCH(bool, isHeld);
    QFETCH(QString, error);
    Fixture fixture;
    fixture.server.answerRaw("/", response);
    fixture.run();
    QCOMPARE(fixture.held.count(), isHeld ? 1 : 0);
    QMessageBox* alert = visibleAlert();
    QCOMPARE(alert != nullptr, !error.isEmpty());
    if (!alert)
        return;
    QCOMPARE(alert->text(), QStringLiteral("An error occurred:"));
    QCOMPARE(alert->informativeText(), error);
    QCOMPARE(alert->icon(), QMessageBox::Critical);
    QCOMPARE(buttonTexts(*alert), QStringList(QStringLiteral("OK")));
    press(*alert, "OK");
}

void TestUpdateCheck::followsRedirects_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("target"); // empty: the feed on the same server
    QTest::addColumn<bool>("isHeld");
    QTest::newRow("moved for good") << 301 << QString() << true;
    QTest::newRow("found elsewhere") << 302 << QString() << true;
    QTest::newRow("the same request elsewhere") << 307 << QString() << true;
    QTest::newRow("to another scheme") << 302 << "https://127.0.0.1:1/feed" << false;
    QTest::newRow("to a file") << 302 << "file:///etc/hostname" << false;
    QTest::newRow("to itself") << 302 << "/" << false;
}

void TestUpdateCheck::followsRedirects()
{
    QFETCH(int, status);
    QFETCH(QString, target);
    QFETCH(bool, isHeld);
    Fixture fixture;
    fixture.server.answer("/feed", 200, {typeHeader}, feed({{QStringLiteral("1.0"), prefix}}));
    const QString location = target.isEmpty() ? QStringLiteral("/feed") : target;
    fixture.server.answer("/", status, {typeHeader, "Location: " + location.toLatin1()}, "");
    fixture.run();
    QCOMPARE(fixture.held.count(), isHeld ? 1 : 0);
    // The network layer may ask again where a server hangs up, so no exact count.
    QVERIFY2(fixture.server.requests().size() < 60,
        qPrintable(QString::number(fixture.server.requests().size())));
}

void TestUpdateCheck::stopsReadingHugeBodies()
{
    const QByteArray comment(UpdateDownload::maximumSize - 200, '/');
    const QByteArray body = feed({{QStringLiteral("1.0"), prefix}});
    Fixture fitting;
    fitting.server.answer("/", 200, {typeHeader}, comment + "\n" + body);
    fitting.run();
    QCOMPARE(fitting.held.count(), 1);

    Fixture huge;
    huge.server.answer("/", 200, {typeHeader}, QByteArray(64 << 20, '/') + "\n" + body);
    huge.run();
    QCOMPARE(huge.held.count(), 0);
    QVERIFY(huge.server.bytesSent() < 32 << 20);
    QMessageBox* alert = visibleAlert();
    QVERIFY(alert);
    QCOMPARE(alert->informativeText(), QStringLiteral("Error in update Property List."));
    press(*alert, "OK");
}

void TestUpdateCheck::offersAnUpdate_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("canOpen");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("opened");
    QTest::addColumn<QString>("problem");
    const QString good = prefix + QStringLiteral("2.zip");
    QTest::newRow("ignored") << good << true << "Ignore" << QStringList() << QString();
    QTest::newRow("closed") << good << true << QString() << QStringList() << QString();
    QTest::newRow("downloaded") << good << true << "Download" << QStringList(good) << QString();
    QTest::newRow("no browser") << good << false << "Download" << QStringList(good)
                                << "No browser could be started.";
    const QString noAddress = QStringLiteral("The update's address is not a web address:");
    QTest::newRow("no address") << QString(QStringLiteral("::") + prefix) << true << "Download"
                                << QStringList() << noAddress;
    QTest::newRow("a file") << QString(QStringLiteral("file:///") + prefix) << true << "Download"
                            << QStringList() << noAddress;
}

void TestUpdateCheck::offersAnUpdate()
{
    QFETCH(QString, address);
    QFETCH(QString, button);
    QFETCH(QStringList, opened);
    QFETCH(QString, problem);
    Fixture fixture;
    fixture.canOpen = *static_cast<const bool*>(QTest::qData("canOpen", qMetaTypeId<bool>()));
    // Slowly: an update is offered when all of it has come, not before.
    fixture.server.answerSlowly("/", {typeHeader},
        feed({{QStringLiteral("0.5"), address}, {QStringLiteral("1.0"), prefix}}));
    fixture.run();
    QCOMPARE(fixture.held.count(), 1);
    QPointer<QMessageBox> alert = visibleAlert();
    QVERIFY(alert);
    QCOMPARE(alert->text(), QStringLiteral("An update to this app to version 0.5 is available."));
    QVERIFY(alert->informativeText().startsWith(
        QStringLiteral("You are currently running Tarnwick version 1.0.\n")));
    QCOMPARE(alert->icon(), QMessageBox::Information);
    QCOMPARE(alert->windowModality(), Qt::ApplicationModal);
    QCOMPARE(
        buttonTexts(*alert), QStringList({QStringLiteral("Ignore"), QStringLiteral("Download")}));
    QCOMPARE(alert->defaultButton()->text(), QStringLiteral("Ignore"));
    if (button.isEmpty())
        alert->close();
    else
        press(*alert, qPrintable(button));
    QTRY_VERIFY(!alert);
    QCOMPARE(fixture.opened, opened);
    if (problem.isEmpty())
        return;
    QTRY_VERIFY(visibleAlert());
    QVERIFY(visibleAlert()->informativeText().startsWith(problem));
    press(*visibleAlert(), "OK");
}

void TestUpdateCheck::alertsFollowEachOther()
{
    Fixture fixture;
    fixture.server.answer("/", 200, {typeHeader},
        feed({{QStringLiteral("2"), prefix}, {QStringLiteral("3"), prefix + u'x'}}));
    fixture.run();
    QPointer<QMessageBox> first = visibleAlert();
    QVERIFY(first && first->text().contains(QStringLiteral("version 2 ")));
    press(*first, "Download");
    QTRY_VERIFY(!first && visibleAlert());
    QVERIFY(visibleAlert()->text().contains(QStringLiteral("version 3 ")));
    press(*visibleAlert(), "Download");
    QCOMPARE(fixture.opened, QStringList({prefix, prefix + u'x'}));
}

void TestUpdateCheck::showsMarkupAsText()
{
    Fixture fixture;
    fixture.server.answer("/", 200, {typeHeader}, feed({{QStringLiteral("<h1>2</h1>"), prefix}}));
    fixture.run();
    QMessageBox* alert = visibleAlert();
    QVERIFY(alert);
    const QList<QLabel*> labels = alert->findChildren<QLabel*>();
    for (const QLabel* label : labels)
        QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    press(*alert, "Ignore");
}

void TestUpdateCheck::endsWithAlertsOpen()
{
    Fixture fixture;
    fixture.server.answer("/", 200, {typeHeader},
        feed({{QStringLiteral("2"), prefix}, {QStringLiteral("3"), prefix}}));
    fixture.run();
    QVERIFY(visibleAlert());
    // From within the event loop, as the program ends.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(fixture.opened.isEmpty());
}

void TestUpdateCheck::needsAVersion()
{
    Fixture fixture;
    fixture.run(QString());
    QMessageBox* alert = visibleAlert();
    QVERIFY(alert);
    QCOMPARE(alert->informativeText(),
        QStringLiteral("Can't check for updates:\nNo app version string found."));
    press(*alert, "OK");
    QVERIFY(fixture.server.requests().isEmpty());
}

void TestUpdateCheck::needsAWebServer()
{
    for (const char* address : {"file:///etc/hostname", "data:text/plain,()", "", "http://", "x"}) {
        UpdateCheck check;
        QSignalSpy ended(&check, &UpdateCheck::ended);
        check.start(QStringLiteral("1.0"), QUrl(QLatin1String(address)));
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, patience);
        QVERIFY(!visibleAlert());
    }
}

QTEST_MAIN(TestUpdateCheck)
#include "tst_UpdateCheck.moc"
