#include "TestModel.h"

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/UndoManager.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <map>

namespace {

// The whole live graph as plain data, keyed by object identity (addresses stay valid for the
// context's life), with links as identities and to-many members sorted.
using Graph = std::map<quintptr, QStringList>;

Graph snapshot(ManagedObjectContext &ctx) {
    Graph graph;
    for (const QString &entity :
         {QStringLiteral("Owner"), QStringLiteral("Thing"), QStringLiteral("Note")}) {
        const QList<ManagedObject *> objects = *ctx.executeFetchRequest(FetchRequest(entity));
        for (ManagedObject *o : objects) {
            QStringList row{o->entity()->name()};
            for (const QString &key : o->entity()->attributeNames()) {
                const QVariant v = o->valueForKey(key);
                row.append(key + u'=' +
                           (v.isValid() ? (v.metaType() == QMetaType::fromType<Decimal>()
                                               ? v.value<Decimal>().toString()
                                               : v.toString())
                                        : QStringLiteral("<null>")));
            }
            for (const QString &key : o->entity()->relationshipNames()) {
                const RelationshipDescription *r = o->entity()->relationship(key);
                QStringList ids;
                if (r->toMany) {
                    for (ManagedObject *m : o->objectsForKey(key))
                        ids.append(QString::number(quintptr(m)));
                    ids.sort();
                } else if (ManagedObject *t = o->objectForKey(key)) {
                    ids.append(QString::number(quintptr(t)));
                }
                row.append(key + u'>' + ids.join(u','));
            }
            graph[quintptr(o)] = row;
        }
    }
    return graph;
}

TEST(UndoRandom, UndoAndRedoWalkBackAndForthThroughEveryEarlierState) {
    auto model = makeTestModel();
    QTemporaryDir dir;
    auto store = PersistentStore::create(dir.filePath(QStringLiteral("undo.tadb")), *model);
    ASSERT_TRUE(store.ok());
    ManagedObjectContext ctx(*store);
    UndoManager *undo = ctx.undoManager();
    QRandomGenerator random(20261122);
    QList<ManagedObject *> objects;
    const QStringList kinds{QStringLiteral("Owner"), QStringLiteral("SpecialOwner"),
                            QStringLiteral("Widget"), QStringLiteral("Gadget"),
                            QStringLiteral("Note")};
    auto live = [&](const char *entityPrefix) {
        QList<ManagedObject *> list;
        for (ManagedObject *o : objects)
            if (!o->isDeleted() &&
                o->entity()->isKindOfEntity(model->entity(QLatin1String(entityPrefix))))
                list.append(o);
        return list;
    };
    auto pick = [&](const QList<ManagedObject *> &list) -> ManagedObject * {
        return list.isEmpty() ? nullptr : list[random.bounded(int(list.size()))];
    };

    std::vector<Graph> states{snapshot(ctx)};
    const int steps = 60;
    for (int step = 0; step < steps; ++step) {
        undo->beginUndoGrouping();
        undo->setActionName(QStringLiteral("Step %1").arg(step));
        const int operations = 1 + random.bounded(4);
        for (int op = 0; op < operations; ++op) {
            switch (random.bounded(6)) {
            case 0:
            case 1:
                objects.append(ctx.insertNewObject(kinds[random.bounded(int(kinds.size()))]));
                break;
            case 2:
                if (ManagedObject *o = pick(live("Owner"))) {
                    o->setValueForKey(QStringLiteral("n%1").arg(random.bounded(100)),
                                      QStringLiteral("name"));
                    o->setValueForKey(
                        QVariant::fromValue(Decimal::fromParts(random.bounded(100000), -2)),
                        QStringLiteral("amount"));
                }
                break;
            case 3:
                if (ManagedObject *t = pick(live("Thing")))
                    t->setObjectForKey(random.bounded(4) ? pick(live("Owner")) : nullptr,
                                       QStringLiteral("owner"));
                break;
            case 4:
                if (ManagedObject *n = pick(live("Note")))
                    n->setObjectForKey(pick(live("Owner")), QStringLiteral("owner"));
                break;
            case 5:
                if (random.bounded(3) == 0)
                    ctx.deleteObject(pick(live(random.bounded(2) ? "Owner" : "Thing")));
                break;
            }
        }
        undo->endUndoGrouping();
        ctx.processPendingChanges();
        if (step == steps / 2) {
            ASSERT_TRUE(ctx.save().ok()); // undo must work across a save too
        }
        states.push_back(snapshot(ctx));
    }

    // Groups that changed nothing leave no step; compare against the distinct states only.
    const int undoable = undo->undoCount();
    ASSERT_GT(undoable, steps / 2);
    std::vector<Graph> visited{states.back()};
    for (int i = 0; i < undoable; ++i) {
        undo->undo();
        visited.push_back(snapshot(ctx));
    }
    EXPECT_EQ(visited.back(), states.front()) << "undoing everything returns to the empty store";
    // Every state reached by undo is one of the recorded states, in reverse order.
    size_t cursor = states.size() - 1;
    for (const Graph &g : visited) {
        while (cursor > 0 && states[cursor] != g)
            --cursor;
        ASSERT_EQ(states[cursor], g) << "undo produced a state that never existed";
    }
    for (int i = 0; i < undoable; ++i)
        undo->redo();
    EXPECT_EQ(snapshot(ctx), states.back()) << "redoing everything returns to the last state";
    ASSERT_TRUE(ctx.save().ok());
    auto reopened = PersistentStore::open(dir.filePath(QStringLiteral("undo.tadb")), *model);
    ASSERT_TRUE(reopened.ok());
    ManagedObjectContext again(*reopened);
    EXPECT_EQ(snapshot(again).size(), states.back().size());
}

TEST(UndoManagerRules, NestingNamesRegistrationCounterAndAutomaticGroups) {
    UndoManager undo;
    int value = 0;
    std::function<void(int)> set = [&](int v) {
        const int old = value;
        value = v;
        undo.registerUndo([&, old] { set(old); });
    };
    undo.beginUndoGrouping();
    undo.setActionName(QStringLiteral("Outer"));
    undo.beginUndoGrouping();
    set(1);
    undo.endUndoGrouping();
    set(2);
    undo.endUndoGrouping();
    EXPECT_EQ(undo.undoCount(), 1) << "nested groups fold into their parent";
    EXPECT_EQ(undo.undoActionName(), QStringLiteral("Outer"));

    undo.disableUndoRegistration();
    undo.disableUndoRegistration();
    set(3);
    undo.enableUndoRegistration();
    set(4);
    undo.enableUndoRegistration();
    EXPECT_EQ(undo.undoCount(), 1) << "registration stays off until every disable is matched";

    set(5); // outside any group: an automatic group
    undo.closeAutomaticGroup();
    EXPECT_EQ(undo.undoCount(), 2);
    undo.undo();
    EXPECT_EQ(value, 4);
    undo.undo();
    EXPECT_EQ(value, 0);
    EXPECT_EQ(undo.redoActionName(), QStringLiteral("Outer"));
    undo.redo();
    EXPECT_EQ(value, 4) << "redo restores the value the undo replaced, unregistered edits included";
    set(9);
    undo.closeAutomaticGroup();
    EXPECT_FALSE(undo.canRedo()) << "a new change clears redo";
}

} // namespace
