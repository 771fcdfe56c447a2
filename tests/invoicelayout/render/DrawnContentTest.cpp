#include "TableLayoutFixture.h"

#include "foundation/money/OTNumberText.h"
#include "invoicelayout/render/LMInvoiceOutput.h"

namespace {

class DrawnContentTest : public TableLayoutFixture {
protected:
    QStringList written(TAInvoice *invoice, int expectedPages) {
        const QString path = dir.filePath(QStringLiteral("out.pdf"));
        const Result<int> pages = LMInvoiceOutput::writePdf(invoice, path);
        if (!pages) {
            ADD_FAILURE() << pages.error().message.toStdString();
            return {};
        }
        EXPECT_EQ(pages.value(), expectedPages);
        return pdfPages(path, pages.value());
    }
    static int pagesWith(const QStringList &pages, const QString &text) {
        int count = 0;
        for (const QString &page : pages)
            count += page.count(text);
        return count;
    }
};

TEST_F(DrawnContentTest, AThreePageTableRunsThroughRepeatsOfItsPageWithTotalsAtTheEnd) {
    const int n = rowsPerPage;
    // Subtotal, tax, total and three tax lines (0, VAT, GST) fit in the spare 6 rows of the
    // third repeat.
    TAInvoice *invoice = invoiceWithItems(3 * n - 8, design);
    addItem(invoice, QStringLiteral("Taxed A"), "10", "0.1", QStringLiteral("VAT"));
    addItem(invoice, QStringLiteral("Taxed B"), "10", "0.05", QStringLiteral("GST"));
    invoice->updateCachedValuesWithoutUndo();
    const QStringList pages = written(invoice, 5);
    ASSERT_EQ(pages.size(), 5);

    // A, B, B, B, C: every repeat has the page's other elements and its own number.
    EXPECT_TRUE(pages[0].contains(QStringLiteral("PAGE-A")));
    for (int p = 1; p <= 3; ++p) {
        EXPECT_TRUE(pages[p].contains(QStringLiteral("PAGE-B"))) << p;
        EXPECT_TRUE(pages[p].contains(QStringLiteral("FOOTER-B"))) << p;
        EXPECT_TRUE(pages[p].contains(QStringLiteral("Description"))) << "header on " << p;
        EXPECT_TRUE(pages[p].contains(QStringLiteral("Page %1 of 5").arg(p + 1))) << p;
    }
    EXPECT_TRUE(pages[4].contains(QStringLiteral("PAGE-C")));
    EXPECT_FALSE(pages[4].contains(QStringLiteral("Description")));

    // Every item exactly once, in order across the repeats.
    for (int i = 1; i <= 3 * n - 8; ++i)
        EXPECT_EQ(pagesWith(pages, QStringLiteral("Item %1").arg(i, 3, 10, QLatin1Char('0'))), 1)
            << i;
    EXPECT_TRUE(pages[1].contains(QStringLiteral("Item 001")));
    EXPECT_TRUE(pages[3].contains(QStringLiteral("Taxed B")));

    // Totals only on the last repeat, the tax row once per rate in place of its own title.
    EXPECT_EQ(pagesWith(pages, QStringLiteral("Subtotal")), 1);
    EXPECT_TRUE(pages[3].contains(QStringLiteral("Subtotal")));
    EXPECT_TRUE(pages[3].contains(QStringLiteral("VAT")));
    EXPECT_TRUE(pages[3].contains(QStringLiteral("GST")));
    // The VAT line carries 10% of 10, in the money text of the user's locale; the text layer
    // gives no-break spaces back as plain ones.
    const QString vatLine = pages[3].split(u'\n').filter(QStringLiteral("VAT")).value(0);
    QString vat =
        OTNumberText::currencyFormatter(Decimal::fromParts(100, -2), QStringLiteral("USD"));
    vat.replace(QChar(0x00A0), u' ').replace(QChar(0x202F), u' ');
    EXPECT_TRUE(vatLine.contains(vat)) << vatLine.toStdString() << " / " << vat.toStdString();
}

TEST_F(DrawnContentTest, ATableFilledExactlyLeavesTheTotalsAloneOnTheLastRepeat) {
    TAInvoice *invoice = invoiceWithItems(rowsPerPage, design);
    invoice->updateCachedValuesWithoutUndo();
    const QStringList pages = written(invoice, 4);
    ASSERT_EQ(pages.size(), 4);
    EXPECT_TRUE(pages[1].contains(QStringLiteral("Description")));
    EXPECT_FALSE(pages[1].contains(QStringLiteral("Subtotal")));
    EXPECT_FALSE(pages[2].contains(QStringLiteral("Description")));
    EXPECT_FALSE(pages[2].contains(QStringLiteral("Item ")));
    EXPECT_TRUE(pages[2].contains(QStringLiteral("Subtotal")));
}

TEST_F(DrawnContentTest, AnInvoiceWithoutItemsHasNoHeaderButItsTotals) {
    TAInvoice *invoice = invoiceWithItems(0, design);
    const QStringList pages = written(invoice, 3);
    ASSERT_EQ(pages.size(), 3);
    EXPECT_FALSE(pages[1].contains(QStringLiteral("Description")));
    EXPECT_TRUE(pages[1].contains(QStringLiteral("Subtotal")));
    EXPECT_FALSE(pages[1].contains(QStringLiteral("VAT"))) << "no tax entries, no tax row";
}

TEST_F(DrawnContentTest, LongCellTextIsCutToItsColumn) {
    TAInvoice *invoice = invoiceWithItems(0, design);
    addItem(invoice,
            QStringLiteral("An extraordinarily long description that cannot fit "
                           "into two hundred points of column width at all"),
            "5");
    const QStringList pages = written(invoice, 3);
    EXPECT_TRUE(pages[1].contains(QStringLiteral("An extraordinarily")));
    EXPECT_FALSE(pages[1].contains(QStringLiteral("column width at all")));
    EXPECT_TRUE(pages[1].contains(QChar(0x2026))) << "an ellipsis marks the cut";
}

TEST_F(DrawnContentTest, PdfCarriesTheNumberAsTitleAndStaysSmall) {
    TAInvoice *invoice = invoiceWithItems(5, design);
    const QString path = dir.filePath(QStringLiteral("one.pdf"));
    ASSERT_TRUE(LMInvoiceOutput::writePdf(invoice, path).ok());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_LE(file.size(), 80 * 1024);
    QProcess info;
    info.start(QStringLiteral("pdfinfo"), {path});
    info.waitForFinished();
    EXPECT_TRUE(info.readAllStandardOutput().contains("INV-7"));
}

} // namespace
