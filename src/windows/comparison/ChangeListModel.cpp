#include "ChangeListModel.h"

#include "ChangeWords.h"
#include "compared/DocumentComparison.h"

#include <algorithm>

namespace tarnwick {

ChangeListModel::ChangeListModel(Subject subject, QObject* parent)
    : QAbstractListModel(parent)
    , theSubject(subject)
{
}

void ChangeListModel::setComparison(const DocumentComparison* comparison)
{
    theComparison = comparison;
    connect(comparison, &DocumentComparison::paired, this, &ChangeListModel::fill);
    connect(comparison, &DocumentComparison::pairCompared, this, &ChangeListModel::take);
    fill();
}

void ChangeListModel::setWholeText(std::shared_ptr<const ComparedText> text)
{
    theWholeText = std::move(text);
    fill();
}

void ChangeListModel::fill()
{
    beginResetModel();
    theChanges.clear();
    if (theWholeText) {
        for (int word = 0; word < std::ssize(theWholeText->words); ++word)
            theChanges.push_back({-1, word});
    } else if (theComparison) {
        for (int pair = 0; pair < std::ssize(theComparison->pages()); ++pair) {
            const std::vector<Change> changes = changesOf(pair);
            theChanges.insert(theChanges.end(), changes.begin(), changes.end());
        }
    }
    endResetModel();
}

std::vector<ChangeListModel::Change> ChangeListModel::changesOf(int pair) const
{
    const ComparedPage& page = theComparison->pages()[static_cast<std::size_t>(pair)];
    std::vector<Change> changes;
    if (theSubject == Subject::isPages) {
        if (page.isTold())
            changes.push_back({pair, -1});
        return changes;
    }
    for (int word = 0; word < std::ssize(page.words); ++word)
        changes.push_back({pair, word});
    const bool hasMore = page.changes > page.words.size();
    const bool isLost = page.losses[0] != PDFLoss::isNone || page.losses[1] != PDFLoss::isNone;
    if (hasMore || isLost)
        changes.push_back({pair, -1});
    return changes;
}

/// Puts the changes of a pair in the place of those that are there.
void ChangeListModel::take(int pair)
{
    if (theWholeText)
        return;
    const auto range = std::equal_range(theChanges.begin(), theChanges.end(), Change{pair, 0},
        [](const Change& one, const Change& other) { return one.pair < other.pair; });
    const auto row = static_cast<int>(range.first - theChanges.begin());
    if (const auto count = static_cast<int>(range.second - range.first); count > 0) {
        beginRemoveRows({}, row, row + count - 1);
        theChanges.erase(range.first, range.second);
        endRemoveRows();
    }
    const std::vector<Change> changes = changesOf(pair);
    if (changes.empty())
        return;
    beginInsertRows({}, row, row + static_cast<int>(changes.size()) - 1);
    theChanges.insert(theChanges.begin() + row, changes.begin(), changes.end());
    endInsertRows();
}

ChangeListModel::Change ChangeListModel::change(int row) const
{
    return row >= 0 && row < rowCount() ? theChanges[static_cast<std::size_t>(row)] : Change();
}

int ChangeListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(theChanges.size());
}

QString ChangeListModel::text(const Change& change) const
{
    if (change.pair < 0) {
        const auto word = static_cast<std::size_t>(change.word);
        const auto [before, after] = theWholeText->pages[word];
        return ChangeWords::words(ChangeWords::pages(before, after), theWholeText->words[word]);
    }
    const ComparedPage& page = theComparison->pages()[static_cast<std::size_t>(change.pair)];
    if (theSubject == Subject::isPages)
        return ChangeWords::page(page);
    const QString pages = ChangeWords::pages(page.pair.before, page.pair.after);
    if (change.word >= 0)
        return ChangeWords::words(pages, page.words[static_cast<std::size_t>(change.word)]);
    const QString losses = ChangeWords::losses(page);
    return losses.isEmpty()
        ? tr("%1: %n more changes", nullptr, static_cast<int>(page.changes - page.words.size()))
              .arg(pages)
        : tr("%1: %2").arg(pages, losses);
}

QVariant ChangeListModel::data(const QModelIndex& index, int role) const
{
    if (index.isValid() && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return text(change(index.row()));
    return {};
}

} // namespace tarnwick
