#pragma once

#include "analysis/pdfObject.h"
#include "pdf/PDFDocument.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class QLabel;
class QSplitter;

namespace tarnwick {

class PlainTextView;
class ReferringText;
class StreamPanel;

/// Shows one object of the document: what it says, its references as links, where it stands, and
/// below that what its stream holds. Only what shows is asked of the engine.
class ObjectPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ObjectPanel(QWidget* parent = nullptr);

    /// @param document borrowed while it lives. @param name of files that are saved begin with it.
    void setDocument(PDFDocument* document, const QString& folder, const QString& name);

    /// Shows an object, after a moment in which another may take its place when it is not urgent.
    /// @param number nothing empties the panel. @param range of the object that was chosen in the
    ///   file: where the file's table leads elsewhere, the panel says so.
    void showObject(std::optional<int> number, std::optional<ByteRange> range, bool isUrgent);
    std::optional<int> number() const { return theNumber; }
    /// Whether an answer of the engine is still to come.
    bool isWaiting() const;

signals:
    /// A reference was followed.
    void objectWanted(int number);
    /// What was asked for shows.
    void shown();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void makeLayout();
    void ask();
    void take(PDFObjectRequest* request);
    void clear(const QString& note);
    QString placeText(const PDFObject& object) const;

    QPointer<PDFDocument> theDocument;
    QPointer<PDFObjectRequest> theRequest;
    QTimer thePause;
    std::optional<int> theNumber;
    std::optional<ByteRange> theRange;
    bool theObjectIsAsked = true; ///< for theNumber
    QLabel* theTitle;
    QLabel* thePlace;
    QSplitter* theParts;
    PlainTextView* theText;
    std::shared_ptr<const ReferringText> theStorage;
    StreamPanel* theStream;
};

} // namespace tarnwick
