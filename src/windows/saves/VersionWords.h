#pragma once

#include "VersionRow.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace tarnwick {

class VersionReading;

/// What the window, its table and its report say of versions.
namespace VersionWords {

/// A number with the marks that the user's language has between thousands.
QString counted(std::uint64_t number);
/// "1, 4–7, 12". @param longest characters, behind which only a count follows; 0 for all.
QString numbers(const std::vector<std::uint32_t>& numbers, qsizetype longest);
/// What is there: "a table".
QString targetKind(SavedVersion::Target target);
/// Where a version's startxref leads: "1,234, a table".
QString target(const SavedVersion& version);
/// What a version has changed of the one before it; null where there is none, or where that cannot
/// be known.
const ObjectChanges* changes(const SavedVersion& version);
/// The first and the last of the digits.
QString shortHash(const Sha256::Digest& digest);

/// What is special about a version, most important first. @param fileSize of the whole file.
QStringList notes(const VersionRow& row, std::size_t fileSize);
/// How many versions there are, how many markers, and why these are not the same.
QString summary(const VersionReading& reading);
/// Everything about one version, a fact a line.
QString details(const VersionRow& row, const VersionReading& reading);

} // namespace VersionWords

} // namespace tarnwick
