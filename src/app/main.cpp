#include "AppDelegate.h"
#include "QuitSignals.h"
#include "Windows.h"
#include "files/LargePages.h"
#include "update/UpdateCheck.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QSettings>
#include <QUrl>

#include <csignal>

using namespace tarnwick;

namespace {

void setUpApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnwick"));
    QCoreApplication::setApplicationName(QStringLiteral("Tarnwick"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARNWICK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tarnwick"));
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QSettings::setDefaultFormat(QSettings::IniFormat); // one file per user on every system
}

QIcon applicationIcon()
{
    QIcon icon;
    for (const char* size : {"16", "32", "48", "64", "128", "256"})
        icon.addFile(QStringLiteral(":/icons/tarnwick-%1.png").arg(QLatin1String(size)));
    return icon;
}

void setUpParser(QCommandLineParser& parser)
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("main", text); };
    // The toolkit's own options are long words behind one dash.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(tr("Looks into PDF files: pages, source, saved versions."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        QStringLiteral("files"), tr("PDF files to open."), QStringLiteral("[files...]"));
}

/// Prints the help text or the version, without a display, if the user asks for it.
void answerQuestion(QCommandLineParser& parser, int argc, char** argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments << QString::fromLocal8Bit(argv[index]);
    // Options of the toolkit are unknown here, and are no reason to stop.
    parser.parse(arguments);
    const bool wantsVersion = parser.isSet(QStringLiteral("version"));
    if (!wantsVersion && !parser.isSet(QStringLiteral("help")))
        return;
    const QCoreApplication application(argc, argv);
    if (wantsVersion)
        parser.showVersion();
    parser.showHelp();
}

/// The files to open: paths, or what a desktop hands over as file addresses.
QStringList filesOf(const QStringList& arguments)
{
    QStringList files;
    for (const QString& argument : arguments) {
        const QUrl url(argument);
        files << (url.isLocalFile() && !QFileInfo::exists(argument) ? url.toLocalFile() : argument);
    }
    return files;
}

void setUpUpdateCheck(UpdateCheck& check, AppDelegate& delegate)
{
    delegate.setUpdateCheck([&check] {
        check.start(
            QCoreApplication::applicationVersion(), QUrl(QStringLiteral(TARNWICK_UPDATE_FEED)));
    });
    QObject::connect(
        &check, &UpdateCheck::feedHeldThisApplication, &delegate, &AppDelegate::showUpdateChecked);
}

} // namespace

int main(int argc, char* argv[])
{
    std::signal(SIGXFSZ, SIG_IGN); // a limit on file sizes is an error, not the end
    useLargePages();
    setUpApplication();
    QCommandLineParser parser;
    setUpParser(parser);
    answerQuestion(parser, argc, argv);
    QApplication application(argc, argv);
    parser.process(application);
    // A password prompt may be the only window for a while: the delegate decides when to end.
    QApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::setQuitLockEnabled(false);
    QApplication::setWindowIcon(applicationIcon());

    AppDelegate delegate;
    registerWindows(delegate);
    UpdateCheck updateCheck;
    setUpUpdateCheck(updateCheck, delegate);
    const QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::received, &delegate, &AppDelegate::quit);
    // Also when the session ends, which asks nobody.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &delegate,
        &AppDelegate::applicationWillTerminate);
    delegate.applicationDidFinishLaunching(filesOf(parser.positionalArguments()));
    return QApplication::exec();
}
