#include "store/entities/LMInvoiceTemplateClass.h"

#include "foundation/Check.h"
#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"

#include "foundation/TANotificationCenter.h"
#include "foundation/dates/OTClock.h"
#include "layoutvalues/LMArchivedColor.h"
#include "layoutvalues/LMArchivedImage.h"
#include "layoutvalues/LMGeometry.h"
#include "layoutvalues/LMNotifications.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/UndoManager.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <utility>

QString LMInvoiceTemplateClass::name() const {
    return stringForKey(TAKey::name);
}

void LMInvoiceTemplateClass::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

QDateTime LMInvoiceTemplateClass::creationDate() const {
    return dateForKey(TAKey::creationDate);
}

void LMInvoiceTemplateClass::setCreationDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::creationDate, value);
}

QString LMInvoiceTemplateClass::size() const {
    return stringForKey(TAKey::size);
}

void LMInvoiceTemplateClass::setSize(const QString &value) {
    EntityValues::setString(this, TAKey::size, value);
}

QString LMInvoiceTemplateClass::positions() const {
    return stringForKey(TAKey::positions);
}

void LMInvoiceTemplateClass::setPositions(const QString &value) {
    EntityValues::setString(this, TAKey::positions, value);
}

QByteArray LMInvoiceTemplateClass::previewImageData() const {
    return dataForKey(TAKey::previewImageData);
}

void LMInvoiceTemplateClass::setPreviewImageData(const QByteArray &value) {
    EntityValues::setData(this, TAKey::previewImageData, value);
}

int LMInvoiceTemplateClass::backgroundType() const {
    return int(integerForKey(TAKey::backgroundType));
}

void LMInvoiceTemplateClass::setBackgroundType(int value) {
    EntityValues::setInteger(this, TAKey::backgroundType, value);
}

int LMInvoiceTemplateClass::backgroundImageType() const {
    return int(integerForKey(TAKey::backgroundImageType));
}

void LMInvoiceTemplateClass::setBackgroundImageType(int value) {
    EntityValues::setInteger(this, TAKey::backgroundImageType, value);
}

qint64 LMInvoiceTemplateClass::backgroundGradientAngle() const {
    return integerForKey(TAKey::backgroundGradientAngle);
}

void LMInvoiceTemplateClass::setBackgroundGradientAngle(qint64 value) {
    EntityValues::setInteger(this, TAKey::backgroundGradientAngle, value);
}

QByteArray LMInvoiceTemplateClass::backgroundColor() const {
    return dataForKey(TAKey::backgroundColor);
}

void LMInvoiceTemplateClass::setBackgroundColor(const QByteArray &value) {
    EntityValues::setData(this, TAKey::backgroundColor, value);
}

QByteArray LMInvoiceTemplateClass::backgroundColor2() const {
    return dataForKey(TAKey::backgroundColor2);
}

void LMInvoiceTemplateClass::setBackgroundColor2(const QByteArray &value) {
    EntityValues::setData(this, TAKey::backgroundColor2, value);
}

QByteArray LMInvoiceTemplateClass::backgroundImage() const {
    return dataForKey(TAKey::backgroundImage);
}

void LMInvoiceTemplateClass::setBackgroundImage(const QByteArray &value) {
    EntityValues::setData(this, TAKey::backgroundImage, value);
}

QList<LMInvoiceTemplatePageClass *> LMInvoiceTemplateClass::pages() const {
    return objectsForKeyAs<LMInvoiceTemplatePageClass>(TAKey::pages);
}

QList<TAInvoice *> LMInvoiceTemplateClass::invoices() const {
    return objectsForKeyAs<TAInvoice>(TAKey::invoices);
}

// ---- Pages, background, positions, copies ----

namespace {

const QString kPositionSeparator = QStringLiteral("|");
const QString kTagSeparator = QStringLiteral("+");
// The seed entry's number; no element type is negative.
constexpr qint64 kSeedTag = -1;

LMInvoiceTemplateClass::PaperSizeProvider &paperSizeProvider() {
    static LMInvoiceTemplateClass::PaperSizeProvider provider;
    return provider;
}

void post(const QString &name, ManagedObject *object) {
    TANotificationCenter::defaultCenter().postNotificationName(name, object);
}

LMInvoiceTemplatePageClass *insertPage(ManagedObjectContext *context) {
    return context->insertNewObjectAs<LMInvoiceTemplatePageClass>(TAEntity::InvoiceTemplatePage);
}

} // namespace

