#pragma once

#include "pdf/PDFRequest.h"
#include "protocol/CrossReference.h"

#include <memory>

namespace tarnwick {

/// The file's table of all objects (requestTable()), as the engine has it. Reports of progress
/// count numbers of objects.
class PDFTableRequest : public PDFRequest
{
    Q_OBJECT
public:
    /// Complete once it has succeeded; null before.
    const std::shared_ptr<const CrossReference>& table() const { return theTable; }

private:
    friend class PDFDocument;
    friend class PDFObjectEngines;
    friend class PDFTableReading;
    using PDFRequest::PDFRequest;
    std::shared_ptr<const CrossReference> theTable;
};

} // namespace tarnwick
