#include "importsync/sample/SampleDocument.h"

#include "document/OTVersionManager.h"
#include "document/TADocument.h"
#include "document/TAInvoiceCacheUpdater.h"
#include "foundation/Check.h"
#include "objectstore/DocumentFileWriter.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/FetchRequest.h"
#include "objectstore/ManagedObject.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"
#include "store/entities/TAKeys.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

namespace {

const QString kDocument = QStringLiteral(":/sample/Sample.tadb");
const QString kAnchor = QStringLiteral(":/sample/Sample.anchor");

Error missing(const QString &what) {
    return Error{ErrorCode::FileMissing,
                 QStringLiteral("The sample document is not part of this build (%1).").arg(what)};
}

bool isDesignEntity(const EntityDescription *entity) {
    return entity->name().startsWith(QLatin1String("InvoiceTemplate")) ||
           entity->name() == QLatin1String("InvoiceElement");
}

} // namespace

Result<QDate> SampleDocument::anchor() {
    QFile file(kAnchor);
    if (!file.open(QIODevice::ReadOnly))
        return missing(kAnchor);
    const QDate day = QDate::fromString(QString::fromLatin1(file.readAll().trimmed()), Qt::ISODate);
    if (!day.isValid())
        return Error{ErrorCode::FileDamaged, QStringLiteral("The sample's day is not a date.")};
    return day;
}

Result<qint64> SampleDocument::daysTo(const QDateTime &now) {
    auto day = anchor();
    if (!day)
        return day.error();
    return day->daysTo(now.toLocalTime().date());
}

Result<QString> SampleDocument::extract(const QString &folder) {
    const QString copy = QDir(folder).filePath(QStringLiteral("Sample.tadb"));
    QFile source(kDocument);
    if (!source.open(QIODevice::ReadOnly))
        return missing(kDocument);
    auto failed = [&copy](const QString &reason) {
        return Error{ErrorCode::WriteFailed,
                     QStringLiteral("The sample document could not be copied to %1 (%2).")
                         .arg(copy, reason)};
    };
    QSaveFile target(copy);
    if (!target.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failed(target.errorString());
    if (auto written = DocumentFileWriter::writeAll(target, source.readAll()); !written)
        return failed(written.error().message);
    if (!target.commit())
        return failed(target.errorString());
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    return copy;
}

Result<void> SampleDocument::copyInto(TADocument &document, const QDateTime &now) {
    auto days = daysTo(now);
    if (!days)
        return days.error();
    QTemporaryDir folder;
    if (!folder.isValid())
        return Error{ErrorCode::WriteFailed, folder.errorString()};
    auto path = extract(folder.path());
    if (!path)
        return path.error();
    auto opened = TADocument::versionManager().managedObjectContextForURL(*path);
    if (!opened)
        return Error{ErrorCode::FileDamaged,
                     QStringLiteral("The sample document could not be read: %1")
                         .arg(opened.error().message)};
    const std::unique_ptr<ManagedObjectContext> &source = opened.value();
    ManagedObjectContext *target = document.managedObjectContext();
    BF_CHECK(target,
             return Error{ErrorCode::Generic, QStringLiteral("The document is not open.")});
    // As the document replaces its contents with a copy of a file, keeping the copies' map.
    document.database().disableUndoRegistration();
    document.cacheUpdater().resetCacheUpdater();
    target->reset();
    keepChangeDates(*source, OTVersionManager::copyAllObjectsFromContext(source.get(), target));
    document.resetPreferences();
    document.database().enableUndoRegistration();
    moveDates(*target, *days);
    return {};
}

// Linking the copies goes through the items' change rules, which stamp `updateDate` with the
// time of copying; the sample's own change dates are put back, to move with the others.
void SampleDocument::keepChangeDates(ManagedObjectContext &source,
                                     const QHash<QString, ManagedObject *> &copies) {
    for (auto it = copies.cbegin(); it != copies.cend(); ++it) {
        if (!it.value()->entity()->attribute(TAKey::updateDate))
            continue;
        if (const ManagedObject *original = source.objectWithURI(it.key()))
            it.value()->setPrimitiveValueForKey(original->primitiveValueForKey(TAKey::updateDate),
                                                TAKey::updateDate);
    }
}

void SampleDocument::moveDates(ManagedObjectContext &context, qint64 days) {
    if (days == 0)
        return;
    for (const EntityDescription *entity : context.model()->entities()) {
        if (entity->isAbstract() || isDesignEntity(entity))
            continue;
        QStringList dateKeys;
        for (const AttributeDescription &attribute : entity->attributes())
            if (attribute.type == AttributeType::Date && !attribute.transient)
                dateKeys << attribute.name;
        if (dateKeys.isEmpty())
            continue;
        FetchRequest request(entity->name());
        request.includesSubentities = false;
        auto objects = context.executeFetchRequest(request);
        if (!objects) {
            // The sample stays usable with these dates where they were.
            qWarning("The dates of %s were not moved: %s", qUtf8Printable(entity->name()),
                     qUtf8Printable(objects.error().message));
            continue;
        }
        for (ManagedObject *object : *objects)
            for (const QString &key : dateKeys) {
                const QDateTime date = object->primitiveValueForKey(key).toDateTime();
                if (date.isValid())
                    object->setPrimitiveValueForKey(date.addDays(days), key);
            }
    }
}
