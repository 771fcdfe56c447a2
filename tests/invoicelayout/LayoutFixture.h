#pragma once

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAKeys.h"

#include <gtest/gtest.h>

#include <memory>

// One in-memory document, and as many more as a test asks for.
class LayoutFixture : public ::testing::Test {
protected:
    struct Document {
        std::shared_ptr<PersistentStore> store;
        std::unique_ptr<ManagedObjectContext> context;
        ~Document() { context.reset(); }
    };

    static std::unique_ptr<Document> newDocument() {
        auto document = std::make_unique<Document>();
        auto store = PersistentStore::createInMemory(TADocModel::model());
        EXPECT_TRUE(store.ok());
        document->store = store.value();
        document->context = std::make_unique<ManagedObjectContext>(document->store);
        return document;
    }

    void SetUp() override { m_document = newDocument(); }

    ManagedObjectContext *context() const { return m_document->context.get(); }

    template <class T> static T *insert(ManagedObjectContext *context, const QString &entity) {
        T *object = context->insertNewObjectAs<T>(entity);
        EXPECT_NE(object, nullptr);
        return object;
    }

    LMInvoiceTemplateClass *newTemplate(ManagedObjectContext *in = nullptr) {
        auto *invoiceTemplate =
            insert<LMInvoiceTemplateClass>(in ? in : context(), TAEntity::InvoiceTemplate);
        invoiceTemplate->updateAfterInsert();
        return invoiceTemplate;
    }

    LMInvoiceElementClass *newElement(int type, LMInvoiceTemplatePageClass *page = nullptr) {
        if (!page)
            page = newTemplate()->getSortedPages().first();
        LMInvoiceElementClass *element = page->newElement();
        element->setType(type);
        return element;
    }

    static QStringList colIDs(const QList<LMInvoiceTemplateColumnClass *> &list) {
        QStringList out;
        for (LMInvoiceTemplateColumnClass *column : list)
            out.append(column->colID());
        return out;
    }

private:
    std::unique_ptr<Document> m_document;
};
