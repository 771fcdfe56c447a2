#pragma once

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/UndoManager.h"
#include "store/TADatabase.h"
#include "store/TADocModel.h"
#include "store/TADocumentHooks.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPayment.h"

#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

// Failure messages show decimals as text.
inline void PrintTo(const Decimal &value, std::ostream *out) {
    *out << value.toString().toStdString();
}

struct CountingDocument : TADocumentHooks {
    int refreshes = 0;
    void refreshGroups() override { ++refreshes; }
};

// One document with EUR as its default currency, plus USD and BHD.
class PaymentsFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        auto store =
            PersistentStore::create(dir.filePath(QStringLiteral("p.tadb")), TADocModel::model());
        ASSERT_TRUE(store.ok());
        context = std::make_unique<ManagedObjectContext>(store.value());
        db.setDocument(&document);
        db.setContext(context.get());
        eur = currency("EUR", "Euro");
        eur->setIsDefault(true);
        usd = currency("USD", "US Dollar");
        bhd = currency("BHD", "Bahraini Dinar");
    }

    TACurrency *currency(const char *code, const char *title) {
        TACurrency *c = TAContextDatabase::createCurrencyInContext(db.context());
        c->setCode(QString::fromLatin1(code));
        c->setTitle(QString::fromLatin1(title));
        return c;
    }
    void setRate(TACurrency *from, TACurrency *to, const char *rate) {
        TAContextDatabase::getCurrencyRateFromCurrency(from, to, db.context())
            ->setOneFromInTo(Decimal::fromString(QString::fromLatin1(rate)));
    }
    TAClient *client(TACurrency *in) {
        TAClient *c = TAContextDatabase::createClientInContext(db.context());
        c->setCurrencyRelationship(in);
        return c;
    }
    // An invoice whose cached total is set as it stands.
    TAInvoice *invoice(TAClient *owner, const char *total, int status = 2) {
        TAInvoice *i = TAContextDatabase::createInvoiceInContext(db.context());
        i->setClient(owner);
        i->setStatus(status);
        i->setTotal(Decimal::fromString(QString::fromLatin1(total)));
        return i;
    }
    TAPayment *pay(TAInvoice *to, const char *amount, TACurrency *in, const char *rate) {
        TAPayment *p = TAContextDatabase::createPaymentInContext(db.context());
        p->setAmount(Decimal::fromString(QString::fromLatin1(amount)));
        p->setCurrencyCode(in->code());
        p->setRate(Decimal::fromString(QString::fromLatin1(rate)));
        p->setInvoiceRelationship(to);
        return p;
    }
    static Decimal dec(const char *text) { return Decimal::fromString(QString::fromLatin1(text)); }

    QTemporaryDir dir;
    std::unique_ptr<ManagedObjectContext> context;
    CountingDocument document;
    TADatabase db;
    TACurrency *eur = nullptr;
    TACurrency *usd = nullptr;
    TACurrency *bhd = nullptr;
};
