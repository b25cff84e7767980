#pragma once

#include "comparison/ComparedFile.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace tarnwick {

class FileOpening;
class FrameDocument;

/// One of the two documents of a comparison: one that is open already, or that is opened for it,
/// without a window, and goes with it.
class ComparedDocument : public QObject
{
    Q_OBJECT

public:
    /// @param asking the window that a question for a password belongs to.
    ComparedDocument(const ComparedFile& file, QWidget* asking, QObject* parent);
    ~ComparedDocument() override;

    void open();
    /// Null until opened().
    Document* document() const { return theDocument; }
    /// What it is called: the file's name and version.
    QString name() const;
    /// The file's path, for a tool tip.
    QString path() const;

signals:
    void opened();
    /// @param reason a sentence.
    void failed(const QString& reason);

private:
    ComparedFile theFile;
    std::unique_ptr<FileOpening> theOpening; ///< while it goes on
    std::unique_ptr<FrameDocument> theOwned;
    Document* theDocument = nullptr;
    QString theName;
};

} // namespace tarnwick
