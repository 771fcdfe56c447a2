#pragma once

#include "objectstore/ManagedObjectModel.h"

// The schema of a document file: every entity with its class, the defaults new objects need,
// and the named fetch templates that the access layer looks up.
class TADocModel {
public:
    static inline const QString kVersionName = QStringLiteral("TADoc_1.3");

    // The current model, built once per process on first use; safe to call from any thread.
    static const ManagedObjectModel &model();

private:
    TADocModel() = delete;
};
