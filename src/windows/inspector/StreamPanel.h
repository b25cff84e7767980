#pragma once

#include "analysis/SharedBytes.h"
#include "pdf/PDFObjectEngines.h"
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
class PictureView;
class PlainTextView;

/// Shows what the stream of an object holds, decoded or as stored, as a picture, as text and in
/// hexadecimal, and saves it. Hidden while the object has none.
class StreamPanel : public QWidget
{
    Q_OBJECT

public:
    explicit StreamPanel(QWidget* parent = nullptr);

    /// For files that are saved.
    void setNames(const QString& folder, const QString& name);
    /// @param engines that have the object; borrowed while they live. @param object one without
    ///   stream hides the panel.
    void showStream(PDFObjectEngines* engines, const PDFObject& object);
    /// Shows bytes as they are stored, of an object that no engine knows of.
    void showStored(int number, const SharedBytes& bytes);
    void clear();
    bool isWaiting() const;

signals:
    void shown();

private:
    void makeLayout();
    QWidget* newPicturePage();
    void begin(PDFObjectEngines* engines, const PDFObject& object);
    PDFStreamForm form() const;
    void ask(quint64 limit);
    void take(PDFStreamRequest* request);
    void askPicture();
    void takePicture(PDFPictureRequest* request);
    void showBytes(const SharedBytes& bytes);
    void empty(const QString& note);
    void save(PDFStreamForm wanted);
    void saveAnswer(const PDFStreamRequest& request, const PDFObject& object, PDFStreamForm wanted);
    void saveBytes(const SharedBytes& bytes, const PDFObject& object, PDFStreamForm wanted,
        const QString& missing);
    void savePicture();
    void tellShown();

    QPointer<PDFObjectEngines> theEngines;
    QString theFolder;
    QString theName;
    std::optional<PDFObject> theObject;
    SharedBytes theStored; ///< of an object that no engine knows of
    QPointer<PDFStreamRequest> theRequest;
    QPointer<PDFPictureRequest> thePictureRequest;
    Work theReading; ///< of the lines of text
    Work thePacking; ///< of a picture that is saved
    quint64 theLimit = usualStream;
    QLabel* theFilters;
    QLabel* theOutcome;
    QComboBox* theForm;
    QPushButton* theMore;
    QPushButton* theSaveRaw;
    QPushButton* theSaveDecoded;
    QTabWidget* theTabs;
    PictureView* thePicture;
    QLabel* thePictureNote;
    PlainTextView* theText;
    HexView* theHex;
};

/// A label whose text can be selected, as all of an object's panel.
QLabel* newStreamLabel(QWidget* parent, const QString& name);

} // namespace tarnwick
