#pragma once

#include "views/TextStorage.h"

#include <QFont>
#include <QObject>
#include <QTimer>

#include <memory>

class QPrinter;
class QProgressDialog;
class QWidget;
class TextPrinter;

/// One print command for a text: the print dialog as a sheet on the window, then the printing in
/// slices of the event loop, with a progress dialog that cancels it where it takes long.
///
/// Ends and deletes itself when the text is printed or the user cancels.
class TextPrintJob : public QObject
{
    Q_OBJECT

public:
    /// @param window owns the job. @param name of the job and of a PDF file.
    TextPrintJob(std::shared_ptr<const TextStorage> storage, const QFont& font, const QString& name,
        QWidget* window);
    ~TextPrintJob() override;

private:
    void begin();
    void goOn();
    void finish();
    void cancel();
    void reportFailure();

    std::shared_ptr<const TextStorage> theStorage;
    QFont theFont;
    QWidget* theWindow;
    std::unique_ptr<QPrinter> thePrinter;
    std::unique_ptr<TextPrinter> theText;
    QProgressDialog* theProgress = nullptr;
    QTimer theTimer;
};
