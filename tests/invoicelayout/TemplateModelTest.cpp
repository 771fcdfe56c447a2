#include "LayoutFixture.h"

#include "foundation/TANotificationCenter.h"
#include "layoutvalues/LMArchivedColor.h"
#include "layoutvalues/LMGeometry.h"
#include "layoutvalues/LMNotifications.h"
#include "objectstore/UndoManager.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAPreferences.h"

#include <algorithm>

namespace {

// Records notifications of the given names as "name@object".
class Recorder {
public:
    explicit Recorder(const QStringList &names) {
        for (const QString &name : names)
            m_tokens.append(TANotificationCenter::defaultCenter().addObserver(
                name, [this](const QString &n, ManagedObject *o) {
                    seen.append({n, o});
                }));
    }
    ~Recorder() {
        for (int token : m_tokens)
            TANotificationCenter::defaultCenter().removeObserver(token);
    }
    QList<std::pair<QString, ManagedObject *>> seen;

private:
    QList<int> m_tokens;
};

QList<qint64> tags(LMInvoiceTemplateClass *t) {
    QList<qint64> out;
    for (LMInvoiceTemplatePageClass *page : t->getSortedPages())
        out.append(page->tag());
    return out;
}

// Children in a fixed order, so that dictionaries of two documents compare.
QVariant normalised(const QVariant &value) {
    if (value.typeId() == QMetaType::QVariantMap) {
        QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            it.value() = normalised(it.value());
        return map;
    }
    if (value.typeId() == QMetaType::QVariantList) {
        QVariantList list = value.toList();
        for (QVariant &entry : list)
            entry = normalised(entry);
        std::stable_sort(list.begin(), list.end(), [](const QVariant &a, const QVariant &b) {
            return a.toMap().value(TAKey::colID).toString() <
                   b.toMap().value(TAKey::colID).toString();
        });
        return list;
    }
    return value;
}

} // namespace

class TemplateModelTest : public LayoutFixture {
protected:
    // Two pages; the first with a table, totals and a text; the second with a shape.
    LMInvoiceTemplateClass *sampleTemplate(ManagedObjectContext *in = nullptr) {
        LMInvoiceTemplateClass *t = newTemplate(in);
        t->setName(QStringLiteral("Sample"));
        t->setBackgroundType(2);
        t->setBackgroundColor(LMArchivedColor::archive(Qt::yellow));
        t->addPageWithTag(1);
        const QList<LMInvoiceTemplatePageClass *> pages = t->getSortedPages();
        LMInvoiceElementClass *table = pages[0]->newElement();
        table->setType(13);
        table->setOrderNr(1);
        table->setFrame(LMGeometry::stringFromRect({40, 300, 500, 200}));
        table->getColsArray();
        LMInvoiceElementClass *totals = pages[0]->newElement();
        totals->setType(2);
        totals->setOrderNr(2);
        totals->getColsArray();
        totals->getRowsArray();
        LMInvoiceElementClass *text = pages[0]->newElement();
        text->setType(3);
        text->setAttributedString(LMAttributedString(QStringLiteral("No. [INVOICE NUMBER]"),
                                                     LMTextAttributes::systemFontAttributes()));
        LMInvoiceElementClass *shape = pages[1]->newElement();
        shape->setType(22);
        shape->setBgColor(Qt::green);
        return t;
    }
};

TEST_F(TemplateModelTest, PagesAreInsertedAndRemovedByTagWithTheirNotifications) {
    LMInvoiceTemplateClass *t = newTemplate();
    ASSERT_EQ(tags(t), (QList<qint64>{0}));
    LMInvoiceTemplatePageClass *first = t->getSortedPages().first();
    UndoManager *undo = context()->undoManager();
    context()->processPendingChanges();
    undo->removeAllActions();

    Recorder recorder(
        {LMNotification::pagesTableViewNeedsReload, LMNotification::previewAllImagesNeedsUpdate});
    t->addPageWithTag(0);
    EXPECT_EQ(tags(t), (QList<qint64>{0, 1}));
    EXPECT_EQ(first->tag(), 1);
    LMInvoiceTemplatePageClass *added = t->getSortedPages().first();
    ASSERT_EQ(recorder.seen.size(), 2);
    EXPECT_EQ(recorder.seen[0], std::make_pair(LMNotification::pagesTableViewNeedsReload,
                                               static_cast<ManagedObject *>(added)));
    EXPECT_EQ(recorder.seen[1], std::make_pair(LMNotification::previewAllImagesNeedsUpdate,
                                               static_cast<ManagedObject *>(t)));
    // One undo step takes the page out and the old one back to 0.
    EXPECT_EQ(undo->undoCount(), 1);
    undo->undo();
    EXPECT_EQ(tags(t), (QList<qint64>{0}));
    undo->redo();
    EXPECT_EQ(tags(t), (QList<qint64>{0, 1}));

    t->addPageWithTag(10); // above all others: nothing moves
    EXPECT_EQ(tags(t), (QList<qint64>{0, 1, 10}));
    EXPECT_TRUE(t->containsPageWithTag(10));

    // By tag: a gap remains. By position: tags are made to follow positions.
    LMInvoiceElementClass *element = first->newElement();
    element->setType(13);
    LMInvoiceTemplateColumnClass *column = element->getColsArray().first();
    EXPECT_TRUE(t->removePageWithTag(1).ok());
    const Result<void> again = t->removePageWithTag(1);
    ASSERT_FALSE(again.ok());
    EXPECT_TRUE(again.error().message.contains(QStringLiteral("no page with tag 1")))
        << again.error().message.toStdString();
    EXPECT_EQ(element->managedObjectContext(), nullptr);
    EXPECT_EQ(column->managedObjectContext(), nullptr);
    EXPECT_EQ(tags(t), (QList<qint64>{0, 10}));
    t->addPageWithTag(5);
    recorder.seen.clear();
    t->removePageAtIndex(0);
    EXPECT_EQ(tags(t), (QList<qint64>{0, 1}));
    EXPECT_EQ(recorder.seen.size(), 1);
    t->removePageAtIndex(2);
    t->removePageAtIndex(-1);
    EXPECT_EQ(t->pages().size(), 2);
    t->removePageAtIndex(0);
    t->removePageAtIndex(0);
    EXPECT_TRUE(t->getSortedPages().isEmpty());
    EXPECT_TRUE(t->coverImage().isNull());
}

