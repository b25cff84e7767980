#pragma once

#include "export/ExportContent.h"
#include "export/ExportJob.h"
#include "export/ExportSource.h"
#include "export/ExportTarget.h"

#include <QPointer>

#include <memory>
#include <optional>

namespace tarnwick {

class ExportPanel;

/// The name that an export's panel proposes: the document's name and the kind's ending, whatever
/// the name holds ("report.pdf-flat.pdf"); "Untitled" for an empty name.
QString proposedExportName(ExportKind kind, const QString& displayName);

/// One run of the command that exports a document as flat PDF, plain text or rich text: a panel of
/// its own, then one file.
///
/// Flat PDF and plain text are asked for when the command runs, rich text when the panel is
/// confirmed; where the engine is slower than the user, progress with cancel is shown. No alert
/// comes: a notice says what was written and where, or why not. Several may run at once.
class DocumentExport : public ExportJob
{
    Q_OBJECT

public:
    /// Runs the command; nothing happens when the document cannot give what is wanted.
    static void begin(ExportKind kind, const ExportSource& source);

private:
    DocumentExport(
        ExportKind kind, const ExportSource& source, std::unique_ptr<ExportContent> content);
    ~DocumentExport() override;

    void openPanel();
    void panelConfirmed();
    void goOn();
    void write();
    void finishWriting() override;
    void giveUp(const QString& reason);
    void documentClosed();

    ExportKind theKind;
    ExportSource theSource;
    std::unique_ptr<ExportContent> theContent;
    bool hasAskedForContent = false;
    std::optional<QString> theFailure; ///< of taking the content
    ExportOutcome theOutcome; ///< of the writing, once it is finished
    QPointer<ExportPanel> thePanel;
    QString thePath; ///< empty until the panel is confirmed
};

} // namespace tarnwick
