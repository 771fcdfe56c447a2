#include "shell/inventory/TAInventoryController.h"

#include "toolkit/OTIcons.h"

TAInventoryController::TAInventoryController(TADocument *document, QObject *parent)
    : TASectionController(document, tr("Inventory"),
                          OTIcons::icon(QStringLiteral("groupInventory")), parent) {}
