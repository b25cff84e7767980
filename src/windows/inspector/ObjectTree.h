#pragma once

#include "analysis/SourceText.h"

#include <QWidget>

#include <memory>

class QLabel;
class QTreeView;

namespace tarnwick {

class ObjectTreeModel;

/// The tree of a source's objects from the trailer down. Works on nothing before it shows.
class ObjectTree : public QWidget
{
    Q_OBJECT

public:
    explicit ObjectTree(QWidget* parent = nullptr);

    /// Shows the objects of a source. @param source scanned; null for none.
    /// @param reason why there are none.
    void setSource(std::shared_ptr<const SourceText> source, const QString& reason = {});
    const std::shared_ptr<const SourceText>& source() const { return theSource; }

    Q_INVOKABLE bool validateCommand(const QString& command) const;

public slots:
    /// Copies what the selected row says.
    void copy();

signals:
    /// The user has moved to an object's row, or wants to go to the object itself.
    /// @param object its place in the scan of source().
    /// @{
    void chosen(std::size_t object);
    void wanted(std::size_t object);
    /// @}

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look();

    std::shared_ptr<const SourceText> theSource;
    ObjectTreeModel* theModel;
    QTreeView* theView;
    QLabel* theStatus;
};

} // namespace tarnwick
