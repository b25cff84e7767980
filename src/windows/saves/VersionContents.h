#pragma once

#include "VersionRow.h"
#include "files/FileBytes.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace tarnwick {

class PDFDocument;
class PDFObjectRequest;

/// Opens the versions of a file as readers would, one after the other and the latest first, and
/// says what each is: its pages, what made it and when.
///
/// Everything comes through the event loop. Destroying it, or stop(), gives up the rest.
class VersionContents : public QObject
{
    Q_OBJECT

public:
    struct Order
    {
        int row = 0; ///< in whatever order; told back
        std::size_t end = 0; ///< of the version: bytes of the prefix
        std::optional<std::uint32_t> info; ///< number of its Info dictionary
    };

    /// @param password that opened the file; null where none was asked for.
    VersionContents(const FileBytes& bytes, const QString& password, QObject* parent);
    ~VersionContents() override;

    /// Precondition: nothing has been started, or all has finished.
    void start(std::vector<Order> orders);
    void stop();
    bool isRunning() const { return theIsRunning; }
    std::size_t done() const { return theDone; }
    std::size_t total() const { return theOrders.size(); }

signals:
    void read(int row, const VersionContent& content);
    /// All are read, or it was stopped.
    void finished();

private:
    void openNext();
    void takeLock(bool wasWrong);
    void takeFacts();
    void takeInfo(const PDFObjectRequest& request);
    void tell(const VersionContent& content);

    FileBytes theBytes;
    QString thePassword;
    std::vector<Order> theOrders;
    std::size_t theDone = 0;
    PDFDocument* theDocument = nullptr; ///< the version that is being read
    bool isPasswordTried = false; ///< on that
    bool theIsRunning = false;
};

} // namespace tarnwick
