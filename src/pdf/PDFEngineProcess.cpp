#include "PDFEngineProcess.h"

#include "ProcessorTime.h"
#include "files/HelperProgram.h"
#include "protocol/EngineMessages.h"

#include <QFile>
#include <QPointer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSocketNotifier>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Bytes that one turn of the event loop takes: a millisecond's work.
constexpr std::size_t portion = 256 * 1024;
/// What a read costs at least, as bytes of a portion: an engine may send its answers in single
/// bytes, and reports without end.
constexpr std::size_t leastCost = 512;

constexpr int processorTimeAtStart = 10'000; ///< milliseconds, for what comes before a request
constexpr int processorTimeAtRest = 0;

/// The engine's file may tell it enough: names of accounts and machines are none of its business.
QProcessEnvironment engineEnvironment()
{
    QProcessEnvironment environment;
#ifdef TARNWICK_SANITIZED
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (qEnvironmentVariableIsSet(name))
            environment.insert(QLatin1String(name), qEnvironmentVariable(name));
    }
#endif
    return environment;
}

void closeIfOpen(int& descriptor)
{
    if (descriptor >= 0)
        ::close(std::exchange(descriptor, -1));
}

QString& pathForTests()
{
    static QString path;
    return path;
}

} // namespace

void setPDFEnginePathForTests(const QString& path)
{
    pathForTests() = path;
}

QString pdfEnginePath()
{
    if (!pathForTests().isEmpty())
        return pathForTests();
    const std::filesystem::path path = helperProgram("tarnwick-pdf-engine");
    return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

PDFEngineProcess::PDFEngineProcess(QObject* parent)
    : PDFEngine(parent)
    , theProcess(new QProcess)
{
    connect(theProcess, &QProcess::finished, this, &PDFEngineProcess::readRest);
    connect(theProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart || error == QProcess::WriteError)
            end();
    });
}

PDFEngineProcess::~PDFEngineProcess()
{
    delete theNotifier; // before its descriptor may mean something else
    closeIfOpen(theAnswers);
    closeIfOpen(theAnswersWriteEnd);
    closeIfOpen(theOutput);
    theProcess->disconnect(this);
    if (theProcess->state() == QProcess::NotRunning) {
        theProcess->deleteLater();
        return;
    }
    // QProcess waits for the engine when it is destroyed, and a large one takes its time to go.
    QObject::connect(theProcess, &QProcess::finished, theProcess, &QObject::deleteLater);
    theProcess->kill();
}

bool PDFEngineProcess::makePipe()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return false;
    theAnswers = ends[0];
    theAnswersWriteEnd = ends[1];
    ::fcntl(theAnswers, F_SETFL, O_NONBLOCK);
    theNotifier = new QSocketNotifier(theAnswers, QSocketNotifier::Read, this);
    connect(theNotifier, &QSocketNotifier::activated, this, &PDFEngineProcess::readAnswers);
    return true;
}

