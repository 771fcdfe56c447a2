#include "shell/sidebar/TAGroupsOutlineView.h"

#include "shell/sidebar/TAGroupsCell.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

TAGroupsOutlineView::TAGroupsOutlineView(QWidget *parent)
    : QTreeView(parent) {
    setHeaderHidden(true);
    setRootIsDecorated(true);
    setUniformRowHeights(false);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(new TAGroupsCell(this));
    setAccessibleName(tr("Sidebar"));
    // The sidebar reads as part of the window, not as a white list box.
    setAutoFillBackground(false);
    viewport()->setBackgroundRole(QPalette::Window);
}

QItemSelectionModel::SelectionFlags
TAGroupsOutlineView::selectionCommand(const QModelIndex &index, const QEvent *event) const {
    if (!index.isValid() || !(model()->flags(index) & Qt::ItemIsSelectable))
        return QItemSelectionModel::NoUpdate;
    if (event && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress))
        return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
    return QTreeView::selectionCommand(index, event);
}

void TAGroupsOutlineView::keyPressEvent(QKeyEvent *event) {
    const bool editing = state() == QAbstractItemView::EditingState;
    if (!editing && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)) {
        m_deleteActions.inform(this);
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void TAGroupsOutlineView::contextMenuEvent(QContextMenuEvent *event) {
    QModelIndex index = indexAt(event->pos());
    if (event->reason() == QContextMenuEvent::Keyboard)
        index = currentIndex();
    if (index.isValid() && (model()->flags(index) & Qt::ItemIsSelectable))
        setCurrentIndex(index);
    if (!m_menuForRow)
        return;
    if (QMenu *menu = m_menuForRow(index)) {
        const QPoint at = event->reason() == QContextMenuEvent::Keyboard
                              ? viewport()->mapToGlobal(visualRect(index).bottomLeft())
                              : event->globalPos();
        menu->popup(at);
    }
}
