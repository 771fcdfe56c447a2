#pragma once

#include "RenderFixture.h"

#include "invoicelayout/render/LMTableModel.h"

// Template A, B, C; B holds the items table, the totals 10 points below its designed end (they
// move with the table's end), a footer that stops the table, and the page number. N is the number
// of item rows a repeat of B holds, worked out by hand from the measured row height.
class TableLayoutFixture : public RenderFixture {
protected:
    void SetUp() override {
        RenderFixture::SetUp();
        design = newTemplate(3);
        element(page(design, 0), 0, QRectF(40, 40, 300, 30), QStringLiteral("PAGE-A"));
        LMInvoiceTemplatePageClass *b = page(design, 1);
        element(b, 0, QRectF(40, 40, 300, 30), QStringLiteral("PAGE-B"));
        table = itemsTable(b, QRectF(40, 100, 515, 300));
        totals = totalsTable(b, QRectF(300, 410, 255, 200),
                             {QStringLiteral("_total_table_subtotal_"),
                              QStringLiteral("_total_table_tax_"),
                              QStringLiteral("_total_table_total_")});
        // A shape below the table does not stop it; the footer does.
        element(b, 21, QRectF(0, 720, 595, 6));
        element(b, 0, QRectF(40, 740, 300, 20), QStringLiteral("FOOTER-B"));
        element(b, 11, QRectF(400, 760, 150, 24), QStringLiteral("Page 1 of 2"));
        element(page(design, 2), 0, QRectF(40, 40, 300, 30), QStringLiteral("PAGE-C"));

        const int step = LMTableModel::forElement(table, true).rowStep();
        // Table box y 103; the footer at 740 is the bottom limit.
        rowsPerPage = int(740 - 103 - step) / step;
        ASSERT_GT(rowsPerPage, 10);
    }

    LMInvoiceTemplateClass *design = nullptr;
    LMInvoiceElementClass *table = nullptr;
    LMInvoiceElementClass *totals = nullptr;
    int rowsPerPage = 0;
};
