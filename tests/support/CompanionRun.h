#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

namespace tarnwick {

/// One run of the companion: what it printed, and how it ended.
struct CompanionRun
{
    int status = -1; ///< exit status, -1 when it ended otherwise
    QByteArray output;
    QByteArray errors;
};

/// How the companion is run, besides its words.
struct CompanionSetting
{
    QString folder; ///< working directory
    QByteArray input;
    QString outputFile; ///< standard output goes there when set
    std::function<void()> inChild; ///< called in the child process before it starts
};

inline CompanionRun runCompanion(const QStringList& words, const CompanionSetting& setting = {})
{
    QProcess process;
    process.setWorkingDirectory(setting.folder);
    if (!setting.outputFile.isEmpty())
        process.setStandardOutputFile(setting.outputFile);
    if (setting.inChild)
        process.setChildProcessModifier(setting.inChild);
    process.start(QString::fromLatin1(TARNWICK_INSPECT), words);
    process.write(setting.input);
    process.closeWriteChannel();
    process.waitForFinished();
    const bool isExit = process.exitStatus() == QProcess::NormalExit;
    return {isExit ? process.exitCode() : -1, process.readAllStandardOutput(),
        process.readAllStandardError()};
}

} // namespace tarnwick
