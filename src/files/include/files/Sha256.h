#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <nettle/sha2.h>

namespace tarnwick {

/// The SHA-256 of bytes that come in portions (FIPS 180-4).
class Sha256
{
public:
    using Digest = std::array<std::uint8_t, SHA256_DIGEST_SIZE>;

    Sha256();
    void add(std::string_view bytes);
    /// Of all that has been added so far; more may follow.
    Digest digest() const;

private:
    sha256_ctx theState;
};

/// Two digits for each byte, as sha256sum prints them.
std::string hexadecimal(const Sha256::Digest& digest);

} // namespace tarnwick
