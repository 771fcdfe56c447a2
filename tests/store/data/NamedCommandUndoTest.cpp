#include "DataFixture.h"

#include "objectstore/ManagedObjectModel.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

#include <QTimeZone>

#include <functional>
#include <map>
#include <random>

#include "foundation/dates/ScopedFixedClock.h"

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

// The keys whose values differ, for a failure message a person can read.
std::string differences(const Snapshot &actual, const Snapshot &expected) {
    QStringList lines;
    for (const auto &[key, value] : expected) {
        const auto found = actual.find(key);
        if (found == actual.end())
            lines.append(QStringLiteral("missing %1 (= %2)").arg(key, value));
        else if (found->second != value)
            lines.append(QStringLiteral("%1: %2, expected %3").arg(key, found->second, value));
    }
    for (const auto &[key, value] : actual)
        if (!expected.count(key))
            lines.append(QStringLiteral("extra %1 (= %2)").arg(key, value));
    return lines.mid(0, 12).join(u'\n').toStdString();
}

// An invoice's cached totals are derived: refreshed outside undo whenever an item changes,
// so an undo recomputes them rather than restoring whatever they held. The billing tests
// check their values.
bool isCachedTotal(const EntityDescription *entity, const QString &key) {
    static const QStringList totals{QStringLiteral("subTotal"),      QStringLiteral("itemTaxes"),
                                    QStringLiteral("totalDiscount"), QStringLiteral("totalTax2"),
                                    QStringLiteral("total"),         QStringLiteral("totalTaxes")};
    return entity->isKindOfEntity(entity->model()->entity(QStringLiteral("Invoice"))) &&
           totals.contains(key);
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
                if (!isCachedTotal(entity, attribute.name))
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
        return TAContextDatabase::objectsAs<T>(
            TAContextDatabase::fetchEntity(entity, m_db.context()));
    }
    // Every business object but the preferences and the currencies, which a lookup would
    // remake outside undo (invoice totals look up the default currency).
    QList<TAObject *> objects() {
        QList<TAObject *> out = all<TAObject>(QStringLiteral("TAObject"));
        out.removeIf([](TAObject *o) {
            return o->entity()->name() == TAEntity::Preferences ||
                   o->entity()->name() == TAEntity::Currency;
        });
        return out;
    }

    void insert() {
        const std::function<void()> makers[] = {
            [this] { TAContextDatabase::createClientInContext(m_db.context()); },
            [this] { TAContextDatabase::createProjectInContext(m_db.context()); },
            [this] { TAContextDatabase::createTimerInContext(m_db.context()); },
            [this] { TAContextDatabase::createMaterialInContext(m_db.context()); },
            [this] { TAContextDatabase::createInvoiceInContext(m_db.context()); },
            [this] { TAContextDatabase::createTimerIntervalInContext(m_db.context()); }};
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
            TAContextDatabase::deleteObject(object, m_db.context());
    }
    void relink() {
        TAItem *item = any(all<TAItem>(QStringLiteral("Item")));
        TAInvoice *invoice = any(TAContextDatabase::getInvoicesInContext(m_db.context()));
        TAProject *project = any(TAContextDatabase::getProjectsInContext(m_db.context()));
        TATimerInterval *interval =
            any(TAContextDatabase::getTimerIntervalsInContext(m_db.context()));
        switch (pick(5)) {
        case 0:
            if (item)
                item->setProject(
                    any(TAContextDatabase::getProjectsInContext(m_db.context()), true));
            break;
        case 1:
            if (item)
                item->setInvoice(
                    any(TAContextDatabase::getInvoicesInContext(m_db.context()), true));
            break;
        case 2:
            if (invoice)
                invoice->setClient(
                    any(TAContextDatabase::getClientsInContext(m_db.context()), true));
            break;
        case 3:
            if (project)
                project->setClient(
                    any(TAContextDatabase::getClientsInContext(m_db.context()), true));
            break;
        default:
            if (interval)
                interval->setTimerRelationship(
                    any(TAContextDatabase::getTimersInContext(m_db.context()), true));
        }
    }

    TADatabase &m_db;
    std::mt19937 m_random;
};
} // namespace

TEST_F(DataFixture, RandomNamedCommandsUndoAndRedoToEachEarlierState) {
    // Undoing is itself a change, so items stamp `updateDate` with "now" again; a fixed clock
    // makes that stamp the same moment in every state.
    const ScopedFixedClock clock(QDateTime(QDate(2026, 3, 14), QTime(9, 30), Qt::UTC));
    // What the first invoice would make outside undo is made up front.
    TAContextDatabase::getPreferencesInContext(db().context())
        ->setValueForKey(QStringLiteral("7"), TAKey::nextInvoiceNumber);
    db().getDefaultCurrency(); // totals ask for it, and a lookup makes it outside undo
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
        const Snapshot now = snapshot(ctx());
        ASSERT_TRUE(now == states[index]) << "after undoing command " << index << ":\n"
                                          << differences(now, states[index]);
    }
    EXPECT_EQ(snapshot(ctx()), states.front());
    EXPECT_GT(steps, commands / 2);

    while (doc->undo()->canRedo()) {
        const int index = doc->undo()->redoActionName().mid(8).toInt();
        doc->undo()->redo();
        const Snapshot now = snapshot(ctx());
        ASSERT_TRUE(now == states[index + 1]) << "after redoing command " << index << ":\n"
                                              << differences(now, states[index + 1]);
    }
    EXPECT_EQ(snapshot(ctx()), states.back());
}
