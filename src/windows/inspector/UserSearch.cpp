#include "UserSearch.h"

#include "PlacePanel.h"
#include "SourceFacts.h"

#include <QLocale>

#include <utility>

namespace tarnwick {

void UserSearch::start(const std::shared_ptr<const SourceText>& source, qint64 objNo)
{
    thePanel->showRows(tr("Users of object %1: searching…").arg(objNo), {});
    struct Found
    {
        ObjectUses uses;
        QList<PlaceRow> rows;
    };
    const auto task
        = [this, source, objNo](const std::stop_token& stop, const Work::Report& report) {
              const pdfObjectCatalog& catalog = source->theCatalog();
              bool areFirst = true;
              ObjectUses uses = ObjectUsers(catalog).find(
                  objNo,
                  [&](const ObjectUses& soFar, std::size_t bytesDone) {
                      report(bytesDone, catalog.bytes().size());
                      if (!std::exchange(areFirst, false))
                          return;
                      report.deliver([this, objNo, uses = soFar, rows = userRows(catalog, soFar)] {
                          take(objNo, uses, rows);
                      });
                  },
                  stop);
              QList<PlaceRow> rows = userRows(catalog, uses);
              return Found{std::move(uses), std::move(rows)};
          };
    theWork.start(
        task, [this, objNo](const Found& found) { take(objNo, found.uses, found.rows); },
        [this, objNo](quint64 done, quint64 total) {
            thePanel->setTitle(tr("Users of object %1: searching… %2 %")
                                   .arg(objNo)
                                   .arg(total > 0 ? 100 * done / total : 0));
        });
}

void UserSearch::take(qint64 objNo, const ObjectUses& uses, QList<PlaceRow> rows)
{
    const QString count = QLocale().toString(qulonglong{uses.count});
    const QString title = uses.isComplete
        ? tr("Users of object %1: %2").arg(objNo).arg(count)
        : tr("Users of object %1: %2 so far").arg(objNo).arg(count);
    const bool isCut = uses.count > uses.uses.size();
    thePanel->showRows(title, std::move(rows),
        isCut ? tr("The first %1 are shown").arg(QLocale().toString(qulonglong{uses.uses.size()}))
              : tr("References within object streams are not seen"));
}

} // namespace tarnwick
