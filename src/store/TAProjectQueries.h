#pragma once

#include <QList>

class ManagedObjectContext;
class TAClient;
class TAProject;

// Project lookups for code that holds a context; the context comes last.
class TAProjectQueries {
public:
    static QList<TAProject *> getProjectsInContext(ManagedObjectContext *context);
    static QList<TAProject *> getProjectsWithClient(TAClient *client,
                                                    ManagedObjectContext *context);
    static QList<TAProject *> getProjectsSortedByNameInContext(ManagedObjectContext *context);
    static QList<TAProject *> getProjectsWithStatus(int status, ManagedObjectContext *context);
    static QList<TAProject *> getProjectsWithStatus(int status, TAClient *client,
                                                    ManagedObjectContext *context);
    static QList<TAProject *> getActiveProjectsInContext(ManagedObjectContext *context);
    // The project last worked on, or else the first by name, which then becomes the last.
    static TAProject *getLastProjectInContext(ManagedObjectContext *context);

private:
    TAProjectQueries() = delete;
};
