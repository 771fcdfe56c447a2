#include "TestModel.h"

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/Predicate.h"
#include "objectstore/UndoManager.h"

#include <QDateTime>
#include <QFile>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

struct Fixture : ::testing::Test {
    std::unique_ptr<ManagedObjectModel> model = makeTestModel();
    QTemporaryDir dir;
    QString path(const QString &name = QStringLiteral("doc.tadb")) const {
        return dir.filePath(name);
    }

    std::unique_ptr<ManagedObjectContext> open(const QString &file) {
        auto store = PersistentStore::open(file, *model);
        EXPECT_TRUE(store.ok()) << (store.ok() ? "" : qPrintable(store.error().message));
        return store.ok() ? std::make_unique<ManagedObjectContext>(*store) : nullptr;
    }
    std::unique_ptr<ManagedObjectContext> create(const QString &file) {
        auto store = PersistentStore::create(file, *model);
        EXPECT_TRUE(store.ok());
        return std::make_unique<ManagedObjectContext>(*store);
    }
    QList<ManagedObject *> fetch(ManagedObjectContext &ctx, const QString &entity,
                                 const QString &predicate = {}, const QVariantList &args = {}) {
        FetchRequest request(entity);
        if (!predicate.isEmpty())
            request.predicate =
                std::make_shared<const Predicate>(*Predicate::parse(predicate, args));
        auto result = ctx.executeFetchRequest(request);
        EXPECT_TRUE(result.ok());
        return result.ok() ? *result : QList<ManagedObject *>{};
    }
};

TEST_F(Fixture, EveryAttributeTypeSurvivesSaveAndReopenWithValuesAndWithNulls) {
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(1700000000123, QTimeZone::utc());
    QString fullUri, emptyUri;
    {
        auto ctx = create(path());
        ManagedObject *full = ctx->insertNewObject(QStringLiteral("Owner"));
        full->setValueForKey(QStringLiteral("Zoë “quoted”"), QStringLiteral("name"));
        full->setValueForKey(qint64(-9007199254740993), QStringLiteral("count"));
        full->setValueForKey(true, QStringLiteral("flag"));
        full->setValueForKey(
            QVariant::fromValue(Decimal::fromString(u"12345678901234567890.123456789012345678")),
            QStringLiteral("amount"));
        full->setValueForKey(when, QStringLiteral("when"));
        full->setValueForKey(0.1, QStringLiteral("ratio"));
        full->setValueForKey(QByteArray("\0\1\2", 3), QStringLiteral("properties"));
        ManagedObject *empty = ctx->insertNewObject(QStringLiteral("Owner"));
        empty->setValueForKey(QVariant(), QStringLiteral("status")); // default 1 cleared
        // SQLite itself stores a NaN as NULL: it must come back as NaN, not as no value.
        ctx->insertNewObject(QStringLiteral("Owner"))
            ->setValueForKey(std::numeric_limits<double>::quiet_NaN(), QStringLiteral("ratio"));
        // Longer than the room a row's texts get when written: the slower way must be right too.
        ctx->insertNewObject(QStringLiteral("Owner"))
            ->setValueForKey(QStringLiteral("é𝄞").repeated(20000), QStringLiteral("name"));
        ASSERT_TRUE(full->objectID().isTemporaryID());
        ASSERT_TRUE(ctx->save().ok());
        EXPECT_FALSE(full->objectID().isTemporaryID());
        EXPECT_FALSE(ctx->hasChanges());
        fullUri = full->uriText();
        emptyUri = empty->uriText();
    }
    auto ctx = open(path());
    ManagedObject *full = ctx->objectWithURI(fullUri);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->stringForKey(QStringLiteral("name")), QStringLiteral("Zoë “quoted”"));
    EXPECT_EQ(full->integerForKey(QStringLiteral("count")), qint64(-9007199254740993));
    EXPECT_TRUE(full->boolForKey(QStringLiteral("flag")));
    EXPECT_EQ(full->decimalForKey(QStringLiteral("amount")).toString(),
              QStringLiteral("12345678901234567890.123456789012345678"));
    EXPECT_EQ(full->dateForKey(QStringLiteral("when")), when);
    EXPECT_EQ(full->doubleForKey(QStringLiteral("ratio")), 0.1);
    EXPECT_EQ(full->dataForKey(QStringLiteral("properties")), QByteArray("\0\1\2", 3));
    EXPECT_EQ(full->integerForKey(QStringLiteral("status")), 1);

    auto named = *ctx->executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
    EXPECT_EQ(std::count_if(named.begin(), named.end(),
                            [](ManagedObject *o) {
                                return o->stringForKey(QStringLiteral("name")) ==
                                       QStringLiteral("é𝄞").repeated(20000);
                            }),
              1);

    EXPECT_EQ(std::count_if(named.begin(), named.end(),
                            [](ManagedObject *o) {
                                return !o->isNullForKey(QStringLiteral("ratio")) &&
                                       std::isnan(o->doubleForKey(QStringLiteral("ratio")));
                            }),
              1);

    ManagedObject *empty = ctx->objectWithURI(emptyUri);
    ASSERT_NE(empty, nullptr);
    for (const QString &key : empty->entity()->attributeNames())
        EXPECT_TRUE(empty->isNullForKey(key)) << qPrintable(key);
    EXPECT_TRUE(empty->decimalForKey(QStringLiteral("amount")).isNaN());
}

