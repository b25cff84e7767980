#pragma once

#include "document/ExportSource.h"
#include "platform/AttributedText.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string_view>

enum class ExportKind
{
    isFlatPDF,
    isPlainText,
    isRichText,
};

/// What an export writes into its file: taken from the engine through the event loop, then written
/// from any thread.
class ExportContent : public QObject
{
    Q_OBJECT

public:
    /// Told while writing. @returns whether to go on.
    using Progress = std::function<bool(quint64 done, quint64 total)>;
    /// Takes the next bytes. @returns false when it cannot.
    using Sink = std::function<bool(std::string_view bytes)>;

    /// @returns null when the document cannot give it: there is no document, or it is not open; for
    ///   rich text also when it has no pages.
    static std::unique_ptr<ExportContent> make(ExportKind kind, const ExportSource& source);

    /// Asks the engine for it. One of taken() and failed() follows, at once where it is there
    /// already. Called once.
    virtual void take() = 0;
    bool isTaken() const { return theContentIsTaken; }

    /// Writes it in slices. Precondition: isTaken(). Thread-safe then.
    /// @returns false when the sink fails or progress says no.
    virtual bool write(const Sink& sink, const Progress& progress) const = 0;

signals:
    /// @param total 0 while it is unknown.
    void progressed(int done, int total);
    void taken();
    void failed(PDFFailure failure);

protected:
    void setTaken();

private:
    bool theContentIsTaken = false;
};

/// Writes a text in slices, in UTF-8 without a byte-order mark; lone surrogates become U+FFFD.
bool writeUtf8(const QString& string, const ExportContent::Sink& sink,
    const ExportContent::Progress& progress);

/// A sentence for the user on why the engine brought nothing; empty for isNone and isCancelled.
QString exportFailureText(PDFFailure failure);
