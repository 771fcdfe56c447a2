#include "shell/statusbar/TAStatusBarGrid.h"

#include <QHBoxLayout>
#include <QStyle>

TAStatusBarGrid::TAStatusBarGrid(QWidget *parent)
    : QWidget(parent)
    , m_row(new QHBoxLayout(this)) {
    m_row->setContentsMargins(0, 0, 0, 0);
    // The buttons of a group stand as close as those of a tool bar.
    m_row->setSpacing(style()->pixelMetric(QStyle::PM_ToolBarItemSpacing, nullptr, this));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QList<QWidget *> TAStatusBarGrid::views() const {
    QList<QWidget *> views;
    for (int i = 0; i < m_row->count(); ++i)
        if (QWidget *view = m_row->itemAt(i)->widget())
            views.append(view);
    return views;
}

bool TAStatusBarGrid::containsView(const QWidget *view) const {
    return view && m_row->indexOf(view) >= 0;
}

void TAStatusBarGrid::insertView(int index, QWidget *view) {
    m_row->removeWidget(view); // a view listed twice would be laid out twice
    m_row->insertWidget(index, view, 0, Qt::AlignVCenter);
    view->show();
}

void TAStatusBarGrid::removeView(QWidget *view) {
    if (!containsView(view))
        return;
    m_row->removeWidget(view);
    view->hide();
}
