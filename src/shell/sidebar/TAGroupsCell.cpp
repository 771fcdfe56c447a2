#include "shell/sidebar/TAGroupsCell.h"

#include "shell/sidebar/TAGroupsModel.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>

namespace {

QFont headingFont(const QFont &base) {
    QFont font = base;
    font.setWeight(QFont::DemiBold);
    font.setPointSizeF(base.pointSizeF() * 0.85);
    font.setCapitalization(QFont::AllUppercase);
    return font;
}

} // namespace

QSize TAGroupsCell::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    // The design's heights (heading 31, sections 20, projects 18) as a floor; the font of the
    // desktop decides above that.
    const bool heading = index.data(TAGroupsModel::HeadingRole).toBool();
    const int floor = heading ? 31 : index.parent().isValid() ? 18 : 20;
    const int text = option.fontMetrics.height() + (heading ? 14 : 8);
    size.setHeight(std::max({size.height(), floor, text}));
    return size;
}

void TAGroupsCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const {
    if (index.data(TAGroupsModel::HeadingRole).toBool()) {
        paintHeading(painter, option, index);
        return;
    }
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    const bool overdue = index.data(TAGroupsModel::OverdueRole).toBool();
    const int count = index.data(TAGroupsModel::CountRole).toInt();
    const int markSize = opt.fontMetrics.height();
    QRect trailing;
    if (overdue || count > 0) {
        trailing = QRect(opt.rect.right() - markSize - 6, opt.rect.center().y() - markSize / 2,
                         markSize, markSize);
        opt.rect.setRight(trailing.left() - 4);
    }
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    // The selection spans the whole row, mark included.
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    background.icon = QIcon();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &background, painter, widget);
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);
    if (overdue) {
        const QIcon mark = QIcon::fromTheme(QStringLiteral("dialog-warning"));
        if (!mark.isNull()) {
            mark.paint(painter, trailing);
        } else {
            painter->save();
            painter->setPen(Qt::NoPen);
            painter->setBrush(opt.palette.brush(QPalette::Link));
            painter->setRenderHint(QPainter::Antialiasing);
            painter->drawEllipse(trailing.adjusted(3, 3, -3, -3));
            painter->restore();
        }
    } else if (count > 0) {
        paintBadge(painter, trailing, count, opt);
    }
}

void TAGroupsCell::paintHeading(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const {
    painter->save();
    painter->setFont(headingFont(option.font));
    painter->setPen(option.palette.color(QPalette::Disabled, QPalette::WindowText));
    const QRect text = option.rect.adjusted(6, 0, -6, -4);
    painter->drawText(text, Qt::AlignLeft | Qt::AlignBottom,
                      index.data(Qt::DisplayRole).toString());
    painter->restore();
}

void TAGroupsCell::paintBadge(QPainter *painter, const QRect &rect, int count,
                              const QStyleOptionViewItem &option) const {
    const QString text = QString::number(count);
    QRect badge = rect;
    badge.setLeft(rect.right() -
                  std::max(rect.width(), option.fontMetrics.horizontalAdvance(text) + 8));
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(option.palette.brush(QPalette::Mid));
    painter->drawRoundedRect(badge, rect.height() / 2.0, rect.height() / 2.0);
    painter->setPen(option.palette.color(QPalette::Base));
    painter->drawText(badge, Qt::AlignCenter, text);
    painter->restore();
}
