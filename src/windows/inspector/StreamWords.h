#pragma once

#include "analysis/pdfObject.h"
#include "pdf/PDFObject.h"

#include <QString>

#include <string_view>

namespace tarnwick {

/// What the user is told of an object and its stream, and what follows from their bytes.

/// Where an object stands, or why there is none: "At byte 2,317 (0x90D)", "In object stream 45,
/// third".
QString objectPlaceText(const PDFObject& object);
/// How long an object's place is, and its version: "1,234 bytes, in version 2". @param isPacked the
/// record is that of the object stream: only its version is told.
QString extentText(const pdfObject& record, bool isPacked);
/// Where something stands that only the file is known to have.
QString storedPlaceText(ByteRange range);
/// Whether the stream of an object is an image, by what the object says.
bool isImage(const PDFObject& object);
/// What is seen of an image: its size, or why it is not drawn.
QString pictureText(const PDFPicture& picture);
/// What a stream has that no engine knows of.
QString storedStreamText(std::size_t bytes);
/// What a stream is packed with, and the length that the file states: "/FlateDecode << /Predictor
/// 12 >>, 1,234 bytes stored".
QString streamPackingText(const PDFObject& object);
/// How far the reading of a stream came, and why: "5,678 bytes decoded".
QString streamOutcomeText(const PDFStream& stream, PDFStreamForm form);
/// What is missing of a stream, as a sentence; empty when it is whole.
QString streamLossText(const PDFStream& stream);
/// The ending of a file with a stream's bytes, without the dot: that of the format that the last
/// filter leaves, or of text and other bytes.
QString streamFileType(const PDFObject& object, PDFStreamForm form, std::string_view bytes);
/// Whether nine of ten of the first bytes are such as text has.
bool isMostlyText(std::string_view bytes);

} // namespace tarnwick
