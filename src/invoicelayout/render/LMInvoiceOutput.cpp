#include "invoicelayout/render/LMInvoiceOutput.h"

#include "invoicelayout/render/LMInvoiceView.h"
#include "store/TAContextDatabase.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAInvoice.h"

#include <QDir>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace {

QSizeF paperOf(TAInvoice *invoice) {
    LMInvoiceTemplateClass *invoiceTemplate = invoice ? invoice->invoiceTemplate() : nullptr;
    if (invoiceTemplate)
        return invoiceTemplate->pageSize();
    return LMInvoiceTemplateClass::defaultPaperSize(invoice ? invoice->managedObjectContext()
                                                            : nullptr);
}

void prepare(LMInvoiceView &view, TAInvoice *invoice) {
    view.setIsRenderOnlyView(true);
    view.setInvoice(invoice);
    view.setRenderOnlyPageSize(paperOf(invoice));
}

} // namespace

LMInvoiceOutput::PdfResult LMInvoiceOutput::writePdf(TAInvoice *invoice, const QString &path) {
    PdfResult result;
    LMInvoiceView view;
    prepare(view, invoice);
    const QSizeF size = view.pageSize();
    QPdfWriter writer(path);
    writer.setResolution(72);
    writer.setPageSize(QPageSize(size, QPageSize::Point));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle(invoice ? invoice->identification() : QString());
    writer.setCreator(QStringLiteral("Billfold"));
    QPainter painter;
    if (!painter.begin(&writer)) {
        result.error = QStringLiteral("cannot write the file");
        return result;
    }
    view.beginPass();
    const int pages = int(view.requiredNumberOfPages());
    for (int page = 1; page <= pages; ++page) {
        if (page > 1)
            writer.newPage();
        painter.fillRect(QRectF(QPointF(0, 0), size), Qt::white);
        view.drawPage(&painter, page);
    }
    result.ok = painter.end();
    if (!result.ok)
        result.error = QStringLiteral("cannot write the file");
    result.pages = pages;
    return result;
}

QImage LMInvoiceOutput::renderPage(TAInvoice *invoice, int page, double scale) {
    LMInvoiceView view;
    prepare(view, invoice);
    if (page < 1 || page > view.requiredNumberOfPages() || scale <= 0)
        return {};
    const QSizeF size = view.pageSize();
    QImage image((size * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    const int dotsPerMeter = qRound(72 * scale / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(scale, scale);
    view.beginPass();
    // Earlier pages are counted, not drawn: they decide which items this page holds.
    for (int earlier = 1; earlier < page; ++earlier)
        view.drawPage(nullptr, earlier);
    view.drawPage(&painter, page);
    return image;
}

int LMInvoiceOutput::pageCount(TAInvoice *invoice) {
    LMInvoiceView view;
    prepare(view, invoice);
    return int(view.requiredNumberOfPages());
}

QString LMInvoiceOutput::temporaryPdfPath(const QString &name) {
    QString safe = name;
    safe.replace(u'/', u'_').replace(u':', u'_');
    return QDir(QDir::tempPath()).filePath(safe);
}

void LMInvoiceOutput::assignFirstTemplateIfNone(TAInvoice *invoice) {
    if (!invoice || invoice->invoiceTemplate() || !invoice->managedObjectContext())
        return;
    const QList<LMInvoiceTemplateClass *> templates =
        TAContextDatabase::getTemplatesInContext(invoice->managedObjectContext());
    if (!templates.isEmpty())
        invoice->setInvoiceTemplate(templates.first());
}

QString LMInvoiceOutput::generateTemporaryPdf(TAInvoice *invoice) {
    assignFirstTemplateIfNone(invoice);
    const QString path = temporaryPdfPath(QStringLiteral("invoice.pdf"));
    writePdf(invoice, path);
    return path;
}
