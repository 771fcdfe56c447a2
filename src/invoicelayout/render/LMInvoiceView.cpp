#include "invoicelayout/render/LMInvoiceView.h"

#include "invoicelayout/render/LMPlaceholderText.h"
#include "invoicelayout/render/LMTablePagination.h"
#include "invoicelayout/render/LMTextPainter.h"
#include "layoutvalues/LMElementTypes.h"
#include "layoutvalues/LMGeometry.h"
#include "store/TAContextDatabase.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAPreferences.h"

#include <QPainter>
#include <QPainterPath>

LMInvoiceView::LMInvoiceView() = default;
LMInvoiceView::~LMInvoiceView() = default;

QColor LMInvoiceView::deskColor() {
    return QColor::fromRgbF(0.6745098039215687f, 0.6980392156862745f, 0.7333333333333333f);
}

void LMInvoiceView::setIsRenderOnlyView(bool renderOnly) {
    m_renderOnly = renderOnly;
}

void LMInvoiceView::setRenderOnlyPageSize(const QSizeF &size) {
    m_renderOnlyPageSize = size;
    if (LMInvoiceTemplateClass *invoiceTemplate = selectedTemplate()) {
        setTemplate(invoiceTemplate);
    } else {
        m_numberOfPages = 1;
        m_extraPages = 0;
    }
    calculateRequiredPages();
}

void LMInvoiceView::setInvoice(TAInvoice *invoice) {
    m_invoice = invoice;
    m_standaloneTemplate = nullptr;
    setNeedsToUpdateCache(true);
    if (LMInvoiceTemplateClass *invoiceTemplate = selectedTemplate()) {
        setTemplate(invoiceTemplate);
    } else {
        m_numberOfPages = 1;
        m_extraPages = 0;
    }
}

void LMInvoiceView::setTemplate(LMInvoiceTemplateClass *invoiceTemplate) {
    if (m_invoice && m_invoice->invoiceTemplate() != invoiceTemplate)
        m_invoice->setInvoiceTemplate(invoiceTemplate);
    if (m_template != invoiceTemplate)
        setNeedsToUpdateCache(true);
    m_template = invoiceTemplate;
    recalculatePages();
}

void LMInvoiceView::setStandaloneTemplate(LMInvoiceTemplateClass *invoiceTemplate) {
    m_invoice = nullptr;
    m_standaloneTemplate = invoiceTemplate;
    setNeedsToUpdateCache(true);
    recalculatePages();
}

void LMInvoiceView::setNeedsToUpdateCache(bool needed) {
    m_needsToUpdateCache = needed;
    if (!needed)
        return;
    m_template = selectedTemplate();
    m_pageCache.clear();
    m_tableCache.clear();
    m_sortedPages.clear();
    m_background.reset();
    m_logo.reset();
    m_items.reset();
    m_preferences.reset();
}

LMInvoiceTemplateClass *LMInvoiceView::selectedTemplate() const {
    return m_invoice ? m_invoice->invoiceTemplate() : m_standaloneTemplate;
}

QSizeF LMInvoiceView::pageSize() const {
    if (m_renderOnly)
        return m_renderOnlyPageSize;
    if (m_template)
        return m_template->pageSize();
    return LMInvoiceTemplateClass::defaultPaperSize(nullptr);
}

QRectF LMInvoiceView::rectForPage(qint64 page) const {
    const QSizeF size = pageSize();
    return QRectF(pageXSpace(), double(page - 1) * size.height() + pageYSpace() * double(page),
                  size.width(), size.height());
}

void LMInvoiceView::recalculatePages() {
    m_mainPage = -1;
    m_extraPages = qMax(0, getNumberOfExtraPagesForTemplate(m_template));
    m_numberOfPages = m_template ? m_template->pages().size() : 1;
}

void LMInvoiceView::calculateRequiredPages() {
    if (m_renderOnly)
        m_extraPages = qMax(0, getNumberOfExtraPagesForTemplate(m_template));
    else
        recalculatePages();
}

QSizeF LMInvoiceView::frameSize() const {
    const QRectF last = rectForPage(requiredNumberOfPages());
    return QSizeF(last.right() + pageXSpace(), last.bottom() + pageYSpace());
}