TEST_F(TemplateModelTest, TemplateNotificationsStayQuietOnUndoButPageOnesDoNot) {
    LMInvoiceTemplateClass *t = newTemplate();
    LMInvoiceTemplatePageClass *page = t->getSortedPages().first();
    UndoManager *undo = context()->undoManager();
    context()->processPendingChanges();
    undo->removeAllActions();
    Recorder recorder(
        {LMNotification::needsReloadInvoiceStylesMenu, LMNotification::previewImageChange});

    t->setName(QStringLiteral("Renamed"));
    context()->processPendingChanges();
    ASSERT_EQ(recorder.seen.size(), 1);
    EXPECT_EQ(recorder.seen[0].first, LMNotification::needsReloadInvoiceStylesMenu);
    undo->undo();
    EXPECT_EQ(t->name(), QString());
    EXPECT_EQ(recorder.seen.size(), 1);

    recorder.seen.clear();
    page->setPreviewImageData(QByteArray("x"));
    context()->processPendingChanges();
    ASSERT_EQ(recorder.seen.size(), 1);
    EXPECT_EQ(recorder.seen[0],
              std::make_pair(LMNotification::previewImageChange, static_cast<ManagedObject *>(t)));
    undo->undo();
    EXPECT_EQ(recorder.seen.size(), 2);
    EXPECT_EQ(recorder.seen[1].second, t);
}

TEST_F(TemplateModelTest, RememberedPositions) {
    LMInvoiceTemplateClass *t = newTemplate();
    EXPECT_EQ(t->positionWithTag(3), QRectF());
    t->addPosition({10, 20, 30, 40}, 3);
    t->addPosition({1, 2, 3, 4}, 8);
    EXPECT_EQ(t->positionWithTag(3), QRectF(10, 20, 30, 40));
    EXPECT_EQ(t->positionWithTag(8), QRectF(1, 2, 3, 4));
    EXPECT_EQ(t->positionWithTag(5), QRectF());
    EXPECT_EQ(t->positions().count(QLatin1Char('|')), 2); // the seed stays

    // The same tag twice: the first is read; the next write replaces both; junk is dropped.
    t->setPositions(
        QStringLiteral("{{1, 1}, {1, 1}}+3|{{2, 2}, {2, 2}}+3|junk|{{9, 9}, {9, 9}}+4"));
    EXPECT_EQ(t->positionWithTag(3), QRectF(1, 1, 1, 1));
    t->addPosition({7, 7, 7, 7}, 3);
    EXPECT_EQ(t->positions(), QStringLiteral("{{9, 9}, {9, 9}}+4|{{7, 7}, {7, 7}}+3"));
}

TEST_F(TemplateModelTest, PageSizeIsFilledOnFirstRead) {
    LMInvoiceTemplateClass *t = newTemplate();
    t->setSize(QStringLiteral("{595, 842}"));
    EXPECT_EQ(t->pageSize(), QSizeF(595, 842));
    t->setSize(QString());
    LMInvoiceTemplateClass::ScopedPaperSizeProvider oddPaper(
        [](ManagedObjectContext *) { return QSizeF(99, 1000); });
    EXPECT_EQ(t->pageSize(), QSizeF(612, 792));
    EXPECT_EQ(t->size(), QStringLiteral("{612, 792}"));
    EXPECT_EQ(t->coverTitle(), QStringLiteral("import_accunknown Untitled"));
}

