#include "DataFixture.h"

#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"
#include "store/objectstore/ManagedObjectModel.h"

#include <QTimeZone>

#include <functional>
#include <map>
#include <random>

namespace {
// The whole object graph as plain text: "uri key" -> value.
using Snapshot = std::map<QString, QString>;

QString text(const QVariant &value) {
    if (!value.isValid() || value.isNull())
        return QStringLiteral("<null>");
    if (value.metaType() == QMetaType::fromType<Decimal>())
        return value.value<Decimal>().toString();
    if (value.metaType() == QMetaType::fromType<QDateTime>())
        return QString::number(value.toDateTime().toMSecsSinceEpoch());
    if (value.metaType() == QMetaType::fromType<QByteArray>())
        return QString::fromLatin1(value.toByteArray().toHex());
    return value.toString();
}

Snapshot snapshot(ManagedObjectContext *context) {
    Snapshot out;
    for (const EntityDescription *entity : context->model()->entities()) {
        if (entity->isAbstract())
            continue;
        FetchRequest request(entity->name());
        request.includesSubentities = false;
        auto found = context->executeFetchRequest(request);
        EXPECT_TRUE(found.ok());
        for (ManagedObject *object : found.value()) {
            const QString uri = object->uriText() + QLatin1Char(' ');
            out[uri + QStringLiteral("entity")] = entity->name();
            for (const AttributeDescription &attribute : entity->attributes())
                out[uri + attribute.name] = text(object->valueForKey(attribute.name));
            for (const RelationshipDescription &link : entity->relationships()) {
                QStringList targets;
                if (link.toMany) {
                    for (ManagedObject *member : object->objectsForKey(link.name))
                        targets.append(member->uriText());
                } else if (ManagedObject *target = object->objectForKey(link.name)) {
                    targets.append(target->uriText());
                }
                targets.sort();
                out[uri + link.name] = targets.join(QLatin1Char(','));
            }
        }
    }
    return out;
}

// Random user commands through the data layer.
class RandomEditor {
public:
    RandomEditor(TADatabase &db, unsigned seed)
        : m_db(db)
        , m_random(seed) {}

    void command() {
        const std::function<void()> actions[] = {[this] { insert(); }, [this] { edit(); },
                                                 [this] { remove(); }, [this] { relink(); }};
        for (int steps = pick(3) + 1; steps > 0; --steps)
            actions[pick(4)]();
    }

private:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
    template <class T> T *any(const QList<T *> &list, bool allowNull = false) {
        const int i = list.isEmpty() ? 0 : pick(int(list.size()) + (allowNull ? 1 : 0));
        return i < list.size() ? list[i] : nullptr;
    }
    template <class T> QList<T *> all(const QString &entity) {
        return TAContextDatabase::objectsAs<T>(m_db.fetchEntityCustom(entity));
    }
    // Every business object but the preferences, which a lookup would remake outside undo.
    QList<TAObject *> objects() {
        QList<TAObject *> out = all<TAObject>(QStringLiteral("TAObject"));
        out.removeIf([](TAObject *o) { return o->entity()->name() == TAEntity::Preferences; });
        return out;
    }

    void insert() {
        const std::function<void()> makers[] = {
            [this] { m_db.createClient(); },  [this] { m_db.createProject(); },
            [this] { m_db.createTimer(); },   [this] { m_db.createMaterial(); },
            [this] { m_db.createInvoice(); }, [this] { m_db.createTimerInterval(); }};
        makers[pick(6)]();
    }
    void edit() {
        TAObject *object = any(objects());
        if (!object)
            return;
        const AttributeDescription &a =
            object->entity()->attributes()[pick(int(object->entity()->attributes().size()))];
        const int roll = pick(100);
        QVariant value = roll; // a tenth of the edits clear the value
        if (roll < 10 || a.type == AttributeType::Binary)
            value = QVariant();
        else if (a.type == AttributeType::String)
            value = QString::number(roll);
        else if (a.type == AttributeType::Decimal)
            value = Decimal::fromParts(roll, -2).toVariant();
        else if (a.type == AttributeType::Date)
            value = QDateTime::fromMSecsSinceEpoch(roll * 1000000LL, QTimeZone::utc());
        else if (a.type == AttributeType::Boolean)
            value = bool(roll % 2);
        object->setValueForKey(value, a.name);
    }
    void remove() {
        if (TAObject *object = any(objects()))
            m_db.deleteObject(object);
    }
    void relink() {
        TAItem *item = any(all<TAItem>(QStringLiteral("Item")));
        TAInvoice *invoice = any(m_db.getInvoices());
        TAProject *project = any(m_db.getProjects());
        TATimerInterval *interval = any(m_db.getTimerIntervals());
        switch (pick(5)) {
        case 0:
            if (item)
                item->setProject(any(m_db.getProjects(), true));
            break;
        case 1:
            if (item)
                item->setInvoice(any(m_db.getInvoices(), true));
            break;
        case 2:
            if (invoice)
                invoice->setClient(any(m_db.getClients(), true));
            break;
        case 3:
            if (project)
                project->setClient(any(m_db.getClients(), true));
            break;
        default:
            if (interval)
                interval->setTimerRelationship(any(m_db.getTimers(), true));
        }
    }

    TADatabase &m_db;
    std::mt19937 m_random;
};
} // namespace

TEST_F(DataFixture, RandomNamedCommandsUndoAndRedoToEachEarlierState) {
    // What the first invoice would make outside undo is made up front.
    db().getPreferences()->setValueForKey(QStringLiteral("7"), TAKey::nextInvoiceNumber);
    doc->addTemplate(QStringLiteral("Plain"));
    ctx()->processPendingChanges();
    doc->undo()->removeAllActions();

    RandomEditor editor(db(), 20240501u);
    std::vector<Snapshot> states{snapshot(ctx())};
    const int commands = 60;
    for (int i = 0; i < commands; ++i) {
        db().beginUndoGroupingWithName(QStringLiteral("Command %1").arg(i));
        db().beginUndoGroupingWithName(QStringLiteral("Nested"));
        editor.command();
        db().endUndoGrouping();
        db().endUndoGrouping();
        states.push_back(snapshot(ctx()));
    }
    ASSERT_GT(states.back().size(), states.front().size());

    int steps = 0;
    while (doc->undo()->canUndo()) {
        const QString name = doc->undo()->undoActionName();
        ASSERT_TRUE(name.startsWith(QStringLiteral("Command "))) << name.toStdString();
        const int index = name.mid(8).toInt();
        doc->undo()->undo();
        ++steps;
        ASSERT_EQ(snapshot(ctx()), states[index]) << "after undoing command " << index;
    }
    EXPECT_EQ(snapshot(ctx()), states.front());
    EXPECT_GT(steps, commands / 2);

    while (doc->undo()->canRedo()) {
        const int index = doc->undo()->redoActionName().mid(8).toInt();
        doc->undo()->redo();
        ASSERT_EQ(snapshot(ctx()), states[index + 1]) << "after redoing command " << index;
    }
    EXPECT_EQ(snapshot(ctx()), states.back());
}
