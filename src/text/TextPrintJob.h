#pragma once

#include "text/TextStorage.h"

#include <QFont>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>

class QPrinter;
class QWidget;

namespace tarnwick {

class PrintedFile;
class Progress;
class TextPrinter;

/// One print command for a text: the print dialog as a sheet on the window, then the printing in
/// slices of the event loop, with a progress dialog that cancels it where it takes long.
///
/// A file that is printed into appears whole or not at all and is never an opened one
/// (PrintedFile). Ends and deletes itself when the text is printed or the user cancels; no alert
/// comes at its end but a notice in the window.
class TextPrintJob : public QObject
{
    Q_OBJECT

public:
    /// @param window owns the job. @param name of the job and of a PDF file. @param missing what
    /// the
    ///   text lacks, in sentences, to be told at the end.
    TextPrintJob(std::shared_ptr<const TextStorage> storage, const QFont& font, const QString& name,
        const QStringList& missing, QWidget* window);
    ~TextPrintJob() override;

private:
    void begin();
    void goOn();
    void finish();
    void cancel();
    void end(const QString& reason);
    bool openFile();

    std::shared_ptr<const TextStorage> theStorage;
    QFont theFont;
    QWidget* theWindow;
    QString theName;
    QStringList theMissing;
    QString thePath; ///< of the file that is printed into
    PrintedFile* theFile = nullptr; ///< set while printing into one
    std::unique_ptr<QPrinter> thePrinter;
    std::unique_ptr<TextPrinter> theText;
    std::unique_ptr<Progress> theProgress; ///< while it prints
    bool isOver = false; ///< done, failed or cancelled
    QTimer theTimer;
};

} // namespace tarnwick
