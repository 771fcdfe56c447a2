#pragma once

#include "layoutvalues/LMGeometry.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TAApplicationHooks.h"
#include "store/TADatabase.h"
#include "store/TADocModel.h"
#include "store/TADocumentHooks.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPreferences.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

// A document in a scratch folder with USD as currency, taxes on, and helpers that build
// templates element by element, so that every number a test checks comes from its own design.
class RenderFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        auto store =
            PersistentStore::create(dir.filePath(QStringLiteral("r.tadb")), TADocModel::model());
        ASSERT_TRUE(store.ok());
        context = std::make_unique<ManagedObjectContext>(store.value());
        db.setDocument(&document);
        db.setContext(context.get());
        TACurrency *usd = TAContextDatabase::createCurrencyInContext(db.context());
        usd->setCode(QStringLiteral("USD"));
        usd->setIsDefault(true);
        prefs()->setTaxesEnabled(true);
    }

    TAPreferences *prefs() { return TAContextDatabase::getPreferencesInContext(db.context()); }

    static LMTextAttributes plain(double size = 10) {
        LMTextAttributes attributes;
        attributes.font = LMFontSpec{QStringLiteral("DejaVu Sans"), size, false, false};
        return attributes;
    }

    LMInvoiceTemplateClass *newTemplate(int pages) {
        auto *invoiceTemplate =
            context->insertNewObjectAs<LMInvoiceTemplateClass>(QStringLiteral("InvoiceTemplate"));
        invoiceTemplate->updateAfterInsert();
        invoiceTemplate->setSize(LMGeometry::stringFromSize(QSizeF(595, 842)));
        for (int i = 1; i < pages; ++i)
            invoiceTemplate->addPageWithTag(i);
        return invoiceTemplate;
    }
    LMInvoiceTemplatePageClass *page(LMInvoiceTemplateClass *invoiceTemplate, int index) {
        return invoiceTemplate->getSortedPages().at(index);
    }

    LMInvoiceElementClass *element(LMInvoiceTemplatePageClass *on, int type, const QRectF &frame,
                                   const QString &text = {}) {
        LMInvoiceElementClass *element = on->newElement();
        element->setType(type);
        element->setFrame(LMGeometry::stringFromRect(frame));
        element->setOrderNr(on->elements().size());
        if (!text.isEmpty())
            element->setAttributedString(LMAttributedString(text, plain()));
        return element;
    }

    // An items table with SKU, description, quantity, tax, unit price and cost in 515 points.
    LMInvoiceElementClass *itemsTable(LMInvoiceTemplatePageClass *on, const QRectF &frame) {
        LMInvoiceElementClass *table = element(on, 13, frame);
        table->setAttributes(plain());
        const QList<double> widths = {50, 200, 60, 50, 0, 0, 70, 0, 85};
        const QList<LMInvoiceTemplateColumnClass *> columns = table->getColsArray();
        for (qsizetype i = 0; i < columns.size(); ++i)
            columns[i]->setWidth(widths.value(i));
        return table;
    }

    // A totals table showing the rows named, in their order.
    LMInvoiceElementClass *totalsTable(LMInvoiceTemplatePageClass *on, const QRectF &frame,
                                       const QStringList &visibleRows) {
        LMInvoiceElementClass *totals = element(on, 2, frame);
        totals->setAttributes(plain());
        for (LMInvoiceTemplateColumnClass *column : totals->getColsArray())
            column->setWidth(120);
        for (LMInvoiceTemplateColumnClass *row : totals->getRowsArray())
            row->setVisible(visibleRows.contains(row->colID()));
        return totals;
    }

    TAInvoice *invoiceWithItems(int count, LMInvoiceTemplateClass *invoiceTemplate) {
        TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db.context());
        invoice->setIdentification(QStringLiteral("INV-7"));
        invoice->setInvoiceTemplate(invoiceTemplate);
        for (int i = 1; i <= count; ++i)
            addItem(invoice, QStringLiteral("Item %1").arg(i, 3, 10, QLatin1Char('0')), "1");
        return invoice;
    }
    TAMaterial *addItem(TAInvoice *invoice, const QString &name, const char *price,
                        const char *tax = "0", const QString &taxName = {}) {
        TAMaterial *item = TAContextDatabase::createMaterialInContext(db.context());
        item->setName(name);
        item->setQuantity(Decimal::fromString(QStringLiteral("1")));
        item->setPrice(Decimal::fromString(QString::fromLatin1(price)));
        item->setTax(Decimal::fromString(QString::fromLatin1(tax)));
        item->setTaxName(taxName);
        item->setSortIndex(invoice->items().size());
        item->setInvoice(invoice);
        return item;
    }

    // The plain text of each page of a PDF file, as the text layer gives it.
    static QStringList pdfPages(const QString &path, int pages) {
        QStringList texts;
        for (int p = 1; p <= pages; ++p) {
            QProcess run;
            run.start(QStringLiteral("pdftotext"),
                      {QStringLiteral("-f"), QString::number(p), QStringLiteral("-l"),
                       QString::number(p), QStringLiteral("-layout"), path, QStringLiteral("-")});
            run.waitForFinished();
            texts.append(QString::fromUtf8(run.readAllStandardOutput()));
        }
        return texts;
    }

    QTemporaryDir dir;
    std::unique_ptr<ManagedObjectContext> context;
    TADocumentHooks document;
    TADatabase db;
};