TEST_F(Fixture, InversesFollowEveryKindOfChangeAndSurviveReopen) {
    auto ctx = create(path());
    auto *a = ctx->insertNewObject(QStringLiteral("Owner"));
    auto *b = ctx->insertNewObject(QStringLiteral("SpecialOwner"));
    auto *w = ctx->insertNewObject(QStringLiteral("Widget"));
    auto *g = ctx->insertNewObject(QStringLiteral("Gadget"));
    w->setObjectForKey(a, QStringLiteral("owner"));
    a->addObjectForKey(g, QStringLiteral("things"));
    EXPECT_EQ(a->countForKey(QStringLiteral("things")), 2);
    EXPECT_EQ(g->objectForKey(QStringLiteral("owner")), a);

    w->setObjectForKey(b, QStringLiteral("owner")); // reassign
    EXPECT_EQ(a->objectsForKey(QStringLiteral("things")), QList<ManagedObject *>{g});
    EXPECT_EQ(b->objectsForKey(QStringLiteral("things")), QList<ManagedObject *>{w});

    a->removeObjectForKey(g, QStringLiteral("things"));
    EXPECT_EQ(g->objectForKey(QStringLiteral("owner")), nullptr);
    b->setValueForKey(QVariant::fromValue(QList<ManagedObject *>{w, g}), QStringLiteral("things"));
    EXPECT_EQ(g->objectForKey(QStringLiteral("owner")), b);
    g->setObjectForKey(a, QStringLiteral("buddy")); // no inverse
    ASSERT_TRUE(ctx->save().ok());
    const QString bUri = b->uriText(), aUri = a->uriText();

    // Deleting the owner empties the links that point at it; the inverse-less one reads null.
    ctx->deleteObject(a);
    EXPECT_EQ(a->managedObjectContext(), nullptr);
    EXPECT_EQ(g->objectForKey(QStringLiteral("buddy")), nullptr);
    ctx->rollback();
    EXPECT_EQ(g->objectForKey(QStringLiteral("buddy")), a);

    auto reopened = open(path());
    ManagedObject *b2 = reopened->objectWithURI(bUri);
    ASSERT_NE(b2, nullptr);
    EXPECT_EQ(b2->countForKey(QStringLiteral("things")), 2);
    for (ManagedObject *thing : b2->objectsForKey(QStringLiteral("things"))) {
        EXPECT_EQ(thing->objectForKey(QStringLiteral("owner")), b2);
        EXPECT_EQ(thing->managedObjectContext(), reopened.get());
    }
    EXPECT_EQ(fetch(*reopened, QStringLiteral("Thing")).size(), 2);
    EXPECT_EQ(reopened->objectWithURI(aUri)->countForKey(QStringLiteral("things")), 0);
}

