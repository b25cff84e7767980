#include "TextPrintJob.h"

#include "TextPrinter.h"
#include "dialogs/Progress.h"
#include "printing/PrintNotice.h"
#include "printing/PrintPanel.h"
#include "printing/PrintSettings.h"
#include "printing/PrintedFile.h"

#include <QPageRanges>
#include <QPrinter>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace tarnwick {

namespace {

constexpr int progressSteps = 1000;

} // namespace

TextPrintJob::TextPrintJob(std::shared_ptr<const TextStorage> storage, const QFont& font,
    const QString& name, const QStringList& missing, QWidget* window)
    : QObject(window)
    , theStorage(std::move(storage))
    , theFont(font)
    , theWindow(window)
    , theName(name)
    , theMissing(missing)
    , thePrinter(PrintSettings::makePrinter())
{
    thePrinter->setDocName(name);
    connect(&theTimer, &QTimer::timeout, this, &TextPrintJob::goOn);
    auto* dialog = new PrintPanel(thePrinter.get(), window);
    connect(this, &QObject::destroyed, dialog, &QObject::deleteLater);
    connect(dialog, &QDialog::accepted, this, &TextPrintJob::begin);
    connect(dialog, &QDialog::rejected, this, &QObject::deleteLater);
    dialog->open();
}

TextPrintJob::~TextPrintJob()
{
    if (theProgress && !isOver)
        tellOfClosing({theName, thePath, thePrinter->printerName(), theMissing});
}

void TextPrintJob::begin()
{
    PrintSettings::applyTo(*thePrinter);
    if (thePrinter->outputFormat() == QPrinter::PdfFormat && !openFile())
        return;
    theProgress = std::make_unique<Progress>(
        tr("Print"), tr("Printing…"), theWindow, Progress::Blocking::isWindow);
    connect(theProgress.get(), &Progress::cancelled, this, &TextPrintJob::cancel);
    askBeforeClosing(theWindow, this, theName);
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

/// @returns false when the job has ended without a file.
bool TextPrintJob::openFile()
{
    thePath = thePrinter->outputFileName();
    theFile = new PrintedFile(thePath, this);
    connect(theFile, &PrintedFile::finished, this, &TextPrintJob::end);
    if (const QString reason = theFile->open(); !reason.isEmpty()) {
        end(reason);
        return false;
    }
    thePrinter->setOutputFileName(theFile->unfinishedPath());
    return true;
}

void TextPrintJob::goOn()
{
    const bool isMore = theText->advance(QDeadlineTimer(8ms));
    theProgress->setLabel(tr("Printing page %L1…").arg(theText->page()));
    theProgress->show(static_cast<quint64>(theText->progress() * progressSteps), progressSteps);
    if (isMore)
        return;
    finish();
}

void TextPrintJob::finish()
{
    theTimer.stop();
    const bool hasFailed = theText->hasFailed();
    theText.reset(); // the painter writes its last bytes
    if (hasFailed)
        end(paintingFailure());
    else if (theFile)
        theFile->completePainted();
    else
        end({});
}

void TextPrintJob::cancel()
{
    isOver = true;
    theTimer.stop();
    thePrinter->abort();
    theText.reset();
    deleteLater();
}

void TextPrintJob::end(const QString& reason)
{
    isOver = true;
    theProgress.reset();
    deleteLater();
    tellUser(
        printNotice({theName, thePath, thePrinter->printerName(), theMissing}, reason), theWindow);
}

} // namespace tarnwick
