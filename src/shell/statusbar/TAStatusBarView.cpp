#include "shell/statusbar/TAStatusBarView.h"

#include "shell/statusbar/TAStatusBarGrid.h"

#include <QEvent>
#include <QFrame>
#include <QStyle>

#include <algorithm>

TAStatusBarView::TAStatusBarView(QWidget *parent)
    : QWidget(parent)
    , m_separator(new QFrame(this))
    , m_left(new TAStatusBarGrid(this))
    , m_center(new TAStatusBarGrid(this))
    , m_right(new TAStatusBarGrid(this)) {
    m_separator->setFrameShape(QFrame::HLine);
    m_separator->setFrameShadow(QFrame::Sunken);
    m_left->setObjectName(QStringLiteral("leftGrid"));
    m_center->setObjectName(QStringLiteral("centerGrid"));
    m_right->setObjectName(QStringLiteral("rightGrid"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

namespace {

// The style's spacing between widgets; some styles answer only through layoutSpacing, and a
// style that answers neither gets the width of a character.
int styleSpacing(const QWidget *widget, QStyle::PixelMetric metric, Qt::Orientation orientation) {
    const QStyle *style = widget->style();
    int spacing = style->pixelMetric(metric, nullptr, widget);
    if (spacing < 0)
        spacing = style->layoutSpacing(QSizePolicy::DefaultType, QSizePolicy::DefaultType,
                                       orientation, nullptr, widget);
    return spacing >= 0 ? spacing : widget->fontMetrics().averageCharWidth();
}

} // namespace

QMargins TAStatusBarView::rowMargins() const {
    // A bar is a single row: the full dialog margins above and below would make it tall, so
    // the row takes the style's spacing there and its margins at the sides.
    const int vertical = styleSpacing(this, QStyle::PM_LayoutVerticalSpacing, Qt::Vertical);
    return {style()->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, this), vertical,
            style()->pixelMetric(QStyle::PM_LayoutRightMargin, nullptr, this), vertical};
}

// Groups stand further apart than the buttons within one.
int TAStatusBarView::groupGap() const {
    return 2 * styleSpacing(this, QStyle::PM_LayoutHorizontalSpacing, Qt::Horizontal);
}

QSize TAStatusBarView::sizeHint() const {
    const QMargins margins = rowMargins();
    const QSize left = m_left->sizeHint(), center = m_center->sizeHint(),
                right = m_right->sizeHint();
    const int rowHeight =
        std::max({left.height(), center.height(), right.height(), fontMetrics().height()});
    return {margins.left() + left.width() + groupGap() + center.width() + groupGap() +
                right.width() + margins.right(),
            m_separator->sizeHint().height() + margins.top() + rowHeight + margins.bottom()};
}

bool TAStatusBarView::event(QEvent *event) {
    // A grid that gains or loses a view asks its parent to lay it out again.
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        layoutGrids();
    }
    return QWidget::event(event);
}

void TAStatusBarView::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    layoutGrids();
}

void TAStatusBarView::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    layoutGrids(); // grids changed while the bar was hidden asked no one
}

void TAStatusBarView::layoutGrids() {
    const int lineHeight = m_separator->sizeHint().height();
    m_separator->setGeometry(0, 0, width(), lineHeight);
    const QRect row = rect().adjusted(0, lineHeight, 0, 0).marginsRemoved(rowMargins());
    const auto place = [&row](QWidget *grid, int x) {
        const QSize size = grid->sizeHint();
        grid->setGeometry(x, row.top() + (row.height() - size.height()) / 2, size.width(),
                          size.height());
    };
    const int leftEnd = row.left() + m_left->sizeHint().width();
    const int rightStart = row.right() + 1 - m_right->sizeHint().width();
    const int centerWidth = m_center->sizeHint().width();
    const int lowest = leftEnd + groupGap(), highest = rightStart - groupGap() - centerWidth;
    const int centred = row.left() + (row.width() - centerWidth) / 2;
    place(m_left, row.left());
    place(m_right, rightStart);
    place(m_center, highest < lowest ? lowest : std::clamp(centred, lowest, highest));
}
