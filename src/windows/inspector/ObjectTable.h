#pragma once

#include "ObjectRowsMaker.h"

#include <QWidget>

#include <optional>

class QLabel;
class QLineEdit;
class QTableView;
class QToolButton;

namespace tarnwick {

class ObjectTableModel;

/// The table of a source's objects, with a filter over it and a line under it that says how many
/// there are. Works on nothing while it does not show.
class ObjectTable : public QWidget
{
    Q_OBJECT

public:
    explicit ObjectTable(QWidget* parent = nullptr);

    /// Shows the objects of a source. @param source scanned; null for none.
    /// @param reason why there are none.
    void setSource(std::shared_ptr<const SourceText> source, const QString& reason = {});
    const std::shared_ptr<const SourceText>& source() const { return theMaker->source(); }
    /// What the file's table tells of the source's objects: for those that the listing does not
    /// have. Waited for since setSource(). @param failure why it is not known.
    void setTabled(std::shared_ptr<const TabledObjects> tabled, const QString& failure);

    /// Selects the row of an object, without telling of it; no row where it has none.
    /// @param object its place in the scan.
    void setCurrent(std::optional<std::size_t> object);
    /// Likewise of one that the listing may not have. @param number of the object.
    void setCurrentUnlisted(int number);

    /// Gives the filter the keyboard, its text selected.
    void editFilter();
    /// Whether the rows are not yet those that the filter and the order ask for.
    bool isMaking() const { return theMaker->isMaking(); }

    Q_INVOKABLE bool validateCommand(const QString& command) const;

public slots:
    /// Copies the selected row.
    void copy();

signals:
    /// The user has moved to an object's row, or wants to go to the object itself.
    /// @param object its place in the scan of source().
    /// @{
    void chosen(std::size_t object);
    void wanted(std::size_t object);
    /// @}
    /// Likewise for the row of an object that the listing does not have.
    /// @{
    void unlistedChosen(int number);
    void unlistedWanted(int number);
    /// @}
    /// The user wants to see the object of a number in the flattened document.
    void flattenedWanted(qint64 number);
    /// Somebody looks at the objects: setTabled() is waited for.
    void tableWanted();
    /// The rows are those that the filter and the order ask for, or the work for them was given up.
    void settled();

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();
    void setUpView();
    void connectParts();
    bool handleFilterKey(int key);
    bool beginFilter(const QKeyEvent& key);
    void readFilter();
    void make();
    void tellChosen(std::size_t row);
    void tellWanted(std::size_t row);
    void takeRows(ObjectRowsMaker::Outcome outcome);
    void tellProgress(ObjectRowsMaker::Step step, quint64 done, quint64 total, bool isWaitedFor);
    void tellMeanwhile(const QString& remark);
    void tellCount(const QString& remark = {});
    void selectCurrent();
    void openMenu(const QPoint& place);

    ObjectRowsMaker* theMaker;
    ObjectTableModel* theModel;
    QLineEdit* theField;
    QLabel* theMistake;
    QTableView* theView;
    QLabel* theStatus;
    QToolButton* theStop;
    QString theReason; ///< why there are no objects
    QString theTableFailure; ///< why those that the listing does not have are missing
    ObjectFilter theFilter;
    ObjectOrder theOrder;
    std::optional<std::size_t> theCurrent; ///< row, as ObjectFacts has it
    std::optional<int> theUnlisted; ///< number of one that is to be current once it is known
    bool areRowsOld = false; ///< have not been made for the source, the filter, the order
    bool theIsSelecting = false; ///< not the user
};

} // namespace tarnwick
