#include "UpdateDownload.h"
#include "support/LoopbackServer.h"
#include "support/Panels.h"
#include "support/Rows.h"
#include "update/UpdateCheck.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

constexpr int patience = 60'000; // milliseconds: machines that test are busy
const QString prefix = u"https://site.example/app/"_s;

QByteArray feed(const QList<QPair<QString, QString>>& versionsAndAddresses)
{
    QString text = u"("_s;
    for (const auto& [version, address] : versionsAndAddresses) {
        text += u"{ AppName = Tarnwick; Version = \"%1\"; URL = \"%2\"; },"_s.arg(version, address);
    }
    return QString(text + u')').toUtf8();
}

/// An answer in HTTP; its length is the body's unless the headers say another.
QByteArray response(const QByteArray& status, QByteArray headers, const QByteArray& body)
{
    if (!headers.contains("Content-Length"))
        headers += "\r\nContent-Length: " + QByteArray::number(body.size());
    return "HTTP/1.1 " + status + "\r\n" + headers + "\r\nConnection: close\r\n\r\n" + body;
}

const QByteArray typeHeader = "Content-Type: text/plain";

QByteArray feedAnswer(const QList<QPair<QString, QString>>& versionsAndAddresses)
{
    return response("200 OK", typeHeader, feed(versionsAndAddresses));
}

void press(const QMessageBox& alert, const char* button)
{
    const QList<QAbstractButton*> buttons = alert.buttons();
    for (QAbstractButton* each : buttons) {
        if (each->text() == QLatin1String(button))
            each->click();
    }
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

    void run(const QString& version = u"1.0"_s)
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
    void endsWithAlertsOpen();
    void needsAVersionAndAWebServer();
};

