#pragma once

#include <cstddef>

namespace tarnwick {

/// What shows bytes of a document's file: the content of the window that is registered for bytes.
class BytesDisplay
{
public:
    virtual ~BytesDisplay() = default;

    /// Selects bytes and shows the first of them. What lies behind the file's end is left out.
    virtual void goTo(std::size_t offset, std::size_t length) = 0;
};

} // namespace tarnwick
