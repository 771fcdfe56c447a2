#include "store/entities/TAClient.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TACodes.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAProject.h"
#include "store/objectstore/ManagedObjectContext.h"

#include <QBuffer>

QString TAClient::fullNameValue() const {
    return stringForKey(TAKey::fullName);
}

void TAClient::setFullNameValue(const QString &value) {
    EntityValues::setString(this, TAKey::fullName, value);
}

QString TAClient::companyValue() const {
    return stringForKey(TAKey::company);
}

void TAClient::setCompanyValue(const QString &value) {
    EntityValues::setString(this, TAKey::company, value);
}

bool TAClient::isCompanyValue() const {
    return boolForKey(TAKey::isCompany);
}

void TAClient::setIsCompanyValue(bool value) {
    EntityValues::setBool(this, TAKey::isCompany, value);
}

QString TAClient::emailValue() const {
    return stringForKey(TAKey::email);
}

void TAClient::setEmailValue(const QString &value) {
    EntityValues::setString(this, TAKey::email, value);
}

QString TAClient::phoneValue() const {
    return stringForKey(TAKey::phone);
}

void TAClient::setPhoneValue(const QString &value) {
    EntityValues::setString(this, TAKey::phone, value);
}

QString TAClient::addressValue() const {
    return stringForKey(TAKey::address);
}

void TAClient::setAddressValue(const QString &value) {
    EntityValues::setString(this, TAKey::address, value);
}

QString TAClient::taxIDValue() const {
    return stringForKey(TAKey::taxID);
}

void TAClient::setTaxIDValue(const QString &value) {
    EntityValues::setString(this, TAKey::taxID, value);
}

QString TAClient::notesValue() const {
    return stringForKey(TAKey::notes);
}

void TAClient::setNotesValue(const QString &value) {
    EntityValues::setString(this, TAKey::notes, value);
}

QByteArray TAClient::photoData() const {
    return dataForKey(TAKey::photo);
}

void TAClient::setPhotoData(const QByteArray &value) {
    EntityValues::setData(this, TAKey::photo, value);
}

QString TAClient::abUID() const {
    return stringForKey(TAKey::abUID);
}

void TAClient::setAbUID(const QString &value) {
    EntityValues::setString(this, TAKey::abUID, value);
}

QList<TAInvoice *> TAClient::invoiceRelationships() const {
    return objectsForKeyAs<TAInvoice>(TAKey::invoices);
}

void TAClient::addInvoiceRelationship(TAInvoice *value) {
    if (value)
        addObjectForKey(value, TAKey::invoices);
}

void TAClient::removeInvoiceRelationship(TAInvoice *value) {
    if (value)
        removeObjectForKey(value, TAKey::invoices);
}

QList<TAProject *> TAClient::projectsRelationships() const {
    return objectsForKeyAs<TAProject>(TAKey::projects);
}

void TAClient::addProjectRelationship(TAProject *value) {
    if (value)
        addObjectForKey(value, TAKey::projects);
}

void TAClient::removeProjectRelationship(TAProject *value) {
    if (value)
        removeObjectForKey(value, TAKey::projects);
}

TACurrency *TAClient::currency() const {
    return objectForKeyAs<TACurrency>(TAKey::currency);
}

TACurrency *TAClient::currencyRelationship() const {
    if (TACurrency *linked = currency())
        return linked;
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return nullptr;
    auto request = context->fetchRequestFromTemplate(QStringLiteral("defaultCurrency"), {});
    if (!request)
        return nullptr;
    request->includesSubentities = false;
    auto found = context->executeFetchRequest(*request);
    return found && !found->isEmpty() ? dynamic_cast<TACurrency *>(found->first()) : nullptr;
}

void TAClient::setCurrencyRelationship(TACurrency *currency) {
    setObjectForKey(currency, TAKey::currency);
}

namespace {
constexpr int kPhotoSide = 64;
} // namespace

QImage TAClient::photoValue() const {
    return QImage::fromData(photoData(), "PNG");
}

void TAClient::setPhotoValue(const QImage &image) {
    if (image.isNull()) {
        setPhotoData({});
        return;
    }
    QImage fitted = image;
    if (image.width() > kPhotoSide || image.height() > kPhotoSide)
        fitted =
            image.scaled(kPhotoSide, kPhotoSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    fitted.save(&buffer, "PNG");
    setPhotoData(png);
}

int TAClient::photoType() const {
    if (!photoData().isEmpty())
        return TACodes::PhotoStored;
    return isCompanyValue() ? TACodes::PhotoCompany : TACodes::PhotoNone;
}

QStringList TAClient::relationshipsToLink() const {
    return {TAKey::currency};
}
