#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tarnwick {

/// What a fuzzing target is: a function that takes any bytes whatever. A fault ends the process: a
/// sanitizer does it, or require(). The fuzzer's library calls it in a build with TARNWICK_FUZZ,
/// Replay.cpp in all others.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the process, saying what does not hold.
inline void require(bool holds, std::string_view what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%.*s\n", static_cast<int>(what.size()), what.data());
    std::abort();
}

/// The bytes as text. Borrowed.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace tarnwick
