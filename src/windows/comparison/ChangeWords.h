#pragma once

#include "compared/ComparedPage.h"

#include <QString>

namespace tarnwick {

class DocumentComparison;

/// What the comparison of pages and texts has found, in words.
namespace ChangeWords {

/// "Page 3", or "Page 3 → 4" where the number has changed.
QString pages(int before, int after);
/// What became of a pair of pages.
QString page(const ComparedPage& page);
/// Of a change: "Page 3: 100.00 → 120.00".
QString words(const QString& page, const ComparedWords& words);
/// Why a pair could not be compared whole; empty where nothing is missing.
QString losses(const ComparedPage& page);
/// How many pages are the same, changed, added, removed, moved, lost.
QString summary(const DocumentComparison& comparison);

}

} // namespace tarnwick
