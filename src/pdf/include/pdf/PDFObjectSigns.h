#pragma once

#include "compare/ObjectComparison.h"
#include "pdf/PDFRequest.h"

namespace tarnwick {

/// What objects of a document are known by (requestSigns()). Reports of progress count objects.
class PDFSignRequest : public PDFRequest
{
    Q_OBJECT
public:
    const ObjectSigns& signs() const { return theSigns; }

private:
    friend class PDFDocument;
    friend class PDFObjectEngines;
    friend class PDFSignReading;
    using PDFRequest::PDFRequest;
    ObjectSigns theSigns;
};

} // namespace tarnwick
