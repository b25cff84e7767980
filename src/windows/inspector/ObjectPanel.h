#pragma once

#include "ObjectFiles.h"
#include "UserSearch.h"
#include "analysis/pdfObject.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class QLabel;
class QPushButton;
class QSplitter;

namespace tarnwick {

class PlacePanel;
class PlainTextView;
class StreamPanel;

/// An object of one of the files that a window shows.
struct ObjectChoice
{
    std::optional<int> number; ///< nothing for no object
    /// Of the object that was chosen in the file: where the file's table leads elsewhere, that one
    /// is shown, and the panel says so.
    std::optional<ByteRange> range;
    ObjectFile file = ObjectFile::isStored;

    bool operator==(const ObjectChoice&) const = default;
};

/// Shows one object: what it is and says, its references as links, where it stands, who refers to
/// it and below that what its stream holds. Only what shows is asked of the engine.
///
/// An object that a later version has replaced is shown as the version has it that it belongs to;
/// where no engine can make anything of that version, as it is stored.
class ObjectPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ObjectPanel(QWidget* parent = nullptr);

    /// @param document borrowed while it lives. @param name of files that are saved begin with it.
    void setDocument(PDFDocument* document, const QString& folder, const QString& name);
    /// What is known of the files' sources by now.
    void setStoredSource(std::shared_ptr<const SourceText> source);
    void setFlattened(const FileBytes& bytes, std::shared_ptr<const SourceText> source);

    /// Shows an object, after a moment in which another may take its place when it is not urgent.
    void showObject(const ObjectChoice& choice, bool isUrgent);
    const ObjectChoice& choice() const { return theChoice; }
    /// Whether an answer of the engine is still to come.
    bool isWaiting() const;

signals:
    /// A reference was followed, in the file of choice().
    void objectWanted(int number);
    /// A place in the file of choice() was chosen.
    void placeWanted(qint64 offset);
    /// What was asked for shows.
    void shown();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void makeLayout();
    void connectLinks(PlainTextView* view);
    void ask();
    void take(PDFObjectRequest* request);
    void takeVersion(PDFObjectRequest* request);
    void askFor(PDFObjectEngines* engines, void (ObjectPanel::*then)(PDFObjectRequest*));
    void askVersion();
    void showPresent(PDFObjectEngines* engines, const PDFObject& object);
    void showStored();
    void takeFacts(PDFFactsRequest* request);
    void clear(const QString& note);
    void setNotice(const QString& text);
    void showText(const SharedBytes& bytes);
    void showUsers();
    void tellShown();
    bool isElsewhere(const PDFObject& object) const;
    QString placeText(const PDFObject& object) const;
    QString replacedText(const PDFObject& inUse) const;

    ObjectFiles theFiles;
    ObjectChoice theChoice;
    bool isObjectAsked = true; ///< for theChoice
    QPointer<PDFObjectRequest> theRequest;
    QPointer<PDFFactsRequest> theFactsRequest;
    QTimer thePause;
    QLabel* theTitle;
    QPushButton* theUsersButton;
    QLabel* thePlace;
    QLabel* theNotice;
    QPushButton* theCurrentButton;
    PlainTextView* theFacts;
    QSplitter* theParts;
    PlainTextView* theText;
    StreamPanel* theStream;
    PlacePanel* theUsers;
    UserSearch theSearch;
};

} // namespace tarnwick
