#include "shell/clients/TAClientsController.h"

#include "toolkit/OTIcons.h"

TAClientsController::TAClientsController(TADocument *document, QObject *parent)
    : TASectionController(document, tr("Clients"), OTIcons::icon(QStringLiteral("groupClients")),
                          parent) {}
