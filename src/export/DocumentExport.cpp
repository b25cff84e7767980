#include "export/DocumentExport.h"

#include "ExportPanel.h"
#include "files/WholeFile.h"
#include "frame/Notice.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

struct KindFacts
{
    QString suffix; ///< of the proposed name
    QStringList types;
    QString title;
    QString typesTitle;
};

KindFacts factsOf(ExportKind kind)
{
    switch (kind) {
    case ExportKind::isFlatPDF:
        return {u"-flat.pdf"_s, {u"pdf"_s}, DocumentExport::tr("Export Flat PDF"),
            DocumentExport::tr("PDF documents")};
    case ExportKind::isPlainText:
        return {u".text"_s, {u"text"_s, u"txt"_s}, DocumentExport::tr("Export Plain Text"),
            DocumentExport::tr("Plain text")};
    case ExportKind::isRichText:
        break;
    }
    return {u".rtf"_s, {u"rtf"_s}, DocumentExport::tr("Export Rich Text"),
        DocumentExport::tr("RTF documents")};
}

} // namespace

QString proposedExportName(ExportKind kind, const QString& displayName)
{
    return (displayName.isEmpty() ? u"Untitled"_s : displayName) + factsOf(kind).suffix;
}

void DocumentExport::begin(ExportKind kind, const ExportSource& source)
{
    if (auto content = ExportContent::make(kind, source))
        (new DocumentExport(kind, source, std::move(content)))->openPanel();
}

DocumentExport::DocumentExport(
    ExportKind kind, const ExportSource& source, std::unique_ptr<ExportContent> content)
    : ExportJob(factsOf(kind).title)
    , theKind(kind)
    , theSource(source)
    , theContent(std::move(content))
{
    connect(source.document, &QObject::destroyed, this, &DocumentExport::documentClosed);
    connect(theContent.get(), &ExportContent::taken, this, &DocumentExport::goOn);
    connect(theContent.get(), &ExportContent::failed, this, [this](const QString& reason) {
        theFailure = reason;
        goOn();
    });
}

DocumentExport::~DocumentExport()
{
    stopWriting();
    if (thePanel)
        thePanel->deleteLater();
}

void DocumentExport::openPanel()
{
    const KindFacts facts = factsOf(theKind);
    thePanel = new ExportPanel(facts.title, facts.types, facts.typesTitle);
    thePanel->propose(
        QFileInfo(theSource.filePath).path(), proposedExportName(theKind, theSource.displayName));
    connect(thePanel, &QDialog::accepted, this, &DocumentExport::panelConfirmed);
    connect(thePanel, &QDialog::rejected, this, &DocumentExport::end);
    thePanel->show();
    if (theKind != ExportKind::isRichText) {
        hasAskedForContent = true;
        theContent->take();
    }
}

void DocumentExport::panelConfirmed()
{
    thePath = thePanel->chosenPath();
    if (thePath.isEmpty()) {
        end();
        return;
    }
    showProgress(QFileInfo(thePath).fileName());
    connect(theContent.get(), &ExportContent::progressed, progress(), [this](int done, int total) {
        progress()->show(static_cast<quint64>(done), static_cast<quint64>(total));
    });
    if (hasAskedForContent) {
        goOn();
        return;
    }
    if (!theSource.document) {
        documentClosed();
        return;
    }
    hasAskedForContent = true;
    theContent->take();
}

void DocumentExport::goOn()
{
    if (thePath.isEmpty() || isWriting())
        return;
    if (theFailure)
        giveUp(*theFailure);
    else if (theContent->isTaken())
        write();
}

void DocumentExport::write()
{
    startWriting([this](const std::stop_token& stop, const Work::Report& report) {
        WholeFile file(QFile::encodeName(thePath).toStdString());
        theOutcome = writeExport(*theContent, file, stop, report);
    });
}

void DocumentExport::finishWriting()
{
    if (!theOutcome.isWritten) {
        giveUp(theOutcome.reason);
        return;
    }
    const QString missing = theContent->missing().join(u' ');
    tellUser(writtenNotice(thePath, missing), theSource.window, theSource.frame);
    end();
}

/// @param reason empty where the user knows it.
void DocumentExport::giveUp(const QString& reason)
{
    if (!reason.isEmpty())
        tellUser(failedNotice(thePath, reason), theSource.window, theSource.frame);
    end();
}

void DocumentExport::documentClosed()
{
    // What has been taken can still be written; nothing more will come.
    if (theContent->isTaken())
        return;
    giveUp(thePath.isEmpty() ? QString() : tr("The document has been closed before."));
}

} // namespace tarnwick
