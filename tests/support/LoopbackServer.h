#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

namespace tarnwick {

/// A web server on loopback that answers by path with prepared bytes, then hangs up.
class LoopbackServer : public QObject
{
public:
    LoopbackServer()
    {
        connect(&theServer, &QTcpServer::newConnection, this, &LoopbackServer::accept);
        theServer.listen(QHostAddress::LocalHost);
    }

    /// The address of the path "/" on this server.
    QUrl address() const
    {
        using namespace Qt::StringLiterals;
        return u"http://%1:%2/"_s.arg(theServer.serverAddress().toString())
            .arg(theServer.serverPort());
    }

    /// Answers a path with these bytes, head and all; without any, it only hangs up.
    void answer(const QByteArray& path, const QByteArray& bytes) { theAnswers[path] = bytes; }

    /// The paths asked for so far.
    const QList<QByteArray>& requests() const { return theRequests; }
    /// Bytes that have been sent and accepted, heads included.
    qint64 bytesSent() const { return theBytesSent; }

private:
    void accept()
    {
        while (QTcpSocket* socket = theServer.nextPendingConnection()) {
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(
                socket, &QTcpSocket::bytesWritten, this, [this](qint64 n) { theBytesSent += n; });
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { reply(socket); });
        }
    }
    void reply(QTcpSocket* socket)
    {
        if (!socket->peek(1 << 16).contains("\r\n\r\n"))
            return;
        theRequests << socket->readAll().split(' ').value(1);
        socket->write(theAnswers.value(theRequests.last()));
        socket->disconnectFromHost();
    }

    QTcpServer theServer;
    QHash<QByteArray, QByteArray> theAnswers;
    QList<QByteArray> theRequests;
    qint64 theBytesSent = 0;
};

} // namespace tarnwick
