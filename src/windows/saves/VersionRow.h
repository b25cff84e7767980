#pragma once

#include "files/Sha256.h"
#include "versions/SavedVersion.h"

#include <QString>

#include <cstddef>
#include <optional>

namespace tarnwick {

/// What the document that a version is says of itself, or why it cannot be opened.
struct VersionContent
{
    int pageCount = 0;
    QString producer;
    QString created; ///< as dateText() has it; empty where the version does not say
    QString modified; ///< likewise
    QString problem; ///< a sentence; the rest is then empty
};

/// What is known of a version so far.
struct VersionRow
{
    SavedVersion version;
    std::optional<Sha256::Digest> hash;
    std::optional<std::size_t> signatures; ///< signature dictionaries in the bytes that it added
    std::optional<VersionContent> content;
};

} // namespace tarnwick
