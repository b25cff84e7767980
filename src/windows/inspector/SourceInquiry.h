#pragma once

#include "SourceFacts.h"
#include "SourceNavigator.h"
#include "UserSearch.h"
#include "work/Work.h"

namespace tarnwick {

class FindingsStrip;
class PlacePanel;

/// Answers questions about the source with lists of places: who refers to an object, and what is
/// remarkable about the file. The work is done in threads; another question gives up the one
/// before.
class SourceInquiry : public QObject
{
    Q_OBJECT

public:
    /// @param navigator leads to the places. @param panel shows the lists. @param strip tells that
    ///   there are findings, and opens their list; hidden while there are none. All borrowed.
    SourceInquiry(
        SourceNavigator* navigator, PlacePanel* panel, FindingsStrip* strip, QObject* parent);

    /// Lists who refers to an object of a pane's source. The first ones show as they are found.
    void showUsers(SourceNavigator::Pane in, qint64 objNo);
    /// Looks through the stored file once its pane has it.
    void check();
    /// Lists what check() has found.
    void showFindings();
    bool hasFindings() const { return !theFindings.isEmpty(); }

private:
    void takeFindings(const Findings& findings, QList<PlaceRow> rows);
    void go(qint64 offset);
    void close();

    SourceNavigator* theNavigator;
    PlacePanel* thePanel;
    FindingsStrip* theStrip;
    UserSearch theSearch;
    Work theCheck;
    std::shared_ptr<const SourceText> theChecked;
    QList<PlaceRow> theFindings;
    qulonglong theFindingCount = 0;
    SourceNavigator::Pane thePane = SourceNavigator::Pane::isStored; ///< of the list that shows
};

} // namespace tarnwick
