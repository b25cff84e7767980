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

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

void setUpApplication()
{
    QCoreApplication::setOrganizationName(u"Tarnwick"_s);
    QCoreApplication::setApplicationName(u"Tarnwick"_s);
    QCoreApplication::setApplicationVersion(QString::fromLatin1(TARNWICK_VERSION));
    QGuiApplication::setDesktopFileName(u"tarnwick"_s);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QSettings::setDefaultFormat(QSettings::IniFormat); // one file per user on every system
}

QIcon applicationIcon()
{
    QIcon icon;
    for (const char* size : {"16", "32", "48", "64", "128", "256"})
        icon.addFile(u":/icons/tarnwick-%1.png"_s.arg(QLatin1String(size)));
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
    parser.addPositionalArgument(u"files"_s, tr("PDF files to open."), u"[files...]"_s);
}

/// Prints the help text or the version, without a display, if the user asks for it.
void answerQuestion(QCommandLineParser& parser, int argc, char** argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments << QString::fromLocal8Bit(argv[index]);
    // Options of the toolkit are unknown here, and are no reason to stop.
    parser.parse(arguments);
    const bool wantsVersion = parser.isSet(u"version"_s);
    if (!wantsVersion && !parser.isSet(u"help"_s))
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
        check.start(QCoreApplication::applicationVersion(),
            QUrl(QString::fromLatin1(TARNWICK_UPDATE_FEED)));
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
    QObject::connect(&quitSignals, &QuitSignals::received, &delegate, &AppDelegate::quitUnasked);
    // Also when the session ends, which asks nobody.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &delegate,
        &AppDelegate::applicationWillTerminate);
    delegate.applicationDidFinishLaunching(filesOf(parser.positionalArguments()));
    return QApplication::exec();
}
