#include "../RenderFixture.h"

#include "invoicelayout/render/print/LMInvoicePrinter.h"

#include <QGuiApplication>
#include <QPrinter>

namespace {

class InvoicePrinterTest : public RenderFixture {};

TEST_F(InvoicePrinterTest, PaperGetsTheTemplatesPagesScaledToThePrinter) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[] = "test_render_print";
    char *argv[] = {name, nullptr};
    QGuiApplication app(argc, argv);

    LMInvoiceTemplateClass *design = newTemplate(2);
    itemsTable(page(design, 0), QRectF(40, 100, 515, 300));
    element(page(design, 1), 0, QRectF(40, 40, 300, 30), QStringLiteral("SECOND-PAGE"));
    TAInvoice *invoice = invoiceWithItems(3, design);

    const QString path = dir.filePath(QStringLiteral("printed.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    ASSERT_TRUE(LMInvoicePrinter::print(invoice, &printer));
    EXPECT_EQ(printer.pageLayout().fullRectPoints().size(), QSize(595, 842));

    const QStringList pages = pdfPages(path, 2);
    EXPECT_TRUE(pages[0].contains(QStringLiteral("Item 003")));
    EXPECT_TRUE(pages[1].contains(QStringLiteral("SECOND-PAGE")));

    // A printer that cannot start says so and names where the pages were to go.
    const QString nowhere = dir.filePath(QStringLiteral("missing/printed.pdf"));
    printer.setOutputFileName(nowhere);
    const Result<void> failed = LMInvoicePrinter::print(invoice, &printer);
    ASSERT_FALSE(failed);
    EXPECT_TRUE(failed.error().message.contains(nowhere)) << failed.error().message.toStdString();
    EXPECT_EQ(LMInvoicePrinter::print(nullptr, &printer).error().message,
              QStringLiteral("Choose an invoice to print."));
}

} // namespace
