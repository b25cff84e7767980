#pragma once

#include <QByteArray>
#include <QCryptographicHash>

#include <array>
#include <numeric>
#include <utility>

/// RC4, as standard security handlers of revision 2 use it (ISO 32000-1, 7.6.2).
inline QByteArray rc4(const QByteArray& key, QByteArray data)
{
    std::array<unsigned char, 256> state;
    std::iota(state.begin(), state.end(), static_cast<unsigned char>(0));
    const auto at = [&state](unsigned index) -> unsigned char& { return state[index & 255]; };
    unsigned j = 0;
    for (unsigned i = 0; i < 256; ++i) {
        const auto part = static_cast<unsigned char>(key[static_cast<qsizetype>(i) % key.size()]);
        j += static_cast<unsigned>(at(i)) + part;
        std::swap(at(i), at(j));
    }
    unsigned i = 0;
    j = 0;
    for (char& byte : data) {
        j += at(++i);
        std::swap(at(i), at(j));
        byte = static_cast<char>(
            static_cast<unsigned char>(byte) ^ at(static_cast<unsigned>(at(i)) + at(j)));
    }
    return data;
}

/// A PDF of one empty page that opens with a password only (revision 2, 40 bits; ISO 32000-1,
/// 7.6.3). It has neither strings nor streams, so nothing but its encryption dictionary is
/// encrypted.
inline QByteArray lockedPdf(const QByteArray& password)
{
    const auto md5 = [](const QByteArray& data) {
        return QCryptographicHash::hash(data, QCryptographicHash::Md5).left(5);
    };
    const QByteArray padding
        = QByteArray::fromHex("28bf4e5e4e758a4164004e56fffa01082e2e00b6d0683e802f0ca9fe6453697a");
    const QByteArray padded = QByteArray(password + padding).left(32);
    const QByteArray permissions = QByteArray::fromHex("fcffffff"); // -4, low byte first
    const QByteArray id = "0123456789abcdef";
    const QByteArray owner = rc4(md5(padded), padded);
    const QByteArray user = rc4(md5(padded + owner + permissions + id), padding);

    const QByteArray objects[] = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [ 3 0 R ] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 200 200 ] /Resources << >> >>",
        QByteArray("<< /Filter /Standard /V 1 /R 2 /P -4 /O <" + owner.toHex() + "> /U <"
            + user.toHex() + "> >>"),
    };
    QByteArray file = "%PDF-1.4\n";
    QByteArray table = "0000000000 65535 f \n";
    int number = 0;
    for (const QByteArray& object : objects) {
        table += QByteArray::number(file.size()).rightJustified(10, '0') + " 00000 n \n";
        file += QByteArray::number(++number) + " 0 obj\n" + object + "\nendobj\n";
    }
    const QByteArray start = QByteArray::number(file.size());
    const QByteArray hexId = '<' + id.toHex() + '>';
    return file + "xref\n0 5\n" + table + "trailer\n<< /Size 5 /Root 1 0 R /Encrypt 4 0 R /ID [ "
        + hexId + ' ' + hexId + " ] >>\nstartxref\n" + start + "\n%%EOF\n";
}