void TestUpdateCheck::initTestCase()
{
    for (const char* variable : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
        qunsetenv(variable);
}

void TestUpdateCheck::cleanup()
{
    QVERIFY(!shown<QMessageBox>());
}

using Answers = Rows<QByteArray, bool, QString>;

void TestUpdateCheck::answers_data()
{
    const Answers row;
    const auto text = [](const QByteArray& body) { return response("200 OK", typeHeader, body); };
    const char* unreadable = "Error in update Property List.";
    const QByteArray current = feed({{u"1.0"_s, prefix}});
    row("up to date", text(current), true, {});
    row("status 404", response("404 Not Found", typeHeader, current), false, {});
    row("an empty list", text("()"), false, "Update Property List has no entries.");
    row("random bytes", text("\x93\x01\xfe\x80("), false, unreadable);
    row("entries that are none", text("(a, (), <00>, {}, { AppName = (); })"), false, {});
    row("a body that breaks off",
        response("200 OK", typeHeader + "\r\nContent-Length: 9999", current), false, {});
    row("no HTTP", "220 mail.example\r\n", false, {});
    row("hangs up", {}, false, {});
}

void TestUpdateCheck::answers()
{
    const auto [answer, isHeld, error] = Answers::fetch();
    Fixture fixture;
    fixture.server.answer("/", answer);
    fixture.run();
    QCOMPARE(fixture.held.count(), isHeld ? 1 : 0);
    QMessageBox* alert = shown<QMessageBox>();
    QCOMPARE(alert != nullptr, !error.isEmpty());
    if (!alert)
        return;
    QCOMPARE(alert->informativeText(), error);
    press(*alert, "OK");
}

using FollowsRedirects = Rows<int, QString, bool>;

void TestUpdateCheck::followsRedirects_data()
{
    const FollowsRedirects row;
    row("moved for good", 301, "/feed", true);
    row("found elsewhere", 302, "/feed", true);
    row("to another scheme", 302, "https://127.0.0.1:PORT/feed", false);
    row("to a file", 302, "file:///etc/hostname", false);
    row("to itself", 302, "/", false);
}

void TestUpdateCheck::followsRedirects()
{
    const auto [status, written, isHeld] = FollowsRedirects::fetch();
    Fixture fixture;
    // A server that is there: one that is not would refuse the redirect by itself.
    const QString target
        = QString(written).replace("PORT"_L1, QString::number(fixture.server.address().port()));
    fixture.server.answer("/feed", feedAnswer({{u"1.0"_s, prefix}}));
    fixture.server.answer(
        "/", response(QByteArray::number(status) + " Moved", "Location: " + target.toLatin1(), ""));
    fixture.run();
    QCOMPARE(fixture.held.count(), isHeld ? 1 : 0);
    // The network layer may ask again where a server hangs up, so no exact count.
    QVERIFY2(fixture.server.requests().size() < 60,
        qPrintable(QString::number(fixture.server.requests().size())));
}

void TestUpdateCheck::stopsReadingHugeBodies()
{
    const QByteArray comment(UpdateDownload::maximumSize - 200, '/');
    const QByteArray body = feed({{u"1.0"_s, prefix}});
    Fixture fitting;
    fitting.server.answer("/", response("200 OK", typeHeader, comment + "\n" + body));
    fitting.run();
    QCOMPARE(fitting.held.count(), 1);

    Fixture huge;
    huge.server.answer(
        "/", response("200 OK", typeHeader, QByteArray(64 << 20, '/') + "\n" + body));
    huge.run();
    QCOMPARE(huge.held.count(), 0);
    QVERIFY(huge.server.bytesSent() < 32 << 20);
    QMessageBox* alert = shown<QMessageBox>();
    QVERIFY(alert);
    QCOMPARE(alert->informativeText(), u"Error in update Property List."_s);
    press(*alert, "OK");
}

using OffersAnUpdate = Rows<QString, bool, QString, QStringList, QString>;

void TestUpdateCheck::offersAnUpdate_data()
{
    const OffersAnUpdate row;
    const QString good = prefix + u"2.zip"_s;
    const char* noAddress = "The update's address is not a web address:";
    row("ignored", good, true, "Ignore", {}, "");
    row("closed", good, true, "", {}, "");
    row("downloaded", good, true, "Download", {good}, "");
    row("no browser", good, false, "Download", {good}, "No browser could be started.");
    row("no address", u"::"_s + prefix, true, "Download", {}, noAddress);
    row("a file", u"file:///"_s + prefix, true, "Download", {}, noAddress);
}

void TestUpdateCheck::offersAnUpdate()
{
    const auto [address, canOpen, button, opened, problem] = OffersAnUpdate::fetch();
    Fixture fixture;
    fixture.canOpen = canOpen;
    fixture.server.answer("/", feedAnswer({{u"0.5"_s, address}, {u"1.0"_s, prefix}}));
    fixture.run();
    QCOMPARE(fixture.held.count(), 1);
    QPointer<QMessageBox> alert = shown<QMessageBox>();
    QVERIFY(alert);
    if (button.isEmpty())
        alert->close();
    else
        press(*alert, qPrintable(button));
    QTRY_VERIFY(!alert);
    QCOMPARE(fixture.opened, opened);
    if (problem.isEmpty())
        return;
    QTRY_VERIFY(shown<QMessageBox>());
    QVERIFY(shown<QMessageBox>()->informativeText().startsWith(problem));
    press(*shown<QMessageBox>(), "OK");
}

void TestUpdateCheck::alertsFollowEachOther()
{
    Fixture fixture;
    fixture.server.answer("/", feedAnswer({{u"2"_s, prefix}, {u"3"_s, prefix + u'x'}}));
    fixture.run();
    QPointer<QMessageBox> first = shown<QMessageBox>();
    QVERIFY(first && first->text().contains(u"version 2 "_s));
    press(*first, "Download");
    QTRY_VERIFY(!first && shown<QMessageBox>());
    QVERIFY(shown<QMessageBox>()->text().contains(u"version 3 "_s));
    press(*shown<QMessageBox>(), "Download");
    QCOMPARE(fixture.opened, QStringList({prefix, prefix + u'x'}));
}

void TestUpdateCheck::endsWithAlertsOpen()
{
    Fixture fixture;
    fixture.server.answer("/", feedAnswer({{u"2"_s, prefix}, {u"3"_s, prefix}}));
    fixture.run();
    QVERIFY(shown<QMessageBox>());
    // From within the event loop, as the program ends.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(fixture.opened.isEmpty());
}

void TestUpdateCheck::needsAVersionAndAWebServer()
{
    Fixture unversioned;
    unversioned.run(QString());
    press(*shown<QMessageBox>(), "OK");
    QVERIFY(unversioned.server.requests().isEmpty());
    for (const char* address : {"file:///etc/hostname", "data:text/plain,()", "", "http://", "x"}) {
        UpdateCheck check;
        QSignalSpy ended(&check, &UpdateCheck::ended);
        check.start(u"1.0"_s, QUrl(QLatin1String(address)));
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, patience);
        QVERIFY(!shown<QMessageBox>());
    }
}

QTEST_MAIN(TestUpdateCheck)
#include "tst_UpdateCheck.moc"
