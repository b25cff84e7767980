#include "CupsSubmission.h"

#include "printing/PrintSettings.h"

#include <QPageSize>
#include <QPrintEngine>
#include <QPrinter>
#include <QStringList>

#include <cups/cups.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Bytes that are handed over before the next look whether they are still wanted.
constexpr std::size_t piece = 1u << 20;

/// @returns the reason of a failure, or nothing. A job that is given up is taken back.
QString submit(const QByteArray& queue, const QByteArray& title, const FileBytes& file,
    const CupsSubmission::Options& list, const std::stop_token& stop)
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
    for (std::string_view rest = file.view(); ok && !rest.empty() && !stop.stop_requested();) {
        const std::string_view part = rest.substr(0, piece);
        rest.remove_prefix(part.size());
        ok = cupsWriteRequestData(CUPS_HTTP_DEFAULT, part.data(), part.size())
            == HTTP_STATUS_CONTINUE;
    }
    ok = ok && !stop.stop_requested()
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
        if (list.at(index) != "page-ranges"_L1)
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
    theWork.start(
        [queue = queue.toUtf8(), title = title.toUtf8(), file, options](
            const std::stop_token& stop) { return submit(queue, title, file, options, stop); },
        [this](const QString& reason) { emit finished(reason); });
}

CupsSubmission::~CupsSubmission() = default;

} // namespace tarnwick
