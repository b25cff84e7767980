#include "saves/VersionsViewController.h"

#include "VersionReading.h"
#include "VersionReport.h"
#include "VersionTableModel.h"
#include "VersionWords.h"
#include "document/Document.h"
#include "export/ReportExport.h"
#include "frame/CommandRouter.h"
#include "frame/DocumentWindow.h"
#include "text/PlainTextView.h"
#include "ui_VersionsWindow.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QShortcut>
#include <QShowEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// What a column usually holds, for its width.
QString sample(VersionColumn column)
{
    switch (column) {
    case VersionColumn::isDate:
        return u"2024-01-31 11:00:00 UTC"_s;
    case VersionColumn::isBytesAdded:
    case VersionColumn::isPrev:
        return u"999,999,999"_s;
    case VersionColumn::isNotes:
        return u"Marker inside a string or comment"_s;
    case VersionColumn::isProducer:
        return u"Some Producer 12.0.1 on Linux"_s;
    case VersionColumn::isRange:
        return u"999,999,999 – 999,999,999"_s;
    case VersionColumn::isHash:
        return u"00000000…00000000"_s;
    case VersionColumn::isStartxref:
        return u"999,999,999, a stream"_s;
    default:
        return u"9,999"_s;
    }
}

} // namespace

const QString VersionsViewController::titlePrefix = u"Versions: "_s;

VersionsViewController::VersionsViewController(Document* document, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::VersionsWindow>())
    , theDocument(document)
    , theReading(new VersionReading(document, this))
    , theModel(new VersionTableModel(theReading, this))
{
    ui->setupUi(this);
    setFocusProxy(ui->versionTable);
    setWindowTitle(titlePrefix + theDocument->displayName());
    setUpTable();
    connectParts();
    showState();
    showDetails();
}

VersionsViewController::~VersionsViewController() = default;

QTableView* VersionsViewController::versionTable() const
{
    return ui->versionTable;
}

PlainTextView* VersionsViewController::detailView() const
{
    return ui->detailView;
}

void VersionsViewController::setUpTable()
{
    QTableView* const table = ui->versionTable;
    table->setModel(theModel);
    constexpr int margin = 12;
    QHeaderView* const rows = table->verticalHeader();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(table->fontMetrics().height() + margin / 2);
    rows->hide();
    QHeaderView* const columns = table->horizontalHeader();
    columns->setHighlightSections(false);
    for (int column = 0; column < versionColumnCount; ++column) {
        const int text
            = table->fontMetrics().horizontalAdvance(sample(static_cast<VersionColumn>(column)));
        table->setColumnWidth(column, std::max(text + margin, columns->sectionSizeHint(column)));
    }
    table->hideColumn(static_cast<int>(VersionColumn::isSave));
    ui->parts->setSizes({1, 1});
    const auto goTo = [this, table](int key, bool isLast) {
        // By itself the table would go along the row.
        auto* const shortcut = new QShortcut(key, table);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, table, isLast] {
            table->setCurrentIndex(theModel->index(isLast ? theModel->rowCount() - 1 : 0, 0));
        });
    };
    goTo(Qt::Key_Home, false);
    goTo(Qt::Key_End, true);
}

void VersionsViewController::connectParts()
{
    connect(theReading, &VersionReading::rowsKnown, this, &VersionsViewController::showRows);
    connect(theReading, &VersionReading::progressed, this, &VersionsViewController::showState);
    connect(theReading, &VersionReading::finished, this, &VersionsViewController::showState);
    connect(theModel, &QAbstractItemModel::dataChanged, this,
        [this](const QModelIndex& first, const QModelIndex& last) {
            const int current = ui->versionTable->currentIndex().row();
            if (first.row() <= current && current <= last.row())
                showDetails();
        });
    connect(theReading, &VersionReading::chainKnown, this, &VersionsViewController::showState);
    connect(ui->versionTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &VersionsViewController::updateCommands);
    connect(ui->versionTable->selectionModel(), &QItemSelectionModel::currentChanged, this,
        &VersionsViewController::showDetails);
    connect(ui->versionTable, &QTableView::activated, this, &VersionsViewController::openVersion);
    connect(ui->versionTable, &QTableView::customContextMenuRequested, this,
        &VersionsViewController::openMenu);
    connect(ui->stopButton, &QToolButton::clicked, theReading, &VersionReading::stop);
    connect(ui->openButton, &QPushButton::clicked, this, &VersionsViewController::openVersion);
    connect(ui->compareButton, &QPushButton::clicked, this, [this] {
        compareWithVersionBefore();
        compareChosenVersions();
    });
    connect(ui->exportButton, &QPushButton::clicked, this,
        &VersionsViewController::exportChosenVersions);
    connect(ui->reportButton, &QPushButton::clicked, this, &VersionsViewController::saveReport);
    connect(theDocument, &FrameDocument::versionRefused, theReading, &VersionReading::noteProblem);
}

void VersionsViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        setWindowTitle(titlePrefix + theDocument->displayName());
}

void VersionsViewController::showRows()
{
    if (theModel->rowCount() > 0)
        ui->versionTable->setCurrentIndex(theModel->index(0, 0));
    showState();
}

void VersionsViewController::showState()
{
    ui->summaryLine->setText(VersionWords::summary(*theReading));
    const std::optional<std::size_t> own = theReading->ownCount();
    ui->versionTable->setColumnHidden(
        static_cast<int>(VersionColumn::isSave), !own || *own == theReading->markerCount());
    ui->progressLine->setText(theReading->wasStopped()
            ? tr("Stopped: what is missing has not been read.")
            : theReading->progress());
    ui->stopButton->setVisible(theReading->isRunning());
    updateCommands();
}

