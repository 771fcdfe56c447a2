#include "store/entities/TAPreferences.h"

#include "store/TAApplicationHooks.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"

#include <QBuffer>

#include <limits>

namespace {
constexpr int kPhotoSide = 2000;
constexpr int kCardPhotoSide = 60;

QString withoutDelimiters(QString text) {
    text.remove(QLatin1Char('|'));
    text.remove(QLatin1Char(','));
    return text;
}

QByteArray pngFitting(const QImage &image, int side) {
    if (image.isNull())
        return {};
    QImage scaled = image;
    if (image.width() > side || image.height() > side)
        scaled = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    if (!scaled.save(&buffer, "PNG"))
        return {};
    return data;
}

// Leading ASCII digits as a signed 64-bit value, held at the largest value when they overflow.
qint64 saturatedValue(QStringView digits) {
    constexpr qint64 kMax = std::numeric_limits<qint64>::max();
    qint64 value = 0;
    for (QChar c : digits) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            break;
        const int digit = c.unicode() - '0';
        if (value > (kMax - digit) / 10)
            return kMax;
        value = value * 10 + digit;
    }
    return value;
}

qsizetype leadingDigits(const QString &s) {
    qsizetype n = 0;
    while (n < s.size() && s.at(n).isDigit())
        ++n;
    return n;
}

qsizetype trailingDigits(const QString &s) {
    qsizetype n = 0;
    while (n < s.size() && s.at(s.size() - 1 - n).isDigit())
        ++n;
    return n;
}
} // namespace

void TAPreferences::setInfoPhotoValue(const QImage &image) {
    setInfoPhoto(pngFitting(image, kPhotoSide));
}

QImage TAPreferences::infoPhotoValue() const {
    const QByteArray data = infoPhoto();
    return data.isEmpty() ? QImage() : QImage::fromData(data);
}

QString TAPreferences::fullName() const {
    const QString first = infoFirstName();
    const QString last = infoLastName();
    if (first.isEmpty())
        return last;
    if (last.isEmpty())
        return first;
    return first + QLatin1Char(' ') + last;
}

QString TAPreferences::fullAddress() const {
    QStringList parts;
    for (const QString &part :
         {infoAddressStreet(), infoAddressCity(), infoAddressPostalCode(), infoAddressCountry()})
        if (!part.isEmpty())
            parts.append(part);
    return parts.join(QStringLiteral(", "));
}

void TAPreferences::addCustomWithColumn(const QString &column, const QString &value) {
    const QString record = withoutDelimiters(column) + QLatin1Char(',') + withoutDelimiters(value);
    const QString existing = infoCustoms();
    setInfoCustoms(existing.isEmpty() ? record : existing + QLatin1Char('|') + record);
}

QList<QVariantMap> TAPreferences::infoCustomValues() const {
    QList<QVariantMap> fields;
    const QString text = infoCustoms();
    if (text.isEmpty())
        return fields;
    for (const QString &record : text.split(QLatin1Char('|'))) {
        const QStringList parts = record.split(QLatin1Char(','));
        if (parts.size() != 2)
            continue;
        fields.append(
            {{QStringLiteral("column"), parts.at(0)}, {QStringLiteral("value"), parts.at(1)}});
    }
    return fields;
}

QString TAPreferences::infoCustomValueForColumn(const QString &name) const {
    if (name.isNull())
        return {};
    const QString wanted = name.toUpper();
    for (const QVariantMap &field : infoCustomValues())
        if (field.value(QStringLiteral("column")).toString().toUpper() == wanted)
            return field.value(QStringLiteral("value")).toString();
    return {};
}

void TAPreferences::deleteCustoms() {
    setInfoCustoms(QString());
}

void TAPreferences::updateFromAddressBook() {
    TAApplicationHooks::instance().updateFromAddressBook(this);
}

namespace {
// What the card lacks is written as the empty text, so the fields never read as null after it.
QString orEmpty(const QString &value) {
    return value.isNull() ? QStringLiteral("") : value;
}
} // namespace

void TAPreferences::updateFromCard(const AddressCard &card) {
    setInfoFirstName(orEmpty(card.firstName));
    setInfoLastName(orEmpty(card.lastName));
    setInfoCompany(orEmpty(card.organisation));
    setInfoIsCompany(card.personFlags & 1);
    setInfoPhoto(card.image.isNull()
                     ? QByteArray()
                     : pngFitting(card.image.scaled(kCardPhotoSide, kCardPhotoSide,
                                                    Qt::KeepAspectRatio, Qt::SmoothTransformation),
                                  kCardPhotoSide));
    setInfoEmail(orEmpty(card.email));
    setInfoPhone(orEmpty(card.phone));
    setInfoAddressCity(orEmpty(card.city));
    setInfoAddressCountry(orEmpty(card.country));
    setInfoAddressPostalCode(orEmpty(card.zip));
    setInfoAddressStreet(orEmpty(card.street));
}

void TAPreferences::increaseNextInvoiceNumber() {
    const QString number = nextInvoiceNumber();
    if (!number.isEmpty())
        setNextInvoiceNumber(increasedInvoiceNumber(number));
}

// The number part is what follows the text between the outer digit runs; an all-digit number
// has no such text and is read whole. The width is kept unless the value outgrows it.
QString TAPreferences::increasedInvoiceNumber(const QString &number) {
    if (number.isEmpty())
        return number;
    const qsizetype lead = leadingDigits(number);
    const qsizetype coreEnd = lead == number.size() ? 0 : number.size() - trailingDigits(number);
    const QString numberPart = number.mid(coreEnd);
    const QString result = QString::number(quint64(saturatedValue(numberPart)) + 1);
    if (numberPart.size() < result.size())
        return number.left(coreEnd) + result;
    if (coreEnd == 0)
        return result;
    QString increased = number;
    increased.replace(coreEnd + numberPart.size() - result.size(), result.size(), result);
    return increased;
}

// A section flag never set shows its section: a document starts with all sections.
bool TAPreferences::sectionShown(const QString &key) const {
    const QVariant value = valueForKey(key);
    return !value.isValid() || value.toBool();
}

bool TAPreferences::showInvoices() const {
    return sectionShown(TAKey::showInvoices);
}

void TAPreferences::setShowInvoices(bool value) {
    EntityValues::setBool(this, TAKey::showInvoices, value);
}

bool TAPreferences::showRecurring() const {
    return sectionShown(TAKey::showRecurring);
}

void TAPreferences::setShowRecurring(bool value) {
    EntityValues::setBool(this, TAKey::showRecurring, value);
}

bool TAPreferences::showInventory() const {
    return sectionShown(TAKey::showInventory);
}

void TAPreferences::setShowInventory(bool value) {
    EntityValues::setBool(this, TAKey::showInventory, value);
}

bool TAPreferences::showProjects() const {
    return sectionShown(TAKey::showProjects);
}

void TAPreferences::setShowProjects(bool value) {
    EntityValues::setBool(this, TAKey::showProjects, value);
}

bool TAPreferences::showClients() const {
    return sectionShown(TAKey::showClients);
}

void TAPreferences::setShowClients(bool value) {
    EntityValues::setBool(this, TAKey::showClients, value);
}

bool TAPreferences::showReports() const {
    return sectionShown(TAKey::showReports);
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
