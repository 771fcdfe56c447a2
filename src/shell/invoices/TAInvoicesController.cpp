#include "shell/invoices/TAInvoicesController.h"

#include "toolkit/OTIcons.h"

TAInvoicesController::TAInvoicesController(TADocument *document, QObject *parent)
    : TASectionController(document, tr("Invoices"), OTIcons::icon(QStringLiteral("groupInvoice")),
                          parent) {}
