#pragma once

#include "pdf/PDFObjectSigns.h"

#include <QObject>
#include <QPointer>

#include <cstdint>
#include <vector>

namespace tarnwick {

class PDFEngineClient;

/// Asks for what objects are known by, portion after portion.
class PDFSignReading : public QObject
{
    Q_OBJECT

public:
    /// @param request gets them, and owns this. @param numbers ascending; all where there are none.
    PDFSignReading(
        PDFSignRequest* request, PDFEngineClient* client, std::vector<std::uint32_t> numbers);

    /// Asks for the objects from a number on.
    void ask(std::uint32_t first);

private:
    void goOn(PDFFailure failure);

    PDFSignRequest* theRequest;
    QPointer<PDFEngineClient> theClient;
    std::vector<std::uint32_t> theNumbers;
    bool theIsOfAll;
    std::uint32_t theNext = 0;
};

} // namespace tarnwick
