#pragma once

#include "export/AttributedText.h"
#include "export/ExportSource.h"
#include "pdf/LossText.h"

#include <QObject>

#include <functional>
#include <memory>
#include <stop_token>
#include <string_view>

namespace tarnwick {

enum class ExportKind
{
    isFlatPDF,
    isPlainText,
    isRichText,
};

/// What an export writes into its file, and what of the document is missing from it: taken from the
/// engine through the event loop, then written from any thread.
class ExportContent : public QObject
{
    Q_OBJECT

public:
    /// Told while writing.
    using Progress = std::function<void(quint64 done, quint64 total)>;
    /// Takes the next bytes. @returns false when it cannot.
    using Sink = std::function<bool(std::string_view bytes)>;

    /// @returns null when the document cannot give it: there is no document, or it is not open.
    static std::unique_ptr<ExportContent> make(ExportKind kind, const ExportSource& source);

    /// Asks the engine for it. One of taken() and failed() follows, at once where it is there
    /// already. Called once.
    virtual void take() = 0;
    bool isTaken() const { return theIsTaken; }

    /// What of the document is not in it. Precondition: isTaken().
    const PDFLosses& losses() const { return theLosses; }
    qsizetype lostObjects() const { return theLostObjects; }
    bool isWhole() const { return theLosses.isEmpty() && theLostObjects == 0; }
    /// The same as sentences for the user; empty when it is whole. @param most ranges of pages that
    /// each names.
    QStringList missing(int most = 4) const;

    /// Writes it in slices. Precondition: isTaken(). Thread-safe then.
    /// @param progress may be empty. @returns false when the sink fails or it is asked to stop.
    virtual bool write(
        const Sink& sink, const std::stop_token& stop, const Progress& progress) const = 0;

signals:
    /// @param total 0 while it is unknown.
    void progressed(int done, int total);
    void taken();
    /// @param reason a sentence for the user.
    void failed(const QString& reason);

protected:
    /// @param subject of missing().
    explicit ExportContent(LossSubject subject)
        : theSubject(subject)
    {
    }
    /// The content is there, as far as it can be had: with what is missing from it.
    void setTaken(const PDFLosses& losses, qsizetype lostObjects = 0);

private:
    LossSubject theSubject;
    PDFLosses theLosses;
    qsizetype theLostObjects = 0;
    bool theIsTaken = false;
};

/// Writes a text in slices, in UTF-8 without a byte-order mark; lone surrogates become U+FFFD.
bool writeUtf8(const QString& string, const ExportContent::Sink& sink,
    const std::stop_token& stop = {}, const ExportContent::Progress& progress = {});

} // namespace tarnwick
