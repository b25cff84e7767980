#include "support/LoopbackServer.h"

#include <QTcpSocket>

#include <algorithm>
#include <memory>

namespace {

QByteArray response(int status, QList<QByteArray> headers, const QByteArray& body)
{
    const bool hasLength = std::any_of(headers.cbegin(), headers.cend(),
        [](const QByteArray& header) { return header.startsWith("Content-Length:"); });
    if (!hasLength)
        headers << "Content-Length: " + QByteArray::number(body.size());
    headers << "Connection: close";
    return "HTTP/1.1 " + QByteArray::number(status) + " Answer\r\n" + headers.join("\r\n")
        + "\r\n\r\n" + body;
}

} // namespace

LoopbackServer::LoopbackServer()
{
    connect(&theServer, &QTcpServer::newConnection, this, &LoopbackServer::accept);
    theServer.listen(QHostAddress::LocalHost);
}

QUrl LoopbackServer::address(const QString& path) const
{
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(theServer.serverAddress().toString());
    url.setPort(theServer.serverPort());
    url.setPath(path);
    return url;
}

void LoopbackServer::answer(
    const QByteArray& path, int status, const QList<QByteArray>& headers, const QByteArray& body)
{
    theAnswers[path] = {response(status, headers, body), false};
}

void LoopbackServer::answerSlowly(
    const QByteArray& path, const QList<QByteArray>& headers, const QByteArray& body)
{
    theAnswers[path] = {response(200, headers, body), true};
}

void LoopbackServer::answerRaw(const QByteArray& path, const QByteArray& bytes)
{
    theAnswers[path] = {bytes, false};
}

void LoopbackServer::accept()
{
    while (QTcpSocket* socket = theServer.nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::bytesWritten, this, [this](qint64 n) { theBytesSent += n; });
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { reply(socket); });
    }
}

void LoopbackServer::reply(QTcpSocket* socket)
{
    if (!socket->peek(1 << 16).contains("\r\n\r\n"))
        return;
    const QByteArray path = socket->readAll().split(' ').value(1);
    theRequests << path;
    const Answer answer = theAnswers.value(path);
    if (!answer.isSlow) {
        socket->write(answer.bytes);
        socket->disconnectFromHost();
        return;
    }
    const auto sent = std::make_shared<qsizetype>(0);
    const auto sendOne = [socket, answer, sent] {
        if (*sent < answer.bytes.size())
            socket->write(answer.bytes.mid((*sent)++, 1));
        else
            socket->disconnectFromHost();
    };
    connect(socket, &QTcpSocket::bytesWritten, socket, sendOne, Qt::QueuedConnection);
    sendOne();
}
