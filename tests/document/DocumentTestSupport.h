#pragma once

#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "document/TAInvoiceCacheUpdater.h"
#include "foundation/money/Decimal.h"
#include "objectstore/ObjectID.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

// Failure messages show texts and identities as text.
inline void PrintTo(const QString &text, std::ostream *out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const ObjectID &id, std::ostream *out) {
    *out << id.uriText().toStdString();
}

// One application object for all tests: documents need an event loop for their timers and
// for the values the cache worker sends back.
inline void ensureApplication() {
    static int argc = 1;
    static char name[] = "document-tests";
    static char *argv[] = {name, nullptr};
    static QCoreApplication *app =
        QCoreApplication::instance() ? nullptr : new QCoreApplication(argc, argv);
    (void)app;
}

// Runs the event loop until the condition holds; false when it never does.
inline bool spinUntil(const std::function<bool()> &condition, int limitMs = 20000) {
    QDeadlineTimer deadline(limitMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

// Runs the event loop until the document's cache worker has finished all it was given and its
// values have been applied; false when it never does.
inline bool waitForCacheWorker(TADocument *document) {
    return spinUntil([document] { return document->cacheUpdater().isIdle(); });
}

inline Decimal dec(const char *text) {
    return Decimal::fromString(QString::fromLatin1(text));
}

inline TADocumentController &controller() {
    return TADocumentController::sharedDocumentController();
}

// Closes whatever a test left open.
struct ClosesDocuments {
    ~ClosesDocuments() {
        for (TADocument *document : controller().documents())
            controller().closeDocument(document);
    }
};
