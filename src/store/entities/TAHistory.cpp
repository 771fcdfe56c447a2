#include "store/entities/TAHistory.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAProject.h"

#include "foundation/dates/OTDate.h"
#include "foundation/money/OTNumberText.h"
#include "store/TAContextDatabase.h"

#include <QCoreApplication>

namespace {
TAHistory *newRecord(ManagedObject *subject, int type) {
    ManagedObjectContext *context = subject ? subject->managedObjectContext() : nullptr;
    if (!context)
        return nullptr;
    TAHistory *record = TAContextDatabase::createHistoryWithCurrentDateInContext(context);
    record->setType(type);
    return record;
}

TAHistory *newProjectRecord(TAProject *project, int type) {
    TAHistory *record = newRecord(project, type);
    if (record)
        record->setProject(project);
    return record;
}

TAHistory *newInvoiceRecord(TAInvoice *invoice, int type) {
    TAHistory *record = newRecord(invoice, type);
    if (record)
        record->setInvoice(invoice);
    return record;
}

// "Words: detail"; the separator stays when the detail is empty, as the log has always shown.
QString withDetail(const QString &head, const QString &detail) {
    return head + QStringLiteral(": ") + detail;
}

QString projectStatusText(qint64 status) {
    switch (status) {
    case 1:
        return QCoreApplication::translate("TAHistory", "Status changed to Draft");
    case 2:
        return QCoreApplication::translate("TAHistory", "Status changed to Active");
    case 3:
        return QCoreApplication::translate("TAHistory", "Status changed to Closed");
    default:
        return QCoreApplication::translate("TAHistory", "Status changed");
    }
}

QString sentToText(TAClient *client) {
    QString name = client ? client->emailValue() : QString();
    if (name.isEmpty() && client)
        name = client->displayName();
    if (name.isEmpty())
        name = QCoreApplication::translate("TAHistory", "[empty]");
    return withDetail(QCoreApplication::translate("TAHistory", "Sent to client"), name);
}

QString paymentText(TAPayment *payment) {
    return withDetail(
        QCoreApplication::translate("TAHistory", "Payment received"),
        payment ? OTNumberText::currencyFormatter(payment->amount(), payment->currencyCode())
                : QString());
}
} // namespace

QList<int> TAHistory::allProjectHistoryTypes() {
    return {0, 1, 4, 5, 6, 7, 8, 9};
}

QList<int> TAHistory::allInvoiceHistoryTypes() {
    return {1, 2, 3, 4, 5, 6};
}

TAHistory *TAHistory::addProjectCreatedRecord(TAProject *project) {
    return newProjectRecord(project, ProjectCreated);
}

TAHistory *TAHistory::addProjectClientChangedRecord(TAProject *project) {
    TAHistory *record = newProjectRecord(project, ProjectClientChanged);
    if (record)
        record->setRelatedClient(project->client());
    return record;
}

TAHistory *TAHistory::addProjectClientDeletedRecord(TAProject *project) {
    return newProjectRecord(project, ProjectClientDeleted);
}

TAHistory *TAHistory::addProjectInvoiceCreatedRecord(TAProject *project, TAInvoice *invoice) {
    TAHistory *record = newProjectRecord(project, ProjectInvoiceCreated);
    if (record)
        record->setRelatedInvoice(invoice);
    return record;
}

TAHistory *TAHistory::addProjectInvoiceDeletedRecord(TAProject *project) {
    return newProjectRecord(project, ProjectInvoiceDeleted);
}

TAHistory *TAHistory::addProjectStatusChangedRecord(TAProject *project) {
    TAHistory *record = newProjectRecord(project, ProjectStatusChanged);
    if (record)
        record->setIntValue(project->status());
    return record;
}

TAHistory *TAHistory::addProjectDueDateCahngedRecord(TAProject *project) {
    TAHistory *record = newProjectRecord(project, ProjectDueDateChanged);
    if (record)
        record->setDateValue(project->dueDate());
    return record;
}

void TAHistory::addProjectHistoryRecords(TAProject *project) {
    if (!project)
        return;
    if (project->client())
        addProjectClientChangedRecord(project);
    addProjectStatusChangedRecord(project);
    addProjectDueDateCahngedRecord(project);
}

