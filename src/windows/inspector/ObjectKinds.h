#pragma once

#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace tarnwick {

/// What objectKind() says of each object of a catalog: two bytes an object. Finding it out takes as
/// long as reading the objects, so it is done once, and only for whoever needs it of all.
class ObjectKinds
{
public:
    /// Gets how many objects have been read, now and then.
    using Progress = std::function<void(std::size_t done)>;

    /// @param catalog borrowed for the life of the result. @param progress may be empty.
    /// @returns null when it was stopped. Throws std::bad_alloc.
    static std::shared_ptr<const ObjectKinds> of(const pdfObjectCatalog& catalog,
        const Progress& progress = {}, const std::stop_token& stop = {});

    /// The kind of an object. @param index in the order of the scan.
    std::string kind(std::size_t index) const;

    /// The kinds that there are, in their order; of a file that makes up too many not all.
    const std::vector<std::string>& names() const { return theNames; }
    /// Which of names() an object's kind is; names().size() for one that is none of them.
    std::size_t nameOf(std::size_t index) const;

private:
    /// No real file has more than a few hundred: more are read again when asked for.
    static constexpr std::size_t mostNames = 0xFFFF;

    explicit ObjectKinds(const pdfObjectCatalog& catalog);
    void sortNames();

    const pdfObjectCatalog& theCatalog;
    std::vector<std::string> theNames;
    std::vector<std::uint16_t> theKinds; ///< places in theNames; mostNames for those that are not
};

} // namespace tarnwick
