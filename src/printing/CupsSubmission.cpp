#include "CupsSubmission.h"

#include "printing/PrintSettings.h"

#include <QPageSize>
#include <QPrintEngine>
#include <QPrinter>
#include <QStringList>
#include <QThread>

#include <cups/cups.h>

#include <memory>

namespace tarnwick {

namespace {

/// @returns the reason of a failure, or nothing.
QString submit(const QByteArray& queue, const QByteArray& title, const FileBytes& file,
    const CupsSubmission::Options& list)
{
    cups_option_t* options = nullptr;
    int count = 0;
    for (const auto& [name, value] : list)
        count = cupsAddOption(name.constData(), value.constData(), count, &options);
    const int job
        = cupsCreateJob(CUPS_HTTP_DEFAULT, queue.constData(), title.constData(), count, options);
    bool ok = job > 0
        && cupsStartDocument(
               CUPS_HTTP_DEFAULT, queue.constData(), job, title.constData(), CUPS_FORMAT_PDF, 1)
            == HTTP_STATUS_CONTINUE;
    const std::string_view bytes = file.view();
    ok = ok
        && cupsWriteRequestData(CUPS_HTTP_DEFAULT, bytes.data(), bytes.size())
            == HTTP_STATUS_CONTINUE;
    ok = ok
        && cupsFinishDocument(CUPS_HTTP_DEFAULT, queue.constData())
            < IPP_STATUS_REDIRECTION_OTHER_SITE;
    const QString reason = ok ? QString() : QString::fromUtf8(cupsLastErrorString());
    if (!ok && job > 0)
        cupsCancelJob(queue.constData(), job);
    cupsFreeOptions(count, options);
    return reason;
}

/// Pages on a sheet, odd and even pages, banners, accounting: Qt's dialog keeps these as names and
/// values in turn, under a property of its print engine that has a number and no name. Which pages
/// are printed has been seen to by the time that the file is made.
CupsSubmission::Options chosenInDialog(const QPrinter& printer)
{
    constexpr auto key = static_cast<QPrintEngine::PrintEnginePropertyKey>(0xfe00);
    const QPrintEngine* const engine = printer.printEngine();
    const QStringList list = engine ? engine->property(key).toStringList() : QStringList();
    CupsSubmission::Options options;
    for (qsizetype index = 0; index + 1 < list.size(); index += 2) {
        if (list.at(index) != QLatin1String("page-ranges"))
            options.emplaceBack(list.at(index).toUtf8(), list.at(index + 1).toUtf8());
    }
    return options;
}

} // namespace

CupsSubmission::Options CupsSubmission::optionsFor(const QPrinter& printer, Layout layout)
{
    // First, since the later of two options counts.
    Options options = chosenInDialog(printer);
    if (layout == Layout::isOfDocument) {
        const QByteArray margin
            = QByteArray::number(static_cast<int>(PrintSettings::marginInPoints));
        options += Options{
            {"print-scaling", "fit"},
            {"fit-to-page", "true"},
            {"position", "top-left"},
            {"page-left", margin},
            {"page-right", margin},
            {"page-top", margin},
            {"page-bottom", margin},
        };
    } else {
        options.emplaceBack("print-scaling", "none");
    }
    options += Options{
        {"copies", QByteArray::number(printer.copyCount())},
        {"media", printer.pageLayout().pageSize().key().toUtf8()},
    };
    if (printer.copyCount() > 1)
        options.emplaceBack("collate", printer.collateCopies() ? "true" : "false");
    if (printer.duplex() == QPrinter::DuplexLongSide || printer.duplex() == QPrinter::DuplexAuto)
        options.emplaceBack("sides", "two-sided-long-edge");
    else if (printer.duplex() == QPrinter::DuplexShortSide)
        options.emplaceBack("sides", "two-sided-short-edge");
    if (printer.colorMode() == QPrinter::GrayScale)
        options.emplaceBack("print-color-mode", "monochrome");
    return options;
}

CupsSubmission::CupsSubmission(const QString& queue, const QString& title, const FileBytes& file,
    const Options& options, QObject* parent)
    : QObject(parent)
{
    const auto reason = std::make_shared<QString>();
    auto* const thread
        = QThread::create([queue = queue.toUtf8(), title = title.toUtf8(), file, options, reason] {
              *reason = submit(queue, title, file, options);
          });
    // Read once the thread has ended; a closed window is not asked.
    connect(thread, &QThread::finished, this, [this, reason] { emit finished(*reason); });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

CupsSubmission::~CupsSubmission() = default;

} // namespace tarnwick