void VersionsViewController::showDetails()
{
    const QModelIndex current = ui->versionTable->currentIndex();
    if (!current.isValid()) {
        ui->detailView->clear();
        return;
    }
    const auto version = static_cast<std::size_t>(theModel->versionOf(current.row()));
    ui->detailView->setPlainText(VersionWords::details(theReading->rows()[version], *theReading));
}

/// In the order of the file.
std::vector<int> VersionsViewController::chosenVersions() const
{
    std::vector<int> versions;
    const QModelIndexList rows = ui->versionTable->selectionModel()->selectedRows();
    for (const QModelIndex& row : rows)
        versions.push_back(theModel->versionOf(row.row()));
    std::sort(versions.begin(), versions.end());
    return versions;
}

void VersionsViewController::updateCommands()
{
    ui->openButton->setEnabled(validateCommand(u"openVersion"_s));
    ui->compareButton->setEnabled(validateCommand(u"compareWithVersionBefore"_s)
        || validateCommand(u"compareChosenVersions"_s));
    ui->exportButton->setEnabled(validateCommand(u"exportChosenVersions"_s));
    ui->reportButton->setEnabled(validateCommand(u"saveReport"_s));
    const DocumentWindow* const window = DocumentWindow::of(this);
    if (window && window->router())
        window->router()->validateSoon();
}

bool VersionsViewController::validateCommand(const QString& command) const
{
    const auto chosen = ui->versionTable->selectionModel()->selectedRows().size();
    if (command == "openVersion"_L1)
        return chosen == 1;
    if (command == "compareWithVersionBefore"_L1)
        return chosen == 1 && chosenVersions().front() > 0;
    if (command == "compareChosenVersions"_L1)
        return chosen == 2;
    if (command == "exportChosenVersions"_L1 || command == "copy"_L1)
        return chosen > 0;
    if (command == "copyHash"_L1) {
        const std::vector<int> versions = chosenVersions();
        return !versions.empty() && std::all_of(versions.begin(), versions.end(), [this](int row) {
            return theReading->rows()[static_cast<std::size_t>(row)].hash.has_value();
        });
    }
    if (command == "saveReport"_L1)
        return !theReading->isRunning() && !theReading->rows().empty();
    return command != "selectAll"_L1 || theModel->rowCount() > 0;
}

void VersionsViewController::openVersion()
{
    const std::vector<int> chosen = chosenVersions();
    if (chosen.size() != 1)
        return;
    const SavedVersion& version
        = theReading->rows()[static_cast<std::size_t>(chosen.front())].version;
    theDocument->openVersion(version.marker, version.end);
}

FileVersion VersionsViewController::fileVersion(int version) const
{
    const SavedVersion& saved = theReading->rows()[static_cast<std::size_t>(version)].version;
    return {saved.marker, theDocument->theData().prefix(saved.end),
        theDocument->thePDFDocument()->password()};
}

void VersionsViewController::compareWithVersionBefore()
{
    if (validateCommand(u"compareWithVersionBefore"_s)) {
        const int chosen = chosenVersions().front();
        emit comparisonWanted(fileVersion(chosen - 1), fileVersion(chosen));
    }
}

void VersionsViewController::compareChosenVersions()
{
    const std::vector<int> chosen = chosenVersions();
    if (chosen.size() == 2)
        emit comparisonWanted(fileVersion(chosen.front()), fileVersion(chosen.back()));
}

void VersionsViewController::exportChosenVersions()
{
    std::vector<std::size_t> numbers;
    for (const int version : chosenVersions())
        numbers.push_back(static_cast<std::size_t>(version) + 1);
    theDocument->exportVersions(numbers);
}

void VersionsViewController::copyHash()
{
    QStringList hashes;
    for (const int version : chosenVersions()) {
        const auto& hash = theReading->rows()[static_cast<std::size_t>(version)].hash;
        if (hash)
            hashes << QString::fromStdString(hexadecimal(*hash));
    }
    QGuiApplication::clipboard()->setText(hashes.join(u'\n'));
}

void VersionsViewController::copy()
{
    QStringList lines;
    for (const int version : chosenVersions())
        lines.prepend(theModel->rowText(theModel->versionOf(version)));
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void VersionsViewController::selectAll()
{
    ui->versionTable->selectAll();
}

void VersionsViewController::saveReport()
{
    const QFileInfo file(theDocument->fileURL().toLocalFile());
    const QString program = tr("Tarnwick %1").arg(QCoreApplication::applicationVersion());
    const QFileInfo copy(theDocument->pathOfCopy());
    const VersionReport report(*theReading, {theDocument->displayName(), copy.fileName()}, program);
    ReportExport::begin(
        {tr("Save Report"), file.absolutePath(), copy.completeBaseName() + u"-versions"_s,
            {{u"html"_s, [report] { return report.html(); }},
                {u"json"_s, [report] { return report.json(); }}},
            window()});
}

void VersionsViewController::openMenu(const QPoint& place)
{
    const DocumentWindow* const window = DocumentWindow::of(this);
    if (!window || !window->router())
        return;
    window->router()->validate();
    QMenu menu(this);
    for (const QString& command : {u"openVersion"_s, u"compareWithVersionBefore"_s,
             u"compareChosenVersions"_s, QString(), u"exportChosenVersions"_s, QString(), u"copy"_s,
             u"copyHash"_s, QString(), u"saveReport"_s}) {
        if (QAction* const action = window->commandAction(command))
            menu.addAction(action);
        else
            menu.addSeparator();
    }
    menu.exec(ui->versionTable->viewport()->mapToGlobal(place));
}

} // namespace tarnwick
