#include "store/entities/TAPreferences.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"

bool TAPreferences::showInvoices() const {
    return boolForKey(TAKey::showInvoices);
}

void TAPreferences::setShowInvoices(bool value) {
    EntityValues::setBool(this, TAKey::showInvoices, value);
}

bool TAPreferences::showRecurring() const {
    return boolForKey(TAKey::showRecurring);
}

void TAPreferences::setShowRecurring(bool value) {
    EntityValues::setBool(this, TAKey::showRecurring, value);
}

bool TAPreferences::showInventory() const {
    return boolForKey(TAKey::showInventory);
}

void TAPreferences::setShowInventory(bool value) {
    EntityValues::setBool(this, TAKey::showInventory, value);
}

bool TAPreferences::showProjects() const {
    return boolForKey(TAKey::showProjects);
}

void TAPreferences::setShowProjects(bool value) {
    EntityValues::setBool(this, TAKey::showProjects, value);
}

bool TAPreferences::showClients() const {
    return boolForKey(TAKey::showClients);
}

void TAPreferences::setShowClients(bool value) {
    EntityValues::setBool(this, TAKey::showClients, value);
}

bool TAPreferences::showReports() const {
    return boolForKey(TAKey::showReports);
}

void TAPreferences::setShowReports(bool value) {
    EntityValues::setBool(this, TAKey::showReports, value);
}

QString TAPreferences::nextInvoiceNumber() const {
    return stringForKey(TAKey::nextInvoiceNumber);
}

void TAPreferences::setNextInvoiceNumber(const QString &value) {
    EntityValues::setString(this, TAKey::nextInvoiceNumber, value);
}

bool TAPreferences::newClientAsCompany() const {
    return boolForKey(TAKey::newClientAsCompany);
}

void TAPreferences::setNewClientAsCompany(bool value) {
    EntityValues::setBool(this, TAKey::newClientAsCompany, value);
}

bool TAPreferences::taxesEnabled() const {
    return boolForKey(TAKey::taxesEnabled);
}

void TAPreferences::setTaxesEnabled(bool value) {
    EntityValues::setBool(this, TAKey::taxesEnabled, value);
}

bool TAPreferences::taxesCombined() const {
    return boolForKey(TAKey::taxesCombined);
}

void TAPreferences::setTaxesCombined(bool value) {
    EntityValues::setBool(this, TAKey::taxesCombined, value);
}

QString TAPreferences::infoFirstName() const {
    return stringForKey(TAKey::infoFirstName);
}

void TAPreferences::setInfoFirstName(const QString &value) {
    EntityValues::setString(this, TAKey::infoFirstName, value);
}

QString TAPreferences::infoLastName() const {
    return stringForKey(TAKey::infoLastName);
}

void TAPreferences::setInfoLastName(const QString &value) {
    EntityValues::setString(this, TAKey::infoLastName, value);
}

QString TAPreferences::infoCompany() const {
    return stringForKey(TAKey::infoCompany);
}

void TAPreferences::setInfoCompany(const QString &value) {
    EntityValues::setString(this, TAKey::infoCompany, value);
}

QString TAPreferences::infoCompanyID() const {
    return stringForKey(TAKey::infoCompanyID);
}

void TAPreferences::setInfoCompanyID(const QString &value) {
    EntityValues::setString(this, TAKey::infoCompanyID, value);
}

QString TAPreferences::infoTaxID() const {
    return stringForKey(TAKey::infoTaxID);
}

void TAPreferences::setInfoTaxID(const QString &value) {
    EntityValues::setString(this, TAKey::infoTaxID, value);
}

QString TAPreferences::infoPhone() const {
    return stringForKey(TAKey::infoPhone);
}

void TAPreferences::setInfoPhone(const QString &value) {
    EntityValues::setString(this, TAKey::infoPhone, value);
}

QString TAPreferences::infoEmail() const {
    return stringForKey(TAKey::infoEmail);
}

void TAPreferences::setInfoEmail(const QString &value) {
    EntityValues::setString(this, TAKey::infoEmail, value);
}

