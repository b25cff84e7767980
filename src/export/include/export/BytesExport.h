#pragma once

#include "export/FileExport.h"

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

/// Saves bytes.
class BytesExport : public FileExport
{
    Q_OBJECT

public:
    static void begin(SavedBytes bytes);

private:
    explicit BytesExport(SavedBytes bytes);
    ~BytesExport() override;

    std::optional<int> append(
        WholeFile& file, const std::stop_token& stop, const Work::Report& report) override;
    QString missing() const override { return theSaved.missing; }

    SavedBytes theSaved;
};

} // namespace tarnwick
