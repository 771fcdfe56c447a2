#pragma once

#include "foundation/Result.h"

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class ManagedObject;
class ManagedObjectContext;
class ManagedObjectModel;
class PersistentStore;

// Knows the chain of model versions of a store file: tells which version a file has, opens
// it, and carries it step by step to the latest version through temporary files, so that the
// given file is only ever replaced whole.
class OTVersionManager {
public:
    // A step's routine gets the old context and the new one, in that order, and fills the new.
    using Step = std::function<void(ManagedObjectContext *from, ManagedObjectContext *to)>;
    // Finds a compiled model by its name; null when there is none of that name.
    using ModelLoader = std::function<const ManagedObjectModel *(const QString &name)>;

    struct Version {
        QString version; // "1.2"; ordered as text
        QString model;   // the model's name
        QString type;    // the store type; only "SQLite" exists
        Step step;       // may be empty
    };

    static inline const QString kSQLiteStoreType = QStringLiteral("SQLite");

    void addVersion(const QString &version, const QString &model, const QString &type,
                    Step step = {});
    void setConfiguration(const QString &configuration) { m_configuration = configuration; }
    const QString &configuration() const { return m_configuration; }
    void setBundlePath(const QString &bundlePath) { m_bundlePath = bundlePath; }
    const QString &bundlePath() const { return m_bundlePath; }
    void setModelLoader(ModelLoader loader) { m_loader = std::move(loader); }
    const QList<Version> &versions() const { return m_versions; }

    QString latestVersion() const;
    QString latestModel() const;

    // The first version whose model the file was written with; none for an unknown file.
    std::optional<Version> versionInformationForURL(const QString &path) const;
    QString modelForURL(const QString &path) const;

    // A context on the file with its recognised model, and the store it sits on; the reason
    // the file could not be opened otherwise. The store lives as long as the context's shared
    // handle.
    Result<std::unique_ptr<ManagedObjectContext>>
    managedObjectContextForURL(const QString &path) const;

    // Null for success and for nothing to do; otherwise the reason, with the file untouched.
    std::optional<Error> upgradeToTheLatestVersionURL(const QString &path) const;

    // A new object of the same entity in the target context with every stored attribute that
    // the target entity also has.
    static ManagedObject *copyObject(ManagedObject *object, ManagedObjectContext *context);
    // Copies objects in two passes: first every object of the named (or all) concrete
    // entities, then the links among the copies. Answers the copies by source URI text.
    static QHash<QString, ManagedObject *>
    copyObjectsWithEntities(const std::optional<QStringList> &entities,
                            ManagedObjectContext *fromContext, ManagedObjectContext *toContext);
    static QHash<QString, ManagedObject *> copyAllObjectsFromContext(ManagedObjectContext *from,
                                                                     ManagedObjectContext *to);
    static void removeAllObjectsFromContext(ManagedObjectContext *context);

private:
    const ManagedObjectModel *loadModel(const QString &name) const;
    std::optional<Error> runStep(const Version &oldVersion, const Version &newVersion,
                                 const QString &current, const QString &next) const;

    QString m_configuration;
    QString m_bundlePath;
    QList<Version> m_versions;
    ModelLoader m_loader;
};
