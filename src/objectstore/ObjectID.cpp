#include "objectstore/ObjectID.h"

#include "objectstore/EntityDescription.h"
#include "objectstore/PersistentStore.h"

#include <QStringList>

namespace {
const QString kScheme = QStringLiteral("x-billfold://");
}

ObjectID::ObjectID(const EntityDescription *entity, QString storeUuid, qint64 number,
                   bool temporary)
    : m_entity(entity)
    , m_storeUuid(std::move(storeUuid))
    , m_number(number)
    , m_temporary(temporary) {}

QString ObjectID::entityName() const {
    return m_entity ? m_entity->name() : QString();
}

QString ObjectID::uriText() const {
    if (!m_entity)
        return {};
    return kScheme + m_storeUuid + u'/' + m_entity->name() + u'/' + (m_temporary ? u't' : u'p') +
           QString::number(m_number);
}

std::optional<ObjectID::UriParts> ObjectID::parseUri(const QString &text) {
    if (!text.startsWith(kScheme))
        return std::nullopt;
    const QStringList parts = text.mid(kScheme.size()).split(u'/');
    if (parts.size() != 3 || parts[0].isEmpty() || parts[1].isEmpty() || parts[2].size() < 2)
        return std::nullopt;
    const QChar kind = parts[2].front();
    if (kind != u'p' && kind != u't')
        return std::nullopt;
    bool ok = false;
    const qint64 number = parts[2].mid(1).toLongLong(&ok);
    if (!ok || !PersistentStore::isObjectNumber(number))
        return std::nullopt;
    return UriParts{parts[0], parts[1], number, kind == u't'};
}

bool ObjectID::operator==(const ObjectID &other) const {
    return m_entity == other.m_entity && m_number == other.m_number &&
           m_temporary == other.m_temporary && m_storeUuid == other.m_storeUuid;
}

size_t qHash(const ObjectID &id, size_t seed) {
    return qHashMulti(seed, id.entity(), id.number(), id.isTemporaryID());
}
