#include "WrappedText.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>

namespace tarnwick {

namespace {

constexpr int maximumRows = 3;

} // namespace

WrappedText::WrappedText(QWidget* parent)
    : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void WrappedText::setText(const QString& text)
{
    theText = text;
    for (QChar& character : theText) {
        // The name of a file may hold anything, what breaks a line too.
        if (character.category() == QChar::Other_Control
            || character.category() == QChar::Separator_Line
            || character.category() == QChar::Separator_Paragraph)
            character = u' ';
    }
    setAccessibleName(theText);
    updateGeometry();
    update();
    resizeEvent(nullptr);
}

QStringList WrappedText::rows(int width) const
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(theText, font());
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList rows;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1, width));
        if (rows.size() == maximumRows - 1) {
            rows << fontMetrics().elidedText(theText.mid(line.textStart()), Qt::ElideRight, width);
            break;
        }
        rows << theText.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return rows;
}

QSize WrappedText::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(theText), fontMetrics().height()};
}

QSize WrappedText::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 10, fontMetrics().height()};
}

int WrappedText::heightForWidth(int width) const
{
    return fontMetrics().lineSpacing() * std::max(1, static_cast<int>(rows(width).size()));
}

void WrappedText::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int height = fontMetrics().lineSpacing();
    const QStringList shown = rows(width());
    int top = std::max(0, (this->height() - height * static_cast<int>(shown.size())) / 2);
    for (const QString& row : shown) {
        style()->drawItemText(&painter, QRect(0, top, width(), height),
            static_cast<int>(Qt::AlignVCenter | Qt::TextSingleLine
                | QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)),
            palette(), isEnabled(), row, foregroundRole());
        top += height;
    }
}

void WrappedText::resizeEvent(QResizeEvent*)
{
    const QStringList shown = rows(width());
    const bool isElided = !shown.isEmpty() && !theText.endsWith(shown.constLast().trimmed());
    setToolTip(isElided ? theText.toHtmlEscaped() : QString());
}

} // namespace tarnwick
