#include "store/entities/LMInvoiceElementClass.h"

#include "foundation/Check.h"
#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPreferences.h"

#include "foundation/TANotificationCenter.h"
#include "layoutvalues/LMArchivedColor.h"
#include "layoutvalues/LMArchivedImage.h"
#include "layoutvalues/LMElementTypes.h"
#include "layoutvalues/LMNotifications.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TAContextDatabase.h"

#include <QCoreApplication>

#include <algorithm>

int LMInvoiceElementClass::type() const {
    return int(integerForKey(TAKey::type));
}

void LMInvoiceElementClass::setType(int value) {
    EntityValues::setInteger(this, TAKey::type, value);
}

QString LMInvoiceElementClass::frame() const {
    return stringForKey(TAKey::frame);
}

void LMInvoiceElementClass::setFrame(const QString &value) {
    EntityValues::setString(this, TAKey::frame, value);
}

qint64 LMInvoiceElementClass::orderNr() const {
    return integerForKey(TAKey::orderNr);
}

void LMInvoiceElementClass::setOrderNr(qint64 value) {
    EntityValues::setInteger(this, TAKey::orderNr, value);
}

bool LMInvoiceElementClass::isHidden() const {
    return boolForKey(TAKey::isHidden);
}

void LMInvoiceElementClass::setIsHidden(bool value) {
    EntityValues::setBool(this, TAKey::isHidden, value);
}

QByteArray LMInvoiceElementClass::text() const {
    return dataForKey(TAKey::text);
}

void LMInvoiceElementClass::setText(const QByteArray &value) {
    EntityValues::setData(this, TAKey::text, value);
}

QByteArray LMInvoiceElementClass::textAttributes() const {
    return dataForKey(TAKey::textAttributes);
}

void LMInvoiceElementClass::setTextAttributes(const QByteArray &value) {
    EntityValues::setData(this, TAKey::textAttributes, value);
}

QByteArray LMInvoiceElementClass::color() const {
    return dataForKey(TAKey::color);
}

void LMInvoiceElementClass::setColor(const QByteArray &value) {
    EntityValues::setData(this, TAKey::color, value);
}

QByteArray LMInvoiceElementClass::image() const {
    return dataForKey(TAKey::image);
}

void LMInvoiceElementClass::setImage(const QByteArray &value) {
    EntityValues::setData(this, TAKey::image, value);
}

int LMInvoiceElementClass::style() const {
    return int(integerForKey(TAKey::style));
}

void LMInvoiceElementClass::setStyle(int value) {
    EntityValues::setInteger(this, TAKey::style, value);
}

LMInvoiceTemplatePageClass *LMInvoiceElementClass::page() const {
    return objectForKeyAs<LMInvoiceTemplatePageClass>(TAKey::page);
}

void LMInvoiceElementClass::setPage(LMInvoiceTemplatePageClass *value) {
    setObjectForKey(value, TAKey::page);
}

QList<LMInvoiceTemplateColumnClass *> LMInvoiceElementClass::columns() const {
    return objectsForKeyAs<LMInvoiceTemplateColumnClass>(TAKey::columns);
}

QList<LMInvoiceTemplateColumnClass *> LMInvoiceElementClass::rows() const {
    return objectsForKeyAs<LMInvoiceTemplateColumnClass>(TAKey::rows);
}

// ---- Text, colour, picture ----

