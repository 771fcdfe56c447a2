#pragma once

#include "foundation/Result.h"

#include <QDate>
#include <QDateTime>
#include <QHash>

class ManagedObject;
class ManagedObjectContext;
class TADocument;

// The sample business a new user can explore. It is copied out of the compiled-in sample
// document into a new one, so the shipped copy is never written to, and its dates move by
// whole days so that the business looks as recent as on the day the sample was written.
class SampleDocument {
public:
    // Writes the compiled-in sample into the folder ("Sample.tadb"), since the store opens
    // files only, and answers its path.
    static Result<QString> extract(const QString &folder);

    // Replaces the contents of a new document with a copy of the sample, as the welcome
    // window's sample command does, and moves the dates to the day of `now`.
    static Result<void> copyInto(TADocument &document, const QDateTime &now);

    // The day the sample's dates are written relative to.
    static Result<QDate> anchor();
    // Whole days from that day to the day of `now` (local time).
    static Result<qint64> daysTo(const QDateTime &now);

    // Moves every date of the business by whole days. The invoice designs keep theirs: a
    // design's creation date tells the built-in set's order.
    static void moveDates(ManagedObjectContext &context, qint64 days);

private:
    static void keepChangeDates(ManagedObjectContext &source,
                                const QHash<QString, ManagedObject *> &copies);
};
