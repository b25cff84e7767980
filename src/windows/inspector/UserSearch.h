#pragma once

#include "PlaceRows.h"
#include "analysis/ObjectUsers.h"
#include "analysis/SourceText.h"
#include "work/Work.h"

#include <QCoreApplication>

#include <memory>

namespace tarnwick {

class PlacePanel;

/// Looks for those who refer to an object, and lists them as they are found. The work is done in a
/// thread; another search gives up the one before.
class UserSearch
{
    Q_DECLARE_TR_FUNCTIONS(UserSearch)

public:
    /// @param panel shows the list; borrowed.
    explicit UserSearch(PlacePanel* panel)
        : thePanel(panel)
    {
    }

    void start(const std::shared_ptr<const SourceText>& source, qint64 objNo);
    void abandon() { theWork.abandon(); }
    bool isRunning() const { return theWork.isRunning(); }

private:
    void take(qint64 objNo, const ObjectUses& uses, QList<PlaceRow> rows);

    PlacePanel* thePanel;
    Work theWork;
};

} // namespace tarnwick
