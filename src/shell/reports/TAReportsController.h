#pragma once

#include "shell/window/TASectionController.h"

// The reports section.
class TAReportsController : public TASectionController {
    Q_OBJECT
public:
    explicit TAReportsController(TADocument *document, QObject *parent = nullptr);
    bool canPrint() const override { return true; }
};
