#pragma once

#include "SearchChoices.h"

#include <QLineEdit>

class QAction;
class QLabel;
class QMenu;

namespace tarnwick {

/// A line for a search text, with the latest search texts in a menu of its own, a button that
/// clears it, and room at its end that tells which match is shown.
///
/// The recent texts are the user's, shared by every window and kept in the settings.
class SearchField : public QLineEdit
{
    Q_OBJECT

public:
    /// Roles of the items of a menu template, as the data of its actions.
    enum MenuTag
    {
        isRecentsTitle = 1000, ///< shown above the recent texts
        isRecentsItem = 1001, ///< stands for the recent texts, one item each
        isClearRecents = 1002, ///< empties the recent texts
        isNoRecents = 1003, ///< shown instead where there are none
    };

    explicit SearchField(QWidget* parent = nullptr);

    /// The template after which the menu of recent texts is made each time that it opens. Its
    /// untagged items are taken over as they are. @param menu borrowed; null for no menu.
    void setSearchMenuTemplate(QMenu* menu);
    QMenu* searchMenuTemplate() const { return theTemplate; }
    /// The menu of recent texts, up to date.
    QMenu* recentsMenu();

    /// The search text.
    QString stringValue() const { return text(); }
    void setStringValue(const QString& value) { setText(value); }

    /// Puts a text in front of the recent ones.
    void rememberSearch(const QString& text);

    /// Text at the field's end, as "3 of 17"; empty for none.
    void setMatchText(const QString& text);
    QString matchText() const;

signals:
    /// The user wants the field's text searched.
    void searchRequested();
    /// The user wants to leave the field without searching.
    void cancelRequested();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void fillMenu();
    void addRecents();
    void openMenu();
    void placeLabel();

    QMenu* theTemplate = nullptr;
    QMenu* theMenu;
    QAction* theMenuAction;
    QAction* theClearAction;
    QLabel* theMatchLabel;
    RecentSearches theRecents;
};

} // namespace tarnwick
