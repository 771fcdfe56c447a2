#include "invoicelayout/render/LMInvoiceOutput.h"

#include "invoicelayout/render/LMInvoiceView.h"
#include "store/TAContextDatabase.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAInvoice.h"

#include <QCoreApplication>
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

// The template's title as its cover shows it: the name, or "Untitled" without one.
QString titleOf(LMInvoiceTemplateClass *invoiceTemplate) {
    const QString name = invoiceTemplate->name();
    return name.isEmpty() ? QCoreApplication::translate("LMInvoiceOutput", "Untitled") : name;
}

Error cannotWrite() {
    return Error{ErrorCode::WriteFailed, QStringLiteral("cannot write the file")};
}

Result<int> writeView(LMInvoiceView &view, const QString &path, const QString &title) {
    const QSizeF size = view.pageSize();
    QPdfWriter writer(path);
    writer.setResolution(72);
    writer.setPageSize(QPageSize(size, QPageSize::Point));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("Billfold"));
    QPainter painter;
    if (!painter.begin(&writer))
        return cannotWrite();
    view.beginPass();
    const int pages = int(view.requiredNumberOfPages());
    for (int page = 1; page <= pages; ++page) {
        if (page > 1)
            writer.newPage();
        painter.fillRect(QRectF(QPointF(0, 0), size), Qt::white);
        view.drawPage(&painter, page);
    }
    if (!painter.end())
        return cannotWrite();
    return pages;
}

} // namespace

Result<int> LMInvoiceOutput::writePdf(TAInvoice *invoice, const QString &path) {
    LMInvoiceView view;
    prepare(view, invoice);
    return writeView(view, path, invoice ? invoice->identification() : QString());
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
    if (auto written = writePdf(invoice, path); !written)
        qWarning("%s: %s", qUtf8Printable(path), qUtf8Printable(written.error().message));
    return path;
}

Result<int> LMInvoiceOutput::writeTemplatePdf(LMInvoiceTemplateClass *invoiceTemplate,
                                              const QString &path) {
    if (!invoiceTemplate)
        return Error{ErrorCode::Generic, QStringLiteral("no template")};
    LMInvoiceView view;
    view.setIsRenderOnlyView(true);
    view.setStandaloneTemplate(invoiceTemplate);
    view.setRenderOnlyPageSize(invoiceTemplate->pageSize());
    return writeView(view, path, titleOf(invoiceTemplate));
}

QString LMInvoiceOutput::temporaryPdfPathForTemplate(LMInvoiceTemplateClass *invoiceTemplate) {
    if (!invoiceTemplate)
        return {};
    // Files are named by the object's number, and a template has none: the key answers
    // nothing, so the template's title names the file instead.
    QString name = invoiceTemplate->valueForKey(QStringLiteral("nr")).toString();
    if (name.isEmpty())
        name = titleOf(invoiceTemplate);
    return temporaryPdfPath(name + QStringLiteral(".pdf"));
}

QString LMInvoiceOutput::generateTemporaryTemplatePdf(LMInvoiceTemplateClass *invoiceTemplate) {
    const QString path = temporaryPdfPathForTemplate(invoiceTemplate);
    if (!path.isEmpty())
        if (auto written = writeTemplatePdf(invoiceTemplate, path); !written)
            qWarning("%s: %s", qUtf8Printable(path), qUtf8Printable(written.error().message));
    return path;
}
