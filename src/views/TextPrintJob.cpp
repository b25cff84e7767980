#include "views/TextPrintJob.h"

#include "platform/PrintSettings.h"
#include "views/TextPrinter.h"

#include <QFile>
#include <QMessageBox>
#include <QPageRanges>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr int progressSteps = 1000;

} // namespace

TextPrintJob::TextPrintJob(std::shared_ptr<const TextStorage> storage, const QFont& font,
    const QString& name, QWidget* window)
    : QObject(window)
    , theStorage(std::move(storage))
    , theFont(font)
    , theWindow(window)
    , thePrinter(PrintSettings::makePrinter())
{
    thePrinter->setDocName(name);
    connect(&theTimer, &QTimer::timeout, this, &TextPrintJob::goOn);
    auto* dialog = new QPrintDialog(thePrinter.get(), window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QAbstractPrintDialog::PrintPageRange);
    dialog->setOption(QAbstractPrintDialog::PrintShowPageSize);
    connect(this, &QObject::destroyed, dialog, &QObject::deleteLater);
    connect(dialog, &QDialog::accepted, this, &TextPrintJob::begin);
    connect(dialog, &QDialog::rejected, this, &QObject::deleteLater);
    dialog->open();
}

TextPrintJob::~TextPrintJob() = default;

void TextPrintJob::begin()
{
    PrintSettings::applyTo(*thePrinter);
    theProgress = new QProgressDialog(tr("Printing…"), tr("Cancel"), 0, progressSteps, theWindow);
    theProgress->setWindowModality(Qt::WindowModal);
    theProgress->setWindowTitle(tr("Print"));
    theProgress->setAutoClose(false);
    theProgress->setAutoReset(false);
    connect(this, &QObject::destroyed, theProgress, &QObject::deleteLater);
    connect(theProgress, &QProgressDialog::canceled, this, &TextPrintJob::cancel);
    TextPrinter::Choice choice;
    const QPageRanges ranges = thePrinter->pageRanges();
    if (thePrinter->printRange() == QPrinter::PageRange && !ranges.isEmpty()) {
        choice.isWanted = [ranges](int page) { return ranges.contains(page); };
        choice.lastPage = ranges.lastPage();
    }
    if (!thePrinter->supportsMultipleCopies())
        choice.copies = thePrinter->copyCount();
    theText = std::make_unique<TextPrinter>(theStorage, theFont, *thePrinter, std::move(choice));
    theTimer.start();
}

void TextPrintJob::goOn()
{
    const bool isMore = theText->advance(QDeadlineTimer(8ms));
    theProgress->setLabelText(tr("Printing page %L1…").arg(theText->page()));
    theProgress->setValue(static_cast<int>(theText->progress() * progressSteps));
    if (isMore)
        return;
    finish();
}

void TextPrintJob::finish()
{
    theTimer.stop();
    theProgress->reset();
    if (theText->hasFailed())
        reportFailure();
    deleteLater();
}

void TextPrintJob::cancel()
{
    theTimer.stop();
    thePrinter->abort();
    theText.reset();
    // Half a document must not be taken for a whole one.
    if (!thePrinter->outputFileName().isEmpty())
        QFile::remove(thePrinter->outputFileName());
    deleteLater();
}

void TextPrintJob::reportFailure()
{
    auto* box = new QMessageBox(QMessageBox::Warning, tr("Print"),
        tr("“%1” could not be printed.").arg(thePrinter->docName()), QMessageBox::Ok, theWindow);
    box->setAttribute(Qt::WA_DeleteOnClose);
    const QString file = thePrinter->outputFileName();
    box->setInformativeText(file.isEmpty()
            ? tr("The printer “%1” did not take the pages.").arg(thePrinter->printerName())
            : tr("The file “%1” could not be written.").arg(file));
    box->open();
}
