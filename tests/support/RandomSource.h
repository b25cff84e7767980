#pragma once

#include <cstdint>
#include <string>

namespace tarnwick {

/// Texts that a scan for lines and keywords could trip over. The same seed gives the same text on
/// every machine.
namespace randomSource {

/// Keywords, pieces of keywords, white space, numbers and junk in any order.
std::string soup(std::uint64_t seed);

/// Lines that PDF files hold, in an order that no writer would choose.
std::string shuffledLines(std::uint64_t seed);

/// A file with streams, metadata, a page tree and several saves, then damaged in a few places.
std::string damagedFile(std::uint64_t seed);

} // namespace randomSource

} // namespace tarnwick
