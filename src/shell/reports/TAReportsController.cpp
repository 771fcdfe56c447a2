#include "shell/reports/TAReportsController.h"

#include "toolkit/OTIcons.h"

TAReportsController::TAReportsController(TADocument *document, QObject *parent)
    : TASectionController(document, tr("Reports"), OTIcons::icon(QStringLiteral("groupReports")),
                          parent) {}