// What an importer uses to put a file's links back: the other side follows and the row is
// saved, but nothing is left to undo.
TEST_F(Fixture, PrimitiveLinksKeepInversesAreSavedAndLeaveNothingToUndo) {
    QString widgetUri;
    {
        auto ctx = create(path());
        auto *a = ctx->insertNewObject(QStringLiteral("Owner"));
        auto *b = ctx->insertNewObject(QStringLiteral("Owner"));
        auto *w = ctx->insertNewObject(QStringLiteral("Widget"));
        w->setObjectForKey(a, QStringLiteral("owner"));
        ASSERT_TRUE(ctx->save().ok());
        const int undoSteps = ctx->undoManager()->undoCount();
        w->setPrimitiveObjectForKey(b, QStringLiteral("owner"));
        EXPECT_EQ(a->countForKey(QStringLiteral("things")), 0);
        EXPECT_EQ(b->objectsForKey(QStringLiteral("things")), QList<ManagedObject *>{w});
        EXPECT_EQ(ctx->undoManager()->undoCount(), undoSteps);
        EXPECT_TRUE(ctx->hasChanges());
        ASSERT_TRUE(ctx->save().ok());
        widgetUri = w->uriText();
    }
    auto reopened = open(path());
    ManagedObject *w = reopened->objectWithURI(widgetUri);
    ASSERT_NE(w, nullptr);
    ManagedObject *owner = w->objectForKey(QStringLiteral("owner"));
    ASSERT_NE(owner, nullptr);
    EXPECT_EQ(owner->objectsForKey(QStringLiteral("things")), QList<ManagedObject *>{w});
    EXPECT_EQ(owner->objectID().number(), 2);
}

TEST_F(Fixture, DeleteRulesCascadeAndNullifyAndUndoBringsEverythingBack) {
    auto ctx = create(path());
    auto *owner = ctx->insertNewObject(QStringLiteral("Owner"));
    auto *note = ctx->insertNewObject(QStringLiteral("Note"));
    auto *thing = ctx->insertNewObject(QStringLiteral("Widget"));
    note->setObjectForKey(owner, QStringLiteral("owner"));
    thing->setObjectForKey(owner, QStringLiteral("owner"));
    ASSERT_TRUE(ctx->save().ok());
    ctx->undoManager()->removeAllActions();

    ctx->undoManager()->beginUndoGrouping();
    ctx->deleteObject(owner);
    ctx->undoManager()->setActionName(QStringLiteral("Delete Owner"));
    ctx->undoManager()->endUndoGrouping();
    EXPECT_TRUE(note->isDeleted()) << "notes cascade";
    EXPECT_FALSE(thing->isDeleted()) << "things are only unlinked";
    EXPECT_EQ(thing->objectForKey(QStringLiteral("owner")), nullptr);
    EXPECT_EQ(fetch(*ctx, QStringLiteral("Note")).size(), 0);
    EXPECT_EQ(ctx->undoManager()->undoActionName(), QStringLiteral("Delete Owner"));

    ctx->undoManager()->undo();
    EXPECT_FALSE(owner->isDeleted());
    EXPECT_FALSE(note->isDeleted());
    EXPECT_EQ(note->objectForKey(QStringLiteral("owner")), owner);
    EXPECT_EQ(thing->objectForKey(QStringLiteral("owner")), owner);
    EXPECT_EQ(owner->countForKey(QStringLiteral("things")), 1);
    ctx->undoManager()->redo();
    EXPECT_TRUE(owner->isDeleted());
    ASSERT_TRUE(ctx->save().ok());
    auto reopened = open(path());
    EXPECT_EQ(fetch(*reopened, QStringLiteral("Owner")).size(), 0);
    EXPECT_EQ(fetch(*reopened, QStringLiteral("Note")).size(), 0);
    EXPECT_EQ(fetch(*reopened, QStringLiteral("Thing")).size(), 1);
}