TAHistory *TAHistory::addInvoiceCreatedRecord(TAInvoice *invoice) {
    TAHistory *record = newInvoiceRecord(invoice, InvoiceCreated);
    if (record)
        record->setDateValue(invoice->date());
    return record;
}

TAHistory *TAHistory::addInvoiceSentRecord(TAInvoice *invoice) {
    TAHistory *record = newInvoiceRecord(invoice, InvoiceSent);
    if (record)
        record->setRelatedClient(invoice->client());
    return record;
}

// Dated by the payment, not by the clock: the log then reads in the order money arrived.
TAHistory *TAHistory::addInvoicePaymentReceivedRecord(TAInvoice *invoice, TAPayment *payment) {
    TAHistory *record = newInvoiceRecord(invoice, InvoicePaymentReceived);
    if (record && payment) {
        record->setRelatedPayment(payment);
        record->setDate(payment->date());
    }
    return record;
}

TAHistory *TAHistory::addInvoicePaidRecord(TAInvoice *invoice) {
    return newInvoiceRecord(invoice, InvoicePaid);
}

TAHistory *TAHistory::addInvoiceCreatedInProjectRecord(TAInvoice *invoice, TAProject *project) {
    TAHistory *record = newInvoiceRecord(invoice, InvoiceCreatedInProject);
    if (record)
        record->setRelatedProject(project);
    return record;
}

TAHistory *TAHistory::addInvoiceAssignedToProjectRecord(TAInvoice *invoice, TAProject *project) {
    TAHistory *record = newInvoiceRecord(invoice, InvoiceAssignedToProject);
    if (record)
        record->setRelatedProject(project);
    return record;
}

void TAHistory::setProjectHistoryType(int value) {
    setType(value);
}

void TAHistory::setInvoiceHistoryType(int value) {
    setType(value);
}

int TAHistory::projectHistoryType() {
    const int stored = type();
    if (allProjectHistoryTypes().contains(stored))
        return stored;
    setType(ProjectNoInfo);
    return ProjectNoInfo;
}

int TAHistory::invoiceHistoryType() {
    const int stored = type();
    if (stored == InvoiceNoInfo || allInvoiceHistoryTypes().contains(stored))
        return stored;
    setType(InvoiceNoInfo);
    return InvoiceNoInfo;
}

QString TAHistory::projectHistoryText() {
    switch (projectHistoryType()) {
    case ProjectCreated:
        return QCoreApplication::translate("TAHistory", "Created");
    case ProjectClientChanged:
        return withDetail(QCoreApplication::translate("TAHistory", "Assigned to client"),
                          relatedClient() ? relatedClient()->displayName() : QString());
    case ProjectClientDeleted:
        return QCoreApplication::translate("TAHistory", "Client relationship deleted");
    case ProjectInvoiceCreated:
        return QCoreApplication::translate("TAHistory", "Invoice created");
    case ProjectInvoiceDeleted:
        return QCoreApplication::translate("TAHistory", "Invoice deleted");
    case ProjectStatusChanged:
        return projectStatusText(intValue());
    case ProjectDueDateChanged:
        return withDetail(QCoreApplication::translate("TAHistory", "Due date changed to"),
                          OTDate::dateFormatter(dateValue()));
    default:
        return QCoreApplication::translate("TAHistory", "No info");
    }
}

QString TAHistory::invoiceHistoryText() {
    switch (invoiceHistoryType()) {
    case InvoiceCreated:
        return QCoreApplication::translate("TAHistory", "Created");
    case InvoiceSent:
        return sentToText(relatedClient());
    case InvoicePaymentReceived:
        return paymentText(relatedPayment());
    case InvoicePaid:
        return QCoreApplication::translate("TAHistory", "Paid");
    case InvoiceCreatedInProject:
        return withDetail(QCoreApplication::translate("TAHistory", "Created in project"),
                          relatedProject() ? relatedProject()->name() : QString());
    case InvoiceAssignedToProject:
        return withDetail(QCoreApplication::translate("TAHistory", "Assigned to project"),
                          relatedProject() ? relatedProject()->name() : QString());
    default:
        return QCoreApplication::translate("TAHistory", "No info");
    }
}

QString TAHistory::historyText() {
    return invoice() ? invoiceHistoryText() : projectHistoryText();
}

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