QString TAPreferences::infoAddressStreet() const {
    return stringForKey(TAKey::infoAddressStreet);
}

void TAPreferences::setInfoAddressStreet(const QString &value) {
    EntityValues::setString(this, TAKey::infoAddressStreet, value);
}

QString TAPreferences::infoAddressPostalCode() const {
    return stringForKey(TAKey::infoAddressPostalCode);
}

void TAPreferences::setInfoAddressPostalCode(const QString &value) {
    EntityValues::setString(this, TAKey::infoAddressPostalCode, value);
}

QString TAPreferences::infoAddressCity() const {
    return stringForKey(TAKey::infoAddressCity);
}

void TAPreferences::setInfoAddressCity(const QString &value) {
    EntityValues::setString(this, TAKey::infoAddressCity, value);
}

QString TAPreferences::infoAddressCountry() const {
    return stringForKey(TAKey::infoAddressCountry);
}

void TAPreferences::setInfoAddressCountry(const QString &value) {
    EntityValues::setString(this, TAKey::infoAddressCountry, value);
}

bool TAPreferences::infoIsCompany() const {
    return boolForKey(TAKey::infoIsCompany);
}

void TAPreferences::setInfoIsCompany(bool value) {
    EntityValues::setBool(this, TAKey::infoIsCompany, value);
}

QByteArray TAPreferences::infoPhoto() const {
    return dataForKey(TAKey::infoPhoto);
}

void TAPreferences::setInfoPhoto(const QByteArray &value) {
    EntityValues::setData(this, TAKey::infoPhoto, value);
}

QString TAPreferences::infoCustoms() const {
    return stringForKey(TAKey::infoCustoms);
}

void TAPreferences::setInfoCustoms(const QString &value) {
    EntityValues::setString(this, TAKey::infoCustoms, value);
}

bool TAPreferences::iCalSyncEnabled() const {
    return boolForKey(TAKey::iCalSyncEnabled);
}

void TAPreferences::setICalSyncEnabled(bool value) {
    EntityValues::setBool(this, TAKey::iCalSyncEnabled, value);
}

QString TAPreferences::iCalUID() const {
    return stringForKey(TAKey::iCalUID);
}

void TAPreferences::setICalUID(const QString &value) {
    EntityValues::setString(this, TAKey::iCalUID, value);
}

bool TAPreferences::backupMobileMeEnabled() const {
    return boolForKey(TAKey::backupMobileMeEnabled);
}

void TAPreferences::setBackupMobileMeEnabled(bool value) {
    EntityValues::setBool(this, TAKey::backupMobileMeEnabled, value);
}

QString TAPreferences::backupFolderLocation() const {
    return stringForKey(TAKey::backupFolderLocation);
}

void TAPreferences::setBackupFolderLocation(const QString &value) {
    EntityValues::setString(this, TAKey::backupFolderLocation, value);
}

QString TAPreferences::password() const {
    return stringForKey(TAKey::password);
}

void TAPreferences::setPassword(const QString &value) {
    EntityValues::setString(this, TAKey::password, value);
}

bool TAPreferences::groupsExpandedProjects() const {
    return boolForKey(TAKey::groupsExpandedProjects);
}

void TAPreferences::setGroupsExpandedProjects(bool value) {
    EntityValues::setBool(this, TAKey::groupsExpandedProjects, value);
}

bool TAPreferences::tableViewInInvoices() const {
    return boolForKey(TAKey::tableViewInInvoices);
}

void TAPreferences::setTableViewInInvoices(bool value) {
    EntityValues::setBool(this, TAKey::tableViewInInvoices, value);
}

bool TAPreferences::tableViewInRecurring() const {
    return boolForKey(TAKey::tableViewInRecurring);
}

void TAPreferences::setTableViewInRecurring(bool value) {
    EntityValues::setBool(this, TAKey::tableViewInRecurring, value);
}

bool TAPreferences::tableViewInProjects() const {
    return boolForKey(TAKey::tableViewInProjects);
}

void TAPreferences::setTableViewInProjects(bool value) {
    EntityValues::setBool(this, TAKey::tableViewInProjects, value);
}