TEST_F(Fixture, FetchesHonourSubentitiesTemplatesSortWindowAndChangeNotifications) {
    auto ctx = create(path());
    for (int i = 0; i < 5; ++i) {
        auto *o =
            ctx->insertNewObject(i % 2 ? QStringLiteral("SpecialOwner") : QStringLiteral("Owner"));
        o->setValueForKey(QStringLiteral("Item %1").arg(10 - i), QStringLiteral("name"));
    }
    FetchRequest plain(QStringLiteral("Owner"));
    plain.includesSubentities = false;
    EXPECT_EQ(ctx->executeFetchRequest(plain)->size(), 3);
    FetchRequest sorted(QStringLiteral("Owner"));
    sorted.sortDescriptors = {SortDescriptor(QStringLiteral("name"), true,
                                             SortDescriptor::Comparison::LocalizedStandard)};
    sorted.fetchOffset = 1;
    sorted.fetchLimit = 2;
    auto window = *ctx->executeFetchRequest(sorted);
    ASSERT_EQ(window.size(), 2);
    EXPECT_EQ(window[0]->stringForKey(QStringLiteral("name")), QStringLiteral("Item 7"));
    EXPECT_EQ(window[1]->stringForKey(QStringLiteral("name")), QStringLiteral("Item 8"));

    auto request = ctx->fetchRequestFromTemplate(
        QStringLiteral("ownersNamed"), {{QStringLiteral("param1"), QStringLiteral("Item 9")}});
    ASSERT_TRUE(request.ok());
    EXPECT_EQ(ctx->executeFetchRequest(*request)->size(), 1);
    EXPECT_FALSE(ctx->fetchRequestFromTemplate(QStringLiteral("nope"), {}).ok());
    EXPECT_FALSE(ctx->executeFetchRequest(FetchRequest(QStringLiteral("Nope"))).ok());

    ObjectsDidChange seen;
    int notifications = 0;
    QObject::connect(ctx.get(), &ManagedObjectContext::objectsDidChange,
                     [&](const ObjectsDidChange &c) {
                         seen = c;
                         ++notifications;
                     });
    ctx->processPendingChanges();
    EXPECT_EQ(seen.inserted.size(), 5);
    ASSERT_TRUE(ctx->save().ok());
    window[0]->setValueForKey(QStringLiteral("x"), QStringLiteral("name"));
    window[0]->setValueForKey(QStringLiteral("y"), QStringLiteral("name"));
    ctx->deleteObject(window[1]);
    ctx->processPendingChanges();
    EXPECT_EQ(notifications, 2);
    EXPECT_EQ(seen.updated, QList<ManagedObject *>{window[0]}) << "changes coalesce";
    EXPECT_EQ(seen.deleted, QList<ManagedObject *>{window[1]});
}

TEST_F(Fixture, ChangeNoticesFollowWhatObserversAlreadyHeard) {
    auto ctx = create(path());
    QList<ObjectsDidChange> heard;
    QObject::connect(ctx.get(), &ManagedObjectContext::objectsDidChange,
                     [&](const ObjectsDidChange &c) { heard.append(c); });
    auto *kept = ctx->insertNewObject(QStringLiteral("Owner"));
    auto *fleeting = ctx->insertNewObject(QStringLiteral("Owner"));
    ctx->deleteObject(fleeting);
    ctx->processPendingChanges();
    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard[0].inserted, QList<ManagedObject *>{kept})
        << "an object gone before anyone heard of it is not announced";
    EXPECT_TRUE(heard[0].deleted.isEmpty());

    kept->setValueForKey(QStringLiteral("renamed"), QStringLiteral("name"));
    ctx->processPendingChanges();
    ASSERT_EQ(heard.size(), 2);
    EXPECT_EQ(heard[1].updated, QList<ManagedObject *>{kept})
        << "a new object already announced reports its edits";
    ctx->processPendingChanges();
    EXPECT_EQ(heard.size(), 2) << "nothing pending, nothing said";
}

