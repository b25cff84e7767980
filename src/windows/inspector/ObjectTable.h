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

    /// Selects the row of an object, without telling of it; no row where it has none.
    /// @param object its place in the scan.
    void setCurrent(std::optional<std::size_t> object);

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
    void takeRows(ObjectRowsMaker::Outcome outcome);
    void tellProgress(ObjectRowsMaker::Step step, quint64 done, quint64 total, bool isWaitedFor);
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
    ObjectFilter theFilter;
    ObjectOrder theOrder;
    std::optional<std::size_t> theCurrent;
    bool theRowsAreOld = false; ///< have not been made for the source, the filter, the order
    bool theIsSelecting = false; ///< not the user
};

} // namespace tarnwick
