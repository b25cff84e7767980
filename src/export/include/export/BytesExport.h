#pragma once

#include "export/ExportJob.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>
#include <string_view>

namespace tarnwick {

/// Bytes that the user wants in a file of their own, such as what a stream holds.
struct SavedBytes
{
    std::string_view bytes;
    std::shared_ptr<const void> owner; ///< keeps the bytes alive
    QString title; ///< of the panel: "Save Decoded Stream"
    QString folder; ///< that the panel opens in
    QString name; ///< proposed, with its ending
    QString missing; ///< a sentence on what is not in them; empty when they are whole
    QPointer<QWidget> window; ///< for the notice of the end
};

/// Asks where bytes go and writes them there: whole or not at all, and never over an opened file.
class BytesExport : public ExportJob
{
    Q_OBJECT

public:
    static void begin(SavedBytes bytes);

private:
    explicit BytesExport(SavedBytes bytes);
    ~BytesExport() override;

    void openPanel();
    void write(const QString& path);
    void finishWriting() override;

    SavedBytes theSaved;
    QString thePath;
    QString theFailure; ///< why nothing is written; a phrase
    bool isWritten = false;
};

} // namespace tarnwick
