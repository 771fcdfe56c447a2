#pragma once

#include "cli/CliListing.h"
#include "foundation/Result.h"

#include <QString>
#include <QStringList>

class EntityDescription;
struct AttributeDescription;

// Checks the keys that `list --where` and `--sort` name against the objects of a listing, so
// that a misspelt key is an error rather than an empty or unsorted list. A listing's column
// name stands for its key path ("client" for "client.displayName").
class CliListingKeys {
public:
    explicit CliListingKeys(const CliListing &listing);

    // The predicate text with column names written as their key paths.
    Result<QString> where(const QString &predicate) const;
    Result<QString> sortKeyPath(const QString &key) const;

private:
    // What a key path ends at: a stored attribute, or null for a link or a computed value.
    Result<const AttributeDescription *> resolve(const QString &path) const;
    // The computed keys the listings read from objects of that entity.
    static QStringList computedKeys(const EntityDescription *entity);
    QString columnKeyPath(const QString &name, QString *computedColumn) const;

    const CliListing &m_listing;
    const EntityDescription *m_entity;
};
