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
        const int steps = pick(3) + 1;
        for (int i = 0; i < steps; ++i) {
            switch (pick(4)) {
            case 0:
                insert();
                break;
            case 1:
                edit();
                break;
            case 2:
                remove();
                break;
            default:
                relink();
                break;
            }
        }
    }

private:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
    template <class T> T *any(const QList<T *> &list, bool allowNull = false) {
        const int extra = allowNull ? 1 : 0;
        if (list.isEmpty())
            return nullptr;
        const int i = pick(int(list.size()) + extra);
        return i < list.size() ? list[i] : nullptr;
    }
    QList<TAItem *> items() {
        QList<TAItem *> out;
        for (TATimer *t : m_db.getTimers())
            out.append(t);
        for (TAMaterial *m : m_db.getMaterials())
            out.append(m);
        return out;
    }
    QList<TAObject *> objects() {
        QList<TAObject *> out;
        for (TAItem *i : items())
            out.append(i);
        for (TAProject *p : m_db.getProjects())
            out.append(p);
        for (TAInvoice *i : m_db.getInvoices())
            out.append(i);
        for (TAClient *c : m_db.getClients())
            out.append(c);
        for (TATimerInterval *t : m_db.getTimerIntervals())
            out.append(t);
        return out;
    }

    void insert() {
        switch (pick(6)) {
        case 0:
            m_db.createClient();
            break;
        case 1:
            m_db.createProject();
            break;
        case 2:
            m_db.createTimer();
            break;
        case 3:
            m_db.createMaterial();
            break;
        case 4:
            m_db.createInvoice();
            break;
        default:
            m_db.createTimerInterval();
            break;
        }
    }
    void edit() {
        TAObject *object = any(objects());
        if (!object)
            return;
        QStringList keys;
        for (const AttributeDescription &a : object->entity()->attributes())
            if (a.type != AttributeType::Binary)
                keys.append(a.name);
        const QString key = keys[pick(int(keys.size()))];
        const int roll = pick(100);
        const AttributeDescription *a = object->entity()->attribute(key);
        QVariant value;
        if (roll >= 10) {
            switch (a->type) {
            case AttributeType::String:
                value = QString::number(roll);
                break;
            case AttributeType::Decimal:
                value = Decimal::fromParts(roll, -2).toVariant();
                break;
            case AttributeType::Date:
                value = QDateTime::fromMSecsSinceEpoch(roll * 1000000LL, QTimeZone::utc());
                break;
            case AttributeType::Boolean:
                value = bool(roll % 2);
                break;
            default:
                value = roll;
                break;
            }
        }
        object->setValueForKey(value, key);
    }
    void remove() {
        if (TAObject *object = any(objects()))
            m_db.deleteObject(object);
    }
    void relink() {
        switch (pick(5)) {
        case 0:
            if (TAItem *item = any(items()))
                item->setProject(any(m_db.getProjects(), true));
            break;
        case 1:
            if (TAItem *item = any(items()))
                item->setInvoice(any(m_db.getInvoices(), true));
            break;
        case 2:
            if (TAInvoice *invoice = any(m_db.getInvoices()))
                invoice->setClient(any(m_db.getClients(), true));
            break;
        case 3:
            if (TAProject *project = any(m_db.getProjects()))
                project->setClient(any(m_db.getClients(), true));
            break;
        default:
            if (TATimerInterval *interval = any(m_db.getTimerIntervals()))
                interval->setTimerRelationship(any(m_db.getTimers(), true));
            break;
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