void LMInvoiceTemplateClass::awakeFromInsert() {
    LMManagedObject::awakeFromInsert();
    setPrimitiveValueForKey(OTClock::now(), TAKey::creationDate);
}

void LMInvoiceTemplateClass::didChangeValueForKey(const QString &key) {
    LMManagedObject::didChangeValueForKey(key);
    if (isUndoingOrRedoing())
        return;
    if (key == TAKey::name)
        post(LMNotification::needsReloadInvoiceStylesMenu, this);
    else if (key == TAKey::previewImageData)
        post(LMNotification::previewImageChange, this);
}

void LMInvoiceTemplateClass::updateAfterInsert() {
    // Runs right after the context inserted the template.
    ManagedObjectContext *context = managedObjectContext();
    BF_CHECK(context, return);
    LMInvoiceTemplatePageClass *page = insertPage(context);
    page->setTag(0);
    page->setInvoiceTemplate(this);
    setCreationDate(OTClock::now());
}

QList<LMInvoiceTemplatePageClass *> LMInvoiceTemplateClass::getSortedPages() const {
    QList<LMInvoiceTemplatePageClass *> out = pages();
    std::stable_sort(out.begin(), out.end(), [](auto *a, auto *b) { return a->tag() < b->tag(); });
    return out;
}

void LMInvoiceTemplateClass::postPagesReload(ManagedObject *object) {
    post(LMNotification::pagesTableViewNeedsReload, object);
}

void LMInvoiceTemplateClass::addPageWithTag(qint64 tag) {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return;
    UndoManager *undo = context->undoManager();
    if (undo)
        undo->beginUndoGrouping();
    for (LMInvoiceTemplatePageClass *page : pages())
        if (page->tag() >= tag)
            page->setTag(page->tag() + 1);
    LMInvoiceTemplatePageClass *page = insertPage(context);
    page->setTag(tag);
    page->setInvoiceTemplate(this);
    postPagesReload(page);
    post(LMNotification::previewAllImagesNeedsUpdate, this);
    context->processPendingChanges();
    if (undo)
        undo->endUndoGrouping();
}

void LMInvoiceTemplateClass::removePageAtIndex(qint64 index) {
    ManagedObjectContext *context = managedObjectContext();
    const QList<LMInvoiceTemplatePageClass *> sorted = getSortedPages();
    if (!context || index < 0 || index >= sorted.size())
        return;
    LMInvoiceTemplatePageClass *page = sorted.at(index);
    page->deleteElements();
    page->setInvoiceTemplate(nullptr);
    page->setValueForKey(QVariant::fromValue(QList<ManagedObject *>()), TAKey::elements);
    context->deleteObject(page);
    const QList<LMInvoiceTemplatePageClass *> rest = getSortedPages();
    for (qsizetype i = 0; i < rest.size(); ++i)
        if (rest.at(i)->tag() != i)
            rest.at(i)->setTag(i);
    postPagesReload(this);
}

Result<void> LMInvoiceTemplateClass::removePageWithTag(qint64 tag) {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return Error{ErrorCode::Generic,
                     QCoreApplication::translate("LMInvoiceTemplateClass",
                                                 "The template \"%1\" is not in a document, so "
                                                 "its pages cannot be changed.")
                         .arg(name())};
    for (LMInvoiceTemplatePageClass *page : pages()) {
        if (page->tag() != tag)
            continue;
        page->deleteElements();
        context->deleteObject(page);
        context->processPendingChanges();
        postPagesReload(this);
        return {};
    }
    return Error{ErrorCode::Generic,
                 QCoreApplication::translate("LMInvoiceTemplateClass",
                                             "The template \"%1\" has no page with tag %2.")
                     .arg(name())
                     .arg(tag)};
}

bool LMInvoiceTemplateClass::containsPageWithTag(qint64 tag) const {
    for (LMInvoiceTemplatePageClass *page : pages())
        if (page->tag() == tag)
            return true;
    return false;
}

QImage LMInvoiceTemplateClass::coverImage() const {
    const QList<LMInvoiceTemplatePageClass *> sorted = getSortedPages();
    if (sorted.isEmpty())
        return {};
    return sorted.first()->flippedPreviewImage();
}

