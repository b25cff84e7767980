#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

/// A web server on loopback that answers by path with prepared bytes, and nothing else.
class LoopbackServer : public QObject
{
public:
    LoopbackServer();

    /// The address of a path on this server.
    QUrl address(const QString& path = QStringLiteral("/")) const;

    /// Answers a path with a head and a body; Content-Length is the body's unless the headers name
    /// another.
    void answer(const QByteArray& path, int status, const QList<QByteArray>& headers,
        const QByteArray& body);
    /// As answer(), but in portions of one byte, each after the last one has left.
    void answerSlowly(
        const QByteArray& path, const QList<QByteArray>& headers, const QByteArray& body);
    /// Answers a path with just these bytes, then hangs up.
    void answerRaw(const QByteArray& path, const QByteArray& bytes);

    /// The paths asked for so far.
    const QList<QByteArray>& requests() const { return theRequests; }
    /// Bytes that have been sent and accepted, heads included.
    qint64 bytesSent() const { return theBytesSent; }

private:
    struct Answer
    {
        QByteArray bytes;
        bool isSlow = false;
    };

    void accept();
    void reply(class QTcpSocket* socket);

    QTcpServer theServer;
    QHash<QByteArray, Answer> theAnswers;
    QList<QByteArray> theRequests;
    qint64 theBytesSent = 0;
};
