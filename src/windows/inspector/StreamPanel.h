#pragma once

#include "pdf/PDFDocument.h"
#include "text/PlainTextStorage.h"
#include "work/Work.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class QComboBox;
class QLabel;
class QPushButton;
class QTabWidget;

namespace tarnwick {

class HexView;
class PlainTextView;

/// Shows what the stream of an object holds, decoded or as stored, as text and in hexadecimal, and
/// saves it. Hidden while the object has none.
class StreamPanel : public QWidget
{
    Q_OBJECT

public:
    explicit StreamPanel(QWidget* parent = nullptr);

    /// @param document borrowed while it lives. @param folder, name for files that are saved.
    void setDocument(PDFDocument* document, const QString& folder, const QString& name);
    /// @param object nothing, or one without stream, hides the panel.
    void showStream(const std::optional<PDFObject>& object);
    bool isWaiting() const { return theRequest || theReading.isRunning(); }

signals:
    void shown();

private:
    void makeLayout();
    PDFStreamForm form() const;
    void ask(quint64 limit);
    void take(PDFStreamRequest* request);
    void showBytes(const FileBytes& bytes);
    void empty(const QString& note);
    void save(PDFStreamForm wanted);
    void saveAnswer(const PDFStreamRequest& request, const PDFObject& object, PDFStreamForm wanted);

    QPointer<PDFDocument> theDocument;
    QString theFolder;
    QString theName;
    std::optional<PDFObject> theObject;
    QPointer<PDFStreamRequest> theRequest;
    Work theReading; ///< of the lines of text
    quint64 theLimit = usualStream;
    QLabel* thePacking;
    QLabel* theOutcome;
    QComboBox* theForm;
    QPushButton* theMore;
    QPushButton* theSaveRaw;
    QPushButton* theSaveDecoded;
    QTabWidget* theTabs;
    PlainTextView* theText;
    HexView* theHex;
};

} // namespace tarnwick
