#pragma once

#include <QFrame>

class QLineEdit;

namespace tarnwick {

class ElidedLabel;

/// The strip in which one types where to go. Enter goes, Escape closes it; what leads nowhere
/// stays, with the reason beside it.
class GoToBar : public QFrame
{
    Q_OBJECT

public:
    explicit GoToBar(QWidget* parent);

    /// Shows the bar and gives it the keyboard, its text selected.
    void edit();
    /// Says why the text leads nowhere.
    void setMistake(const QString& mistake);
    QString text() const;

signals:
    void wanted(const QString& text);
    void closeWanted();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLineEdit* theField;
    ElidedLabel* theMistake;
};

} // namespace tarnwick
