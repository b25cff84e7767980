#include "WrittenStream.h"

#include "Attempt.h"
#include "ValueSpelling.h"
#include "protocol/EngineLimits.h"

#include <algorithm>

#include <zlib.h>

namespace tarnwick {

namespace {

bool pack(WrittenStream& stream)
{
    uLongf size = compressBound(stream.data.size());
    std::string packed(size, '\0');
    const int status = compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
        reinterpret_cast<const Bytef*>(stream.data.data()), stream.data.size(), 6);
    if (status != Z_OK)
        return false;
    packed.resize(size);
    stream.data = std::move(packed);
    stream.filters.insert(stream.filters.begin(), {"FlateDecode", nullptr});
    return true;
}

void writeHexadecimal(WrittenStream& stream)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(stream.data.size() * 2 + 1);
    for (const char one : stream.data) {
        text += digits[static_cast<unsigned char>(one) >> 4];
        text += digits[static_cast<unsigned char>(one) & 15];
    }
    stream.data = text + '>';
    stream.filters.insert(stream.filters.begin(), {"ASCIIHexDecode", nullptr});
}

} // namespace

std::vector<WrittenStream::Filter> readFilters(fz_context* ctx, pdf_obj* dictionary)
{
    std::vector<WrittenStream::Filter> filters;
    pdf_obj* names = nullptr;
    pdf_obj* parameters = nullptr;
    int count = 0;
    int error = attempt(ctx, [&] {
        names = pdf_dict_get(ctx, dictionary, PDF_NAME(Filter));
        parameters = pdf_dict_get(ctx, dictionary, PDF_NAME(DecodeParms));
        count = pdf_is_name(ctx, names) ? 1 : std::min(pdf_array_len(ctx, names), maximumFilters);
    });
    for (int index = 0; index < count && !error; ++index) {
        const char* name = "";
        pdf_obj* parameter = nullptr;
        error = attempt(ctx, [&] {
            const bool isSingle = pdf_is_name(ctx, names);
            name = pdf_to_name(ctx, isSingle ? names : pdf_array_get(ctx, names, index));
            parameter = pdf_is_array(ctx, parameters) ? pdf_array_get(ctx, parameters, index)
                : index == 0                          ? parameters
                                                      : nullptr;
            if (pdf_is_null(ctx, parameter))
                parameter = nullptr;
        });
        if (!error)
            filters.push_back({name, parameter});
    }
    return filters;
}

std::uint32_t countFilters(fz_context* ctx, pdf_obj* dictionary)
{
    int count = 0;
    const int error = attempt(ctx, [&] {
        pdf_obj* const names = pdf_dict_get(ctx, dictionary, PDF_NAME(Filter));
        count = pdf_is_name(ctx, names) ? 1 : pdf_array_len(ctx, names);
    });
    return error ? 0 : static_cast<std::uint32_t>(count);
}

bool WrittenStream::hasFilter(const char* name) const
{
    return std::any_of(filters.begin(), filters.end(),
        [name](const Filter& filter) { return filter.name == name; });
}

std::optional<WrittenStream> loadStream(
    const EngineDocument& document, pdf_obj* dictionary, int number)
{
    fz_context* const ctx = document.context();
    int isStream = 0;
    WrittenStream stream;
    stream.error
        = attempt(ctx, [&] { isStream = pdf_obj_num_is_stream(ctx, document.document(), number); });
    if (stream.error || !isStream)
        return std::nullopt;
    fz_buffer* buffer = nullptr;
    fz_var(buffer);
    const int error = attempt(
        ctx, [&] { buffer = pdf_load_raw_stream_number(ctx, document.document(), number); });
    if (error) {
        stream.error = error == FZ_ERROR_MEMORY ? error : FZ_ERROR_NONE;
        stream.isLost = true;
        return stream;
    }
    unsigned char* bytes = nullptr;
    const std::size_t size = fz_buffer_storage(ctx, buffer, &bytes);
    stream.data.assign(reinterpret_cast<const char*>(bytes), size);
    fz_drop_buffer(ctx, buffer);
    stream.filters = readFilters(ctx, dictionary);
    std::erase_if(
        stream.filters, [](const WrittenStream::Filter& filter) { return filter.name == "Crypt"; });
    if (ValueSpelling::endsStream(stream.data))
        pack(stream);
    if (ValueSpelling::endsStream(stream.data))
        writeHexadecimal(stream);
    return stream;
}

WrittenStream makeStream(std::string data)
{
    WrittenStream packed;
    packed.data = data;
    if (pack(packed) && packed.data.size() < data.size())
        return packed;
    WrittenStream stream;
    stream.data = std::move(data);
    return stream;
}

int appendDecoded(const EngineDocument& document, int number, std::size_t limit, std::string& data)
{
    fz_context* const ctx = document.context();
    fz_stream* stream = nullptr;
    fz_buffer* buffer = nullptr;
    fz_var(stream);
    fz_var(buffer);
    int isCutShort = 0;
    fz_var(isCutShort);
    const int error = attempt(ctx, [&] {
        stream = pdf_open_stream_number(ctx, document.document(), number);
        buffer = fz_read_best(ctx, stream, 0, &isCutShort, limit);
    });
    fz_drop_stream(ctx, stream);
    if (!error) {
        unsigned char* bytes = nullptr;
        const std::size_t size = fz_buffer_storage(ctx, buffer, &bytes);
        data.append(reinterpret_cast<const char*>(bytes), size);
    }
    fz_drop_buffer(ctx, buffer);
    return error || !isCutShort ? error : FZ_ERROR_GENERIC;
}

} // namespace tarnwick
