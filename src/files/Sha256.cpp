#include "files/Sha256.h"

#include <cstdint>

namespace tarnwick {

Sha256::Sha256()
    : theState()
{
    sha256_init(&theState);
}

void Sha256::add(std::string_view bytes)
{
    sha256_update(&theState, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

Sha256::Digest Sha256::digest() const
{
    sha256_ctx state = theState; // the library ends the one that it takes the digest from
    Digest digest;
    sha256_digest(&state, digest.size(), digest.data());
    return digest;
}

std::string hexadecimal(const Sha256::Digest& digest)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += digits[byte >> 4U];
        text += digits[byte & 0xFU];
    }
    return text;
}

} // namespace tarnwick
