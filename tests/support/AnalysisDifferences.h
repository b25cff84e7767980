#pragma once

#include "support/PlainAnalysis.h"

#include <string>
#include <vector>

namespace tarnwick {

/// Pieces written one after another in UTF-8, each behind the letter of its role.
std::string shownPieces(const std::vector<plain::ColouredText>& pieces);

/// Holds the analysis against the plain one: listing and object list (by pieces and by lines asked
/// for in stretches), summary, saved versions.
/// @param bytes a file's bytes, any whatever.
/// @returns the first thing that the analysis says otherwise; empty if nothing.
std::string analysisDifferences(const std::string& bytes);

} // namespace tarnwick
