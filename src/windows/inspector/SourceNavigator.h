#pragma once

#include "PaneSource.h"
#include "PlaceHistory.h"
#include "PlaceQuery.h"
#include "pdf/FlattenedNumbers.h"

#include <QObject>

#include <array>
#include <memory>
#include <utility>

class QAction;
class QMenu;

namespace tarnwick {

/// Leads the user through the source: from references to their objects, to what was typed, back
/// and forward. What leads nowhere is said in a sentence.
class SourceNavigator : public QObject
{
    Q_OBJECT

public:
    enum class Pane
    {
        isFlattened,
        isStored,
    };

    /// @param history borrowed, outlives this.
    SourceNavigator(PlaceHistory& history, QObject* parent);

    /// What a pane shows from now on. References in it are followed when the view says so.
    /// @param view borrowed until another one is set.
    void setPane(Pane pane, PlainTextView* view, std::shared_ptr<const SourceText> source);
    const PaneSource& pane(Pane pane) const { return thePanes.at(index(pane)); }

    /// The pane that had the keyboard last; at first the one of the stored file.
    Pane current() const { return theCurrent; }

    /// Goes to a place. Objects and offsets are looked for in the current pane, pages in that one
    /// and then in the other.
    /// @returns why it does not; empty when it does.
    QString goTo(const PlaceQuery& query);
    /// Goes to the byte at an offset of a pane's file; without a listing to its object.
    QString goToOffset(std::size_t offset, Pane in);
    /// Goes to a page's object. @param page from 1. @param first where to look for it first.
    QString goToPage(int page, Pane first);
    /// Follows the reference at the current pane's caret. @returns as goTo().
    QString follow();
    bool canFollow() const;

    /// The object that a place speaks of: the one that a reference there leads to, else the one in
    /// whose lines it is.
    std::optional<pdfObject> subjectAt(Pane in, TextPosition place) const;

    /// The number of the object that the caret of the current pane speaks of, whether or not there
    /// is such an object.
    std::optional<qint64> subjectNumber() const;

    /// Which object of the flattened document was which in the file; null where it is not known.
    void setNumbers(std::shared_ptr<const FlattenedNumbers> numbers)
    {
        theNumbers = std::move(numbers);
    }
    /// Shows an object of one source in the other one. @returns as goTo().
    QString showInOther(Pane from, qint64 objNo);

    bool canGoBack() const { return theHistory.canGoBack(); }
    bool canGoForward() const { return theHistory.canGoForward(); }
    void goBack();
    void goForward();

    /// Shows an object and gives its pane the keyboard. @returns as goTo().
    QString show(const pdfObject& object, Pane in);
    /// Shows an object in what is the current pane from then on; the keyboard stays where it is.
    /// Going on from there leads back to where the user was before the first of such looks.
    /// @returns as goTo().
    QString lookAt(const pdfObject& object, Pane in);

signals:
    /// A sentence about what was asked for in a pane; empty when the last one no longer holds.
    void said(tarnwick::SourceNavigator::Pane in, const QString& sentence);
    /// The user wants to see a page, counted from 0.
    void pageWanted(int page);
    /// The user wants to see bytes of the stored file.
    void bytesWanted(qulonglong offset, qulonglong length);
    /// The user wants to know who refers to an object.
    void usersWanted(tarnwick::SourceNavigator::Pane in, qint64 objNo);
    /// The user wants to see an object of the stored file that has no line in its pane.
    void unlistedWanted(int objNo);

private:
    static std::size_t index(Pane pane) { return static_cast<std::size_t>(pane); }

    QString followReference(const ScannedReference& reference, std::int64_t version, Pane in);
    QString goToObject(const ObjectQuery& query, Pane in);
    void jump(Pane to, TextRange range);
    void arrive(const std::optional<PanePlace>& place);
    PanePlace present() const { return PanePlace::of(pane(theCurrent).view()); }
    PanePlace departure() const;
    void followFocus(const QWidget* widget);

    void extendMenu(Pane in, QMenu& menu, QAction* before, TextPosition place);
    void offerVersions(Pane in, QMenu& menu, QAction* before, const pdfObject& object);

    PlaceHistory& theHistory;
    Pane theCurrent = Pane::isStored;
    std::array<PaneSource, 2> thePanes;
    std::shared_ptr<const FlattenedNumbers> theNumbers;
    PanePlace theLook; ///< the last one; no longer one when its pane's caret has moved
    PanePlace theLookOrigin;
};

} // namespace tarnwick
