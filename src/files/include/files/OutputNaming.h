#pragma once

#include <QString>
#include <QStringList>

namespace tarnwick {

/// The path with an allowed ending: its own, in whatever case, or the first of them behind all that
/// the name has ("v1.2" becomes "v1.2.pdf"). A name that is nothing but an ending has none.
/// @param types endings without dot, at least one.
QString withAllowedType(const QString& path, const QStringList& types);

/// A name to propose in a folder: the given one, or with a number before its ending where that
/// leads to an opened file ("report-2.pdf").
QString nameOfNoOpenedFile(const QString& folder, const QString& name);

} // namespace tarnwick
