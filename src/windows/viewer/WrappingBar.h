#pragma once

#include <QFrame>

#include <span>

namespace tarnwick {

/// A bar of controls that takes further rows where it is too narrow for one.
///
/// Its direct children are groups, in the order of their creation, each with a layout of its own. A
/// group is never broken up, so the bar is at least as wide as the widest one has to be. A group
/// that wants to grow (QSizePolicy) takes what its row leaves, up to its maximum width. A line
/// stands between two groups of a row.
class WrappingBar : public QFrame
{
    Q_OBJECT

public:
    explicit WrappingBar(QWidget* parent = nullptr);

    /// All groups in one row.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Place
    {
        QWidget* group;
        QRect area; ///< as in a layout from left to right
        bool isFirstOfRow;
    };
    static void finishRow(std::span<Place> row, int end);
    /// Where the groups lie in a bar of some width.
    QList<Place> places(int width) const;
    QList<QWidget*> groups() const;
    void arrange();
};

} // namespace tarnwick
