#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

/// The SHA-256 of bytes that come in portions (FIPS 180-4), with the processor's own instructions
/// where it has them.
class Sha256
{
public:
    using Digest = std::array<std::uint8_t, 32>;
    static constexpr std::size_t blockSize = 64; ///< bytes
    using State = std::array<std::uint32_t, 8>;
    /// Works whole blocks into a state.
    using Compress = void (*)(State& state, const unsigned char* blocks, std::size_t count);

    /// The fastest way that this processor has.
    Sha256();
    explicit Sha256(Compress compress);
    /// A way that every processor has.
    static void compressPortably(State& state, const unsigned char* blocks, std::size_t count);

    void add(std::string_view bytes);
    /// Of all that has been added so far; more may follow.
    Digest digest() const;

private:
    Compress theCompress;
    State theState;
    std::array<unsigned char, blockSize> theRest; ///< what makes no block so far
    std::uint64_t theSize = 0; ///< bytes added
};

/// Two digits for each byte, as sha256sum prints them.
std::string hexadecimal(const Sha256::Digest& digest);

} // namespace tarnwick
