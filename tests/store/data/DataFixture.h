#pragma once

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/UndoManager.h"
#include "store/TAApplicationHooks.h"
#include "store/TADatabase.h"
#include "store/TADocModel.h"
#include "store/TADocumentHooks.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAKeys.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

// Records what the data layer asks of its document.
struct RecordingDocument : TADocumentHooks {
    int refreshes = 0;
    int changeCounts = 0;
    QList<ManagedObject *> templatesRemoved;
    void refreshGroups() override { ++refreshes; }
    void updateChangeCount(int) override { ++changeCounts; }
    void removeTemplateFromEditorList(ManagedObject *t) override { templatesRemoved.append(t); }
};

// A timers pool and menu bar that remember what they were told.
struct RecordingApplication : TAApplicationHooks {
    QList<ManagedObject *> active;
    QList<ManagedObject *> removed;
    ManagedObject *main = nullptr;
    bool timerIsActive(ManagedObject *timer) override { return active.contains(timer); }
    void removeTimer(ManagedObject *timer) override {
        removed.append(timer);
        active.removeAll(timer);
    }
    ManagedObject *mainTimer() override { return main; }
    void setMainTimer(ManagedObject *timer) override { main = timer; }
};

// One open document: a file, its main context and its database.
struct TestDocument {
    explicit TestDocument(const QString &path) {
        auto store = PersistentStore::create(path, TADocModel::model());
        EXPECT_TRUE(store.ok()) << store.error().message.toStdString();
        context = std::make_unique<ManagedObjectContext>(store.value());
        database.setDocument(&hooks);
        database.setContext(context.get());
    }
    LMInvoiceTemplateClass *addTemplate(const QString &name) {
        auto *t = context->insertNewObjectAs<LMInvoiceTemplateClass>(TAEntity::InvoiceTemplate);
        t->setName(name);
        return t;
    }
    UndoManager *undo() const { return context->undoManager(); }

    std::unique_ptr<ManagedObjectContext> context;
    RecordingDocument hooks;
    TADatabase database;
};

class DataFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        doc = std::make_unique<TestDocument>(m_dir.filePath(QStringLiteral("a.tadb")));
    }

    std::unique_ptr<TestDocument> openSecondDocument() {
        return std::make_unique<TestDocument>(m_dir.filePath(QStringLiteral("b.tadb")));
    }

    TADatabase &db() { return doc->database; }
    ManagedObjectContext *ctx() { return doc->context.get(); }

    QTemporaryDir m_dir;
    RecordingApplication app;
    TAApplicationHooks::ScopedInstance appInstalled{&app};
    std::unique_ptr<TestDocument> doc;
};
