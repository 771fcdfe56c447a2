#pragma once

#include "objectstore/FetchRequest.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

// A document file in a temporary folder with one context on it, which can be closed and
// opened again to see what reached the disk.
class StoreFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        m_path = m_dir.filePath(QStringLiteral("doc.tadb"));
        auto store = PersistentStore::create(m_path, TADocModel::model());
        ASSERT_TRUE(store.ok()) << store.error().message.toStdString();
        m_context = std::make_unique<ManagedObjectContext>(store.value());
    }

    ManagedObjectContext *context() const { return m_context.get(); }
    const QString &path() const { return m_path; }

    template <class T> T *insert(const QString &entity) {
        T *object = m_context->insertNewObjectAs<T>(entity);
        EXPECT_NE(object, nullptr) << entity.toStdString();
        return object;
    }

    void save() {
        const Result<void> saved = m_context->save();
        ASSERT_TRUE(saved.ok()) << saved.error().message.toStdString();
    }

    // Saves, drops every object in memory and opens the file anew.
    void saveAndReopen() {
        save();
        m_context.reset();
        auto store = PersistentStore::open(m_path, TADocModel::model());
        ASSERT_TRUE(store.ok()) << store.error().message.toStdString();
        m_context = std::make_unique<ManagedObjectContext>(store.value());
    }

    QList<ManagedObject *> fetch(const QString &entity, bool subentities = false) {
        FetchRequest request(entity);
        request.includesSubentities = subentities;
        auto found = m_context->executeFetchRequest(request);
        EXPECT_TRUE(found.ok());
        return found.ok() ? found.value() : QList<ManagedObject *>();
    }

    // A named template as the access layer runs it: without subentities.
    QList<ManagedObject *> fetchTemplate(const QString &name, const QVariantMap &variables = {}) {
        auto request = m_context->fetchRequestFromTemplate(name, variables);
        EXPECT_TRUE(request.ok()) << name.toStdString();
        if (!request.ok())
            return {};
        request->includesSubentities = false;
        auto found = m_context->executeFetchRequest(*request);
        EXPECT_TRUE(found.ok()) << name.toStdString();
        return found.ok() ? found.value() : QList<ManagedObject *>();
    }

private:
    QTemporaryDir m_dir;
    QString m_path;
    std::unique_ptr<ManagedObjectContext> m_context;
};
