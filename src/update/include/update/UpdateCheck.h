#pragma once

#include "update/UpdateFeed.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QUrl;

namespace tarnwick {

class Alert;
class UpdateDownload;

/// The update check: fetches the feed, and offers what it has for this program.
///
/// Problems of the network or the server are kept quiet; a feed that cannot be read, or holds
/// nothing, is told. Alerts come one after the other and stop work in every window until they are
/// answered, but they are windows like others: nothing waits for them, and they close when the
/// program ends. What the feed says goes into them as plain text.
class UpdateCheck : public QObject
{
    Q_OBJECT

public:
    /// Opens an address in the browser; false when none could be started.
    using AddressOpener = std::function<bool(const QUrl&)>;

    explicit UpdateCheck(QObject* parent = nullptr);
    ~UpdateCheck() override;

    /// @param opener what opens downloads; the desktop's browser unless set.
    void setAddressOpener(AddressOpener opener) { openAddress = std::move(opener); }
    /// @param prefix the text that download addresses hold.
    void setDownloadPrefix(const QString& prefix) { theDownloadPrefix = prefix; }

    /// Asks for the feed and returns at once; what a program starts once.
    /// @param runningVersion the program's version; when it is empty an alert says that nothing
    /// can be compared, and nothing is asked for.
    void start(const QString& runningVersion, const QUrl& feedAddress);

signals:
    /// The feed has been read and has an entry for this program, of whichever version.
    void feedHeldThisApplication();
    /// The check is over, but for the user's answers to the alerts.
    void ended();

private:
    void readBody(const QByteArray& body);
    void queue(const std::function<Alert*()>& makeAlert);
    void queueError(std::u16string_view text);
    void showNextAlert();
    Alert* makeError(const QString& text);
    Alert* makeOffer(const UpdateOffer& offer);
    void download(const QString& address);

    QString theVersion;
    QString theDownloadPrefix;
    AddressOpener openAddress;
    UpdateDownload* theDownload = nullptr;
    QList<std::function<Alert*()>> theAlerts; ///< those still to come
    QPointer<Alert> theAlert; ///< the one that shows
};

} // namespace tarnwick
