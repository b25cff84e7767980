#pragma once

#include "PDFEngine.h"

#include <QString>

class QProcess;
class QSocketNotifier;

namespace tarnwick {

/// Path of the engine's executable (helperProgram).
QString pdfEnginePath();
/// For tests: another program to be run as the engine from now on; empty for the usual one.
void setPDFEnginePathForTests(const QString& path);

/// The process of an engine and the pipes to it. It gets nothing of the program's environment.
///
/// The answers come through a pipe of our own, a portion at each turn of the event loop and
/// straight to where they stay: QProcess gathers all that there is, and copies it, in one.
class PDFEngineProcess : public PDFEngine
{
    Q_OBJECT

public:
    explicit PDFEngineProcess(QObject* parent = nullptr);
    ~PDFEngineProcess() override;

    bool start(const FileBytes& bytes, std::uint64_t writtenSize) override;
    void send(std::uint32_t number, EngineRequest kind, std::string_view payload,
        std::uint32_t largest, int processorTime) override;
    std::optional<FileBytes> takeFile(std::size_t size) override;
    std::size_t writtenSoFar() const override;
    bool hasStarted() const override { return theHasStarted; }
    qint64 processId() const override;

private:
    bool makePipe();
    bool makeOutput(std::uint64_t most);
    void readAnswers();
    void readRest();
    bool readSome(std::size_t& budget);
    bool isAnswer(const EngineFrame& frame) const;
    bool takeHead();
    void takePayload();
    void end(bool sentNonsense = false);

    QProcess* theProcess; ///< outlives this object until the system has reaped the engine
    int theAnswers = -1; ///< our end of the pipe
    int theAnswersWriteEnd = -1; ///< the engine's, until it has started
    QSocketNotifier* theNotifier = nullptr;
    EngineFrame theFrame; ///< head of the answer that is on its way
    std::size_t theHeadSize = 0; ///< bytes of it that have come
    QByteArray thePayload;
    std::size_t thePayloadSize = 0; ///< bytes of it that have come
    int theOutput = -1;
    bool theHasStarted = false;
    bool hasEnded = false;
    bool isRequestOpen = false; ///< sent, and without its last answer
    std::uint32_t theRequest = 0;
    std::uint32_t theLargestResult = 0;
};

} // namespace tarnwick
