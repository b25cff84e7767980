#pragma once

#include "files/FileBytes.h"
#include "work/Work.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QString>

class QPrinter;

namespace tarnwick {

/// Hands a PDF file to a CUPS queue as it is: text stays text and lines stay lines, at whatever
/// resolution the printer has.
class CupsSubmission : public QObject
{
    Q_OBJECT

public:
    using Options = QList<QPair<QByteArray, QByteArray>>;

    /// How the pages of a file lie on the paper.
    enum class Layout
    {
        isOfDocument, ///< to be given margins of an inch, scaled to the width inside, not centred
        isOfPaper, ///< as they are: they are sheets already
    };

    /// What the queue is to do: the printer's copies, collation, paper, sides and colour, and what
    /// else of the queue's own the user has chosen in the print dialog.
    static Options optionsFor(const QPrinter& printer, Layout layout);

    /// Starts handing over on a thread of its own: the print server may take its time.
    /// finished() follows from the event loop. Destroying this before calls the job back, unless
    /// the queue has it whole at this very moment.
    CupsSubmission(const QString& queue, const QString& title, const FileBytes& file,
        const Options& options, QObject* parent);
    ~CupsSubmission() override;

signals:
    /// @param reason why the queue did not take the job, a sentence of CUPS; empty when it did.
    void finished(const QString& reason);

private:
    Work theWork;
};

} // namespace tarnwick
