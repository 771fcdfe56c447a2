#include "store/entities/TAProject.h"

#include "billing/dates/OTClock.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACodes.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAItem.h"
#include "store/entities/TAKeys.h"

QString TAProject::name() const {
    return stringForKey(TAKey::name);
}

void TAProject::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

QString TAProject::notes() const {
    return stringForKey(TAKey::notes);
}

void TAProject::setNotes(const QString &value) {
    EntityValues::setString(this, TAKey::notes, value);
}

QDateTime TAProject::dueDate() const {
    return dateForKey(TAKey::dueDate);
}

void TAProject::setDueDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::dueDate, value);
}

int TAProject::status() const {
    return int(integerForKey(TAKey::status));
}

void TAProject::setStatus(int value) {
    EntityValues::setInteger(this, TAKey::status, value);
}

TAClient *TAProject::client() const {
    return objectForKeyAs<TAClient>(TAKey::client);
}

void TAProject::setClient(TAClient *value) {
    setObjectForKey(value, TAKey::client);
}

QList<TAItem *> TAProject::items() const {
    return objectsForKeyAs<TAItem>(TAKey::items);
}

QList<TAInvoice *> TAProject::invoices() const {
    return objectsForKeyAs<TAInvoice>(TAKey::invoices);
}

QList<TAHistory *> TAProject::history() const {
    return objectsForKeyAs<TAHistory>(TAKey::history);
}

int TAProject::projectStatus() const {
    return TACodes::foldedProjectStatus(integerForKey(TAKey::status));
}

void TAProject::setProjectStatus(int status) {
    setStatus(status);
}

void TAProject::awakeFromInsert() {
    TAObject::awakeFromInsert();
    setDueDate(OTClock::now());
    setStatus(TACodes::ProjectDraft);
}

QStringList TAProject::relationshipsToCopy() const {
    return {TAKey::items};
}

QStringList TAProject::relationshipsToLink() const {
    return {TAKey::client};
}
