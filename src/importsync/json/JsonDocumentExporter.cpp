#include "importsync/json/JsonDocumentExporter.h"

#include "importsync/json/JsonText.h"
#include "objectstore/DocumentFileWriter.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"
#include "store/entities/TAKeys.h"

#include <QBuffer>

#include <algorithm>

QList<JsonDocumentExporter::Property>
JsonDocumentExporter::propertiesOf(const EntityDescription *entity) {
    QList<Property> properties;
    for (const AttributeDescription &attribute : entity->attributes())
        if (!attribute.transient)
            properties.append({attribute.name, &attribute, {}});
    for (const RelationshipDescription &link : entity->relationships())
        if (!link.toMany)
            properties.append({link.name, nullptr, {}});
    std::sort(properties.begin(), properties.end(),
              [](const Property &a, const Property &b) { return a.name < b.name; });
    for (Property &property : properties) {
        property.prefix = QByteArrayLiteral(",\n      ");
        JsonText::appendString(property.prefix, property.name);
        property.prefix.append(": ");
    }
    return properties;
}

JsonDocumentExporter::JsonDocumentExporter(ManagedObjectContext &context)
    : m_context(context) {}

QString JsonDocumentExporter::keyOf(const ManagedObject *object) {
    return object->entity()->name() + u'/' + QString::number(object->objectID().number());
}

void JsonDocumentExporter::appendKey(QByteArray &out, const ManagedObject *object) {
    // Entity names are plain ASCII identifiers: nothing to escape.
    out.append('"');
    out.append(object->entity()->name().toLatin1());
    out.append('/');
    out.append(QByteArray::number(object->objectID().number()));
    out.append('"');
}

const EntityDescription *JsonDocumentExporter::uriTargetOf(const EntityDescription *entity,
                                                           const QString &attribute) {
    if (entity->name() == TAEntity::Preferences && attribute == TAKey::lastProjectID)
        return TADocModel::model().entity(TAEntity::Project);
    return nullptr;
}

// The file states the model by name, and import reads it by that name with its own model: a
// document of any other layout, whatever its name, would be read by the wrong rules.
Result<void> JsonDocumentExporter::checkModel() const {
    const ManagedObjectModel &current = TADocModel::model();
    const ManagedObjectModel *model = m_context.model();
    if (model->versionName() != current.versionName() ||
        model->versionHash() != current.versionHash())
        return Error{ErrorCode::FileNewerModel,
                     QStringLiteral("the document is read with the data model “%1”, not with "
                                    "“%2” that JSON files are written in")
                         .arg(model->versionName(), current.versionName())};
    return {};
}

Result<void> JsonDocumentExporter::collect() {
    QList<const EntityDescription *> entities = m_context.model()->entities();
    std::sort(entities.begin(), entities.end(),
              [](auto *a, auto *b) { return a->name() < b->name(); });
    for (const EntityDescription *entity : entities) {
        if (entity->isAbstract())
            continue;
        FetchRequest request(entity->name());
        request.includesSubentities = false;
        auto fetched = m_context.executeFetchRequest(request);
        if (!fetched)
            return fetched.error();
        QList<ManagedObject *> objects = *fetched;
        // A key is the object's number, and the number of an object not saved yet is only a
        // counter that a saved object may have as well: such objects get the keys they will
        // be saved with.
        QList<ManagedObject *> unsaved;
        for (ManagedObject *object : std::as_const(objects))
            if (object->objectID().isTemporaryID())
                unsaved.append(object);
        if (!unsaved.isEmpty())
            m_context.obtainPermanentIDs(unsaved);
        std::sort(objects.begin(), objects.end(), [](ManagedObject *a, ManagedObject *b) {
            return a->objectID().number() < b->objectID().number();
        });
        m_objects.append({entity->name(), objects, propertiesOf(entity)});
    }
    return {};
}

Result<QByteArray> JsonDocumentExporter::exportDocument() {
    QByteArray text;
    QBuffer buffer(&text);
    buffer.open(QIODevice::WriteOnly);
    if (auto written = exportDocument(buffer); !written)
        return written.error();
    return text;
}

