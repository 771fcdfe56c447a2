#pragma once

#include "shell/window/TASectionController.h"

// The item catalogue section.
class TAInventoryController : public TASectionController {
    Q_OBJECT
public:
    explicit TAInventoryController(TADocument *document, QObject *parent = nullptr);
};
