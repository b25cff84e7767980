#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QToolButton;

namespace tarnwick {

/// One line that tells of long work: what is done, how far it is, and a button to end it or to try
/// again. Hidden while there is nothing to tell.
class ProgressLine : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressLine(QWidget* parent = nullptr);

    /// Work is under way. @param total 0 while it is unknown.
    void showProgress(const QString& text, int done, int total);
    /// Work has ended otherwise than hoped. @param canRetry offers the button to try again.
    /// @param detail more of it, as a tool tip and for screen readers.
    void showMessage(const QString& text, bool canRetry, const QString& detail = {});
    void clear();
    /// Whether messages may take several lines; off at first.
    void setMessageWraps(bool wraps) { isMessageWrapped = wraps; }

signals:
    void cancelRequested();
    void retryRequested();

private:
    QLabel* theLabel;
    QProgressBar* theBar;
    QToolButton* theCancelButton;
    QToolButton* theRetryButton;
    bool isMessageWrapped = false;
};

} // namespace tarnwick
