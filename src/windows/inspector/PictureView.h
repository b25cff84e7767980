#pragma once

#include "work/Work.h"

#include <QFrame>
#include <QImage>

namespace tarnwick {

/// Shows an image as large as it may be without being enlarged, on squares where it is transparent.
/// Reducing it is done in a thread: a large one never holds up the window.
class PictureView : public QFrame
{
    Q_OBJECT

public:
    explicit PictureView(QWidget* parent = nullptr);

    /// @param image null for none.
    void setImage(const QImage& image);
    const QImage& image() const { return theImage; }

    Q_INVOKABLE bool validateCommand(const QString& command) const;

public slots:
    /// Puts the image into the clipboard, in its own size.
    void copy();

signals:
    /// The user wants the image in a file.
    void saveWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect place() const;
    void reduce();

    QImage theImage;
    QImage theReduced; ///< for place(), or null while it is being made
    Work theReducing;
};

} // namespace tarnwick
