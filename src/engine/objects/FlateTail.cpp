#include "FlateTail.h"

#include <algorithm>
#include <string>

#include <zlib.h>

namespace tarnwick {

namespace {

constexpr std::size_t portion = 64 * 1024; ///< bytes

class Inflation
{
public:
    Inflation(std::uint64_t skip, const std::function<void(std::string_view)>& take)
        : theSkip(skip)
        , theTake(take)
        , isGood(inflateInit(&theState) == Z_OK)
    {
    }
    Inflation(const Inflation&) = delete;
    Inflation& operator=(const Inflation&) = delete;
    ~Inflation() { inflateEnd(&theState); }

    /// @returns whether more can follow.
    bool add(unsigned char* bytes, std::size_t size)
    {
        theState.next_in = bytes;
        theState.avail_in = static_cast<uInt>(size);
        while (isGood && hasMore()) { }
        return isGood;
    }

private:
    /// Unpacks a portion. @returns whether this input has another.
    bool hasMore()
    {
        theState.next_out = reinterpret_cast<Bytef*>(theBuffer.data());
        theState.avail_out = static_cast<uInt>(theBuffer.size());
        const int status = inflate(&theState, Z_SYNC_FLUSH);
        isGood = status == Z_OK || status == Z_BUF_ERROR;
        std::string_view made(theBuffer.data(), theBuffer.size() - theState.avail_out);
        const auto skipped = std::min<std::uint64_t>(theSkip, made.size());
        theSkip -= skipped;
        made.remove_prefix(static_cast<std::size_t>(skipped));
        if (!made.empty())
            theTake(made);
        return status == Z_OK && (theState.avail_in > 0 || theState.avail_out == 0);
    }

    z_stream theState = {};
    std::string theBuffer = std::string(portion, '\0');
    std::uint64_t theSkip;
    const std::function<void(std::string_view)>& theTake;
    bool isGood;
};

} // namespace

void unpackTail(fz_context* ctx, fz_stream* packed, std::uint64_t skip,
    const std::function<void(std::string_view)>& take)
{
    Inflation inflation(skip, take);
    for (;;) {
        std::size_t got = 0;
        const int error = attempt(ctx, [&] { got = fz_available(ctx, packed, portion); });
        if (error || got == 0)
            return;
        got = std::min(got, portion);
        unsigned char* const bytes = packed->rp;
        packed->rp += got;
        if (!inflation.add(bytes, got))
            return;
    }
}

} // namespace tarnwick
