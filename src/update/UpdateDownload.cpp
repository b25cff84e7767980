#include "UpdateDownload.h"

#include "update/UpdateFeed.h"

#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>

#include <chrono>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int mostRedirects = 20;
// Without a byte for so long, there is no server: a slow one may take its time.
constexpr std::chrono::milliseconds longestSilence = std::chrono::seconds(60);

/// The proxies that the user's system names.
class SystemProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        return systemProxyForQuery(query);
    }
};

bool hasFeedHead(const QNetworkReply& reply)
{
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray type = reply.rawHeader("Content-Type");
    return isFeedAnswer(status, std::string_view(type.constData(), std::size_t(type.size())));
}

} // namespace

UpdateDownload::UpdateDownload(QObject* parent)
    : QObject(parent)
    , theManager(new QNetworkAccessManager(this))
{
    theManager->setProxyFactory(new SystemProxies);
}

UpdateDownload::~UpdateDownload()
{
    hasEnded = true; // ending the reply reports to nobody
    delete theReply;
}

void UpdateDownload::start(const QUrl& address)
{
    const QString scheme = address.scheme();
    if (scheme != "https"_L1 && scheme != "http"_L1) {
        // What is no HTTP answer counts as none. Told later, as every other end.
        QMetaObject::invokeMethod(this, &UpdateDownload::failed, Qt::QueuedConnection);
        return;
    }
    QNetworkRequest request(address);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirects);
    request.setTransferTimeout(int(longestSilence.count()));
    theReply = theManager->get(request);
    // The network layer must not run ahead of the limit, either.
    theReply->setReadBufferSize(maximumSize + 1);
    connect(theReply, &QNetworkReply::redirected, this, &UpdateDownload::checkRedirect);
    connect(theReply, &QNetworkReply::metaDataChanged, this, &UpdateDownload::checkAnswer);
    connect(theReply, &QNetworkReply::readyRead, this, &UpdateDownload::readBody);
    connect(theReply, &QNetworkReply::finished, this, &UpdateDownload::finish);
}

void UpdateDownload::checkRedirect(const QUrl& target)
{
    // The reply's own address is the target already; its request keeps what was asked for first.
    if (target.scheme() == theReply->request().url().scheme())
        emit theReply->redirectAllowed();
    else
        stop();
}

/// Ends the request as soon as its head tells that the body is of no use.
void UpdateDownload::checkAnswer()
{
    const int status = theReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool isOnItsWay = status == 0 || status / 100 == 1 || status / 100 == 3;
    if (!isOnItsWay && !hasFeedHead(*theReply))
        stop();
}

void UpdateDownload::readBody()
{
    if (hasEnded)
        return;
    theBody += theReply->read(maximumSize + 1 - theBody.size());
    if (theBody.size() <= maximumSize)
        return;
    end();
    theBody.clear();
    emit receivedTooMuch();
}

void UpdateDownload::finish()
{
    if (hasEnded)
        return;
    if (theReply->error() != QNetworkReply::NoError || !hasFeedHead(*theReply)) {
        stop();
        return;
    }
    while (!hasEnded && theReply->bytesAvailable() > 0)
        readBody();
    if (std::exchange(hasEnded, true))
        return;
    emit received(theBody);
}

void UpdateDownload::stop()
{
    if (hasEnded)
        return;
    end();
    emit failed();
}

/// Ends the request, from within its own signals as well: the network layer is in the middle of
/// its work then, so it hears of it a little later.
void UpdateDownload::end()
{
    hasEnded = true;
    QMetaObject::invokeMethod(theReply, &QNetworkReply::abort, Qt::QueuedConnection);
}

} // namespace tarnwick