TEST_F(TemplateModelTest, DamagedArchivedValuesReadAsDefaults) {
    LMInvoiceTemplateClass *t = newTemplate();
    LMInvoiceElementClass *element = newElement(21, t->getSortedPages().first());
    EXPECT_EQ(t->bgColor(), QColor(Qt::white));
    t->setBackgroundColor2(QByteArray("\x9f\x01\x02", 3));
    EXPECT_EQ(t->bgColor2(), QColor(Qt::white));
    t->setBackgroundImage(QByteArray("garbage"));
    EXPECT_TRUE(t->bgImage().isNull());
    element->setColor(QByteArray("\xa2", 1));
    EXPECT_EQ(element->bgColor(), QColor::fromRgbF(0.416f, 0.784f, 0.902f, 1.0f));
    element->setBgColor(QColor()); // ignored
    EXPECT_EQ(element->color(), QByteArray("\xa2", 1));
    element->setText(QByteArray("\xbf\xff"));
    EXPECT_TRUE(element->attributedString().isEmpty());
    element->setNewImage(QImage()); // ignored
    EXPECT_TRUE(element->imageToDraw().isNull());

    // An unset attribute dictionary is created with the system font and kept.
    EXPECT_EQ(element->getAttributes(), LMTextAttributes::systemFontAttributes());
    EXPECT_FALSE(element->textAttributes().isEmpty());
    element->setAttributedString(std::nullopt);
    EXPECT_TRUE(element->isNullForKey(TAKey::text));
}

TEST_F(TemplateModelTest, DeepCopiesAreIndependent) {
    TAContextDatabase::getPreferencesInContext(context())->setTaxesEnabled(true);
    LMInvoiceTemplateClass *original = sampleTemplate();
    auto *invoice = insert<TAInvoice>(context(), TAEntity::Invoice);
    invoice->setInvoiceTemplate(original);
    const QVariantMap before = original->getDescriptionDictionary();

    LMInvoiceTemplateClass *copy = original->getCopy();
    ASSERT_NE(copy, original);
    EXPECT_TRUE(copy->invoices().isEmpty());
    QVariantMap copied = copy->getDescriptionDictionary();
    EXPECT_EQ(normalised(copied), normalised(before));

    // Changing or deleting the copy leaves the original as it was, and the other way round.
    LMInvoiceElementClass *copiedTable = copy->getSortedPages().first()->getSortedElements()[1];
    copiedTable->setFrame(QStringLiteral("{{0, 0}, {1, 1}}"));
    copiedTable->getColsArray().first()->setName(QStringLiteral("Code"));
    copy->getSortedPages().last()->getSortedElements().first()->setBgColor(Qt::black);
    EXPECT_EQ(normalised(original->getDescriptionDictionary()), normalised(before));
    context()->deleteObject(original);
    context()->processPendingChanges();
    EXPECT_EQ(copy->getSortedPages().size(), 2);
    EXPECT_EQ(copiedTable->getColsArray().first()->name(), QStringLiteral("Code"));
    EXPECT_EQ(copy->getSortedPages().first()->elements().size(), 3);
}

TEST_F(TemplateModelTest, DescriptionDictionariesTravelBetweenDocuments) {
    LMInvoiceTemplateClass *source = sampleTemplate();
    const QVariantMap dictionary = source->getDescriptionDictionary();
    EXPECT_EQ(dictionary.value(TAKey::pages).toList().size(), 2);
    const QVariantList elements =
        dictionary.value(TAKey::pages).toList().first().toMap().value(TAKey::elements).toList();
    EXPECT_FALSE(elements.first().toMap().contains(TAKey::columns)); // the text has none
    EXPECT_EQ(elements.last().toMap().value(TAKey::rows).toList().size(), 7);
    const QVariantMap shapePage = dictionary.value(TAKey::pages).toList().last().toMap();
    EXPECT_TRUE(shapePage.contains(TAKey::elements));

    auto other = newDocument();
    auto *target = insert<LMInvoiceTemplateClass>(other->context.get(), TAEntity::InvoiceTemplate);
    target->initWithDescriptionDictionary(dictionary);
    EXPECT_EQ(normalised(target->getDescriptionDictionary()), normalised(dictionary));
    EXPECT_EQ(target->bgColor(), QColor(Qt::yellow));

    // A page pasted with a tag that exists pushes the existing pages up.
    const QVariantMap pasted{{TAKey::pages, QVariantList{QVariantMap{{TAKey::tag, 0}}}}};
    LMInvoiceTemplatePageClass *oldFirst = target->getSortedPages().first();
    target->initWithDescriptionDictionary(pasted);
    EXPECT_EQ(tags(target), (QList<qint64>{0, 1, 2}));
    EXPECT_EQ(oldFirst->tag(), 1);
    EXPECT_TRUE(target->getSortedPages().first()->elements().isEmpty());
    EXPECT_EQ(target->name(), QStringLiteral("Sample")); // absent keys keep their value
}
