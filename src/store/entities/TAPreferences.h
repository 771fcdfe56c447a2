#pragma once

#include "store/entities/TAObject.h"

#include <QImage>

// The settings of one document; there is one such object per document.
class TAPreferences : public TAObject {
public:
    // The user's own address card as the address book delivers it; absent values are empty.
    struct AddressCard {
        QString firstName;
        QString lastName;
        QString organisation;
        qint64 personFlags = 0; // the low bit: the card shows a company
        QImage image;
        QString email;
        QString phone;
        QString city;
        QString country;
        QString zip;
        QString street;
    };

    // The photo as an image: stored as PNG, scaled down to fit 2000 by 2000. A null image, or
    // one that cannot be encoded, clears it.
    virtual void setInfoPhotoValue(const QImage &image);
    virtual QImage infoPhotoValue() const;
    virtual QString fullName() const;
    virtual QString fullAddress() const;

    // Custom fields, kept in `infoCustoms` as "column,value" records joined by "|". Both
    // delimiters are dropped from column and value, as there is no escape.
    virtual void addCustomWithColumn(const QString &column, const QString &value);
    // {"column", "value"} maps in stored order; malformed records are skipped.
    virtual QList<QVariantMap> infoCustomValues() const;
    // The first field whose column matches in upper case; null when none does.
    virtual QString infoCustomValueForColumn(const QString &name) const;
    virtual void deleteCustoms();

    // Asks the application's address book to fill the info fields from the user's own card.
    virtual void updateFromAddressBook();
    // Writes a card into the info fields; the address book side calls this.
    void updateFromCard(const AddressCard &card);
    virtual void increaseNextInvoiceNumber();
    // The number that follows `number` by the numbering rules; the empty text stays empty.
    static QString increasedInvoiceNumber(const QString &number);

    bool showInvoices() const;
    void setShowInvoices(bool value);
    bool showRecurring() const;
    void setShowRecurring(bool value);
    bool showInventory() const;
    void setShowInventory(bool value);
    bool showProjects() const;
    void setShowProjects(bool value);
    bool showClients() const;
    void setShowClients(bool value);
    bool showReports() const;
    void setShowReports(bool value);
    QString nextInvoiceNumber() const;
    void setNextInvoiceNumber(const QString &value);
    bool newClientAsCompany() const;
    void setNewClientAsCompany(bool value);
    bool taxesEnabled() const;
    void setTaxesEnabled(bool value);
    bool taxesCombined() const;
    void setTaxesCombined(bool value);
    QString infoFirstName() const;
    void setInfoFirstName(const QString &value);
    QString infoLastName() const;
    void setInfoLastName(const QString &value);
    QString infoCompany() const;
    void setInfoCompany(const QString &value);
    QString infoCompanyID() const;
    void setInfoCompanyID(const QString &value);
    QString infoTaxID() const;
    void setInfoTaxID(const QString &value);
    QString infoPhone() const;
    void setInfoPhone(const QString &value);
    QString infoEmail() const;
    void setInfoEmail(const QString &value);
    QString infoAddressStreet() const;
    void setInfoAddressStreet(const QString &value);
    QString infoAddressPostalCode() const;
    void setInfoAddressPostalCode(const QString &value);
    QString infoAddressCity() const;
    void setInfoAddressCity(const QString &value);
    QString infoAddressCountry() const;
    void setInfoAddressCountry(const QString &value);
    bool infoIsCompany() const;
    void setInfoIsCompany(bool value);
    QByteArray infoPhoto() const;
    void setInfoPhoto(const QByteArray &value);
    QString infoCustoms() const;
    void setInfoCustoms(const QString &value);
    bool iCalSyncEnabled() const;
    void setICalSyncEnabled(bool value);
    QString iCalUID() const;
    void setICalUID(const QString &value);
    bool backupMobileMeEnabled() const;
    void setBackupMobileMeEnabled(bool value);
    QString backupFolderLocation() const;
    void setBackupFolderLocation(const QString &value);
    QString password() const;
    void setPassword(const QString &value);
    bool groupsExpandedProjects() const;
    void setGroupsExpandedProjects(bool value);
    bool tableViewInInvoices() const;
    void setTableViewInInvoices(bool value);
    bool tableViewInRecurring() const;
    void setTableViewInRecurring(bool value);
    bool tableViewInProjects() const;
    void setTableViewInProjects(bool value);
    bool invoicesGridShowArchived() const;
    void setInvoicesGridShowArchived(bool value);
    bool invoicesTableShowArchived() const;
    void setInvoicesTableShowArchived(bool value);
    bool projectsShowInvoiced() const;
    void setProjectsShowInvoiced(bool value);
    bool projectsGridShowArchived() const;
    void setProjectsGridShowArchived(bool value);
    bool projectsTableShowArchived() const;
    void setProjectsTableShowArchived(bool value);
    bool timersShowInvoiced() const;
    void setTimersShowInvoiced(bool value);
    QString lastProjectID() const;
    void setLastProjectID(const QString &value);
    QString windowFrame() const;
    void setWindowFrame(const QString &value);
    QByteArray invoicesTableColumns() const;
    void setInvoicesTableColumns(const QByteArray &value);
    QByteArray recurringTableColumns() const;
    void setRecurringTableColumns(const QByteArray &value);
    QByteArray projectsTableColumns() const;
    void setProjectsTableColumns(const QByteArray &value);
    QByteArray inventoryTableSettings() const;
    void setInventoryTableSettings(const QByteArray &value);
    QByteArray projectsTableSettings() const;
    void setProjectsTableSettings(const QByteArray &value);
    QByteArray recurringTableSettings() const;
    void setRecurringTableSettings(const QByteArray &value);
    QByteArray invoicesTableSettings() const;
    void setInvoicesTableSettings(const QByteArray &value);

private:
    bool sectionShown(const QString &key) const;
};
