#include "importsync/json/JsonDocumentImporter.h"

#include "importsync/json/JsonDocumentExporter.h"
#include "importsync/json/JsonText.h"
#include "store/TADocModel.h"
#include "store/entities/TAInvoice.h"
#include "store/objectstore/EntityDescription.h"
#include "store/objectstore/ManagedObjectContext.h"
#include "store/objectstore/ManagedObjectModel.h"
#include "store/objectstore/ObjectGraph.h"
#include "store/objectstore/PersistentStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

Error fault(const QString &path, const QString &reason) {
    return Error{ErrorCode::FileDamaged, path + QStringLiteral(": ") + reason};
}

QString objectPath(const QString &key) {
    return QStringLiteral("$.objects[%1]").arg(QString::fromUtf8(JsonText::quoted(key)));
}

QString typeName(const QJsonValue &value) {
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("a boolean");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a string");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

Error wrongType(const QString &path, const QString &expected, const QJsonValue &value) {
    return fault(path, QStringLiteral("expected %1, found %2").arg(expected, typeName(value)));
}

} // namespace

Result<void> JsonDocumentImporter::read(const QByteArray &json) {
    m_objects.clear();
    m_byKey.clear();
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return Error{ErrorCode::FileDamaged, QStringLiteral("not valid JSON at offset %1 (%2)")
                                                 .arg(parseError.offset)
                                                 .arg(parseError.errorString())};
    if (!document.isObject())
        return wrongType(QStringLiteral("$"), QStringLiteral("an object"),
                         document.isArray() ? QJsonValue(document.array()) : QJsonValue());
    const QJsonObject root = document.object();
    if (auto header = readHeader(root); !header)
        return header;
    const QJsonValue objects = root.value(QLatin1String("objects"));
    if (!objects.isObject())
        return wrongType(QStringLiteral("$.objects"), QStringLiteral("an object"), objects);
    const QJsonObject members = objects.toObject();
    // Keys first, so that every reference can be resolved while its object is read.
    if (auto keys = readKeys(members); !keys)
        return keys;
    qsizetype at = 0;
    for (auto it = members.constBegin(); it != members.constEnd(); ++it, ++at)
        if (auto object = readObject(m_objects[at], it.key(), it.value()); !object)
            return object;
    return {};
}

Result<void> JsonDocumentImporter::readHeader(const QJsonObject &root) {
    static const QStringList known{QStringLiteral("format"), QStringLiteral("formatVersion"),
                                   QStringLiteral("model"), QStringLiteral("objects")};
    for (auto it = root.constBegin(); it != root.constEnd(); ++it)
        if (!known.contains(it.key()))
            return fault(QStringLiteral("$.") + it.key(), QStringLiteral("unknown key"));
    if (root.value(QLatin1String("format")).toString() != JsonDocumentExporter::kFormat)
        return fault(QStringLiteral("$.format"),
                     QStringLiteral("expected \"%1\"").arg(JsonDocumentExporter::kFormat));
    const QJsonValue version = root.value(QLatin1String("formatVersion"));
    if (!version.isDouble() || version.toDouble() != JsonDocumentExporter::kFormatVersion)
        return fault(QStringLiteral("$.formatVersion"),
                     QStringLiteral("expected %1").arg(JsonDocumentExporter::kFormatVersion));
    if (!root.value(QLatin1String("model")).isString())
        return wrongType(QStringLiteral("$.model"), QStringLiteral("a string"),
                         root.value(QLatin1String("model")));
    return {};
}

Result<void> JsonDocumentImporter::readKeys(const QJsonObject &objects) {
    const ManagedObjectModel &model = TADocModel::model();
    m_objects.resize(objects.size());
    m_byKey.reserve(objects.size());
    qsizetype at = 0;
    for (auto it = objects.constBegin(); it != objects.constEnd(); ++it, ++at) {
        const QString key = it.key();
        const qsizetype slash = key.indexOf(u'/');
        const QStringView number = QStringView(key).mid(slash + 1);
        bool ok = slash > 0 && !number.isEmpty() && number.front() != u'0' && number.size() < 19;
        for (QChar c : number)
            ok = ok && c.isDigit() && c.unicode() < 128;
        if (!ok)
            return fault(objectPath(key), QStringLiteral("a key is \"Entity/number\", the "
                                                         "number from 1"));
        const EntityDescription *entity = model.entity(key.left(slash));
        if (!entity || entity->isAbstract())
            return fault(objectPath(key),
                         QStringLiteral("unknown entity \"%1\"").arg(key.left(slash)));
        m_objects[at].entity = entity;
        m_objects[at].number = number.toLongLong();
        m_byKey.insert(key, at);
    }
    return {};
}

QString JsonDocumentImporter::Place::path() const {
    return objectPath(key) + u'.' + member + QLatin1String(suffix);
}

Result<qsizetype> JsonDocumentImporter::resolve(const Place &place, const QString &key) const {
    const auto found = m_byKey.constFind(key);
    if (found == m_byKey.constEnd())
        return fault(place.path(), QStringLiteral("\"%1\" names no object of the file").arg(key));
    return *found;
}

