#pragma once

#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// A place that refers to an object.
struct ObjectUse
{
    std::size_t offset = 0; ///< of the reference in the file
    std::int64_t objGen = 0; ///< that the reference names
    /// The object or trailer in which it stands, by its place in the scan; nothing where the
    /// listing has no object there, as behind a header without "endobj".
    std::optional<std::size_t> user;
};

/// What a search for users has found so far.
struct ObjectUses
{
    /// More are counted, not kept.
    static constexpr std::size_t mostKept = 100'000;

    std::vector<ObjectUse> uses; ///< in the order of the file
    std::size_t count = 0; ///< of all, kept or not
    bool isComplete = false; ///< false for a search that was stopped
};

/// Who refers to an object: one pass over the file's bytes when somebody asks, for which nothing is
/// kept beforehand.
///
/// A use is "17 0 R", of any generation, in the value of an object or a trailer in any saved
/// version. Within strings, comments and streams there are none; a stream's dictionary is looked at
/// whole, also where it shares its line with "stream" and the listing leaves it out. References in
/// object streams are not seen. May run on any thread; takes time in proportion to the file.
class ObjectUsers
{
public:
    /// Gets what has been found since the last call, and how many bytes have been looked at:
    /// first when something is found, then a few times for each 64 MB.
    using Progress = std::function<void(const ObjectUses& soFar, std::size_t bytesDone)>;

    /// @param catalog of the scanned file; borrowed.
    explicit ObjectUsers(const pdfObjectCatalog& catalog)
        : theCatalog(catalog)
    {
    }

    /// @param objNo a number above 0 is what references can have; others have no users but may be
    ///   asked for. @param progress may be empty.
    ObjectUses find(
        std::int64_t objNo, const Progress& progress = {}, std::stop_token stop = {}) const;

private:
    const pdfObjectCatalog& theCatalog;
};

} // namespace tarnwick
