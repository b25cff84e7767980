#pragma once

#include "text/TextStorage.h"

#include <QWidget>

#include <functional>

namespace tarnwick {

/// The strip beside a text that tells what its lines are: their numbers, and where they begin in
/// the file. Paints what the view says and takes neither clicks nor the keyboard.
class TextGutter : public QWidget
{
    Q_OBJECT

public:
    using Paint = std::function<void(QPainter& painter)>;

    TextGutter(Paint paint, QWidget* parent);

    /// A line's number, from 1, and its offset, without signs between the digits: that is how
    /// startxref and cross-reference tables have it. Empty where there is nothing to say.
    struct Label
    {
        QString number;
        QString offset;
        bool operator==(const Label&) const = default;
    };
    /// Precondition: index < storage.lineCount().
    static Label labelOf(const TextStorage& storage, qsizetype index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    Paint thePaint;
};

} // namespace tarnwick