void LMInvoiceView::drawRect(QPainter *painter, bool liveResize) {
    if (m_renderOnly || liveResize) {
        drawStack(painter);
        return;
    }
    const double ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1;
    const QSize pixels = (frameSize() * ratio).toSize();
    if (m_needsToUpdateCache || m_cacheImage.size() != pixels) {
        m_cacheImage = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        m_cacheImage.setDevicePixelRatio(ratio);
        QPainter cache(&m_cacheImage);
        cache.setRenderHint(QPainter::SmoothPixmapTransform);
        drawStack(&cache);
        m_needsToUpdateCache = false;
    }
    painter->fillRect(QRectF(QPointF(0, 0), frameSize()), deskColor());
    painter->drawImage(QPointF(0, 0), m_cacheImage);
}

void LMInvoiceView::drawStack(QPainter *painter) {
    painter->fillRect(QRectF(QPointF(0, 0), frameSize()), deskColor());
    calculateRequiredPages();
    drawPages(painter);
    drawContent(painter);
}

void LMInvoiceView::drawPages(QPainter *painter) {
    for (qint64 page = 1; page <= requiredNumberOfPages(); ++page) {
        const QRectF rect = rectForPage(page);
        if (!m_renderOnly) {
            // A soft edge stands for the shadow of a sheet on the desk.
            for (int blur = 4; blur >= 1; --blur)
                painter->fillRect(rect.adjusted(-blur, -blur + 2, blur, blur + 2),
                                  QColor(0, 0, 0, 18));
        }
        painter->fillRect(rect, Qt::white);
    }
}

void LMInvoiceView::beginPass() {
    m_progress = LMTablePainter::Progress{};
    m_page = 1;
}

void LMInvoiceView::drawContent(QPainter *painter) {
    if (!m_template)
        return; // invoices without a template print blank pages
    beginPass();
    for (; m_page <= requiredNumberOfPages(); ++m_page) {
        painter->save();
        const QRectF rect = rectForPage(m_page);
        painter->setClipRect(rect, Qt::IntersectClip);
        drawFromTemplateInRect(painter, rect);
        painter->restore();
    }
}

void LMInvoiceView::drawPage(QPainter *painter, int page) {
    m_page = page;
    if (!m_template)
        return;
    const QRectF rect = rectForPage(page);
    if (!painter) {
        drawFromTemplateInRect(nullptr, rect);
        return;
    }
    painter->save();
    painter->translate(-rect.topLeft());
    painter->setClipRect(rect, Qt::IntersectClip);
    drawFromTemplateInRect(painter, rect);
    painter->restore();
}

void LMInvoiceView::drawFromTemplateInRect(QPainter *painter, const QRectF &rect) {
    if (painter)
        drawBackgroundInRect(painter, rect);
    qint64 index = m_page - 1;
    if (m_mainPage >= 0 && index > m_mainPage)
        index = m_mainPage + m_extraPages <= index ? index - m_extraPages : m_mainPage;
    index = qMax<qint64>(index, 0);
    if (m_sortedPages.isEmpty() && m_template)
        m_sortedPages = m_template->getSortedPages();
    if (index < m_sortedPages.size())
        drawElementsFromPage(painter, m_sortedPages[index], rect);
}

void LMInvoiceView::drawBackgroundInRect(QPainter *painter, const QRectF &rect) {
    if (!m_template)
        return;
    if (!m_background) {
        LMBackgroundPainter::Background background;
        background.type = m_template->backgroundType();
        background.imageMode = m_template->backgroundImageType();
        background.gradientAngle = m_template->backgroundGradientAngle();
        if (background.type == LMBackgroundPainter::Color ||
            background.type == LMBackgroundPainter::Gradient) {
            background.color = m_template->bgColor();
            background.color2 = m_template->bgColor2();
        }
        if (background.type == LMBackgroundPainter::Image)
            background.image = m_template->bgImage();
        m_background = background;
    }
    LMBackgroundPainter::draw(painter, *m_background, rect);
}

const QList<LMInvoiceView::Element> &LMInvoiceView::elementsOf(LMInvoiceTemplatePageClass *page) {
    auto found = m_pageCache.find(page);
    if (found != m_pageCache.end())
        return *found;
    QList<Element> list;
    for (LMInvoiceElementClass *object : page->getSortedElements()) {
        if (object->isHidden())
            continue;
        Element element;
        element.object = object;
        element.type = object->type();
        element.frame = LMGeometry::rectFromString(object->frame());
        element.hasText = !object->text().isEmpty();
        if (element.hasText)
            element.text = object->attributedString();
        const LMElementKind kind = LMElementTypes::kindForType(element.type);
        if (kind == LMElementKind::Picture)
            element.image = object->imageToDraw();
        if (LMElementTypes::isShape(element.type))
            element.color = object->bgColor();
        list.append(element);
    }
    return *m_pageCache.insert(page, list);
}

