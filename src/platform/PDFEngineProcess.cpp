#include "platform/PDFEngineProcess.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QStringList>

#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

QString pdfEnginePath()
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QString beside = folder + QStringLiteral("/tarnwick-pdf-engine");
    if (QFileInfo(beside).isExecutable())
        return beside;
    return folder + QStringLiteral("/../libexec/tarnwick/tarnwick-pdf-engine");
}

PDFEngineProcess::PDFEngineProcess(QObject* parent)
    : QObject(parent)
    , theProcess(new QProcess)
{
    connect(theProcess, &QProcess::readyReadStandardOutput, this, &PDFEngineProcess::readAnswers);
    connect(theProcess, &QProcess::finished, this, [this] {
        readAnswers();
        end();
    });
    connect(theProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart || error == QProcess::WriteError)
            end();
    });
}

PDFEngineProcess::~PDFEngineProcess()
{
    if (theFlatDescriptor >= 0)
        ::close(theFlatDescriptor);
    theProcess->disconnect(this);
    if (theProcess->state() == QProcess::NotRunning) {
        theProcess->deleteLater();
        return;
    }
    // QProcess waits for the engine when it is destroyed, and a large one takes its time to go.
    QObject::connect(theProcess, &QProcess::finished, theProcess, &QObject::deleteLater);
    theProcess->kill();
}

bool PDFEngineProcess::start(const FileBytes& bytes, bool writesFlat)
{
    const int input = bytes.descriptor();
    if (input < 0)
        return false;
    QStringList arguments{QString::number(input)};
    if (writesFlat) {
        theFlatDescriptor = ::memfd_create("tarnwick-flat", MFD_CLOEXEC | MFD_ALLOW_SEALING);
        if (theFlatDescriptor < 0)
            return false;
        arguments << QString::number(theFlatDescriptor);
    }
    const int output = theFlatDescriptor;
    theProcess->setChildProcessModifier([input, output] {
        ::fcntl(input, F_SETFD, 0);
        if (output >= 0)
            ::fcntl(output, F_SETFD, 0);
    });
    theProcess->setWorkingDirectory(QStringLiteral("/"));
#ifdef TARNWICK_SANITIZED
    theProcess->setProcessChannelMode(QProcess::ForwardedErrorChannel);
#else
    theProcess->setStandardErrorFile(QProcess::nullDevice());
#endif
    theProcess->start(pdfEnginePath(), arguments, QIODevice::ReadWrite | QIODevice::Unbuffered);
    return theProcess->state() != QProcess::NotRunning;
}

void PDFEngineProcess::send(std::uint32_t number, EngineRequest kind, std::string_view payload)
{
    EngineFrame frame;
    frame.size = static_cast<std::uint32_t>(payload.size());
    frame.request = number;
    frame.kind = static_cast<std::uint8_t>(kind);
    QByteArray message(reinterpret_cast<const char*>(&frame), sizeof frame);
    message.append(payload.data(), static_cast<qsizetype>(payload.size()));
    theProcess->write(message);
}

void PDFEngineProcess::readAnswers()
{
    const QPointer<PDFEngineProcess> self(this);
    while (self && !theEnd) {
        if (!theFrame) {
            EngineFrame frame;
            if (theProcess->bytesAvailable() < qint64{sizeof frame})
                return;
            theProcess->read(reinterpret_cast<char*>(&frame), sizeof frame);
            const bool isAnswer = frame.kind >= static_cast<quint8>(EngineAnswer::isOpened)
                && frame.kind <= static_cast<quint8>(EngineAnswer::isProgress);
            if (!isAnswer || frame.size > maximumAnswerSize)
                return end();
            theFrame = frame;
        }
        if (theProcess->bytesAvailable() < qint64{theFrame->size})
            return;
        const EngineFrame frame = *std::exchange(theFrame, std::nullopt);
        const QByteArray payload = theProcess->read(frame.size);
        emit answered(frame.request, static_cast<EngineAnswer>(frame.kind), payload);
    }
}

void PDFEngineProcess::end()
{
    if (std::exchange(theEnd, true))
        return;
    theProcess->kill();
    emit ended();
}

std::optional<FileBytes> PDFEngineProcess::takeFlat(std::size_t size)
{
    if (theFlatDescriptor < 0)
        return std::nullopt;
    std::optional<FileBytes> bytes = FileBytes::adopt(std::exchange(theFlatDescriptor, -1));
    return bytes && bytes->size() == size ? bytes : std::nullopt;
}

qint64 PDFEngineProcess::processId() const
{
    return theProcess->processId();
}
