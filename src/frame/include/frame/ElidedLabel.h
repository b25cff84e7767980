#pragma once

#include <QLabel>

namespace tarnwick {

/// A line of plain text that ends in an ellipsis where there is no room for more; its tool tip and
/// assistive technology have the whole. It never makes its window wider or higher.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// Also the tool tip and the accessible name.
    void setWhole(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tarnwick
