#pragma once

#include "frame/Notice.h"

#include <QFrame>
#include <QList>

class QLabel;
class QToolButton;

namespace tarnwick {

class WrappedText;

/// The line at the lower edge of a window that says what was written, what was not and why.
///
/// It shows while a notice is unread: the latest first, those before it as it is closed. It takes
/// no focus, is in the tab order, and Escape closes it where it has the focus. Screen readers are
/// told of each notice.
class NoticeLine : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeLine(QWidget* parent = nullptr);

    /// Shows a notice in front of the others. One that stands there word for word, or is of the
    /// same subject, goes.
    void add(const Notice& notice);
    /// What has not been read, the latest last.
    const QList<Notice>& unread() const { return theNotices; }

public slots:
    /// The latest notice has been read.
    void closeLatest();
    void closeAll();
    /// Puts the notice's text on the clipboard.
    void copy() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QToolButton* addButton(const QString& objectName, const QString& text, const QString& name);
    void showLatest();
    void showIcon();

    QList<Notice> theNotices;
    QLabel* theIcon;
    WrappedText* theText;
    QLabel* theCount;
    QToolButton* theAllButton;
};

} // namespace tarnwick
