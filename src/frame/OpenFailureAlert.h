#pragma once

#include "dialogs/Alert.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace tarnwick {

/// Tells which files could not be opened and why. It blocks nothing, and further failures join the
/// alert that shows rather than piling up alerts. Where a file's bytes could be read, it offers to
/// open their source.
class OpenFailureAlert : public Alert
{
    Q_OBJECT

public:
    using OpenSource = std::function<void()>;

    /// @param parent the window that a new alert belongs to, or null.
    /// @param path of a file, or what else is to be opened is called.
    /// @param openSource opens its source; empty where nothing could be read.
    /// @returns the alert that tells it, which destroys itself.
    static OpenFailureAlert* report(
        QWidget* parent, const QString& path, const QString& reason, OpenSource openSource = {});

    /// Moves the alert that shows, if any, over to a window that has just come up: otherwise the
    /// window would lie over it.
    static void moveTo(QWidget* window);
    /// The same for a window that is about to close with the alert on it, which nobody may have
    /// read. @param window another one that shows, or null: then the alert goes too.
    static void leave(const QWidget* closing, QWidget* window);

    /// Learns when the window that it waits for has its place.
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// The alert that shows or is about to.
    static OpenFailureAlert* current();
    explicit OpenFailureAlert(QWidget* parent);
    void add(const QString& path, const QString& reason, OpenSource openSource);
    void tellAll();
    void offerSources();
    void showInFront();
    void showOnceItsWindowHasItsPlace();

    struct Source
    {
        QString name;
        OpenSource open;
    };

    QStringList theNames;
    QStringList theReasons;
    QList<Source> theSources; ///< of files that could be read
    QPushButton* theSourceButton = nullptr;
    bool isWaiting = false; ///< for its window to come up
};

} // namespace tarnwick
