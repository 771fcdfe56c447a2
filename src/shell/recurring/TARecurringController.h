#pragma once

#include "shell/window/TASectionController.h"

// The recurring invoices section.
class TARecurringController : public TASectionController {
    Q_OBJECT
public:
    explicit TARecurringController(TADocument *document, QObject *parent = nullptr);
    bool canPrint() const override { return true; }
};
