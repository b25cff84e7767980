#pragma once

#include "PDFTableAnswers.h"
#include "pdf/PDFTable.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <memory>

namespace tarnwick {

class PDFEngineClient;

/// Asks for a file's table portion by portion, behind whatever else its engine is asked for.
class PDFTableReading : public QObject
{
    Q_OBJECT

public:
    /// @param request is told of the end, and owns this. @param fileSize bytes of the file.
    PDFTableReading(PDFTableRequest* request, PDFEngineClient* client, std::uint64_t fileSize);

    /// Asks for the first portion.
    void start();

private:
    void ask();
    void take(PDFFailure failure);

    PDFTableRequest* theRequest;
    QPointer<PDFEngineClient> theClient;
    std::shared_ptr<PDFTableAnswers> theAnswers; ///< also of the thread that reads a portion
    QElapsedTimer theAge;
};

} // namespace tarnwick
