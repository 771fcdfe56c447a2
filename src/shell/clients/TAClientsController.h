#pragma once

#include "shell/window/TASectionController.h"

// The clients section.
class TAClientsController : public TASectionController {
    Q_OBJECT
public:
    explicit TAClientsController(TADocument *document, QObject *parent = nullptr);
};
