#pragma once

#include "foundation/Result.h"
#include "objectstore/EntityDescription.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <memory>
#include <vector>

class Predicate;

// A named fetch: an entity and a predicate text that may use $param1..$param3.
struct FetchRequestTemplate {
    QString entityName;
    QString predicateFormat; // empty: all objects
};

// Entities, their properties and the named fetch templates, under a version name. The hash
// covers what the file layout depends on (entities, attribute names and types, links), so a
// file tells which model wrote it.
class ManagedObjectModel {
public:
    explicit ManagedObjectModel(QString versionName);
    ManagedObjectModel(const ManagedObjectModel &) = delete;
    ManagedObjectModel &operator=(const ManagedObjectModel &) = delete;

    EntityDescription &addEntity(const QString &name, const QString &parentName = {},
                                 bool abstract = false);
    void addFetchRequestTemplate(const QString &name, FetchRequestTemplate fetchTemplate);

    // Resolves parents, inherited properties and inverses. Reports the first inconsistency.
    Result<void> finish();
    bool isFinished() const { return m_finished; }

    const QString &versionName() const { return m_versionName; }
    QByteArray versionHash() const { return m_hash; } // hex text of a SHA-256
    const EntityDescription *entity(const QString &name) const;
    QList<const EntityDescription *> entities() const;
    const FetchRequestTemplate *fetchRequestTemplate(const QString &name) const;
    // The template's text parsed once when the model is finished; null where it is empty or
    // does not parse. The rules ask for some templates once per object they compute.
    std::shared_ptr<const Predicate> fetchRequestTemplatePredicate(const QString &name) const;
    QStringList fetchRequestTemplateNames() const;

private:
    QString m_versionName;
    std::vector<std::unique_ptr<EntityDescription>> m_entities;
    QHash<QString, EntityDescription *> m_byName;
    QHash<QString, FetchRequestTemplate> m_templates;
    QHash<QString, std::shared_ptr<const Predicate>> m_templatePredicates;
    QByteArray m_hash;
    bool m_finished = false;
};