bool TAPreferences::invoicesGridShowArchived() const {
    return boolForKey(TAKey::invoicesGridShowArchived);
}

void TAPreferences::setInvoicesGridShowArchived(bool value) {
    EntityValues::setBool(this, TAKey::invoicesGridShowArchived, value);
}

bool TAPreferences::invoicesTableShowArchived() const {
    return boolForKey(TAKey::invoicesTableShowArchived);
}

void TAPreferences::setInvoicesTableShowArchived(bool value) {
    EntityValues::setBool(this, TAKey::invoicesTableShowArchived, value);
}

bool TAPreferences::projectsShowInvoiced() const {
    return boolForKey(TAKey::projectsShowInvoiced);
}

void TAPreferences::setProjectsShowInvoiced(bool value) {
    EntityValues::setBool(this, TAKey::projectsShowInvoiced, value);
}

bool TAPreferences::projectsGridShowArchived() const {
    return boolForKey(TAKey::projectsGridShowArchived);
}

void TAPreferences::setProjectsGridShowArchived(bool value) {
    EntityValues::setBool(this, TAKey::projectsGridShowArchived, value);
}

bool TAPreferences::projectsTableShowArchived() const {
    return boolForKey(TAKey::projectsTableShowArchived);
}

void TAPreferences::setProjectsTableShowArchived(bool value) {
    EntityValues::setBool(this, TAKey::projectsTableShowArchived, value);
}

bool TAPreferences::timersShowInvoiced() const {
    return boolForKey(TAKey::timersShowInvoiced);
}

void TAPreferences::setTimersShowInvoiced(bool value) {
    EntityValues::setBool(this, TAKey::timersShowInvoiced, value);
}

QString TAPreferences::lastProjectID() const {
    return stringForKey(TAKey::lastProjectID);
}

void TAPreferences::setLastProjectID(const QString &value) {
    EntityValues::setString(this, TAKey::lastProjectID, value);
}

QString TAPreferences::windowFrame() const {
    return stringForKey(TAKey::windowFrame);
}

void TAPreferences::setWindowFrame(const QString &value) {
    EntityValues::setString(this, TAKey::windowFrame, value);
}

QByteArray TAPreferences::invoicesTableColumns() const {
    return dataForKey(TAKey::invoicesTableColumns);
}

void TAPreferences::setInvoicesTableColumns(const QByteArray &value) {
    EntityValues::setData(this, TAKey::invoicesTableColumns, value);
}

QByteArray TAPreferences::recurringTableColumns() const {
    return dataForKey(TAKey::recurringTableColumns);
}

void TAPreferences::setRecurringTableColumns(const QByteArray &value) {
    EntityValues::setData(this, TAKey::recurringTableColumns, value);
}

QByteArray TAPreferences::projectsTableColumns() const {
    return dataForKey(TAKey::projectsTableColumns);
}

void TAPreferences::setProjectsTableColumns(const QByteArray &value) {
    EntityValues::setData(this, TAKey::projectsTableColumns, value);
}

QByteArray TAPreferences::inventoryTableSettings() const {
    return dataForKey(TAKey::inventoryTableSettings);
}

void TAPreferences::setInventoryTableSettings(const QByteArray &value) {
    EntityValues::setData(this, TAKey::inventoryTableSettings, value);
}

QByteArray TAPreferences::projectsTableSettings() const {
    return dataForKey(TAKey::projectsTableSettings);
}

void TAPreferences::setProjectsTableSettings(const QByteArray &value) {
    EntityValues::setData(this, TAKey::projectsTableSettings, value);
}

QByteArray TAPreferences::recurringTableSettings() const {
    return dataForKey(TAKey::recurringTableSettings);
}

void TAPreferences::setRecurringTableSettings(const QByteArray &value) {
    EntityValues::setData(this, TAKey::recurringTableSettings, value);
}

QByteArray TAPreferences::invoicesTableSettings() const {
    return dataForKey(TAKey::invoicesTableSettings);
}

void TAPreferences::setInvoicesTableSettings(const QByteArray &value) {
    EntityValues::setData(this, TAKey::invoicesTableSettings, value);
}
