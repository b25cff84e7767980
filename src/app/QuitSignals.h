#pragma once

#include <QObject>

namespace tarnwick {

/// Turns SIGTERM, SIGINT and SIGHUP into a signal of the event loop, so that the program ends as if
/// the user had quit it. One exists at a time.
class QuitSignals : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject* parent = nullptr);
    /// Gives the signals their default effect back.
    ~QuitSignals() override;

signals:
    void received();
};

} // namespace tarnwick
