#pragma once

#include "frame/FileVersion.h"

#include <QWidget>

#include <memory>

class QTableView;
namespace Ui {
class VersionsWindow;
}

namespace tarnwick {

class Document;
class PlainTextView;
class VersionReading;
class VersionTableModel;

/// Content of the window for the saved versions of a document's file: a row for each, the latest
/// first, and all that is known of the row that is chosen.
///
/// Its public slots are commands; versions are counted from 1.
class VersionsViewController : public QWidget
{
    Q_OBJECT

public:
    /// What the window's title begins with.
    static const QString titlePrefix;

    /// @param document borrowed, outlives the controller.
    explicit VersionsViewController(Document* document, QWidget* parent = nullptr);
    ~VersionsViewController() override;

    QTableView* versionTable() const;
    PlainTextView* detailView() const;
    const VersionReading* reading() const { return theReading; }

    Q_INVOKABLE bool validateCommand(const QString& command) const;

public slots:
    /// Opens the chosen version as a document of its own.
    void openVersion();
    /// Have the chosen version compared with the one before it, the two chosen ones with each
    /// other.
    void compareWithVersionBefore();
    void compareChosenVersions();
    /// Exports the chosen versions, each into a numbered file.
    void exportChosenVersions();
    /// Copies the SHA-256 of the chosen versions, a line each.
    void copyHash();
    /// Copies the chosen rows.
    void copy();
    void selectAll();
    /// Writes what is known of all versions into a file, once nothing more is being read.
    void saveReport();

signals:
    /// Two versions of the file are to be compared.
    void comparisonWanted(const tarnwick::FileVersion& before, const tarnwick::FileVersion& after);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void setUpTable();
    void connectParts();
    void showRows();
    void showState();
    void showDetails();
    void openMenu(const QPoint& place);
    std::vector<int> chosenVersions() const;
    /// @param version its place among the versions, as those of chosenVersions().
    FileVersion fileVersion(int version) const;
    void updateCommands();

    std::unique_ptr<Ui::VersionsWindow> ui;
    Document* theDocument;
    VersionReading* theReading;
    VersionTableModel* theModel;
};

} // namespace tarnwick
