#pragma once

#include <QStyledItemDelegate>

// Draws a sidebar row: the heading in a small bold face, a section with its icon, a project
// with its overdue mark, and a number badge where a row counts something.
class TAGroupsCell : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintHeading(QPainter *painter, const QStyleOptionViewItem &option,
                      const QModelIndex &index) const;
    void paintBadge(QPainter *painter, const QRect &rect, int count,
                    const QStyleOptionViewItem &option) const;
};