Result<void> JsonDocumentExporter::exportDocument(QIODevice &device) {
    m_objects.clear();
    m_numbers.clear();
    if (auto model = checkModel(); !model)
        return model;
    if (auto collected = collect(); !collected)
        return collected.error();
    constexpr qsizetype kChunk = 1 << 20;
    QByteArray out;
    out.reserve(kChunk + (kChunk >> 2));
    const auto flush = [&]() -> Result<void> {
        if (auto written = DocumentFileWriter::writeAll(device, out); !written)
            return written;
        out.resize(0); // keeps the buffer
        return {};
    };
    out.append("{\n  \"format\": ");
    JsonText::appendString(out, kFormat);
    out.append(",\n  \"formatVersion\": ").append(QByteArray::number(kFormatVersion));
    out.append(",\n  \"model\": ");
    JsonText::appendString(out, m_context.model()->versionName());
    out.append(",\n  \"objects\": {");
    bool first = true;
    for (const EntityObjects &group : std::as_const(m_objects)) {
        const qsizetype count = group.objects.size();
        for (qsizetype i = 0; i < count; ++i) {
            // Values and links lead all over memory: they are asked for a few objects ahead.
            if (i + 4 < count) {
                group.objects[i + 4]->prefetchValues();
                group.objects[i + 4]->prefetchLinkTargets();
            }
            const ManagedObject *object = group.objects[i];
            out.append(first ? "\n    " : ",\n    ");
            first = false;
            appendKey(out, object);
            out.append(": ");
            if (auto written = writeObject(out, object, group.properties); !written)
                return written;
            if (out.size() >= kChunk)
                if (auto flushed = flush(); !flushed)
                    return flushed;
        }
    }
    out.append(first ? "}\n}\n" : "\n  }\n}\n");
    if (const auto &error = m_context.lastLoadError())
        return *error;
    return flush();
}

Result<void> JsonDocumentExporter::writeObject(QByteArray &out, const ManagedObject *object,
                                               const QList<Property> &properties) const {
    out.append('{');
    bool first = true;
    for (const Property &property : properties) {
        // The prefix starts with the comma that all but the first member need.
        const qsizetype skip = first ? 1 : 0;
        out.append(property.prefix.constData() + skip, property.prefix.size() - skip);
        first = false;
        if (property.attribute) {
            if (auto written = writeAttribute(out, object, *property.attribute); !written)
                return written;
        } else if (const ManagedObject *target = object->objectForKey(property.name)) {
            appendKey(out, target);
        } else {
            out.append("null");
        }
    }
    out.append(first ? "}" : "\n    }");
    return {};
}

Result<void> JsonDocumentExporter::writeAttribute(QByteArray &out, const ManagedObject *object,
                                                  const AttributeDescription &attribute) const {
    const QVariant *value = object->storedValueForKey(attribute.name);
    if (!value || !value->isValid() || value->isNull()) {
        out.append("null");
        return {};
    }
    switch (attribute.type) {
    case AttributeType::String: {
        const QString text = value->toString();
        const EntityDescription *target = uriTargetOf(object->entity(), attribute.name);
        if (const QString key = keyForUriText(text, target); !key.isEmpty()) {
            out.append("{\"objectURI\": ");
            JsonText::appendString(out, key);
            out.append('}');
        } else {
            JsonText::appendString(out, text);
        }
        return {};
    }
    case AttributeType::Integer:
        out.append(QByteArray::number(value->toLongLong()));
        return {};
    case AttributeType::Boolean:
        out.append(value->toBool() ? "true" : "false");
        return {};
    case AttributeType::Decimal:
        JsonText::appendString(out, Decimal::fromVariant(*value).toString());
        return {};
    case AttributeType::Date: {
        // Import reads four-digit years only: a date beyond them is refused here, by name,
        // rather than written as a file that cannot be read back.
        const QDateTime date = value->toDateTime();
        if (!date.isValid()) {
            out.append("null");
            return {};
        }
        if (!JsonText::isDateInRange(date))
            return Error{ErrorCode::FileDamaged,
                         QStringLiteral("%1.%2: %3 lies outside the years 0001 to 9999 in UTC")
                             .arg(keyOf(object), attribute.name, JsonText::dateText(date))};
        JsonText::appendString(out, JsonText::dateText(date));
        return {};
    }
    case AttributeType::Binary:
        out.append('"').append(value->toByteArray().toBase64()).append('"');
        return {};
    case AttributeType::Float:
        out.append(JsonText::doubleLiteral(value->toDouble()));
        return {};
    }
    return {};
}

QString JsonDocumentExporter::keyForUriText(const QString &text,
                                            const EntityDescription *target) const {
    if (!text.startsWith(QLatin1String("x-")))
        return {};
    const auto parts = ObjectID::parseUri(text);
    if (!parts || parts->temporary || parts->storeUuid != m_context.persistentStore()->uuid())
        return {};
    const EntityDescription *entity = m_context.model()->entity(parts->entityName);
    if (!entity || ObjectID(entity, parts->storeUuid, parts->number, false).uriText() != text)
        return {};
    // Another kind of object than the attribute names stays plain text: import would refuse it.
    if (target && !entity->isKindOfEntity(target))
        return {};
    if (m_numbers.isEmpty())
        for (const EntityObjects &group : m_objects)
            for (const ManagedObject *o : group.objects)
                m_numbers[group.entity].insert(o->objectID().number());
    if (!m_numbers.value(parts->entityName).contains(parts->number))
        return {};
    return parts->entityName + u'/' + QString::number(parts->number);
}
