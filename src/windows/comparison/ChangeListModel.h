#pragma once

#include "compared/TextComparing.h"

#include <QAbstractListModel>

#include <memory>
#include <vector>

namespace tarnwick {

class DocumentComparison;

/// The changes that a comparison has found, as a list shows them: in the order of the pages, of
/// those of the texts by the page or throughout.
class ChangeListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum class Subject
    {
        isPages,
        isText,
    };
    struct Change
    {
        int pair = -1; ///< of pages; -1 for a change of the whole text
        int word = -1; ///< which of its changes of words, or of all; -1 for the page
    };

    explicit ChangeListModel(Subject subject, QObject* parent);

    /// @param comparison borrowed, paired; the model follows it.
    void setComparison(const DocumentComparison* comparison);
    /// Shows the changes of the whole text instead of those of each page; null goes back.
    void setWholeText(std::shared_ptr<const ComparedText> text);
    const std::shared_ptr<const ComparedText>& wholeText() const { return theWholeText; }

    Change change(int row) const;
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    void take(int pair);
    std::vector<Change> changesOf(int pair) const;
    void fill();
    QString text(const Change& change) const;

    Subject theSubject;
    const DocumentComparison* theComparison = nullptr;
    std::shared_ptr<const ComparedText> theWholeText;
    std::vector<Change> theChanges; ///< by pair, then by word
};

} // namespace tarnwick
