#pragma once

#include <QString>

namespace tarnwick {

/// Why a file may not be written where the user wants it, as a sentence: an opened file stands
/// there (OpenedFiles), or a device or a pipe. Empty when it may.
QString outputRefusal(const QString& path);

} // namespace tarnwick
