#pragma once

#include <QWidget>

class Document;

/// Content of a document's main window: the document's name, its page count, and a button that
/// opens the source inspector.
class DocumentOverview : public QWidget
{
    Q_OBJECT

public:
    /// @param document borrowed for the view's life; open.
    explicit DocumentOverview(Document* document, QWidget* parent = nullptr);
};