namespace {

struct ColumnDefinition {
    const char *colID;
    const char *title;
};

const ColumnDefinition kItemColumns[] = {
    {"_sku_", "SKU"},
    {"_description_", "Description"},
    {"_quantity_", "Units/Hours"},
    {"_tax_", "Tax"},
    {"_discount_", "Discount"},
    {"_discount_in_cash_", "Discount In Cash"},
    {"_unitprice_", "Unit Price"},
    {"_unitprice_with_discount_", "Unit Price w. Discount"},
    {"_cost_", "Cost"},
};

const ColumnDefinition kTotalRows[] = {
    {"_total_table_subtotal_", "Subtotal"}, {"_total_table_tax_", "Tax"},
    {"_total_table_tax2_", "Tax 2"},        {"_total_table_discount_", "Discount"},
    {"_total_table_total_", "Total"},       {"_total_table_paid_", "Paid"},
    {"_total_table_left_", "Left"},
};

const QString kTaxColumn = QStringLiteral("_tax_");
const QString kTaxRow = QStringLiteral("_total_table_tax_");

QString localized(const char *text) {
    return QCoreApplication::translate("LMInvoiceElementClass", text);
}

// Each word starts with a capital and goes on in small letters.
QString capitalized(const QString &text) {
    QString out = text.toLower();
    bool start = true;
    for (QChar &c : out) {
        if (start && c.isLetter())
            c = c.toUpper();
        start = c.isSpace();
    }
    return out;
}

QByteArray alignedAttributes(qsizetype position) {
    return LMTextAttributes::withAlignment(position == 0 ? LMTextAlignment::Left
                                                         : LMTextAlignment::Right)
        .archive();
}

bool hiddenAtCreation(const QString &colID) {
    return colID == QLatin1String("_discount_") || colID == QLatin1String("_discount_in_cash_") ||
           colID == QLatin1String("_unitprice_with_discount_");
}

QList<LMInvoiceTemplateColumnClass *> byNr(QList<LMInvoiceTemplateColumnClass *> list) {
    std::stable_sort(list.begin(), list.end(), [](auto *a, auto *b) { return a->nr() < b->nr(); });
    return list;
}

bool documentTaxesEnabled(ManagedObjectContext *context) {
    TAPreferences *preferences = TAContextDatabase::getPreferencesInContext(context);
    return preferences && preferences->taxesEnabled();
}

void postTableReload(ManagedObject *element) {
    TANotificationCenter::defaultCenter().postNotificationName(
        LMNotification::templateTableViewNeedsReload, element);
}

} // namespace

LMAttributedString LMInvoiceElementClass::attributedString() const {
    return LMAttributedString::unarchive(text());
}

void LMInvoiceElementClass::setAttributedString(const std::optional<LMAttributedString> &value) {
    if (!value) {
        if (!isNullForKey(TAKey::text))
            setText({});
        return;
    }
    const QByteArray archived = value->archive();
    if (archived != text())
        setText(archived);
}

LMTextAttributes LMInvoiceElementClass::getAttributes() {
    if (textAttributes().isEmpty()) {
        const LMTextAttributes attributes = LMTextAttributes::systemFontAttributes();
        setTextAttributes(attributes.archive());
        return attributes;
    }
    return LMTextAttributes::unarchive(textAttributes());
}

void LMInvoiceElementClass::setAttributes(const LMTextAttributes &attributes) {
    setTextAttributes(attributes.archive());
}

QColor LMInvoiceElementClass::bgColor() const {
    return LMArchivedColor::unarchive(color(), QColor::fromRgbF(0.416f, 0.784f, 0.902f, 1.0f));
}

void LMInvoiceElementClass::setBgColor(const QColor &value) {
    if (value.isValid())
        setColor(LMArchivedColor::archive(value));
}

QImage LMInvoiceElementClass::imageToDraw() const {
    return LMArchivedImage::unarchive(image());
}

void LMInvoiceElementClass::setNewImage(const QImage &value) {
    if (!value.isNull())
        setImage(LMArchivedImage::archive(value));
}

// ---- Columns and rows ----

QStringList LMInvoiceElementClass::columnIdentifiers(bool taxesEnabled) {
    QStringList out;
    for (const ColumnDefinition &column : kItemColumns)
        if (taxesEnabled || kTaxColumn != QLatin1String(column.colID))
            out.append(QLatin1String(column.colID));
    return out;
}

QString LMInvoiceElementClass::columnTitle(const QString &colID) {
    for (const ColumnDefinition &column : kItemColumns)
        if (colID == QLatin1String(column.colID))
            return localized(column.title);
    return colID;
}

QStringList LMInvoiceElementClass::totalTableRowsIdentifiers() {
    QStringList out;
    for (const ColumnDefinition &row : kTotalRows)
        out.append(QLatin1String(row.colID));
    return out;
}

QStringList LMInvoiceElementClass::totalTableRowsTitles() {
    QStringList out;
    for (const ColumnDefinition &row : kTotalRows)
        out.append(localized(row.title));
    return out;
}

QString LMInvoiceElementClass::totalTableRowTitle(const QString &colID) {
    for (const ColumnDefinition &row : kTotalRows)
        if (colID == QLatin1String(row.colID))
            return localized(row.title);
    return QStringLiteral("Error:Unknown title");
}

