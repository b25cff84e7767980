#pragma once

#include <QString>
#include <QWidget>

namespace tarnwick {

/// A plain text that is wrapped wherever it must be, inside long file names too, and takes at most
/// three lines; what does not fit is elided in the view and whole in the tool tip.
class WrappedText : public QWidget
{
    Q_OBJECT

public:
    explicit WrappedText(QWidget* parent = nullptr);

    const QString& text() const { return theText; }
    /// Line breaks and other control characters show as spaces.
    void setText(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QStringList rows(int width) const;

    QString theText;
};

} // namespace tarnwick
