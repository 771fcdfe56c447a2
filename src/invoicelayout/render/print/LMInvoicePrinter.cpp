#include "invoicelayout/render/print/LMInvoicePrinter.h"

#include "invoicelayout/render/LMInvoiceOutput.h"
#include "invoicelayout/render/LMInvoiceView.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAInvoice.h"

#include <QCoreApplication>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>

namespace {
Error printFailed(const QPrinter &printer, const QString &what) {
    const QString name =
        printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName();
    return Error{ErrorCode::WriteFailed,
                 QCoreApplication::translate("LMInvoicePrinter",
                                             "The invoice could not be printed to \"%1\": %2. "
                                             "Check that the printer is connected and ready, "
                                             "then print again.")
                     .arg(name, what)};
}
} // namespace

Result<void> LMInvoicePrinter::print(TAInvoice *invoice, QPrinter *printer) {
    if (!invoice || !printer)
        return Error{ErrorCode::Generic, QCoreApplication::translate(
                                             "LMInvoicePrinter", "Choose an invoice to print.")};
    LMInvoiceOutput::assignFirstTemplateIfNone(invoice);
    LMInvoiceView view;
    view.setIsRenderOnlyView(true);
    view.setInvoice(invoice);
    LMInvoiceTemplateClass *invoiceTemplate = invoice->invoiceTemplate();
    const QSizeF size =
        invoiceTemplate ? invoiceTemplate->pageSize()
                        : LMInvoiceTemplateClass::defaultPaperSize(invoice->managedObjectContext());
    view.setRenderOnlyPageSize(size);
    printer->setPageSize(QPageSize(size, QPageSize::Point));
    printer->setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point);
    printer->setFullPage(true);
    printer->setDocName(invoice->identification());
    QPainter painter;
    if (!painter.begin(printer))
        return printFailed(*printer, QStringLiteral("the printer did not start"));
    // Points to printer dots, fitted to the height the printer can print.
    const double scale = printer->pageRect(QPrinter::DevicePixel).height() / size.height();
    painter.scale(scale, scale);
    view.beginPass();
    for (int page = 1; page <= view.requiredNumberOfPages(); ++page) {
        if (page > 1)
            printer->newPage();
        view.drawPage(&painter, page);
    }
    if (!painter.end())
        return printFailed(*printer, QStringLiteral("the printer did not take every page"));
    return {};
}
