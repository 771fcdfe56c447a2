#pragma once

#include "foundation/dates/ScopedFixedClock.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/UndoManager.h"
#include "store/TAApplicationHooks.h"
#include "store/TADatabase.h"
#include "store/TADocModel.h"
#include "store/TADocumentHooks.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATimer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

// Failure messages show decimals as text.
inline void PrintTo(const Decimal &value, std::ostream *out) {
    *out << value.toString().toStdString();
}

// A timers pool that remembers which timers it was told to drop.
struct RecordingPool : TAApplicationHooks {
    QList<ManagedObject *> removed;
    void removeTimer(ManagedObject *timer) override { removed.append(timer); }
};

// One document with USD as default currency, JPY and KWD beside it, taxes on and separate.
class InvoiceFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        auto store =
            PersistentStore::create(dir.filePath(QStringLiteral("i.tadb")), TADocModel::model());
        ASSERT_TRUE(store.ok());
        context = std::make_unique<ManagedObjectContext>(store.value());
        db.setDocument(&document);
        db.setContext(context.get());
        usd = currency("USD");
        usd->setIsDefault(true);
        jpy = currency("JPY");
        kwd = currency("KWD");
        TAContextDatabase::getPreferencesInContext(db.context())->setTaxesEnabled(true);
        TAContextDatabase::getPreferencesInContext(db.context())->setTaxesCombined(false);
    }

    static Decimal dec(const char *text) { return Decimal::fromString(QString::fromLatin1(text)); }

    TACurrency *currency(const char *code) {
        TACurrency *c = TAContextDatabase::createCurrencyInContext(db.context());
        c->setCode(QString::fromLatin1(code));
        return c;
    }
    // An invoice billed in the currency (through its client).
    TAInvoice *invoiceIn(TACurrency *in) {
        TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db.context());
        TAClient *client = TAContextDatabase::createClientInContext(db.context());
        client->setCurrencyRelationship(in);
        invoice->setClient(client);
        return invoice;
    }
    TAMaterial *material(TAInvoice *on, const char *quantity, const char *price,
                         const char *tax = "0") {
        TAMaterial *m = TAContextDatabase::createMaterialInContext(db.context());
        m->setQuantity(dec(quantity));
        m->setPrice(dec(price));
        m->setTax(dec(tax));
        if (on)
            m->setInvoice(on);
        return m;
    }
    void setTaxes(bool enabled, bool combined) {
        TAContextDatabase::getPreferencesInContext(db.context())->setTaxesEnabled(enabled);
        TAContextDatabase::getPreferencesInContext(db.context())->setTaxesCombined(combined);
    }

    QTemporaryDir dir;
    std::unique_ptr<ManagedObjectContext> context;
    TADocumentHooks document;
    TADatabase db;
    RecordingPool pool;
    TAApplicationHooks::ScopedInstance poolInstalled{&pool};
    TACurrency *usd = nullptr;
    TACurrency *jpy = nullptr;
    TACurrency *kwd = nullptr;
};
