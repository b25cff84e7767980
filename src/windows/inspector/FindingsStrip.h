#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

namespace tarnwick {

/// The line above the panes that tells what is remarkable about the file. Hidden while that is
/// nothing.
class FindingsStrip : public QFrame
{
    Q_OBJECT

public:
    explicit FindingsStrip(QWidget* parent);

    /// Shows a sentence; hides the strip when it is empty.
    void setText(const QString& text);
    QString text() const;

signals:
    /// The user wants to see all.
    void wanted();

private:
    QLabel* theText;
};

} // namespace tarnwick
