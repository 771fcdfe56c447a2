#include "objectstore/ManagedObjectModel.h"

#include "objectstore/Predicate.h"

#include <QCryptographicHash>
#include <QSet>

#include <algorithm>

ManagedObjectModel::ManagedObjectModel(QString versionName)
    : m_versionName(std::move(versionName)) {}

EntityDescription &ManagedObjectModel::addEntity(const QString &name, const QString &parentName,
                                                 bool abstract) {
    m_entities.push_back(std::make_unique<EntityDescription>(name, parentName, abstract));
    m_byName.insert(name, m_entities.back().get());
    return *m_entities.back();
}

void ManagedObjectModel::addFetchRequestTemplate(const QString &name,
                                                 FetchRequestTemplate fetchTemplate) {
    m_templates.insert(name, std::move(fetchTemplate));
}

namespace {
const char *typeName(AttributeType type) {
    switch (type) {
    case AttributeType::String:
        return "string";
    case AttributeType::Integer:
        return "integer";
    case AttributeType::Boolean:
        return "boolean";
    case AttributeType::Decimal:
        return "decimal";
    case AttributeType::Date:
        return "date";
    case AttributeType::Binary:
        return "binary";
    case AttributeType::Float:
        return "float";
    }
    return "?";
}
} // namespace

Result<void> ManagedObjectModel::finish() {
    // Parents before children, so inherited properties are complete when a child resolves.
    std::vector<EntityDescription *> ordered;
    QSet<const EntityDescription *> placed;
    while (ordered.size() < m_entities.size()) {
        bool progress = false;
        for (auto &e : m_entities) {
            if (placed.contains(e.get()))
                continue;
            EntityDescription *parent = nullptr;
            if (!e->m_parentName.isEmpty()) {
                parent = m_byName.value(e->m_parentName);
                if (!parent)
                    return Error{ErrorCode::Generic,
                                 QStringLiteral("Entity %1 has an unknown parent %2.")
                                     .arg(e->m_name, e->m_parentName)};
                if (!placed.contains(parent))
                    continue;
            }
            e->m_super = parent;
            ordered.push_back(e.get());
            placed.insert(e.get());
            progress = true;
        }
        if (!progress)
            return Error{ErrorCode::Generic, QStringLiteral("The entity tree has a cycle.")};
    }
    for (auto &e : m_entities) {
        e->m_directSubentities.clear();
        e->m_allSubentities.clear();
    }
    for (EntityDescription *e : ordered) {
        e->resolve(this, -1);
        for (const EntityDescription *p = e->m_super; p; p = p->m_super)
            const_cast<EntityDescription *>(p)->m_allSubentities.append(e);
        if (e->m_super)
            const_cast<EntityDescription *>(e->m_super)->m_directSubentities.append(e);
    }
    for (int i = 0; i < int(m_entities.size()); ++i)
        m_entities[i]->m_index = i;

    for (auto &e : m_entities) {
        for (auto &r : e->m_relationships) {
            EntityDescription *dest = m_byName.value(r.destinationEntityName);
            if (!dest)
                return Error{ErrorCode::Generic,
                             QStringLiteral("%1.%2 points at an unknown entity %3.")
                                 .arg(e->m_name, r.name, r.destinationEntityName)};
            r.destination = dest;
            if (r.toMany && r.inverseName.isEmpty())
                return Error{ErrorCode::Generic,
                             QStringLiteral("%1.%2 is to-many and needs an inverse.")
                                 .arg(e->m_name, r.name)};
        }
    }
    // Inverses point into the destination's resolved list, so resolve them in a second pass.
    for (auto &e : m_entities) {
        for (auto &r : e->m_relationships) {
            if (r.inverseName.isEmpty())
                continue;
            const RelationshipDescription *inverse = nullptr;
            for (const auto &candidate : r.destination->m_relationships)
                if (candidate.name == r.inverseName)
                    inverse = &candidate;
            if (!inverse)
                return Error{ErrorCode::Generic, QStringLiteral("%1.%2 has an unknown inverse %3.")
                                                     .arg(e->m_name, r.name, r.inverseName)};
            if (r.toMany && inverse->toMany)
                return Error{ErrorCode::Generic,
                             QStringLiteral("%1.%2: many-to-many links are not supported.")
                                 .arg(e->m_name, r.name)};
            r.inverse = inverse;
            r.inverseSlot = r.destination->slot(r.inverseName)->index;
        }
    }

    QCryptographicHash hash(QCryptographicHash::Sha256);
    auto sorted = ordered;
    std::sort(sorted.begin(), sorted.end(), [](auto *a, auto *b) { return a->m_name < b->m_name; });
    for (const EntityDescription *e : sorted) {
        hash.addData(QStringLiteral("E:%1:%2:%3;")
                         .arg(e->m_name, e->m_parentName)
                         .arg(e->m_abstract)
                         .toUtf8());
        QStringList props;
        for (const auto &a : e->m_ownAttributes)
            props.append(QStringLiteral("A:%1:%2:%3")
                             .arg(a.name, QLatin1String(typeName(a.type)))
                             .arg(a.transient));
        for (const auto &r : e->m_ownRelationships)
            props.append(QStringLiteral("R:%1:%2:%3:%4")
                             .arg(r.name, r.destinationEntityName, r.inverseName)
                             .arg(r.toMany));
        props.sort();
        hash.addData(props.join(u';').toUtf8());
    }
    m_hash = hash.result().toHex();
    for (auto it = m_templates.cbegin(); it != m_templates.cend(); ++it)
        if (!it->predicateFormat.isEmpty())
            if (auto parsed = Predicate::parse(it->predicateFormat))
                m_templatePredicates.insert(it.key(),
                                            std::make_shared<const Predicate>(std::move(*parsed)));
    m_finished = true;
    return {};
}

const EntityDescription *ManagedObjectModel::entity(const QString &name) const {
    return m_byName.value(name);
}

QList<const EntityDescription *> ManagedObjectModel::entities() const {
    QList<const EntityDescription *> list;
    for (const auto &e : m_entities)
        list.append(e.get());
    return list;
}

const FetchRequestTemplate *ManagedObjectModel::fetchRequestTemplate(const QString &name) const {
    auto it = m_templates.constFind(name);
    return it == m_templates.cend() ? nullptr : &it.value();
}

std::shared_ptr<const Predicate>
ManagedObjectModel::fetchRequestTemplatePredicate(const QString &name) const {
    return m_templatePredicates.value(name);
}

QStringList ManagedObjectModel::fetchRequestTemplateNames() const {
    QStringList names = m_templates.keys();
    names.sort();
    return names;
}
