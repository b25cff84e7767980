#include "UnreadableEncryption.h"

#include "Attempt.h"

namespace tarnwick {

namespace {

constexpr std::string_view encryptKey = "/Encrypt";
constexpr std::string_view maskedKey = "/Encrypx";

bool isRegular(char character)
{
    constexpr std::string_view others("\0\t\n\f\r ()<>[]{}/%", 16);
    return others.find(character) == std::string_view::npos;
}

/// A copy of the file in which no trailer says that it is encrypted. Every place stays where it is.
/// @returns an empty text for a file without such a key.
std::string maskedCopy(std::string_view file)
{
    std::string copy;
    for (std::size_t place = file.find(encryptKey); place != std::string_view::npos;
         place = file.find(encryptKey, place + encryptKey.size())) {
        const std::size_t end = place + encryptKey.size();
        if (end == file.size() || isRegular(file[end]))
            continue; // EncryptMetadata and the like
        if (copy.empty())
            copy = file;
        copy.replace(place, maskedKey.size(), maskedKey);
    }
    return copy;
}

struct Encryption
{
    bool isThere = false;
    const char* handler = ""; ///< borrowed from the document
    int version = 0;
    int revision = 0;
};

Encryption readEncryption(fz_context* ctx, pdf_document* document)
{
    Encryption encryption;
    const int error = attempt(ctx, [&] {
        pdf_obj* dictionary
            = pdf_dict_gets(ctx, pdf_trailer(ctx, document), maskedKey.substr(1).data());
        encryption.isThere = pdf_is_dict(ctx, dictionary) != 0;
        encryption.handler = pdf_to_name(ctx, pdf_dict_get(ctx, dictionary, PDF_NAME(Filter)));
        encryption.version = pdf_to_int(ctx, pdf_dict_get(ctx, dictionary, PDF_NAME(V)));
        encryption.revision = pdf_to_int(ctx, pdf_dict_get(ctx, dictionary, PDF_NAME(R)));
    });
    return error ? Encryption() : encryption;
}

/// A name as a sentence can hold it: short, and of characters that every reader sees.
std::string printable(std::string_view name)
{
    constexpr std::size_t longest = 60;
    std::string text(name.substr(0, longest));
    for (char& character : text) {
        if (character < ' ' || character > '~')
            character = '?';
    }
    return text;
}

std::string sentence(const Encryption& encryption)
{
    const std::string_view handler = encryption.handler;
    if (handler == "Adobe.PubSec")
        return "It is encrypted for the owners of certificates. Tarnwick opens only files that are "
               "encrypted with a password.";
    if (handler.empty())
        return "It is encrypted, and does not say by which security handler.";
    if (handler != "Standard")
        return "It is encrypted by the security handler \xe2\x80\x9c" + printable(handler)
            + "\xe2\x80\x9d, which Tarnwick does not know.";
    const bool isKnown = encryption.version >= 1 && encryption.version <= 5
        && encryption.version != 3 && encryption.revision >= 2 && encryption.revision <= 6;
    if (!isKnown)
        return "It is encrypted in a way that Tarnwick does not know (version "
            + std::to_string(encryption.version) + ", revision "
            + std::to_string(encryption.revision) + ").";
    return "It is encrypted, and what is needed to decrypt it is damaged or unknown.";
}

} // namespace

std::optional<std::string> unreadableEncryption(fz_context* ctx, std::string_view file)
{
    const std::string copy = maskedCopy(file);
    if (copy.empty())
        return std::nullopt;
    fz_stream* stream = nullptr;
    pdf_document* document = nullptr;
    fz_var(stream);
    fz_var(document);
    const int error = attempt(ctx, [&] {
        stream
            = fz_open_memory(ctx, reinterpret_cast<const unsigned char*>(copy.data()), copy.size());
        document = pdf_open_document_with_stream(ctx, stream);
    });
    const Encryption encryption = error ? Encryption() : readEncryption(ctx, document);
    std::optional<std::string> reason;
    if (encryption.isThere)
        reason = sentence(encryption); // while the document, which has the name, is there
    pdf_drop_document(ctx, document);
    fz_drop_stream(ctx, stream);
    return reason;
}

} // namespace tarnwick
