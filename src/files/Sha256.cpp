#include "files/Sha256.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace tarnwick {

namespace {

constexpr std::size_t rounds = 64;

constexpr Sha256::State initialState{
    0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

alignas(16) constexpr std::array<std::uint32_t, rounds> roundConstants{0x428a2f98, 0x71374491,
    0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5, 0xd807aa98, 0x12835b01,
    0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174, 0xe49b69c1, 0xefbe4786,
    0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da, 0x983e5152, 0xa831c66d,
    0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967, 0x27b70a85, 0x2e1b2138,
    0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85, 0xa2bfe8a1, 0xa81a664b,
    0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070, 0x19a4c116, 0x1e376c08,
    0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3, 0x748f82ee, 0x78a5636f,
    0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t bigEndian(const unsigned char* bytes)
{
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16
        | std::uint32_t{bytes[2]} << 8 | std::uint32_t{bytes[3]};
}

void compressBlock(Sha256::State& state, const unsigned char* block)
{
    std::array<std::uint32_t, rounds> words;
    for (std::size_t i = 0; i < 16; ++i)
        words[i] = bigEndian(block + 4 * i);
    for (std::size_t i = 16; i < rounds; ++i) {
        const std::uint32_t early = words[i - 15];
        const std::uint32_t late = words[i - 2];
        words[i] = words[i - 16] + words[i - 7]
            + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3)
            + (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10);
    }
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t i = 0; i < rounds; ++i) {
        const std::uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25))
            + ((e & f) ^ (~e & g)) + roundConstants[i] + words[i];
        const std::uint32_t second = (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22))
            + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const Sha256::State change{a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < state.size(); ++i)
        state[i] += change[i];
}

#if defined(__x86_64__)

bool hasInstructions()
{
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    constexpr unsigned shuffles = 1U << 9 | 1U << 19; // SSSE3, SSE4.1
    if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & shuffles) != shuffles)
        return false;
    return __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & 1U << 29) != 0;
}

__attribute__((target("sha,ssse3,sse4.1"))) inline __m128i bytesAt(const void* place)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(place));
}

/// The instructions keep the state as (a, b, e, f) and (c, d, g, h), and do two rounds at a time;
/// four words of the message lie in a register, which the next but three take over.
__attribute__((target("sha,ssse3,sse4.1"))) void compressWithInstructions(
    Sha256::State& state, const unsigned char* blocks, std::size_t count)
{
    const auto lane = [&state](std::size_t i) { return static_cast<int>(state[i]); };
    __m128i abef = _mm_set_epi32(lane(0), lane(1), lane(4), lane(5));
    __m128i cdgh = _mm_set_epi32(lane(2), lane(3), lane(6), lane(7));
    const __m128i swap = _mm_set_epi8(12, 13, 14, 15, 8, 9, 10, 11, 4, 5, 6, 7, 0, 1, 2, 3);
    for (; count > 0; --count, blocks += Sha256::blockSize) {
        const __m128i abefBefore = abef;
        const __m128i cdghBefore = cdgh;
        __m128i words[4];
        for (std::size_t i = 0; i < 16; ++i) {
            __m128i& now = words[i % 4];
            if (i < 4) {
                now = _mm_shuffle_epi8(bytesAt(blocks + 16 * i), swap);
            } else {
                const __m128i last = words[(i + 3) % 4];
                const __m128i middle = _mm_alignr_epi8(last, words[(i + 2) % 4], 4);
                const __m128i early = _mm_sha256msg1_epu32(now, words[(i + 1) % 4]);
                now = _mm_sha256msg2_epu32(_mm_add_epi32(early, middle), last);
            }
            const __m128i input = _mm_add_epi32(now, bytesAt(&roundConstants[4 * i]));
            cdgh = _mm_sha256rnds2_epu32(cdgh, abef, input);
            abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(input, 0x0E));
        }
        abef = _mm_add_epi32(abef, abefBefore);
        cdgh = _mm_add_epi32(cdgh, cdghBefore);
    }
    alignas(16) std::array<std::uint32_t, 4> upper; // f, e, b, a
    alignas(16) std::array<std::uint32_t, 4> lower; // h, g, d, c
    std::memcpy(upper.data(), &abef, sizeof upper);
    std::memcpy(lower.data(), &cdgh, sizeof lower);
    state = {upper[3], upper[2], lower[3], lower[2], upper[1], upper[0], lower[1], lower[0]};
}

#endif

Sha256::Compress fastestCompress()
{
#if defined(__x86_64__)
    if (hasInstructions())
        return compressWithInstructions;
#endif
    return Sha256::compressPortably;
}

} // namespace

Sha256::Sha256()
    : Sha256([] {
        static const Compress fastest = fastestCompress();
        return fastest;
    }())
{
}

Sha256::Sha256(Compress compress)
    : theCompress(compress)
    , theState(initialState)
    , theRest()
{
}

void Sha256::compressPortably(State& state, const unsigned char* blocks, std::size_t count)
{
    for (; count > 0; --count, blocks += blockSize)
        compressBlock(state, blocks);
}

void Sha256::add(std::string_view bytes)
{
    const std::size_t kept = theSize % blockSize;
    theSize += bytes.size();
    if (kept > 0) {
        const std::string_view first = bytes.substr(0, blockSize - kept);
        std::copy(first.begin(), first.end(), theRest.begin() + static_cast<std::ptrdiff_t>(kept));
        bytes.remove_prefix(first.size());
        if (kept + first.size() < blockSize)
            return;
        theCompress(theState, theRest.data(), 1);
    }
    theCompress(
        theState, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size() / blockSize);
    bytes.remove_prefix(bytes.size() / blockSize * blockSize);
    std::copy(bytes.begin(), bytes.end(), theRest.begin());
}

Sha256::Digest Sha256::digest() const
{
    Sha256 padded = *this;
    constexpr std::size_t lengthSize = 8;
    const std::size_t kept = theSize % blockSize;
    const std::size_t zeros = (2 * blockSize - lengthSize - 1 - kept) % blockSize;
    std::string end(1, '\x80');
    end.append(zeros, '\0');
    for (int shift = 56; shift >= 0; shift -= 8)
        end += static_cast<char>(theSize * 8 >> shift & 0xFF);
    padded.add(end);
    Digest digest;
    for (std::size_t i = 0; i < digest.size(); ++i)
        digest[i] = static_cast<std::uint8_t>(padded.theState[i / 4] >> (24 - 8 * (i % 4)));
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
