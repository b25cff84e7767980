#include "app/DocumentOverview.h"

#include "document/Document.h"
#include "platform/frame/DocumentWindow.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

DocumentOverview::DocumentOverview(Document* document, QWidget* parent)
    : QWidget(parent)
{
    setWindowTitle(document->displayName());
    auto* name = new QLabel(document->displayName(), this);
    name->setTextFormat(Qt::PlainText);
    name->setWordWrap(true);
    name->setAlignment(Qt::AlignCenter);
    auto* pages = new QLabel(tr("%1 pages").arg(document->thePDFDocument()->pageCount()), this);
    pages->setAlignment(Qt::AlignCenter);
    auto* source = new QPushButton(tr("Show &Source"), this);
    source->setEnabled(document->validateCommand(QStringLiteral("openSource")));
    connect(source, &QAbstractButton::clicked, this,
        [this] { DocumentWindow::send(this, QStringLiteral("openSource")); });

    auto* layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(name);
    layout->addWidget(pages);
    layout->addWidget(source, 0, Qt::AlignHCenter);
    layout->addStretch();
}
