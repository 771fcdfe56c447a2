#pragma once

#include "foundation/Result.h"
#include "foundation/ScopedOverride.h"
#include "store/entities/LMManagedObject.h"

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSizeF>

#include <functional>

class LMInvoiceTemplatePageClass;
class ManagedObjectContext;
class TAInvoice;

// A user-editable invoice layout: background and ordered pages.
class LMInvoiceTemplateClass : public LMManagedObject {
public:
    QString name() const;
    void setName(const QString &value);
    QDateTime creationDate() const;
    void setCreationDate(const QDateTime &value);
    QString size() const;
    void setSize(const QString &value);
    QString positions() const;
    void setPositions(const QString &value);
    QByteArray previewImageData() const;
    void setPreviewImageData(const QByteArray &value);
    int backgroundType() const;
    void setBackgroundType(int value);
    int backgroundImageType() const;
    void setBackgroundImageType(int value);
    qint64 backgroundGradientAngle() const;
    void setBackgroundGradientAngle(qint64 value);
    QByteArray backgroundColor() const;
    void setBackgroundColor(const QByteArray &value);
    QByteArray backgroundColor2() const;
    void setBackgroundColor2(const QByteArray &value);
    QByteArray backgroundImage() const;
    void setBackgroundImage(const QByteArray &value);
    QList<LMInvoiceTemplatePageClass *> pages() const;
    QList<TAInvoice *> invoices() const;

    void awakeFromInsert() override;
    void didChangeValueForKey(const QString &key) override;

    // Gives a new template its first page, tag 0, and the creation date.
    void updateAfterInsert();
    QList<LMInvoiceTemplatePageClass *> getSortedPages() const;
    // Inserts a page at the tag, moving the pages at or above it up by one; one undo group.
    void addPageWithTag(qint64 tag);
    // Deletes the page at that sorted position and renumbers the others from 0.
    void removePageAtIndex(qint64 index);
    // Deletes the page with that tag; the other tags stay, gaps and all.
    Result<void> removePageWithTag(qint64 tag);
    bool containsPageWithTag(qint64 tag) const;

    QImage coverImage() const;
    QString coverTitle() const;
    QImage bgImage() const;
    QColor bgColor() const;
    QColor bgColor2() const;

    // The stored size, or the document's paper when none is stored (written back).
    QSizeF pageSize();
    // Where the paper size of a document comes from; by default the locale's usual paper.
    using PaperSizeProvider = std::function<QSizeF(ManagedObjectContext *)>;
    // Takes the paper size from the provider while it lives; empty means the locale's paper.
    class ScopedPaperSizeProvider : public ScopedOverride<PaperSizeProvider> {
    public:
        explicit ScopedPaperSizeProvider(PaperSizeProvider provider)
            : ScopedOverride(&LMInvoiceTemplateClass::exchangePaperSizeProvider,
                             std::move(provider)) {}
    };
    static QSizeF defaultPaperSize(ManagedObjectContext *context);

    // Remembered frames of removed unique elements, by element type.
    void addPosition(const QRectF &position, qint64 withTag);
    QRectF positionWithTag(qint64 tag) const;

    // A deep copy in the same context: pages, elements, columns and rows, not the invoices.
    LMInvoiceTemplateClass *getCopy() const;
    QVariantMap getDescriptionDictionary() const;
    void initWithDescriptionDictionary(const QVariantMap &dictionary);

private:
    static PaperSizeProvider exchangePaperSizeProvider(PaperSizeProvider provider);
    void postPagesReload(ManagedObject *object);
};
