#pragma once

#include "pdf/PDFObject.h"

#include <QString>

namespace tarnwick {

/// What an object is, as the user is told; empty for one that there is nothing to say of.
QString objectKindText(PDFObjectKind kind);
/// The facts in lines, each with its name before it: "Glyphs   231". No line end behind the last.
QString factLines(const QList<PDFFact>& facts);

} // namespace tarnwick
