#pragma once

#include "toolkit/OTActionList.h"

#include <QTreeView>

#include <functional>

class QMenu;

// The sidebar's list. The delete keys go to its deleteActions instead of the view, and a
// right click first selects the row under the pointer, then shows the menu for that row.
class TAGroupsOutlineView : public QTreeView {
    Q_OBJECT
public:
    explicit TAGroupsOutlineView(QWidget *parent = nullptr);

    OTActionList &deleteActions() { return m_deleteActions; }
    // Answers the context menu of a row (-1: below the rows); the view does not own it.
    void setMenuForRow(std::function<QMenu *(const QModelIndex &)> menuForRow) {
        m_menuForRow = std::move(menuForRow);
    }

protected:
    // A click on the heading or below the rows keeps the selection: a section is always shown.
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    OTActionList m_deleteActions;
    std::function<QMenu *(const QModelIndex &)> m_menuForRow;
};
