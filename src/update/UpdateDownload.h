#pragma once

#include <QByteArray>
#include <QObject>

class QNetworkAccessManager;
class QNetworkReply;
class QUrl;

namespace tarnwick {

/// Fetches the update feed: one plain GET, of which nothing is heard unless it succeeds.
///
/// Redirects are followed while they keep the scheme, so that a secure address stays one; at most
/// 20 of them. An answer without the right status and media type (isFeedAnswer) is dropped before
/// its body is read. No more than maximumSize bytes of a body are ever held.
class UpdateDownload : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 maximumSize = 1 << 20;

    explicit UpdateDownload(QObject* parent = nullptr);
    ~UpdateDownload() override;

    /// Asks for this address; to be called once.
    void start(const QUrl& address);

signals:
    /// The whole body has arrived.
    void received(const QByteArray& body);
    /// The body is longer than any feed, and is not read on.
    void receivedTooMuch();
    /// Nothing to tell: no network, another status, another media type, a refused redirect.
    void failed();

private:
    void checkRedirect(const QUrl& target);
    void checkAnswer();
    void readBody();
    void finish();
    void stop();
    void end();

    QNetworkAccessManager* theManager;
    QNetworkReply* theReply = nullptr;
    QByteArray theBody;
    bool hasEnded = false;
};

} // namespace tarnwick
