#include "ExportPanel.h"

#include "dialogs/Alert.h"
#include "files/OutputNaming.h"
#include "frame/Notice.h"
#include "frame/OutputRefusal.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Makes room for a row by moving those from it on down by one.
void insertRow(QGridLayout& grid, int row)
{
    struct Place
    {
        QLayoutItem* item;
        int row, column, rowSpan, columnSpan;
    };
    QList<Place> moved;
    for (int i = grid.count() - 1; i >= 0; --i) {
        Place place = {};
        grid.getItemPosition(i, &place.row, &place.column, &place.rowSpan, &place.columnSpan);
        if (place.row < row)
            continue;
        place.item = grid.takeAt(i);
        moved.append(place);
    }
    for (const Place& place : std::as_const(moved))
        grid.addItem(place.item, place.row + 1, place.column, place.rowSpan, place.columnSpan,
            place.item->alignment());
}

} // namespace

ExportPanel::ExportPanel(
    const QString& title, const QStringList& types, const QString& typesTitle, QWidget* parent)
    : QFileDialog(parent, title)
    , theTypes(types)
    , theRefusal(outputRefusal)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setOption(QFileDialog::DontUseNativeDialog);
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setNameFilter(typesTitle + u" (*." + types.join(u" *."_s) + u')');
}

ExportPanel::ExportPanel(
    const QString& title, const QString& prompt, const QString& message, QWidget* parent)
    : QFileDialog(parent, title)
    , isForFolder(true)
    , theRefusal(outputRefusal)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setOption(QFileDialog::DontUseNativeDialog);
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setFilter(QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot);
    setLabelText(QFileDialog::Accept, prompt);
    setLabelText(QFileDialog::FileName, tr("&Name:"));
    for (const QString& part : {u"fileTypeLabel"_s, u"fileTypeCombo"_s}) {
        if (auto* const widget = findChild<QWidget*>(part))
            widget->hide();
    }
    showMessage(message);
    if (!nameField())
        return;
    // Qt's text for a name that is a folder speaks of opening it.
    connect(nameField(), &QLineEdit::textChanged, this, [this, prompt] {
        const auto* const box = findChild<QDialogButtonBox*>();
        if (auto* const button = box ? box->button(QDialogButtonBox::Save) : nullptr)
            button->setText(prompt);
    });
}

void ExportPanel::showMessage(const QString& message)
{
    auto* const grid = qobject_cast<QGridLayout*>(layout());
    const int index = grid && nameField() ? grid->indexOf(nameField()) : -1;
    if (index < 0)
        return;
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    grid->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
    insertRow(*grid, row);
    auto* const label = new QLabel(message, this);
    label->setObjectName(u"messageLabel"_s);
    label->setWordWrap(true);
    grid->addWidget(label, row, 0, 1, grid->columnCount());
    nameField()->setAccessibleDescription(message);
}

void ExportPanel::propose(const QString& folder, const QString& name)
{
    const QString fallback = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    setDirectory(QFileInfo(folder).isDir() ? folder : fallback);
    const QString proposed = nameOfNoOpenedFile(directory().absolutePath(), name);
    selectFile(proposed);
    if (nameField()) {
        nameField()->setText(proposed); // selectFile() reads a slash or a quote in it
        nameField()->selectAll();
        nameField()->setFocus();
    }
}

QString ExportPanel::chosenPath() const
{
    return theChosenPath;
}

QLineEdit* ExportPanel::nameField() const
{
    return findChild<QLineEdit*>(u"fileNameEdit"_s);
}

/// The path that the name field gives. Qt would read quotes in it as those around several names.
QString ExportPanel::typedPath() const
{
    const QString name = nameField()->text();
    const bool isOfHome = name == u'~' || name.startsWith(u"~/"_s);
    const QString path = isOfHome && !QFileInfo::exists(directory().filePath(name))
        ? QDir::homePath() + name.mid(1)
        : directory().filePath(name);
    return QDir::cleanPath(path);
}

void ExportPanel::accept()
{
    if (nameField()->text().trimmed().isEmpty())
        return;
    QString path = typedPath();
    // A folder's name opens it, unless it is a folder that is asked for.
    if (!isForFolder && QFileInfo(path).isDir()) {
        QFileDialog::accept();
        return;
    }
    if (!isForFolder)
        path = withAllowedType(path, theTypes);
    if (const QString refused = refusal(path); !refused.isEmpty())
        return (new Alert(QMessageBox::Warning, windowTitle(), refused, this))->comeUp();
    const QFileInfo info(path);
    if (!info.exists() || (isForFolder && QDir(path).isEmpty()))
        choose(path);
    else
        askWhetherToUse(path);
}

void ExportPanel::choose(const QString& path)
{
    theChosenPath = path;
    QDialog::accept();
}

/// Why a place cannot be used; empty when it can.
QString ExportPanel::refusal(const QString& path) const
{
    if (QString refused = theRefusal(path); !refused.isEmpty())
        return refused;
    const QFileInfo info(path);
    if (!info.exists() || isForFolder == info.isDir())
        return {};
    return (isForFolder ? tr("%1 is a file. Enter another name.")
                        : tr("%1 is a folder. Enter another name."))
        .arg(shownName(path));
}

void ExportPanel::askWhetherToUse(const QString& path)
{
    const QString question = isForFolder
        ? tr("The folder %1 already exists. Files in it that have the name of a version will be "
             "replaced.")
        : tr("%1 already exists. Do you want to replace it?");
    auto* const alert
        = new Alert(QMessageBox::Warning, windowTitle(), question.arg(shownName(path)), this);
    alert->addAnswer(QMessageBox::No);
    alert->addAnswer(QMessageBox::Yes, [this, path] { choose(path); });
    alert->comeUp();
}

} // namespace tarnwick
