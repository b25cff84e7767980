#pragma once

#include <QSplitter>

namespace tarnwick {

/// A splitter whose dividers the keyboard reaches too: Tab goes to them, the arrow keys along the
/// splitter move them, with Shift four times as far, Home and End as far as it goes. Panes that the
/// mouse can close, they close too.
class PaneSplitter : public QSplitter
{
    Q_OBJECT

public:
    using QSplitter::QSplitter;

protected:
    QSplitterHandle* createHandle() override;
};

} // namespace tarnwick
