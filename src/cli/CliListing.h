#pragma once

#include <QList>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

class ManagedObject;

// What `list` shows of one kind of object: the entity, its columns and where each value comes
// from. Stored fields and computed ones alike are read by key path, so values that the billing
// rules compute appear once those rules answer their keys, and read as empty until then.
struct CliColumn {
    enum class Kind { Text, Integer, Boolean, Decimal, Money, Date };
    QString name;
    QString keyPath; // empty when `compute` gives the value
    Kind kind = Kind::Text;
    std::function<QVariant(const ManagedObject &)> compute = {};
};

struct CliListing {
    QString kind;
    QString entity;
    bool includesSubentities = false;
    QString currencyKeyPath; // the code that money columns are in
    QList<CliColumn> columns;

    static QStringList kinds();
    static std::optional<CliListing> forKind(const QString &kind);

    QVariant value(const CliColumn &column, const ManagedObject &object) const;
    QString currencyCode(const ManagedObject &object, const QString &fallback) const;
};
