#pragma once

#include "store/entities/LMManagedObject.h"

#include "layoutvalues/LMAttributedString.h"
#include "layoutvalues/LMTextAttributes.h"

#include <QColor>
#include <QImage>

#include <optional>

class LMInvoiceTemplateColumnClass;
class LMInvoiceTemplatePageClass;

// One element of a template page; tables have columns, totals elements have columns and rows.
class LMInvoiceElementClass : public LMManagedObject {
public:
    int type() const;
    void setType(int value);
    QString frame() const;
    void setFrame(const QString &value);
    qint64 orderNr() const;
    void setOrderNr(qint64 value);
    bool isHidden() const;
    void setIsHidden(bool value);
    QByteArray text() const;
    void setText(const QByteArray &value);
    QByteArray textAttributes() const;
    void setTextAttributes(const QByteArray &value);
    QByteArray color() const;
    void setColor(const QByteArray &value);
    QByteArray image() const;
    void setImage(const QByteArray &value);
    int style() const;
    void setStyle(int value);
    LMInvoiceTemplatePageClass *page() const;
    void setPage(LMInvoiceTemplatePageClass *value);
    QList<LMInvoiceTemplateColumnClass *> columns() const;
    QList<LMInvoiceTemplateColumnClass *> rows() const;

    // The template text with its tags; empty when unset or unreadable.
    LMAttributedString attributedString() const;
    // Writes only a different value; no value clears the text.
    void setAttributedString(const std::optional<LMAttributedString> &value);
    // The element's text attributes; when unset, the system font of size 12 is stored first.
    LMTextAttributes getAttributes();
    void setAttributes(const LMTextAttributes &attributes);
    QColor bgColor() const;
    void setBgColor(const QColor &color); // an invalid colour is ignored
    QImage imageToDraw() const;
    void setNewImage(const QImage &image); // a null image is ignored

    // Identifiers and titles of the items table's columns, without the tax column when taxes
    // are off.
    static QStringList columnIdentifiers(bool taxesEnabled);
    static QString columnTitle(const QString &colID);
    static QStringList totalTableRowsIdentifiers();
    static QStringList totalTableRowsTitles();
    static QString totalTableRowTitle(const QString &colID);

    // Columns by `nr`, repaired first: made when missing, renumbered, the tax column added or
    // removed after the document's tax setting. Empty without a context.
    QList<LMInvoiceTemplateColumnClass *> getColsArray();
    // Rows by `nr`; a totals element whose rows are missing or hold an unknown identifier gets
    // the full set anew. Empty without a context.
    QList<LMInvoiceTemplateColumnClass *> getRowsArray();
    // Shares 100 among the visible columns (rows for totals); the index is not used.
    void updateColumnsWidthsFromIndex(int index);
    void deleteColumnsAndRows();

    LMInvoiceElementClass *getCopy() const;
    QVariantMap getDescriptionDict() const;
    void initWithDescriptionDictionary(const QVariantMap &dictionary);

    // The inspector's table of columns (rows for a totals element).
    int numberOfRowsInTableView();
    bool tableViewShouldEditTableColumn(int row);
    QVariant tableViewObjectValue(const QString &columnIdentifier, int row);
    void tableViewSetObjectValue(const QVariant &value, const QString &columnIdentifier, int row);

private:
    LMInvoiceTemplateColumnClass *insertColumn(qsizetype nr, const QString &colID,
                                               const QString &name, const QByteArray &attributes);
    QList<LMInvoiceTemplateColumnClass *> tableEntries();
};
