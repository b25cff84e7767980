#include "update/UpdateCheck.h"

#include "FeedEntries.h"
#include "PropertyList.h"
#include "UpdateDownload.h"
#include "dialogs/Alert.h"

#include <QApplication>
#include <QDesktopServices>
#include <QPushButton>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

QString qString(std::u16string_view text)
{
    return QString::fromUtf16(text.data(), qsizetype(text.size()));
}

std::u16string_view textOf(const QString& string)
{
    return {reinterpret_cast<const char16_t*>(string.utf16()), std::size_t(string.size())};
}

/// The text as an alert can show it: what is too long for any version or address is cut.
QString shown(QString text)
{
    constexpr qsizetype longest = 300;
    if (text.size() > longest)
        text = text.left(longest) + QChar(0x2026);
    return text;
}

/// The window that an alert belongs to, so that it comes up over it: the active one, or else any.
QWidget* windowForAlert()
{
    if (QWidget* active = QApplication::activeWindow())
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->isVisible() && window->windowType() == Qt::Window)
            return window;
    }
    return nullptr;
}

Alert* makeAlert(QMessageBox::Icon icon, const QString& message, const QString& details)
{
    auto* const alert = new Alert(icon, QApplication::applicationDisplayName(), message,
        windowForAlert(), Alert::Blocking::isProgram);
    alert->setTexts(message, details);
    return alert;
}

} // namespace

UpdateCheck::UpdateCheck(QObject* parent)
    : QObject(parent)
    , theDownloadPrefix(QString::fromLatin1(TARNWICK_DOWNLOAD_PREFIX))
    , openAddress(QDesktopServices::openUrl)
{
}

UpdateCheck::~UpdateCheck()
{
    if (theAlert) {
        theAlert->disconnect(this);
        delete theAlert;
    }
}

void UpdateCheck::start(const QString& runningVersion, const QUrl& feedAddress)
{
    if (theDownload)
        return;
    theVersion = runningVersion;
    if (theVersion.isEmpty()) {
        queueError(UpdateTexts::noVersion);
        emit ended();
        return;
    }
    theDownload = new UpdateDownload(this);
    connect(theDownload, &UpdateDownload::received, this, &UpdateCheck::readBody);
    connect(theDownload, &UpdateDownload::failed, this, &UpdateCheck::ended);
    connect(theDownload, &UpdateDownload::receivedTooMuch, this, [this] {
        queueError(UpdateTexts::unreadable);
        emit ended();
    });
    theDownload->start(feedAddress);
}

void UpdateCheck::readBody(const QByteArray& body)
{
    const FeedOutcome outcome = readFeed(
        feedEntries(readPropertyList(body)), textOf(theVersion), textOf(theDownloadPrefix));
    if (outcome.holdsThisApplication)
        emit feedHeldThisApplication();
    if (!outcome.error.empty())
        queueError(outcome.error);
    for (const UpdateOffer& offer : outcome.offers)
        queue([this, offer] { return makeOffer(offer); });
    emit ended();
}

void UpdateCheck::queueError(std::u16string_view text)
{
    queue([this, details = qString(text)] { return makeError(details); });
}

void UpdateCheck::queue(const std::function<Alert*()>& makeAlert)
{
    theAlerts << makeAlert;
    if (!theAlert)
        showNextAlert();
}

void UpdateCheck::showNextAlert()
{
    if (theAlerts.isEmpty() || QCoreApplication::closingDown())
        return;
    theAlert = theAlerts.takeFirst()();
    connect(theAlert, &QDialog::finished, this, [this] {
        // The next one may not come up while this one is still closing.
        theAlert = nullptr;
        QMetaObject::invokeMethod(this, &UpdateCheck::showNextAlert, Qt::QueuedConnection);
    });
    theAlert->comeUp();
}

Alert* UpdateCheck::makeError(const QString& text)
{
    Alert* const alert = makeAlert(QMessageBox::Critical, qString(UpdateTexts::errorMessage), text);
    alert->addAnswer(u"OK"_s);
    return alert;
}

Alert* UpdateCheck::makeOffer(const UpdateOffer& offer)
{
    Alert* const alert = makeAlert(QMessageBox::Information,
        qString(UpdateTexts::offerMessage(textOf(shown(qString(offer.version))))),
        qString(UpdateTexts::offerDetails(textOf(theVersion))));
    // Of one role, so that they stand in this order, in whichever direction the desktop lays them.
    alert->setEscapeButton(alert->addAnswer(u"Ignore"_s));
    alert->addAnswer(u"Download"_s, [this, address = qString(offer.url)] { download(address); });
    return alert;
}

void UpdateCheck::download(const QString& address)
{
    const QUrl url(address, QUrl::StrictMode);
    // A feed must not make the desktop open anything but web pages.
    const bool isWebAddress = url.isValid() && !url.host().isEmpty()
        && (url.scheme() == "https"_L1 || url.scheme() == "http"_L1);
    if (!isWebAddress) {
        queue([this, address] {
            return makeError(
                tr("The update's address is not a web address:\n%1").arg(shown(address)));
        });
    } else if (!openAddress(url)) {
        queue([this, address] {
            return makeError(
                tr("No browser could be started.\nThe update's address is %1").arg(shown(address)));
        });
    }
}

} // namespace tarnwick
