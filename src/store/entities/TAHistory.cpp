#include "store/entities/TAHistory.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAProject.h"

QDateTime TAHistory::date() const {
    return dateForKey(TAKey::date);
}

void TAHistory::setDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::date, value);
}

int TAHistory::type() const {
    return int(integerForKey(TAKey::type));
}

void TAHistory::setType(int value) {
    EntityValues::setInteger(this, TAKey::type, value);
}

qint64 TAHistory::intValue() const {
    return integerForKey(TAKey::intValue);
}

void TAHistory::setIntValue(qint64 value) {
    EntityValues::setInteger(this, TAKey::intValue, value);
}

QDateTime TAHistory::dateValue() const {
    return dateForKey(TAKey::dateValue);
}

void TAHistory::setDateValue(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::dateValue, value);
}

TAProject *TAHistory::project() const {
    return objectForKeyAs<TAProject>(TAKey::project);
}

void TAHistory::setProject(TAProject *value) {
    setObjectForKey(value, TAKey::project);
}

TAInvoice *TAHistory::invoice() const {
    return objectForKeyAs<TAInvoice>(TAKey::invoice);
}

void TAHistory::setInvoice(TAInvoice *value) {
    setObjectForKey(value, TAKey::invoice);
}

TAInvoice *TAHistory::relatedInvoice() const {
    return objectForKeyAs<TAInvoice>(TAKey::relatedInvoice);
}

void TAHistory::setRelatedInvoice(TAInvoice *value) {
    setObjectForKey(value, TAKey::relatedInvoice);
}

TAPayment *TAHistory::relatedPayment() const {
    return objectForKeyAs<TAPayment>(TAKey::relatedPayment);
}

void TAHistory::setRelatedPayment(TAPayment *value) {
    setObjectForKey(value, TAKey::relatedPayment);
}

TAProject *TAHistory::relatedProject() const {
    return objectForKeyAs<TAProject>(TAKey::relatedProject);
}

void TAHistory::setRelatedProject(TAProject *value) {
    setObjectForKey(value, TAKey::relatedProject);
}

TAClient *TAHistory::relatedClient() const {
    return objectForKeyAs<TAClient>(TAKey::relatedClient);
}

void TAHistory::setRelatedClient(TAClient *value) {
    setObjectForKey(value, TAKey::relatedClient);
}