Result<void> JsonDocumentImporter::readObject(Planned &planned, const QString &key,
                                              const QJsonValue &value) {
    if (!value.isObject())
        return wrongType(objectPath(key), QStringLiteral("an object"), value);
    const EntityDescription *entity = planned.entity;
    const auto &attributes = entity->attributes();
    const auto &relationships = entity->relationships();
    planned.values.resize(attributes.size());
    for (qsizetype i = 0; i < attributes.size(); ++i)
        planned.values[i] = attributes[i].defaultValue;
    // A link the text leaves out is empty, whatever the insert rules would choose.
    for (qsizetype i = 0; i < relationships.size(); ++i)
        if (!relationships[i].toMany)
            planned.links.push_back({int(i), -1});

    const QJsonObject members = value.toObject();
    for (auto it = members.constBegin(); it != members.constEnd(); ++it) {
        const QString name = it.key();
        const Place place{key, name};
        const PropertySlot *slot = entity->slot(name);
        if (!slot ||
            (slot->kind == PropertySlot::Attribute && attributes[slot->declaration].transient))
            return fault(place.path(), QStringLiteral("unknown key for %1").arg(entity->name()));
        if (slot->kind == PropertySlot::ToMany)
            return fault(place.path(), QStringLiteral("a to-many link is given by the "
                                                      "to-one links of its members; leave "
                                                      "it out"));
        if (slot->kind == PropertySlot::Attribute) {
            auto read = readAttribute(place, slot->declaration, it.value(), planned);
            if (!read)
                return read.error();
            planned.values[slot->declaration] = std::move(*read);
            continue;
        }
        const QJsonValue target = it.value();
        if (!target.isNull() && !target.isString())
            return wrongType(place.path(), QStringLiteral("an object key or null"), target);
        if (target.isNull())
            continue;
        auto resolved = resolve(place, target.toString());
        if (!resolved)
            return resolved.error();
        const RelationshipDescription &link = relationships[slot->declaration];
        if (!m_objects[*resolved].entity->isKindOfEntity(link.destination))
            return fault(place.path(), QStringLiteral("\"%1\" is no %2")
                                           .arg(target.toString(), link.destinationEntityName));
        for (Link &l : planned.links)
            if (l.relationship == slot->declaration)
                l.target = *resolved;
    }
    return {};
}

Result<QVariant> JsonDocumentImporter::readAttribute(const Place &place, int index,
                                                     const QJsonValue &value, Planned &planned) {
    if (value.isNull())
        return QVariant();
    switch (planned.entity->attributes()[index].type) {
    case AttributeType::String:
        if (value.isObject()) {
            const QJsonObject ref = value.toObject();
            if (ref.size() != 1 || !ref.value(QLatin1String("objectURI")).isString())
                return fault(place.path(),
                             QStringLiteral("expected a string or {\"objectURI\": key}"));
            auto target = resolve(Place{place.key, place.member, ".objectURI"},
                                  ref.value(QLatin1String("objectURI")).toString());
            if (!target)
                return target.error();
            planned.uriTexts.push_back({index, *target});
            return QVariant();
        }
        if (!value.isString())
            return wrongType(place.path(), QStringLiteral("a string"), value);
        return QVariant(value.toString());
    case AttributeType::Integer: {
        const QVariant number = value.toVariant();
        if (!value.isDouble() || number.typeId() == QMetaType::Double)
            return wrongType(place.path(), QStringLiteral("an integer"), value);
        return QVariant(number.toLongLong());
    }
    case AttributeType::Boolean:
        if (!value.isBool())
            return wrongType(place.path(), QStringLiteral("true, false or null"), value);
        return QVariant(value.toBool());
    case AttributeType::Decimal: {
        if (!value.isString())
            return wrongType(place.path(), QStringLiteral("a decimal number as a string"), value);
        const auto decimal = JsonText::parseDecimal(value.toString());
        if (!decimal)
            return fault(place.path(),
                         QStringLiteral("\"%1\" is not a decimal number").arg(value.toString()));
        return decimal->toVariant();
    }
    case AttributeType::Date: {
        const auto date = value.isString() ? JsonText::parseDate(value.toString()) : std::nullopt;
        if (!date)
            return fault(place.path(),
                         QStringLiteral("expected an ISO 8601 date and time with an offset"));
        return QVariant(*date);
    }
    case AttributeType::Binary: {
        if (!value.isString())
            return wrongType(place.path(), QStringLiteral("base64 text"), value);
        const auto decoded = QByteArray::fromBase64Encoding(
            value.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded)
            return fault(place.path(), QStringLiteral("not valid base64"));
        return QVariant(*decoded);
    }
    case AttributeType::Float:
        if (value.isDouble())
            return QVariant(value.toDouble());
        if (const auto special = JsonText::parseSpecialDouble(value.toString());
            value.isString() && special)
            return QVariant(*special);
        return wrongType(place.path(), QStringLiteral("a number"), value);
    }
    return QVariant();
}

