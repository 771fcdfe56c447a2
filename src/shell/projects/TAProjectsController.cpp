#include "shell/projects/TAProjectsController.h"

#include "toolkit/OTIcons.h"

TAProjectsController::TAProjectsController(TADocument *document, QObject *parent)
    : TASectionController(document, tr("Projects"), OTIcons::icon(QStringLiteral("groupProjects")),
                          parent) {}