const LMTableModel &LMInvoiceView::tableOf(LMInvoiceElementClass *element) {
    auto found = m_tableCache.find(element);
    if (found == m_tableCache.end())
        found = m_tableCache.insert(element, LMTableModel::forElement(element, taxesEnabled()));
    return *found;
}

void LMInvoiceView::drawElementsFromPage(QPainter *painter, LMInvoiceTemplatePageClass *page,
                                         const QRectF &rect) {
    const QList<Element> &all = elementsOf(page);
    for (const Element &element : all) {
        const QRectF frame = element.frame.translated(rect.topLeft());
        if (element.type == LMElementTypes::InvoiceItems && !drawsTemplateOnly())
            drawItemsTable(painter, element, frame, all, rect);
        else if (painter)
            drawElement(painter, element, frame);
    }
}

void LMInvoiceView::drawElement(QPainter *painter, const Element &element, const QRectF &frame) {
    const QRectF textRect =
        LMGeometry::getTextRectFromRect(LMGeometry::getInsideRectFromRect(frame));
    switch (LMElementTypes::kindForType(element.type)) {
    case LMElementKind::PlainText:
        LMTextPainter::drawAttributedString(painter, element.text, textRect);
        break;
    case LMElementKind::TaggedText:
    case LMElementKind::PageNumber:
        if (element.hasText)
            LMTextPainter::drawAttributedString(painter, shownText(element), textRect);
        break;
    case LMElementKind::Picture:
        if (!element.image.isNull())
            painter->drawImage(LMGeometry::getInsideRectNoBorderFromRect(frame), element.image);
        break;
    case LMElementKind::Logo:
        drawLogo(painter, LMGeometry::getInsideRectNoBorderFromRect(frame));
        break;
    case LMElementKind::TotalsTable:
    case LMElementKind::ItemsTable:
        // On an invoice the totals come with the items table.
        if (drawsTemplateOnly())
            drawBareTable(painter, element, frame);
        break;
    case LMElementKind::Stale:
        painter->fillRect(frame, Qt::red);
        break;
    default:
        drawShape(painter, element, frame);
        break;
    }
}

LMAttributedString LMInvoiceView::shownText(const Element &element) const {
    if (drawsTemplateOnly())
        return element.text;
    if (LMElementTypes::kindForType(element.type) == LMElementKind::PageNumber)
        return getPageNumberAttributedStringFrom(element.text);
    return getInvoiceAttributedStringFrom(element.text);
}

void LMInvoiceView::drawLogo(QPainter *painter, const QRectF &box) {
    const QImage logo = getLogo();
    if (!logo.isNull())
        painter->drawImage(LMBackgroundPainter::logoRect(logo.size(), box), logo);
}

