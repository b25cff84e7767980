#pragma once

#include <QWidget>

class QToolButton;

namespace tarnwick {

/// Two arrows that move a number by one: the index of the match shown.
///
/// The number may leave the matches at either end, so that whoever listens can wrap it around: it
/// runs from -1 up to the largest int.
class SearchStepper : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int integerValue READ integerValue WRITE setIntegerValue)

public:
    explicit SearchStepper(QWidget* parent = nullptr);

    int integerValue() const { return theValue; }
    /// Numbers below -1 become -1. Emits nothing.
    void setIntegerValue(int value);

    /// The buttons: to the match before (subtracts 1) and behind (adds 1).
    QToolButton* previousButton() const { return thePreviousButton; }
    QToolButton* nextButton() const { return theNextButton; }

signals:
    /// The user has moved the number.
    void stepped();

private:
    QToolButton* addButton(Qt::ArrowType arrow, const QString& name, int step);

    int theValue = 0;
    QToolButton* thePreviousButton;
    QToolButton* theNextButton;
};

} // namespace tarnwick
