#pragma once

#include <QList>
#include <QString>

class ManagedObjectModel;
class OTVersionManager;

// The model versions of the document format, "TADoc_1.0" to "TADoc_1.3". The latest is the
// real schema; the earlier ones are kept as the layouts they wrote, so that their files are
// recognised by hash and upgraded in place on opening (every change since only added to them).
class TADocModelVersions {
public:
    // The model of that name; null for an unknown name.
    static const ManagedObjectModel *modelNamed(const QString &name);
    // Earlier models, oldest first.
    static QList<const ManagedObjectModel *> olderModels();
    // Versions "1.0" to "1.3" of the SQLite type, with no conversion routine.
    static void registerVersions(OTVersionManager &manager);

private:
    TADocModelVersions() = delete;
};
