#include "TableLayoutFixture.h"

#include "invoicelayout/render/LMInvoiceView.h"
#include "invoicelayout/render/LMTablePagination.h"

namespace {

using Pagination = LMTablePagination;

TEST(PaginationCount, TotalsRowsAreReservedAsItemRowsWithTheWantedAsymmetries) {
    // 100 points at a step of 20: 80 points of rows area hold 4 rows.
    const double height = 100;
    EXPECT_EQ(Pagination::extraPagesFor(height, 20, 4, 0), 1) << "filled exactly: one more";
    EXPECT_EQ(Pagination::extraPagesFor(height, 20, 3, 4), 1) << "spare 1 is below 4 rows";
    EXPECT_EQ(Pagination::extraPagesFor(height, 20, 3, 1), 0);
    EXPECT_EQ(Pagination::extraPagesFor(height, 20, 9, 3), 2);
    EXPECT_EQ(Pagination::extraPagesFor(height, 20, 9, 4), 3);
    EXPECT_EQ(Pagination::extraPagesFor(height, 20, 9, -1), 2) << "no totals table";
    EXPECT_EQ(Pagination::extraPagesFor(height, 20, 0, -1), -1) << "no items, no totals";
    EXPECT_EQ(Pagination::extraPagesFor(39, 20, 50, 3), 0) << "rows area below one step";
}

class PaginationTest : public TableLayoutFixture {
protected:
    LMTablePagination::Result count(TAInvoice *invoice) {
        return Pagination::getNumberOfExtraPagesForTemplate(design, invoice, 842, true);
    }
};

TEST_F(PaginationTest, RepeatsFollowTheMeasuredRowsOfTheTablePage) {
    const int n = rowsPerPage;
    TAInvoice *invoice = invoiceWithItems(2 * n + n - 3, design);
    addItem(invoice, QStringLiteral("Taxed"), "10", "0.1", QStringLiteral("VAT"));
    // I = 3n - 2: spare 2 is below the 5 rows of subtotal, tax, total and two tax lines.
    EXPECT_EQ(count(invoice).extraPages, 3);
    EXPECT_EQ(count(invoice).mainPage, 1);
    totals->setIsHidden(true);
    EXPECT_EQ(count(invoice).extraPages, 2);
}

TEST_F(PaginationTest, TheSpareTestCountsTheTaxRowBesideItsEntries) {
    for (LMInvoiceTemplateColumnClass *row : totals->getRowsArray())
        row->setVisible(row->colID() == QLatin1String("_total_table_tax_"));
    // Three tax lines (untaxed items make one at 0) print as three rows but reserve four.
    TAInvoice *invoice = invoiceWithItems(rowsPerPage - 5, design);
    addItem(invoice, QStringLiteral("A"), "10", "0.1", QStringLiteral("VAT"));
    addItem(invoice, QStringLiteral("B"), "10", "0.05", QStringLiteral("GST"));
    ASSERT_EQ(invoice->differentTaxes().size(), 3);
    EXPECT_EQ(count(invoice).extraPages, 1) << "spare 3";
    for (TAItem *item : invoice->items())
        if (item->taxName().isEmpty()) {
            item->setInvoice(nullptr);
            break;
        }
    EXPECT_EQ(count(invoice).extraPages, 0) << "spare 4";
}

TEST_F(PaginationTest, OnlyAVisibleTableMakesATablePage) {
    TAInvoice *invoice = invoiceWithItems(2 * rowsPerPage, design);
    table->setIsHidden(true);
    EXPECT_EQ(count(invoice).mainPage, -1);
    EXPECT_EQ(count(invoice).extraPages, 0);
    // A table on the last page takes over; the totals of page B are no longer looked at.
    itemsTable(page(design, 2), QRectF(40, 100, 515, 600));
    EXPECT_EQ(count(invoice).mainPage, 2);
    EXPECT_EQ(count(invoice).extraPages, 1);
}

TEST_F(PaginationTest, TheViewClampsAndMapsOutputPagesToTemplatePages) {
    LMInvoiceView view;
    view.setIsRenderOnlyView(true);
    view.setInvoice(invoiceWithItems(0, design));
    view.setRenderOnlyPageSize(QSizeF(595, 842));
    EXPECT_EQ(view.extraPages(), 0);
    EXPECT_EQ(view.requiredNumberOfPages(), 3);
    EXPECT_EQ(view.rectForPage(3), QRectF(0, 2 * 842, 595, 842));

    view.setIsRenderOnlyView(false);
    EXPECT_EQ(view.rectForPage(2), QRectF(8, 842 + 16, 595, 842)) << "8 points above each";
}

} // namespace