namespace {

// The file holds the invoices' cached totals, so refreshing them while links are set would be
// wasted work that the file's values then replace. Other contexts keep their refresh.
class CacheRefreshPause {
public:
    explicit CacheRefreshPause(const ManagedObjectContext *context) {
        m_previous = TAInvoice::setCacheRequestHandler([this, context](TAInvoice *invoice) {
            if (invoice->managedObjectContext() == context)
                return;
            if (m_previous)
                m_previous(invoice);
            else
                invoice->updateCachedValuesWithoutUndo();
        });
    }
    ~CacheRefreshPause() { TAInvoice::setCacheRequestHandler(m_previous); }
    CacheRefreshPause(const CacheRefreshPause &) = delete;
    CacheRefreshPause &operator=(const CacheRefreshPause &) = delete;

private:
    TAInvoice::CacheRequestHandler m_previous;
};

} // namespace

Result<void> JsonDocumentImporter::build(ManagedObjectContext &context) {
    context.setUndoManager(nullptr);
    const CacheRefreshPause pause(&context);
    if (auto inserted = insertObjects(context); !inserted)
        return inserted;
    // The entities' change rules may move links of other objects (an invoice handing its
    // project to its items); setting again until nothing differs puts the file's links back.
    bool changed = true;
    for (int round = 0; changed && round < 8; ++round)
        setLinks(changed);
    // Objects the insert rules made on their own are not in the file.
    QSet<ManagedObject *> planned;
    for (const Planned &p : std::as_const(m_objects))
        planned.insert(p.object);
    context.processPendingChanges();
    for (ManagedObject *extra : context.insertedObjects())
        if (!planned.contains(extra))
            context.deleteObject(extra);
    setAttributes();
    context.processPendingChanges();
    return verify();
}

Result<void> JsonDocumentImporter::insertObjects(ManagedObjectContext &context) {
    // Objects go in by entity and key, so that each one can take its key as primary key.
    std::vector<qsizetype> order(m_objects.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [this](qsizetype a, qsizetype b) {
        const Planned &x = m_objects[a];
        const Planned &y = m_objects[b];
        return x.entity != y.entity ? x.entity->index() < y.entity->index() : x.number < y.number;
    });
    // The store is new, so its keys start at 1; the ones between two objects are skipped.
    PersistentStore *store = context.persistentStore();
    QHash<const EntityDescription *, qint64> nextKey;
    for (qsizetype at : order) {
        Planned &planned = m_objects[at];
        planned.object = context.insertNewObject(planned.entity->name());
        if (!planned.object)
            return fault(objectPath(keyOf(planned)), QStringLiteral("could not be made"));
        qint64 &next = nextKey[planned.entity];
        for (next = std::max<qint64>(next, 1); next < planned.number; ++next)
            (void)store->allocatePrimaryKey(planned.entity);
        ++next;
        context.obtainPermanentIDs({planned.object});
        if (planned.object->objectID().number() != planned.number)
            return fault(objectPath(keyOf(planned)), QStringLiteral("the key could not be kept"));
    }
    return {};
}

void JsonDocumentImporter::setLinks(bool &changed) {
    changed = false;
    for (Planned &planned : m_objects) {
        const auto &relationships = planned.entity->relationships();
        for (const Link &link : planned.links) {
            ManagedObject *target = link.target < 0 ? nullptr : m_objects[link.target].object;
            const QString &name = relationships[link.relationship].name;
            if (planned.object->objectForKey(name) == target)
                continue;
            planned.object->setObjectForKey(target, name);
            changed = true;
        }
    }
}

void JsonDocumentImporter::setAttributes() {
    for (Planned &planned : m_objects) {
        const auto &attributes = planned.entity->attributes();
        for (qsizetype i = 0; i < attributes.size(); ++i)
            if (!attributes[i].transient)
                planned.object->setPrimitiveValueForKey(planned.values[i], attributes[i].name);
        for (const UriText &uri : planned.uriTexts)
            planned.object->setPrimitiveValueForKey(m_objects[uri.target].object->uriText(),
                                                    attributes[uri.attribute].name);
    }
}

Result<void> JsonDocumentImporter::verify() const {
    for (const Planned &planned : m_objects) {
        if (ObjectGraph::visible(planned.object) != planned.object)
            return fault(objectPath(keyOf(planned)),
                         QStringLiteral("was removed while the document was built"));
        const auto &relationships = planned.entity->relationships();
        for (const Link &link : planned.links) {
            ManagedObject *target = link.target < 0 ? nullptr : m_objects[link.target].object;
            if (planned.object->objectForKey(relationships[link.relationship].name) != target)
                return fault(objectPath(keyOf(planned)) + u'.' +
                                 relationships[link.relationship].name,
                             QStringLiteral("the link contradicts another one of the file"));
        }
    }
    return {};
}

QString JsonDocumentImporter::keyOf(const Planned &planned) const {
    return planned.entity->name() + u'/' + QString::number(planned.number);
}
