#include "StreamWords.h"

#include "pdf/FailureText.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::size_t judgedBytes = 64 * 1024;

constexpr qsizetype mostFiltersTold = 8; ///< no real stream has more than two or three

struct StreamWords
{
    Q_DECLARE_TR_FUNCTIONS(StreamWords)
};

QString counted(quint64 number)
{
    return QLocale(QLocale::English).toString(number);
}

QString byteCount(quint64 bytes)
{
    return bytes == 1 ? StreamWords::tr("1 byte") : StreamWords::tr("%1 bytes").arg(counted(bytes));
}

bool isTextByte(char one)
{
    return (one >= ' ' && one <= '~') || one == '\n' || one == '\r' || one == '\t';
}

} // namespace

QString objectPlaceText(const PDFObject& object)
{
    switch (object.state) {
    case PDFObjectState::isMissing:
        return StreamWords::tr("The file has no object of this number.");
    case PDFObjectState::isFree:
        return object.number == 0
            ? StreamWords::tr("No object: 0 is where the list of free numbers begins.")
            : StreamWords::tr("This number is free: its object was deleted, or never was.");
    case PDFObjectState::isUnreadable:
        return StreamWords::tr("What stands where this object should be cannot be read.");
    case PDFObjectState::isPresent:
        break;
    }
    const PDFObjectPlace& place = object.place;
    if (place.container > 0)
        return StreamWords::tr("In object stream %1, number %2 in it")
            .arg(place.container)
            .arg(place.index + 1);
    return StreamWords::tr("At byte %1 (0x%2)")
        .arg(counted(place.offset), QString::number(place.offset, 16).toUpper());
}

QString extentText(const pdfObject& record, bool isPacked)
{
    const QString version = StreamWords::tr("in version %1").arg(record.objVer());
    return isPacked ? version : byteCount(record.range().size()) + u", "_s + version;
}

QString storedPlaceText(ByteRange range)
{
    return StreamWords::tr("At byte %1 (0x%2), %3, as it is stored")
        .arg(counted(range.begin), QString::number(range.begin, 16).toUpper(),
            byteCount(range.size()));
}

/// Entries of the object itself stand two blanks in.
bool isImage(const PDFObject& object)
{
    return object.isStream && object.text.contains(u"\n  /Subtype /Image\n"_s);
}

QString pictureText(const PDFPicture& picture)
{
    if (picture.end == PDFPictureEnd::isUnreadable)
        return StreamWords::tr("The picture cannot be drawn: %1")
            .arg(picture.remark.isEmpty() ? StreamWords::tr("it makes no sense.") : picture.remark);
    const bool isReduced = std::max(picture.image.width(), picture.image.height())
        == maximumPictureSide; // or just of that size
    QString text = StreamWords::tr("%1 × %2 pixels")
                       .arg(counted(static_cast<quint64>(picture.image.width())),
                           counted(static_cast<quint64>(picture.image.height())));
    if (isReduced)
        text += StreamWords::tr(", to which larger pictures are reduced");
    if (picture.end == PDFPictureEnd::isDamaged)
        text += StreamWords::tr(". Its data is damaged: %1").arg(picture.remark);
    return text;
}

QString storedStreamText(std::size_t bytes)
{
    return StreamWords::tr("%1 as they are stored").arg(byteCount(bytes));
}

QString streamPackingText(const PDFObject& object)
{
    QStringList parts;
    const qsizetype told = std::min(object.filters.size(), mostFiltersTold);
    for (const PDFStreamFilter& filter : object.filters.first(told))
        parts << (filter.parameters.isEmpty() ? filter.name
                                              : filter.name + u' ' + filter.parameters);
    if (object.filterCount > static_cast<quint32>(told))
        parts << StreamWords::tr("and more, %1 in all").arg(counted(object.filterCount));
    const QString filters = parts.isEmpty() ? StreamWords::tr("No filter") : parts.join(u", "_s);
    const QString length = object.statedLength
        ? StreamWords::tr("Length says %1")
              .arg(byteCount(static_cast<quint64>(*object.statedLength)))
        : StreamWords::tr("Length is no number");
    return filters + u" · "_s + length;
}

QString streamLossText(const PDFStream& stream)
{
    const QString size = byteCount(stream.bytes.size());
    const QString why = stream.remark.isEmpty() ? QString() : u" ("_s + stream.remark + u')';
    switch (stream.end) {
    case PDFStreamEnd::isWhole:
        return {};
    case PDFStreamEnd::isStopped:
        return StreamWords::tr("Stopped at %1: there is more.").arg(size);
    case PDFStreamEnd::isDamaged:
        return StreamWords::tr("Damaged after %1%2.").arg(size, why);
    case PDFStreamEnd::isLost:
        return StreamWords::tr("Stopped at %1: %2.")
            .arg(size, failureReason(stream.failure, stream.timeLimit));
    case PDFStreamEnd::isUnknown:
        return StreamWords::tr("It cannot be decoded: %1").arg(stream.remark);
    case PDFStreamEnd::isNone:
        return StreamWords::tr("This object has no stream.");
    }
    return {};
}

QString streamOutcomeText(const PDFStream& stream, PDFStreamForm form)
{
    if (stream.end != PDFStreamEnd::isWhole)
        return streamLossText(stream);
    const QString size = byteCount(stream.bytes.size());
    const QString text = form == PDFStreamForm::isRaw ? StreamWords::tr("%1 stored").arg(size)
                                                      : StreamWords::tr("%1 decoded").arg(size);
    return stream.remark.isEmpty() ? text : text + u" ("_s + stream.remark + u')';
}

QString streamFileType(const PDFObject& object, PDFStreamForm form, std::string_view bytes)
{
    const QString last = object.filters.isEmpty() ? QString() : object.filters.last().name;
    const bool isAlone = object.filters.size() == 1;
    if (last == u"/JPXDecode"_s && (isAlone || form == PDFStreamForm::isDecoded))
        return u"jp2"_s;
    if (form == PDFStreamForm::isRaw && isAlone) {
        if (last == u"/DCTDecode"_s)
            return u"jpg"_s;
        if (last == u"/JBIG2Decode"_s)
            return u"jb2"_s;
        if (last == u"/FlateDecode"_s)
            return u"zlib"_s;
    }
    return isMostlyText(bytes) ? u"txt"_s : u"bin"_s;
}

bool isMostlyText(std::string_view bytes)
{
    bytes = bytes.substr(0, judgedBytes);
    const auto count = std::count_if(bytes.begin(), bytes.end(), isTextByte);
    return static_cast<std::size_t>(count) * 10 >= bytes.size() * 9;
}

} // namespace tarnwick
