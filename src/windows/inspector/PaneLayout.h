#pragma once

#include <QList>
#include <QObject>

class QSplitter;
class QWidget;

namespace tarnwick {

/// How the panes of the inspector stand: one below the other, or the first two side by side; all of
/// them, or one alone. Remembered but for the one alone.
class PaneLayout : public QObject
{
    Q_OBJECT

public:
    /// A pane: what stands in the splitter, and what of it takes the keyboard.
    struct Pane
    {
        QWidget* widget = nullptr;
        QWidget* view = nullptr;
    };

    /// @param splitter has the panes, in their order. Borrowed; owns this.
    explicit PaneLayout(QSplitter* splitter);

    /// From the first to the last; at least two. Called once.
    void setPanes(const QList<Pane>& panes) { thePanes = panes; }
    /// Another widget takes the keyboard in a pane.
    void setView(int pane, QWidget* view) { thePanes[pane].view = view; }

    /// Brings back how the panes stood last, else their first sizes.
    void restore();
    void save() const;

    bool areSideBySide() const { return theColumns != nullptr; }
    void setSideBySide(bool sideBySide);

    /// Whether one pane stands alone.
    bool isOneAlone() const;
    /// Leaves the pane that had the keyboard last alone, or shows all again.
    void setOneAlone(bool alone);

    /// Gives the keyboard to the pane behind (1) or before (-1) the one that had it last, round and
    /// round. Where one stands alone the other takes its place.
    void focusOther(int step);

private:
    void followFocus(const QWidget* widget);

    QSplitter* theRows;
    QSplitter* theColumns = nullptr; ///< in the rows' first place while panes stand side by side
    QList<Pane> thePanes;
    int theCurrent = 0;
};

} // namespace tarnwick