void LMInvoiceView::drawShape(QPainter *painter, const Element &element, const QRectF &frame) {
    const QRectF shape(frame.x() + 3, frame.y() + 2, frame.width() - 7, frame.height() - 6);
    QPainterPath path;
    switch (LMElementTypes::kindForType(element.type)) {
    case LMElementKind::RoundedRectangle:
        path.addRoundedRect(shape, 10, 10);
        break;
    case LMElementKind::Oval:
        path.addEllipse(shape);
        break;
    case LMElementKind::Line:
        // A new line is 6 high: one point of it is drawn.
        painter->fillRect(shape.adjusted(0, 0, 0, 1), element.color);
        return;
    default:
        painter->fillRect(shape, element.color);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(path, element.color);
    painter->restore();
}

namespace {
// The table's drawing box: the no-border box of the inside box, less the cell margins.
QRectF tableBox(const QRectF &frame) {
    const QRectF inside =
        LMGeometry::getInsideRectNoBorderFromRect(LMGeometry::getInsideRectFromRect(frame));
    return QRectF(inside.x() + 2, inside.y() + 2, inside.width() - 5, inside.height() - 5);
}
} // namespace

void LMInvoiceView::drawItemsTable(QPainter *painter, const Element &element, const QRectF &frame,
                                   const QList<Element> &all, const QRectF &page) {
    const QRectF designed = tableBox(frame);
    double limit = page.y() + page.height();
    for (const Element &other : all) {
        if (other.type == LMElementTypes::TotalAmounts || LMElementTypes::isShape(other.type))
            continue;
        const double y = other.frame.y() + page.y();
        if (y < limit && y > designed.bottom())
            limit = y;
    }
    QRectF drawn = designed;
    drawn.setHeight(limit - designed.y());
    drawMainTableInRect(painter, drawn, element.object);
    if (!painter || m_progress.drawnItems != items().size())
        return;
    for (const Element &other : all) {
        if (other.type != LMElementTypes::TotalAmounts)
            continue;
        QRectF totals = tableBox(other.frame.translated(page.topLeft()));
        totals.translate(0, m_progress.tableFrame.height() - designed.height());
        if (m_mainPage < 0 || m_mainPage + 1 + m_extraPages == m_page)
            drawTotalsTableInRect(painter, totals, other.object);
    }
}

void LMInvoiceView::drawBareTable(QPainter *painter, const Element &element, const QRectF &frame) {
    const LMTableModel &table = tableOf(element.object);
    if (element.type == LMElementTypes::TotalAmounts)
        LMTablePainter::drawTotalsTableInRect(painter, tableBox(frame), table, nullptr);
    else
        LMTablePainter::drawHeaderInRect(painter, tableBox(frame), table);
}

void LMInvoiceView::drawMainTableInRect(QPainter *painter, const QRectF &rect,
                                        LMInvoiceElementClass *element) {
    LMTablePainter::drawMainTableInRect(painter, rect, tableOf(element), items(), taxesEnabled(),
                                        m_progress);
}

void LMInvoiceView::drawTotalsTableInRect(QPainter *painter, const QRectF &rect,
                                          LMInvoiceElementClass *element) {
    LMTablePainter::drawTotalsTableInRect(painter, rect, tableOf(element), m_invoice);
}

QImage LMInvoiceView::getLogo() {
    if (!m_logo) {
        TAPreferences *prefs = preferences();
        m_logo = prefs ? prefs->infoPhotoValue() : QImage();
    }
    return *m_logo;
}

const QList<TAItem *> &LMInvoiceView::items() {
    if (!m_items)
        m_items = m_invoice ? m_invoice->itemsSortedBySortIndex() : QList<TAItem *>();
    return *m_items;
}

TAPreferences *LMInvoiceView::preferences() const {
    if (!m_preferences) {
        ManagedObjectContext *context = m_invoice    ? m_invoice->managedObjectContext()
                                        : m_template ? m_template->managedObjectContext()
                                                     : nullptr;
        m_preferences = context ? TAContextDatabase::getPreferencesInContext(context) : nullptr;
    }
    return *m_preferences;
}

bool LMInvoiceView::taxesEnabled() const {
    if (m_invoice)
        return m_invoice->taxesEnabled();
    // A template alone shows the tax column as the document's setting has it.
    const TAPreferences *prefs = drawsTemplateOnly() ? preferences() : nullptr;
    return prefs && prefs->taxesEnabled();
}

QString LMInvoiceView::getReplacementForPlaceholder(const QString &placeholder) const {
    return LMPlaceholderText(m_invoice, preferences()).getReplacementForPlaceholder(placeholder);
}

LMAttributedString
LMInvoiceView::getInvoiceAttributedStringFrom(const LMAttributedString &text) const {
    return LMPlaceholderText(m_invoice, preferences()).getInvoiceAttributedStringFrom(text);
}

LMAttributedString
LMInvoiceView::getPageNumberAttributedStringFrom(const LMAttributedString &text) const {
    return LMPlaceholderText::getPageNumberAttributedStringFrom(text, m_page,
                                                                requiredNumberOfPages());
}

int LMInvoiceView::getNumberOfExtraPagesForTemplate(LMInvoiceTemplateClass *invoiceTemplate) {
    const LMTablePagination::Result result = LMTablePagination::getNumberOfExtraPagesForTemplate(
        invoiceTemplate, m_invoice, rectForPage(1).height(), taxesEnabled());
    m_mainPage = result.mainPage;
    return result.extraPages;
}
