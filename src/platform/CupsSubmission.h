#pragma once

#include "platform/FileBytes.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QString>

class QPrinter;

/// Hands a PDF file to a CUPS queue as it is: text stays text and lines stay lines, at whatever
/// resolution the printer has.
class CupsSubmission : public QObject
{
    Q_OBJECT

public:
    using Options = QList<QPair<QByteArray, QByteArray>>;

    /// What the queue is to do: the printer's copies, collation, paper, sides and colour, margins
    /// of an inch, pages scaled to the width inside them and not centred.
    static Options optionsFor(const QPrinter& printer);

    /// Starts handing over on a thread of its own: the print server may take its time.
    /// finished() follows from the event loop; destroying this does not call the job back.
    CupsSubmission(const QString& queue, const QString& title, const FileBytes& file,
        const Options& options, QObject* parent);
    ~CupsSubmission() override;

signals:
    /// @param reason why the queue did not take the job, a sentence of CUPS; empty when it did.
    void finished(const QString& reason);
};
