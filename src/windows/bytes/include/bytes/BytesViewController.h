#pragma once

#include "document/BytesDisplay.h"
#include "work/Work.h"

#include <QString>
#include <QWidget>

#include <cstddef>
#include <memory>

namespace Ui {
class BytesWindow;
}

namespace tarnwick {

class BytesSearch;
class Document;
class HexView;

/// Content of the window "Bytes": a document's file, byte for byte.
///
/// It shows the bytes that were read, whatever the engine makes of them: it works for any bytes,
/// none included. What lies before the header or behind the last end-of-file marker is looked for
/// in a thread and marked.
class BytesViewController : public QWidget, public BytesDisplay
{
    Q_OBJECT

public:
    /// Begins the title of every such window, before the file's name.
    static const QString titlePrefix;

    /// @param document borrowed for the view's life.
    explicit BytesViewController(Document* document, QWidget* parent = nullptr);
    ~BytesViewController() override;

    HexView* bytesView() const;

    /// Selects bytes, shows the first of them and gives the keyboard to the view. An offset behind
    /// the last byte leads to the end.
    void goTo(std::size_t offset, std::size_t length) override;

    Q_INVOKABLE bool validateCommand(const QString& command) const;

public slots:
    /// Gives the keyboard to the field for offsets.
    void goToOffset();
    void performFind();
    void doFindNext();
    void doFindPrev();
    void doFindSelection();

signals:
    /// It is known which bytes are stray.
    void strayBytesFound();

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showBytes();
    void showStray();
    void showPlace();
    void takeOffset();
    void warnOfOffset(const QString& problem);

    std::unique_ptr<Ui::BytesWindow> ui;
    Document* theDocument;
    BytesSearch* theSearch;
    Work theStraySearch;
};

} // namespace tarnwick