TEST_F(Fixture, UriTextRoundTripsAndStaysStableOnceSaved) {
    auto ctx = create(path());
    auto *o = ctx->insertNewObject(QStringLiteral("Owner"));
    const QString temporary = o->uriText();
    EXPECT_TRUE(temporary.contains(QStringLiteral("/Owner/t")));
    EXPECT_EQ(ctx->objectWithURI(temporary), o);
    ASSERT_TRUE(ctx->save().ok());
    const QString permanent = o->uriText();
    EXPECT_NE(permanent, temporary);
    EXPECT_EQ(ctx->objectWithURI(temporary), nullptr) << "a temporary URI does not survive a save";
    EXPECT_EQ(ctx->objectWithURI(permanent), o);
    auto other = create(path(QStringLiteral("other.tadb")));
    EXPECT_EQ(other->objectWithURI(permanent), nullptr) << "another store's URI finds nothing";
    for (const QString &bad :
         {QString(), QStringLiteral("x-billfold://"), QStringLiteral("x-billfold://u/Owner/p0"),
          QStringLiteral("http://u/Owner/p1"), QStringLiteral("x-billfold://u/Owner/q1")})
        EXPECT_FALSE(ObjectID::parseUri(bad).has_value()) << qPrintable(bad);
    auto reopened = open(path());
    EXPECT_EQ(reopened->objectWithURI(permanent)->uriText(), permanent);
}

TEST_F(Fixture, RollbackRestoresTheSavedStateAndResetForgetsObjects) {
    auto ctx = create(path());
    auto *o = ctx->insertNewObject(QStringLiteral("Owner"));
    o->setValueForKey(QStringLiteral("saved"), QStringLiteral("name"));
    auto *t = ctx->insertNewObject(QStringLiteral("Gadget"));
    t->setObjectForKey(o, QStringLiteral("owner"));
    ASSERT_TRUE(ctx->save().ok());
    o->setValueForKey(QStringLiteral("changed"), QStringLiteral("name"));
    auto *fresh = ctx->insertNewObject(QStringLiteral("Gadget"));
    fresh->setObjectForKey(o, QStringLiteral("owner"));
    t->setObjectForKey(nullptr, QStringLiteral("owner"));
    EXPECT_TRUE(ctx->hasChanges());
    ctx->rollback();
    EXPECT_FALSE(ctx->hasChanges());
    EXPECT_EQ(o->stringForKey(QStringLiteral("name")), QStringLiteral("saved"));
    EXPECT_EQ(o->objectsForKey(QStringLiteral("things")), QList<ManagedObject *>{t});
    EXPECT_TRUE(fresh->isDeleted());
    EXPECT_FALSE(ctx->undoManager()->canUndo());
    ctx->reset();
    EXPECT_EQ(fetch(*ctx, QStringLiteral("Thing")).size(), 1) << "reset reloads from the file";
}

TEST_F(Fixture, InMemoryDocumentBecomesAFileOnSaveAs) {
    auto store = PersistentStore::createInMemory(*model);
    ASSERT_TRUE(store.ok());
    ManagedObjectContext ctx(*store);
    auto *o = ctx.insertNewObject(QStringLiteral("Owner"));
    o->setValueForKey(QStringLiteral("first"), QStringLiteral("name"));
    ASSERT_TRUE(ctx.save().ok());
    EXPECT_TRUE((*store)->isInMemory());
    ASSERT_TRUE((*store)->saveAs(path()).ok());
    EXPECT_FALSE((*store)->isInMemory());
    o->setValueForKey(QStringLiteral("second"), QStringLiteral("name"));
    ASSERT_TRUE(ctx.save().ok()) << "later saves go to the new file";
    auto reopened = open(path());
    EXPECT_EQ(
        fetch(*reopened, QStringLiteral("Owner")).value(0)->stringForKey(QStringLiteral("name")),
        QStringLiteral("second"));
    EXPECT_FALSE(PersistentStore::create(path(), *model).ok()) << "create never overwrites";
}

} // namespace
