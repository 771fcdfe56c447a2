#pragma once

#include "store/entities/TAObject.h"

#include <QList>

class TAClient;
class TAInvoice;
class TAPayment;
class TAProject;

// A record of something that happened to a project or an invoice, with optional links to what it
// concerns. The same `type` number means different things on the two sides.
class TAHistory : public TAObject {
public:
    enum ProjectType {
        ProjectNoInfo = 0,
        ProjectCreated = 1,
        ProjectClientChanged = 4,
        ProjectClientDeleted = 5,
        ProjectInvoiceCreated = 6,
        ProjectInvoiceDeleted = 7,
        ProjectStatusChanged = 8,
        ProjectDueDateChanged = 9,
    };
    enum InvoiceType {
        InvoiceNoInfo = 0,
        InvoiceCreated = 1,
        InvoiceSent = 2,
        InvoicePaymentReceived = 3,
        InvoicePaid = 4,
        InvoiceCreatedInProject = 5,
        InvoiceAssignedToProject = 6,
    };

    static QList<int> allProjectHistoryTypes();
    static QList<int> allInvoiceHistoryTypes();

    // Creators: each record is dated now and made in its subject's context; null without one.
    static TAHistory *addProjectCreatedRecord(TAProject *project);
    static TAHistory *addProjectClientChangedRecord(TAProject *project);
    static TAHistory *addProjectClientDeletedRecord(TAProject *project);
    static TAHistory *addProjectInvoiceCreatedRecord(TAProject *project, TAInvoice *invoice);
    static TAHistory *addProjectInvoiceDeletedRecord(TAProject *project);
    static TAHistory *addProjectStatusChangedRecord(TAProject *project);
    static TAHistory *addProjectDueDateCahngedRecord(TAProject *project);
    // For a project brought in from elsewhere: client (if any), status, due date.
    static void addProjectHistoryRecords(TAProject *project);
    static TAHistory *addInvoiceCreatedRecord(TAInvoice *invoice);
    static TAHistory *addInvoiceSentRecord(TAInvoice *invoice);
    static TAHistory *addInvoicePaymentReceivedRecord(TAInvoice *invoice, TAPayment *payment);
    static TAHistory *addInvoicePaidRecord(TAInvoice *invoice);
    static TAHistory *addInvoiceCreatedInProjectRecord(TAInvoice *invoice, TAProject *project);
    static TAHistory *addInvoiceAssignedToProjectRecord(TAInvoice *invoice, TAProject *project);

    void setProjectHistoryType(int value);
    void setInvoiceHistoryType(int value);
    // The stored type when the side's table knows it; otherwise 0, written back to the store.
    int projectHistoryType();
    int invoiceHistoryType();

    // The words a list shows for the record, read by the table of the side it belongs to.
    QString projectHistoryText();
    QString invoiceHistoryText();
    QString historyText();

    QDateTime date() const;
    void setDate(const QDateTime &value);
    int type() const;
    void setType(int value);
    qint64 intValue() const;
    void setIntValue(qint64 value);
    QDateTime dateValue() const;
    void setDateValue(const QDateTime &value);
    TAProject *project() const;
    void setProject(TAProject *value);
    TAInvoice *invoice() const;
    void setInvoice(TAInvoice *value);
    TAInvoice *relatedInvoice() const;
    void setRelatedInvoice(TAInvoice *value);
    TAPayment *relatedPayment() const;
    void setRelatedPayment(TAPayment *value);
    TAProject *relatedProject() const;
    void setRelatedProject(TAProject *value);
    TAClient *relatedClient() const;
    void setRelatedClient(TAClient *value);
};
