#include "shell/recurring/TARecurringController.h"

#include "toolkit/OTIcons.h"

TARecurringController::TARecurringController(TADocument *document, QObject *parent)
    : TASectionController(document, tr("Recurring"), OTIcons::icon(QStringLiteral("groupCalendar")),
                          parent) {}