LMInvoiceTemplateColumnClass *LMInvoiceElementClass::insertColumn(qsizetype nr,
                                                                  const QString &colID,
                                                                  const QString &name,
                                                                  const QByteArray &attributes) {
    auto *column = managedObjectContext()->insertNewObjectAs<LMInvoiceTemplateColumnClass>(
        TAEntity::InvoiceTemplateColumn);
    column->setNr(nr);
    if (hiddenAtCreation(colID))
        column->setVisible(false);
    column->setName(name);
    column->setColID(colID);
    column->setTextAttributes(attributes.isEmpty() ? alignedAttributes(nr) : attributes);
    return column;
}

QList<LMInvoiceTemplateColumnClass *> LMInvoiceElementClass::getColsArray() {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return {};
    const bool taxes = documentTaxesEnabled(context);
    const bool itemsTable = type() == LMElementTypes::InvoiceItems;
    const QStringList identifiers =
        itemsTable ? columnIdentifiers(taxes)
                   : QStringList{QStringLiteral("name"), QStringLiteral("value")};
    QList<LMInvoiceTemplateColumnClass *> existing = columns();
    if (existing.isEmpty()) {
        for (qsizetype i = 0; i < identifiers.size(); ++i) {
            const QString &id = identifiers.at(i);
            insertColumn(i, id, itemsTable ? columnTitle(id) : id, {})->setElement(this);
        }
    } else if (itemsTable) {
        const QByteArray lastAttributes = existing.last()->textAttributes();
        for (qsizetype i = 0; i < identifiers.size(); ++i) {
            const QString &id = identifiers.at(i);
            auto found = std::find_if(existing.begin(), existing.end(),
                                      [&](auto *column) { return column->colID() == id; });
            if (found != existing.end()) {
                if ((*found)->nr() != i)
                    (*found)->setNr(i);
            } else {
                insertColumn(i, id, columnTitle(id), lastAttributes)->setElement(this);
            }
        }
        if (!taxes)
            for (LMInvoiceTemplateColumnClass *column : existing)
                if (column->colID() == kTaxColumn)
                    context->deleteObject(column);
    }
    return byNr(columns());
}

QList<LMInvoiceTemplateColumnClass *> LMInvoiceElementClass::getRowsArray() {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return {};
    if (type() != LMElementTypes::TotalAmounts)
        return byNr(rows());
    const QStringList identifiers = totalTableRowsIdentifiers();
    const QList<LMInvoiceTemplateColumnClass *> stored = rows();
    const bool good = !stored.isEmpty() &&
                      std::all_of(stored.begin(), stored.end(),
                                  [&](auto *row) { return identifiers.contains(row->colID()); });
    if (!good) {
        const QByteArray remembered =
            stored.isEmpty() ? QByteArray() : stored.last()->textAttributes();
        for (LMInvoiceTemplateColumnClass *row : stored)
            context->deleteObject(row);
        context->processPendingChanges();
        for (qsizetype i = 0; i < identifiers.size(); ++i) {
            const QString &id = identifiers.at(i);
            insertColumn(i, id, capitalized(totalTableRowTitle(id)), remembered)
                ->setRowElement(this);
        }
    }
    return byNr(rows());
}

QList<LMInvoiceTemplateColumnClass *> LMInvoiceElementClass::tableEntries() {
    return type() == LMElementTypes::TotalAmounts ? getRowsArray() : getColsArray();
}

void LMInvoiceElementClass::updateColumnsWidthsFromIndex(int index) {
    (void)index;
    const QList<LMInvoiceTemplateColumnClass *> list = tableEntries();
    if (!list.isEmpty()) {
        double sum = 0;
        for (qsizetype i = 1; i < list.size(); ++i)
            if (list.at(i)->visible())
                sum += list.at(i)->width();
        if (sum <= 100) {
            list.first()->setWidth(100 - sum);
        } else {
            double total = 0;
            qsizetype last = -1;
            for (qsizetype i = 0; i < list.size() && total < 100; ++i) {
                if (!list.at(i)->visible())
                    continue;
                total += list.at(i)->width();
                last = i;
            }
            if (total >= 100 && last >= 0) {
                list.at(last)->setWidth(list.at(last)->width() - (total - 100));
                for (qsizetype i = last + 1; i < list.size(); ++i)
                    if (list.at(i)->visible())
                        list.at(i)->setWidth(0);
            }
        }
    }
    if (ManagedObjectContext *context = managedObjectContext())
        context->processPendingChanges();
    postTableReload(this);
}

