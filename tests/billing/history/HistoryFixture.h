#pragma once

#include "foundation/dates/ScopedFixedClock.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADatabase.h"
#include "store/TADocModel.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

// One document on a temporary file, with the clock held at a known instant.
class HistoryFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        auto store =
            PersistentStore::create(m_dir.filePath(QStringLiteral("h.tadb")), TADocModel::model());
        ASSERT_TRUE(store.ok());
        context = std::make_unique<ManagedObjectContext>(store.value());
        database.setContext(context.get());
    }

    template <class T> T *make(const QString &entity) {
        return context->insertNewObjectAs<T>(entity);
    }
    TAInvoice *invoice() { return make<TAInvoice>(TAEntity::Invoice); }
    TAProject *project() { return make<TAProject>(TAEntity::Project); }
    TAClient *client() { return make<TAClient>(TAEntity::Client); }
    TAPreferences *preferences() { return make<TAPreferences>(TAEntity::Preferences); }
    TAPayment *payment(TAInvoice *invoice, const char *amount, const QString &code,
                       const QDateTime &date) {
        auto *p = make<TAPayment>(TAEntity::Payment);
        p->setAmount(Decimal::fromString(QString::fromLatin1(amount)));
        p->setCurrencyCode(code);
        p->setDate(date);
        p->setInvoiceRelationship(invoice);
        return p;
    }

    static QDateTime at(const char *iso) {
        return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate).toUTC();
    }

    QTemporaryDir m_dir;
    ScopedFixedClock clock{at("2026-03-10T09:30:00Z")};
    std::unique_ptr<ManagedObjectContext> context;
    TADatabase database;
};
