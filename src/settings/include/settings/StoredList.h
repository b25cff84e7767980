#pragma once

#include <QStringList>

#include <functional>

namespace tarnwick {

/// A list of texts in the user's settings (QSettings) that several programs may change at once.
///
/// Every use reads what stands there now. A change reads, changes and writes under a lock that
/// every program of this user takes, so that nobody's entries are lost. Where no lock can be had
/// (within seconds, or at all) the change is made without.
class StoredList
{
public:
    explicit StoredList(const QString& key);

    QStringList texts() const;
    /// Lets change edit the list, and stores the result if it is another one.
    /// @returns the list as it stands then.
    QStringList change(const std::function<void(QStringList&)>& change) const;

private:
    QString theKey;
};

} // namespace tarnwick
