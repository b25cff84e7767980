#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwick {

/// The bytes of one file and whatever keeps them alive. Copies share the bytes; nobody changes
/// them.
struct SharedBytes
{
    std::string_view view;
    std::shared_ptr<const void> owner;

    SharedBytes() = default;
    SharedBytes(std::string_view bytes, std::shared_ptr<const void> keeper)
        : view(bytes)
        , owner(std::move(keeper))
    {
    }

    /// Bytes that this object and its copies own themselves.
    static SharedBytes ofString(std::string bytes)
    {
        auto keeper = std::make_shared<const std::string>(std::move(bytes));
        const std::string_view view = *keeper;
        return {view, std::move(keeper)};
    }
};

} // namespace tarnwick