/// All of it is there from the beginning, and takes memory as far as it is written.
bool PDFEngineProcess::makeOutput(std::uint64_t most)
{
    theOutput = ::memfd_create("tarnwick-written", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    rlimit limit = {};
    if (theOutput < 0 || ::getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return false;
    const rlim_t size = std::min(limit.rlim_cur, rlim_t{most});
    return ::ftruncate(theOutput, static_cast<off_t>(size)) == 0
        && ::fcntl(theOutput, F_ADD_SEALS, F_SEAL_GROW) == 0;
}

bool PDFEngineProcess::start(const FileBytes& bytes, std::uint64_t writtenSize)
{
    const int input = bytes.descriptor();
    if (input < 0 || !makePipe())
        return false;
    QStringList arguments{QString::number(input), QString::number(bytes.size())};
    if (writtenSize > 0) {
        if (!makeOutput(writtenSize))
            return false;
        arguments << QString::number(theOutput);
    }
    const int output = theOutput;
    const int answers = theAnswersWriteEnd;
    theProcess->setChildProcessModifier([input, output, answers] {
        allowProcessorTime(::getpid(), processorTimeAtStart);
        ::dup2(answers, STDOUT_FILENO);
        ::fcntl(input, F_SETFD, 0);
        if (output >= 0)
            ::fcntl(output, F_SETFD, 0);
    });
    theProcess->setProcessEnvironment(engineEnvironment());
    theProcess->setWorkingDirectory(u"/"_s);
    theProcess->setStandardOutputFile(QProcess::nullDevice());
#ifdef TARNWICK_SANITIZED
    theProcess->setProcessChannelMode(QProcess::ForwardedErrorChannel);
#else
    theProcess->setStandardErrorFile(QProcess::nullDevice());
#endif
    connect(theProcess, &QProcess::started, this, [this] {
        theHasStarted = true;
        closeIfOpen(theAnswersWriteEnd);
    });
    theProcess->start(pdfEnginePath(), arguments, QIODevice::ReadWrite | QIODevice::Unbuffered);
    return theProcess->state() != QProcess::NotRunning;
}

void PDFEngineProcess::send(std::uint32_t number, EngineRequest kind, std::string_view payload,
    std::uint32_t largest, int processorTime)
{
    allowProcessorTime(static_cast<pid_t>(processId()), processorTime);
    isRequestOpen = true;
    theRequest = number;
    theLargestResult = largest;
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
    std::size_t budget = portion;
    while (self && !hasEnded && budget > 0 && readSome(budget)) { }
}

/// What the engine wrote before it ended still counts.
void PDFEngineProcess::readRest()
{
    const QPointer<PDFEngineProcess> self(this);
    std::size_t budget = portion;
    while (self && !hasEnded && budget > 0 && readSome(budget)) { }
    if (!self || hasEnded)
        return;
    if (budget > 0)
        end();
    else
        QMetaObject::invokeMethod(this, &PDFEngineProcess::readRest, Qt::QueuedConnection);
}

/// Reads a part of the answer that is on its way and takes the answer when it is whole.
/// @param budget bytes that may be read; becomes less. @returns whether there may be more.
bool PDFEngineProcess::readSome(std::size_t& budget)
{
    const bool isHead = theHeadSize < sizeof theFrame;
    char* const target = isHead ? reinterpret_cast<char*>(&theFrame) + theHeadSize
                                : thePayload.data() + thePayloadSize;
    const std::size_t missing
        = isHead ? sizeof theFrame - theHeadSize : theFrame.size - thePayloadSize;
    const ssize_t got = ::read(theAnswers, target, std::min(missing, budget));
    if (got < 0 && errno == EINTR)
        return true;
    if (got <= 0) {
        // At the end of the pipe the process is about to be reaped, which tells the rest.
        if (got == 0)
            theNotifier->setEnabled(false);
        return false;
    }
    const auto count = static_cast<std::size_t>(got);
    budget -= std::min(budget, std::max(count, leastCost));
    if (isHead) {
        theHeadSize += count;
        if (theHeadSize == sizeof theFrame && !takeHead())
            return false;
    } else {
        thePayloadSize += count;
    }
    if (theHeadSize == sizeof theFrame && thePayloadSize == theFrame.size)
        takePayload();
    return true;
}

bool PDFEngineProcess::isAnswer(const EngineFrame& frame) const
{
    return isRequestOpen && frame.request == theRequest
        && frame.kind >= static_cast<quint8>(EngineAnswer::isOpened)
        && frame.kind <= static_cast<quint8>(EngineAnswer::isProgress)
        && frame.size <= largestPayload(static_cast<EngineAnswer>(frame.kind), theLargestResult);
}

/// @returns false when it is no answer's: no memory is taken for what cannot be one.
bool PDFEngineProcess::takeHead()
{
    if (!isAnswer(theFrame)) {
        end(true);
        return false;
    }
    thePayload = QByteArray(qsizetype{theFrame.size}, Qt::Uninitialized);
    thePayloadSize = 0;
    return true;
}

void PDFEngineProcess::takePayload()
{
    theHeadSize = 0;
    thePayloadSize = 0;
    const QByteArray payload = std::exchange(thePayload, QByteArray());
    const auto kind = static_cast<EngineAnswer>(theFrame.kind);
    isRequestOpen = kind == EngineAnswer::isProgress;
    if (!isRequestOpen)
        allowProcessorTime(static_cast<pid_t>(processId()), processorTimeAtRest);
    emit answered(kind, payload);
}

void PDFEngineProcess::end(bool sentNonsense)
{
    if (std::exchange(hasEnded, true))
        return;
    if (theNotifier)
        theNotifier->setEnabled(false);
    theProcess->kill();
    emit ended(sentNonsense);
}

std::optional<FileBytes> PDFEngineProcess::takeFile(std::size_t size)
{
    if (theOutput < 0)
        return std::nullopt;
    return FileBytes::adopt(std::exchange(theOutput, -1), size);
}

/// Both ends share the place in the file.
std::size_t PDFEngineProcess::writtenSoFar() const
{
    const off_t place = theOutput < 0 ? 0 : ::lseek(theOutput, 0, SEEK_CUR);
    return place > 0 ? static_cast<std::size_t>(place) : 0;
}

qint64 PDFEngineProcess::processId() const
{
    return theProcess->processId();
}

} // namespace tarnwick
