#include "store/TAProjectQueries.h"

#include "objectstore/ManagedObjectContext.h"
#include "store/TAContextFetching.h"
#include "store/TAContextUndo.h"
#include "store/TAEntityQueries.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"

namespace {
namespace E = TAEntity;
namespace K = TAKey;
using Fetch = TAContextFetching;
using Cmp = SortDescriptor::Comparison;

constexpr int kProjectStatusClosed = 3;
} // namespace

QList<TAProject *> TAProjectQueries::getProjectsInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TAProject>(E::Project, QStringLiteral("allProjects"), context);
}

QList<TAProject *> TAProjectQueries::getProjectsWithClient(TAClient *client,
                                                           ManagedObjectContext *context) {
    const Predicate predicate =
        Fetch::predicateWithFormat(QStringLiteral("client == %@"), {Fetch::objectArgument(client)});
    return Fetch::objectsAs<TAProject>(Fetch::fetchEntity(E::Project, predicate, context));
}

QList<TAProject *>
TAProjectQueries::getProjectsSortedByNameInContext(ManagedObjectContext *context) {
    return Fetch::sorted(getProjectsInContext(context), {{K::name, true, Cmp::LocalizedStandard}});
}

QList<TAProject *> TAProjectQueries::getProjectsWithStatus(int status,
                                                           ManagedObjectContext *context) {
    const Predicate predicate =
        Fetch::predicateWithFormat(QStringLiteral("status == %@"), {status});
    return Fetch::objectsAs<TAProject>(Fetch::fetchEntity(E::Project, predicate, context));
}

QList<TAProject *> TAProjectQueries::getProjectsWithStatus(int status, TAClient *client,
                                                           ManagedObjectContext *context) {
    const Predicate predicate = Fetch::predicateWithFormat(
        QStringLiteral("status == %@ && client == %@"), {status, Fetch::objectArgument(client)});
    return Fetch::objectsAs<TAProject>(Fetch::fetchEntity(E::Project, predicate, context));
}

QList<TAProject *> TAProjectQueries::getActiveProjectsInContext(ManagedObjectContext *context) {
    QList<TAProject *> projects = getProjectsInContext(context);
    projects.removeIf([](TAProject *project) { return project->status() == kProjectStatusClosed; });
    return projects;
}

TAProject *TAProjectQueries::getLastProjectInContext(ManagedObjectContext *context) {
    TAPreferences *preferences = TAEntityQueries::getPreferencesInContext(context);
    const QList<TAProject *> projects = getProjectsSortedByNameInContext(context);
    const QString lastID = preferences ? preferences->lastProjectID() : QString();
    if (!lastID.isEmpty()) {
        for (TAProject *project : projects)
            if (project->uriText() == lastID)
                return project;
    }
    if (projects.isEmpty())
        return nullptr;
    TAProject *first = projects.first();
    TAContextUndo::disableUndoRegistrationInContext(context);
    preferences->setLastProjectID(first->uriText());
    TAContextUndo::enableUndoRegistrationInContext(context);
    return first;
}
