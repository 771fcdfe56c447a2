#pragma once

#include "toolkit/OTActionList.h"

#include <QLineEdit>
#include <QPointer>
#include <QStringList>
#include <QTimer>

class QAction;
class QActionGroup;
class QMenu;

// The search field of the bottom bar. The shown section makes itself the target: its search
// runs as the user types (after a short pause), on Enter, and when a category is chosen from
// the menu behind the magnifier.
class TAStatusBarSearchButton : public QLineEdit {
    Q_OBJECT
public:
    // The pause after a keystroke before the search runs, so that a long list is not filtered
    // once per letter.
    static constexpr int kTypingPauseMs = 200;

    explicit TAStatusBarSearchButton(QWidget *parent = nullptr);

    // Makes the target's search the one this field runs; the target is not owned and a
    // destroyed target is simply no longer asked. With categories, the menu offers them, the
    // first one marked. Setting the target already set changes nothing, so a section coming
    // back keeps the phrase and category it had.
    void setTarget(QObject *target, const QStringList &categories, OTAction::Selector doSearch);
    void clearTarget() { setTarget(nullptr, {}, {}); }
    QObject *target() const { return m_target.data(); }

    // The typed phrase; a null string when the field is empty.
    QString searchPhrase() const;
    // The marked category, -1 when there is none.
    int selectedCategoryIndex() const;
    // Marks the category again, for a section that restores its state; an index the menu does
    // not have is ignored. Does not search.
    void setCategoryIndex(int index);
    // Empties the field without searching.
    void resetSearch();
    // The Find command of the window: the field takes the focus with its text selected.
    void focusSearch();

    OTActionList &searchActions() { return m_searchActions; }
    // The category menu; null without categories.
    QMenu *searchMenu() const { return m_menu; }
    QAction *menuAction() const { return m_menuAction; }

    QSize sizeHint() const override;

private:
    void rebuildMenu(const QStringList &categories);
    void chooseCategory(QAction *item);
    void popUpMenu();
    void search();

    QPointer<QObject> m_target;
    OTActionList m_searchActions;
    OTAction m_searchAction;
    QAction *m_menuAction;
    QMenu *m_menu = nullptr;
    QActionGroup *m_categories = nullptr;
    QTimer m_typingPause;
};