QString LMInvoiceTemplateClass::coverTitle() const {
    const QString title = name();
    if (!title.isEmpty())
        return title;
    return QCoreApplication::translate("LMInvoiceTemplateClass", "import_accunknown Untitled");
}

QImage LMInvoiceTemplateClass::bgImage() const {
    return LMArchivedImage::unarchive(backgroundImage());
}

QColor LMInvoiceTemplateClass::bgColor() const {
    return LMArchivedColor::unarchive(backgroundColor(), Qt::white);
}

QColor LMInvoiceTemplateClass::bgColor2() const {
    return LMArchivedColor::unarchive(backgroundColor2(), Qt::white);
}

LMInvoiceTemplateClass::PaperSizeProvider
LMInvoiceTemplateClass::exchangePaperSizeProvider(PaperSizeProvider provider) {
    return std::exchange(paperSizeProvider(), std::move(provider));
}

QSizeF LMInvoiceTemplateClass::defaultPaperSize(ManagedObjectContext *context) {
    QSizeF paper;
    if (paperSizeProvider())
        paper = paperSizeProvider()(context);
    else if (QLocale().measurementSystem() == QLocale::ImperialUSSystem)
        paper = QSizeF(612, 792);
    else
        paper = QSizeF(595, 842);
    if (paper.width() < 100 || paper.height() < 100)
        paper = QSizeF(612, 792);
    return paper;
}

QSizeF LMInvoiceTemplateClass::pageSize() {
    const QString stored = size();
    if (!stored.isEmpty())
        return LMGeometry::sizeFromString(stored);
    const QSizeF paper = defaultPaperSize(managedObjectContext());
    setSize(LMGeometry::stringFromSize(paper));
    return paper;
}

void LMInvoiceTemplateClass::addPosition(const QRectF &position, qint64 withTag) {
    QString stored = positions();
    const QString entry = LMGeometry::stringFromRect(position) + kTagSeparator;
    if (stored.isEmpty())
        stored = entry + QString::number(kSeedTag);
    QStringList kept;
    for (const QString &item : stored.split(kPositionSeparator)) {
        const QStringList parts = item.split(kTagSeparator);
        if (parts.size() != 2 || parts.at(1) == QString::number(withTag))
            continue;
        kept.append(item);
    }
    kept.append(entry + QString::number(withTag));
    setPositions(kept.join(kPositionSeparator));
}

QRectF LMInvoiceTemplateClass::positionWithTag(qint64 tag) const {
    const QString stored = positions();
    if (stored.isEmpty())
        return {};
    for (const QString &item : stored.split(kPositionSeparator)) {
        const QStringList parts = item.split(kTagSeparator);
        if (parts.size() == 2 && parts.at(1) == QString::number(tag))
            return LMGeometry::rectFromString(parts.at(0));
    }
    return {};
}

LMInvoiceTemplateClass *LMInvoiceTemplateClass::getCopy() const {
    auto *copy = dynamic_cast<LMInvoiceTemplateClass *>(insertAttributeCopy());
    if (!copy)
        return nullptr;
    for (LMInvoiceTemplatePageClass *page : getSortedPages())
        if (LMInvoiceTemplatePageClass *pageCopy = page->getCopy())
            pageCopy->setInvoiceTemplate(copy);
    return copy;
}

QVariantMap LMInvoiceTemplateClass::getDescriptionDictionary() const {
    QVariantMap out = attributeDictionary();
    QVariantList children;
    for (LMInvoiceTemplatePageClass *page : getSortedPages())
        children.append(page->getDescriptionDict());
    out.insert(TAKey::pages, children);
    return out;
}

void LMInvoiceTemplateClass::initWithDescriptionDictionary(const QVariantMap &dictionary) {
    // Runs on a template just inserted for the description.
    ManagedObjectContext *context = managedObjectContext();
    BF_CHECK(context, return);
    setAttributesFromDictionary(dictionary);
    for (const QVariant &child : dictionary.value(TAKey::pages).toList()) {
        const QVariantMap pageDictionary = child.toMap();
        const qint64 tag = pageDictionary.value(TAKey::tag).toLongLong();
        LMInvoiceTemplatePageClass *page = insertPage(context);
        for (LMInvoiceTemplatePageClass *existing : pages())
            if (existing->tag() >= tag)
                existing->setTag(existing->tag() + 1);
        page->initWithDescriptionDictionary(pageDictionary);
        page->setInvoiceTemplate(this);
        page->setTag(tag);
    }
}
