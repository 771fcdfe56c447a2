#pragma once

#include "invoicelayout/render/LMBackgroundPainter.h"
#include "invoicelayout/render/LMTableModel.h"
#include "invoicelayout/render/LMTablePainter.h"
#include "layoutvalues/LMAttributedString.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QRectF>
#include <QSizeF>

class LMInvoiceElementClass;
class LMInvoiceTemplateClass;
class LMInvoiceTemplatePageClass;
class QPainter;
class TAInvoice;
class TAItem;
class TAPreferences;

// An invoice drawn through its template as a stack of pages, origin top left, in points. The
// same drawing serves the screen (pages apart on a desk colour), pictures, PDF files and paper
// (render-only: pages touch, no shadows). The page holding the items table repeats until all
// items and the totals are out; pages before it print once, pages behind it once at the end.
// Without an invoice the view can draw a template for itself, as its editor shows it.
class LMInvoiceView {
public:
    LMInvoiceView();
    ~LMInvoiceView();

    void setIsRenderOnlyView(bool renderOnly);
    void setRenderOnlyPageSize(const QSizeF &size);
    // The invoice to draw, with the template it has; pages are counted anew.
    void setInvoice(TAInvoice *invoice);
    // Gives the invoice the template when it differs, then counts pages anew.
    void setTemplate(LMInvoiceTemplateClass *invoiceTemplate);
    // Drops the invoice and draws the template itself: each page once in order, tags printed
    // as tags, page numbers as written, tables with their titles and no amounts.
    void setStandaloneTemplate(LMInvoiceTemplateClass *invoiceTemplate);
    bool drawsTemplateOnly() const { return !m_invoice && m_standaloneTemplate; }
    // Drops what was read from the template, after the template or the invoice changed, and
    // marks the screen picture due.
    void setNeedsToUpdateCache(bool needed);
    bool needsToUpdateCache() const { return m_needsToUpdateCache; }

    TAInvoice *selectedInvoice() const { return m_invoice; }
    LMInvoiceTemplateClass *selectedTemplate() const;
    bool isNew() const { return selectedTemplate() != nullptr; }

    QSizeF pageSize() const;
    double pageXSpace() const { return m_renderOnly ? 0 : 8; }
    double pageYSpace() const { return m_renderOnly ? 0 : 8; }
    QRectF rectForPage(qint64 page) const;
    qint64 requiredNumberOfPages() const { return m_numberOfPages + m_extraPages; }
    void recalculatePages();
    void calculateRequiredPages();
    // The size of the whole stack of pages.
    QSizeF frameSize() const;

    // The whole stack: desk colour, white pages, then the content of every page. On screen the
    // stack is one cached picture, redrawn when marked due or when its size changed; render-only
    // views and live resizing draw directly.
    void drawRect(QPainter *painter, bool liveResize = false);
    void drawStack(QPainter *painter);
    void drawPages(QPainter *painter);
    void drawContent(QPainter *painter);
    // Output page by page, each at the painter's origin. Pages must come in order after
    // beginPass(); a null painter skips a page's drawing but keeps the item count going.
    void beginPass();
    void drawPage(QPainter *painter, int page);

    void drawFromTemplateInRect(QPainter *painter, const QRectF &rect);
    void drawBackgroundInRect(QPainter *painter, const QRectF &rect);
    void drawElementsFromPage(QPainter *painter, LMInvoiceTemplatePageClass *page,
                              const QRectF &rect);
    QImage getLogo();

    QString getReplacementForPlaceholder(const QString &placeholder) const;
    LMAttributedString getInvoiceAttributedStringFrom(const LMAttributedString &text) const;
    LMAttributedString getPageNumberAttributedStringFrom(const LMAttributedString &text) const;

    int getNumberOfExtraPagesForTemplate(LMInvoiceTemplateClass *invoiceTemplate);
    void drawMainTableInRect(QPainter *painter, const QRectF &rect, LMInvoiceElementClass *element);
    void drawTotalsTableInRect(QPainter *painter, const QRectF &rect,
                               LMInvoiceElementClass *element);

    int currentPage() const { return m_page; }
    qint64 extraPages() const { return m_extraPages; }
    qint64 numberOfPages() const { return m_numberOfPages; }
    qint64 mainPage() const { return m_mainPage; }
    int drawnItems() const { return m_progress.drawnItems; }
    QRectF tableFrame() const { return m_progress.tableFrame; }

    static QColor deskColor();

private:
    struct Element {
        LMInvoiceElementClass *object = nullptr;
        int type = 0;
        QRectF frame;
        bool hasText = false;
        LMAttributedString text;
        QImage image;
        QColor color;
        LMTableModel table;
    };

    const QList<Element> &elementsOf(LMInvoiceTemplatePageClass *page);
    const LMTableModel &tableOf(LMInvoiceElementClass *element);
    void drawElement(QPainter *painter, const Element &element, const QRectF &frame);
    void drawShape(QPainter *painter, const Element &element, const QRectF &frame);
    LMAttributedString shownText(const Element &element) const;
    void drawBareTable(QPainter *painter, const Element &element, const QRectF &frame);
    void drawLogo(QPainter *painter, const QRectF &box);
    void drawItemsTable(QPainter *painter, const Element &element, const QRectF &frame,
                        const QList<Element> &all, const QRectF &page);
    const QList<TAItem *> &items();
    TAPreferences *preferences() const;
    bool taxesEnabled() const;

    TAInvoice *m_invoice = nullptr;
    LMInvoiceTemplateClass *m_template = nullptr;
    LMInvoiceTemplateClass *m_standaloneTemplate = nullptr;
    qint64 m_numberOfPages = 1;
    qint64 m_extraPages = 0;
    qint64 m_mainPage = -1;
    int m_page = 1;
    LMTablePainter::Progress m_progress;
    bool m_renderOnly = false;
    QSizeF m_renderOnlyPageSize;

    // Read once per template and invoice: a repeated page costs only its drawing.
    QHash<LMInvoiceTemplatePageClass *, QList<Element>> m_pageCache;
    QHash<LMInvoiceElementClass *, LMTableModel> m_tableCache;
    QList<LMInvoiceTemplatePageClass *> m_sortedPages;
    std::optional<LMBackgroundPainter::Background> m_background;
    std::optional<QImage> m_logo;
    std::optional<QList<TAItem *>> m_items;
    QImage m_cacheImage;
    bool m_needsToUpdateCache = true;
    mutable std::optional<TAPreferences *> m_preferences;
};
