#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {

/// The file's table of all objects as readers use it (ISO 32000-2, 7.5.4 and 7.5.8), put together
/// from what the engine tells of it, and what it tells of the objects within object streams.
struct CrossReference
{
    /// A number that leads to an object in the file.
    struct Placed
    {
        std::uint64_t offset = 0; ///< below the file's size, but of an unreadable one
        std::uint32_t number = 0;
        std::uint16_t generation = 0;
        bool isReadable = true; ///< false where the table leads out of the file
    };
    /// One that leads into an object stream.
    struct Member
    {
        std::uint32_t number = 0;
        std::uint32_t container = 0; ///< the object stream's number
        std::uint32_t index = 0; ///< place in it, from 0
        std::uint32_t kind = 0; ///< place in kinds
        std::uint32_t firstReference = 0; ///< place in references; the next one's end them
        bool isReadable = true; ///< false where there is no such object
    };
    /// One that was freed, or never used.
    struct Freed
    {
        std::uint64_t section
            = 0; ///< where the part of the table that says so begins; 0 if unknown
        std::uint32_t number = 0;
    };

    // Each in the order of their numbers.
    std::vector<Placed> placed;
    std::vector<Member> members;
    std::vector<Freed> freed;
    std::vector<std::string> kinds; ///< each once, in no order
    std::vector<std::uint32_t> references; ///< in members: numbers of objects
    std::vector<std::uint32_t> roots; ///< that the trailer refers to
    bool wasRepaired = false; ///< made by the engine, since the file's own is of no use
    bool isCut = false; ///< some references are left out
};

} // namespace tarnwick
