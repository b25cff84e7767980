#pragma once

#include <cstdint>

namespace tarnwick {

/// A reference to an indirect object (ISO 32000-2, 7.3.10) within one saved version.
///
/// The version is not part of the reference's text: it is that of the record in which the reference
/// stands. A reference that cannot be read is (0, 0, 0).
struct ObjectRef
{
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
    std::int64_t objVer = 0;

    bool operator==(const ObjectRef&) const = default;
};

} // namespace tarnwick