void LMInvoiceElementClass::deleteColumnsAndRows() {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return;
    for (LMInvoiceTemplateColumnClass *column : columns()) {
        column->setElement(nullptr);
        context->deleteObject(column);
        context->processPendingChanges();
    }
    for (LMInvoiceTemplateColumnClass *row : rows()) {
        row->setRowElement(nullptr);
        context->deleteObject(row);
        context->processPendingChanges();
    }
    setValueForKey(QVariant::fromValue(QList<ManagedObject *>()), TAKey::columns);
    setValueForKey(QVariant::fromValue(QList<ManagedObject *>()), TAKey::rows);
}

// ---- Copies and descriptions ----

LMInvoiceElementClass *LMInvoiceElementClass::getCopy() const {
    auto *copy = dynamic_cast<LMInvoiceElementClass *>(insertAttributeCopy());
    if (!copy)
        return nullptr;
    for (LMInvoiceTemplateColumnClass *row : rows())
        if (LMInvoiceTemplateColumnClass *rowCopy = row->getCopy())
            rowCopy->setRowElement(copy);
    for (LMInvoiceTemplateColumnClass *column : columns())
        if (LMInvoiceTemplateColumnClass *columnCopy = column->getCopy())
            columnCopy->setElement(copy);
    return copy;
}

QVariantMap LMInvoiceElementClass::getDescriptionDict() const {
    QVariantMap out = attributeDictionary();
    QVariantList columnList;
    for (LMInvoiceTemplateColumnClass *column : columns())
        columnList.append(column->getDescriptionDict());
    if (!columnList.isEmpty())
        out.insert(TAKey::columns, columnList);
    QVariantList rowList;
    for (LMInvoiceTemplateColumnClass *row : rows())
        rowList.append(row->getDescriptionDict());
    if (!rowList.isEmpty())
        out.insert(TAKey::rows, rowList);
    return out;
}

void LMInvoiceElementClass::initWithDescriptionDictionary(const QVariantMap &dictionary) {
    // Runs on an element just inserted for the description.
    ManagedObjectContext *context = managedObjectContext();
    BF_CHECK(context, return);
    setAttributesFromDictionary(dictionary);
    auto insert = [&](const QVariant &child) {
        auto *entry = context->insertNewObjectAs<LMInvoiceTemplateColumnClass>(
            TAEntity::InvoiceTemplateColumn);
        entry->initWithDescriptionDictionary(child.toMap());
        return entry;
    };
    for (const QVariant &child : dictionary.value(TAKey::rows).toList())
        insert(child)->setRowElement(this);
    for (const QVariant &child : dictionary.value(TAKey::columns).toList())
        insert(child)->setElement(this);
}

// ---- Inspector table ----

int LMInvoiceElementClass::numberOfRowsInTableView() {
    if (type() == LMElementTypes::InvoiceItems)
        return int(getColsArray().size());
    if (type() == LMElementTypes::TotalAmounts)
        return int(getRowsArray().size());
    return 0;
}

bool LMInvoiceElementClass::tableViewShouldEditTableColumn(int row) {
    if (type() != LMElementTypes::TotalAmounts)
        return true;
    const QList<LMInvoiceTemplateColumnClass *> list = getRowsArray();
    return !(row >= 0 && row < list.size() && list.at(row)->colID() == kTaxRow);
}

QVariant LMInvoiceElementClass::tableViewObjectValue(const QString &columnIdentifier, int row) {
    const QList<LMInvoiceTemplateColumnClass *> list = tableEntries();
    if (row < 0 || row >= list.size())
        return {};
    return list.at(row)->valueForKey(columnIdentifier);
}

void LMInvoiceElementClass::tableViewSetObjectValue(const QVariant &value,
                                                    const QString &columnIdentifier, int row) {
    const QList<LMInvoiceTemplateColumnClass *> list = tableEntries();
    if (row >= 0 && row < list.size()) {
        list.at(row)->setValueForKey(value, columnIdentifier);
        if (columnIdentifier == TAKey::width || columnIdentifier == TAKey::visible)
            updateColumnsWidthsFromIndex(row);
    }
    postTableReload(this);
}
