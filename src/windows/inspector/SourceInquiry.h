#pragma once

#include "SourceFacts.h"
#include "SourceNavigator.h"
#include "UserSearch.h"

namespace tarnwick {

class DocumentFindings;
class PlacePanel;

/// Answers questions about the source with lists of places: who refers to an object, and what is
/// remarkable about the file. The work is done in threads; another question gives up the one
/// before.
class SourceInquiry : public QObject
{
    Q_OBJECT

public:
    /// @param navigator leads to the places. @param panel shows the lists. @param findings of the
    ///   document. All borrowed.
    SourceInquiry(
        SourceNavigator* navigator, PlacePanel* panel, DocumentFindings* findings, QObject* parent);

    /// Lists who refers to an object of a pane's source. The first ones show as they are found.
    void showUsers(SourceNavigator::Pane in, qint64 objNo);
    /// Has the document's file looked through, with the scan that its pane has.
    void check();
    /// Lists what is known of the file, and what becomes known while the list shows.
    void showFindings();
    bool hasFindings() const;

private:
    void listFindings();
    void go(const PlaceRow& row);
    void close();

    SourceNavigator* theNavigator;
    PlacePanel* thePanel;
    DocumentFindings* theFindings;
    UserSearch theSearch;
    bool theFindingsShow = false; ///< or were the last to
    SourceNavigator::Pane thePane = SourceNavigator::Pane::isStored; ///< of the list that shows
};

} // namespace tarnwick
