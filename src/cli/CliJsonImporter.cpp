#include "cli/CliJsonImporter.h"

#include "cli/CliJsonExporter.h"
#include "cli/CliJsonText.h"
#include "store/TADocModel.h"
#include "store/objectstore/EntityDescription.h"
#include "store/objectstore/ManagedObjectContext.h"
#include "store/objectstore/ManagedObjectModel.h"
#include "store/objectstore/ObjectGraph.h"
#include "store/objectstore/PersistentStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

Error fault(const QString &path, const QString &reason) {
    return Error{ErrorCode::FileDamaged, path + QStringLiteral(": ") + reason};
}

QString objectPath(const QString &key) {
    return QStringLiteral("$.objects[%1]").arg(QString::fromUtf8(CliJsonText::quoted(key)));
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

Result<void> CliJsonImporter::read(const QByteArray &json) {
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
    m_objects.reserve(members.size());
    for (auto it = members.constBegin(); it != members.constEnd(); ++it)
        if (auto object = readObject(it.key(), it.value()); !object)
            return object;
    return checkReferences();
}

Result<void> CliJsonImporter::readHeader(const QJsonObject &root) {
    static const QStringList known{QStringLiteral("format"), QStringLiteral("formatVersion"),
                                   QStringLiteral("model"), QStringLiteral("objects")};
    for (auto it = root.constBegin(); it != root.constEnd(); ++it)
        if (!known.contains(it.key()))
            return fault(QStringLiteral("$.") + it.key(), QStringLiteral("unknown key"));
    if (root.value(QLatin1String("format")).toString() != CliJsonExporter::kFormat)
        return fault(QStringLiteral("$.format"),
                     QStringLiteral("expected \"%1\"").arg(CliJsonExporter::kFormat));
    const QJsonValue version = root.value(QLatin1String("formatVersion"));
    if (!version.isDouble() || version.toDouble() != CliJsonExporter::kFormatVersion)
        return fault(QStringLiteral("$.formatVersion"),
                     QStringLiteral("expected %1").arg(CliJsonExporter::kFormatVersion));
    if (!root.value(QLatin1String("model")).isString())
        return wrongType(QStringLiteral("$.model"), QStringLiteral("a string"),
                         root.value(QLatin1String("model")));
    return {};
}

Result<void> CliJsonImporter::readObject(const QString &key, const QJsonValue &value) {
    const QString path = objectPath(key);
    static const QRegularExpression shape(
        QStringLiteral("^([A-Za-z][A-Za-z0-9_]*)/([1-9][0-9]{0,17})$"));
    const auto match = shape.match(key);
    if (!match.hasMatch())
        return fault(path, QStringLiteral("a key is \"Entity/number\", the number from 1"));
    const EntityDescription *entity = TADocModel::model().entity(match.captured(1));
    if (!entity || entity->isAbstract())
        return fault(path, QStringLiteral("unknown entity \"%1\"").arg(match.captured(1)));
    if (!value.isObject())
        return wrongType(path, QStringLiteral("an object"), value);

    Planned planned;
    planned.key = key;
    planned.entity = entity;
    planned.number = match.captured(2).toLongLong();
    const QJsonObject members = value.toObject();
    for (auto it = members.constBegin(); it != members.constEnd(); ++it) {
        const QString memberPath = path + u'.' + it.key();
        if (const AttributeDescription *attribute = entity->attribute(it.key());
            attribute && !attribute->transient) {
            auto read = readAttribute(memberPath, *attribute, it.value(), planned);
            if (!read)
                return read.error();
            planned.attributes.insert(it.key(), *read);
            continue;
        }
        const RelationshipDescription *link = entity->relationship(it.key());
        if (!link)
            return fault(memberPath, QStringLiteral("unknown key for %1").arg(entity->name()));
        if (link->toMany)
            return fault(memberPath, QStringLiteral("a to-many link is given by the to-one "
                                                    "links of its members; leave it out"));
        if (!it.value().isNull() && !it.value().isString())
            return wrongType(memberPath, QStringLiteral("an object key or null"), it.value());
        planned.links.append({it.key(), it.value().toString()});
    }
    // A link the text leaves out is empty, whatever the insert rules would choose.
    for (const RelationshipDescription &link : entity->relationships())
        if (!link.toMany && !members.contains(link.name))
            planned.links.append({link.name, QString()});
    m_byKey.insert(key, m_objects.size());
    m_objects.append(std::move(planned));
    return {};
}

Result<QVariant> CliJsonImporter::readAttribute(const QString &path,
                                                const AttributeDescription &attribute,
                                                const QJsonValue &value, Planned &planned) {
    if (value.isNull())
        return QVariant();
    switch (attribute.type) {
    case AttributeType::String:
        if (value.isObject()) {
            const QJsonObject ref = value.toObject();
            if (ref.size() != 1 || !ref.value(QLatin1String("objectURI")).isString())
                return fault(path, QStringLiteral("expected a string or {\"objectURI\": key}"));
            planned.uriTexts.append(
                {attribute.name, ref.value(QLatin1String("objectURI")).toString()});
            return QVariant();
        }
        if (!value.isString())
            return wrongType(path, QStringLiteral("a string"), value);
        return QVariant(value.toString());
    case AttributeType::Integer: {
        const QVariant number = value.toVariant();
        if (!value.isDouble() || number.typeId() == QMetaType::Double)
            return wrongType(path, QStringLiteral("an integer"), value);
        return QVariant(number.toLongLong());
    }
    case AttributeType::Boolean:
        if (!value.isBool())
            return wrongType(path, QStringLiteral("true, false or null"), value);
        return QVariant(value.toBool());
    case AttributeType::Decimal: {
        if (!value.isString())
            return wrongType(path, QStringLiteral("a decimal number as a string"), value);
        const auto decimal = CliJsonText::parseDecimal(value.toString());
        if (!decimal)
            return fault(path,
                         QStringLiteral("\"%1\" is not a decimal number").arg(value.toString()));
        return decimal->toVariant();
    }
    case AttributeType::Date: {
        const auto date =
            value.isString() ? CliJsonText::parseDate(value.toString()) : std::nullopt;
        if (!date)
            return fault(path, QStringLiteral("expected an ISO 8601 date and time with an offset"));
        return QVariant(*date);
    }
    case AttributeType::Binary: {
        if (!value.isString())
            return wrongType(path, QStringLiteral("base64 text"), value);
        const auto decoded = QByteArray::fromBase64Encoding(
            value.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded)
            return fault(path, QStringLiteral("not valid base64"));
        return QVariant(*decoded);
    }
    case AttributeType::Float:
        if (value.isDouble())
            return QVariant(value.toDouble());
        if (const auto special = CliJsonText::parseSpecialDouble(value.toString());
            value.isString() && special)
            return QVariant(*special);
        return wrongType(path, QStringLiteral("a number"), value);
    }
    return QVariant();
}

Result<void> CliJsonImporter::checkReferences() const {
    for (const Planned &planned : m_objects) {
        const QString path = objectPath(planned.key);
        for (const Reference &link : planned.links) {
            if (link.target.isEmpty())
                continue;
            const qsizetype at = m_byKey.value(link.target, -1);
            if (at < 0)
                return fault(path + u'.' + link.name,
                             QStringLiteral("\"%1\" names no object of the file").arg(link.target));
            const RelationshipDescription *r = planned.entity->relationship(link.name);
            if (!m_objects[at].entity->isKindOfEntity(r->destination))
                return fault(
                    path + u'.' + link.name,
                    QStringLiteral("\"%1\" is no %2").arg(link.target, r->destinationEntityName));
        }
        for (const Reference &uri : planned.uriTexts)
            if (!m_byKey.contains(uri.target))
                return fault(path + u'.' + uri.name + QStringLiteral(".objectURI"),
                             QStringLiteral("\"%1\" names no object of the file").arg(uri.target));
    }
    return {};
}

Result<void> CliJsonImporter::build(ManagedObjectContext &context) {
    context.setUndoManager(nullptr);
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

Result<void> CliJsonImporter::insertObjects(ManagedObjectContext &context) {
    // Objects go in by entity and key, so that each one can take its key as primary key.
    QList<qsizetype> order(m_objects.size());
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
            return fault(objectPath(planned.key), QStringLiteral("could not be made"));
        qint64 &next = nextKey[planned.entity];
        for (next = std::max<qint64>(next, 1); next < planned.number; ++next)
            (void)store->allocatePrimaryKey(planned.entity);
        ++next;
        context.obtainPermanentIDs({planned.object});
        if (planned.object->objectID().number() != planned.number)
            return fault(objectPath(planned.key), QStringLiteral("the key could not be kept"));
    }
    return {};
}

void CliJsonImporter::setLinks(bool &changed) {
    changed = false;
    for (Planned &planned : m_objects) {
        for (const Reference &link : std::as_const(planned.links)) {
            ManagedObject *target =
                link.target.isEmpty() ? nullptr : m_objects[m_byKey.value(link.target)].object;
            if (planned.object->objectForKey(link.name) == target)
                continue;
            planned.object->setObjectForKey(target, link.name);
            changed = true;
        }
    }
}

void CliJsonImporter::setAttributes() {
    for (Planned &planned : m_objects) {
        for (const AttributeDescription &attribute : planned.entity->attributes()) {
            if (attribute.transient)
                continue;
            planned.object->setPrimitiveValueForKey(
                planned.attributes.value(attribute.name, attribute.defaultValue), attribute.name);
        }
        for (const Reference &uri : std::as_const(planned.uriTexts))
            planned.object->setPrimitiveValueForKey(
                m_objects[m_byKey.value(uri.target)].object->uriText(), uri.name);
    }
}

Result<void> CliJsonImporter::verify() const {
    for (const Planned &planned : m_objects) {
        const QString path = objectPath(planned.key);
        if (ObjectGraph::visible(planned.object) != planned.object)
            return fault(path, QStringLiteral("was removed while the document was built"));
        for (const Reference &link : planned.links) {
            ManagedObject *target =
                link.target.isEmpty() ? nullptr : m_objects[m_byKey.value(link.target)].object;
            if (planned.object->objectForKey(link.name) != target)
                return fault(path + u'.' + link.name,
                             QStringLiteral("the link contradicts another one of the file"));
        }
    }
    return {};
}
