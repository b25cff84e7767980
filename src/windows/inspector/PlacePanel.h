#pragma once

#include "PlaceRows.h"

#include <QFrame>

class QLabel;
class QTreeView;

namespace tarnwick {

/// A list of places below the panes, with a line that says what it is a list of. Enter, or a click,
/// leads to a place; Escape closes the list.
class PlacePanel : public QFrame
{
    Q_OBJECT

public:
    explicit PlacePanel(QWidget* parent);

    /// Shows a list; its first row is chosen.
    /// @param title what it is, with the number of all. @param note what is missing of it.
    void showRows(const QString& title, QList<PlaceRow> rows, const QString& note = {});
    /// Says another title, as long as something is looked for.
    void setTitle(const QString& title, const QString& note = {});
    QString title() const;
    const QList<PlaceRow>& rows() const { return theRows->rows(); }
    /// Gives the list the keyboard.
    void edit();

signals:
    /// The user wants to go to the place of a row.
    void chosen(const PlaceRow& row);
    void closeWanted();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(const QModelIndex& index);

    QLabel* theTitle;
    QLabel* theNote;
    QTreeView* theView;
    PlaceRows* theRows;
};

} // namespace tarnwick
