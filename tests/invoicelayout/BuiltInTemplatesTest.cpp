#include "LayoutFixture.h"

#include "invoicelayout/LMBuiltInTemplates.h"
#include "layoutvalues/LMElementTypes.h"
#include "layoutvalues/LMGeometry.h"
#include "objectstore/UndoManager.h"
#include "store/TAApplicationHooks.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TAPreferences.h"

#include <QSet>

#include <optional>

namespace {

QStringList names(const QList<LMInvoiceTemplateClass *> &templates) {
    QStringList out;
    for (LMInvoiceTemplateClass *t : templates)
        out.append(t->name());
    out.sort();
    return out;
}

QStringList sortedBuiltInNames() {
    QStringList out = LMBuiltInTemplates::templateNames();
    out.sort();
    return out;
}

// The shape of a template down to each column: page tags, element order, types, frames,
// column and row identifiers with their titles, widths and visibility.
std::string outline(LMInvoiceTemplateClass *t) {
    QStringList out{t->name(), t->size(), QString::number(t->backgroundType())};
    for (LMInvoiceTemplatePageClass *page : t->getSortedPages()) {
        out.append(QStringLiteral("page %1").arg(page->tag()));
        for (LMInvoiceElementClass *element : page->getSortedElements()) {
            out.append(QStringLiteral("%1 %2 %3 %4")
                           .arg(element->orderNr())
                           .arg(element->type())
                           .arg(element->frame())
                           .arg(element->attributedString().string()));
            for (const auto &list : {element->columns(), element->rows()}) {
                QStringList entries;
                for (LMInvoiceTemplateColumnClass *c : list)
                    entries.append(QStringLiteral("%1:%2:%3:%4:%5")
                                       .arg(c->nr())
                                       .arg(c->colID(), c->name())
                                       .arg(c->width())
                                       .arg(c->visible()));
                entries.sort();
                out.append(entries.join(QLatin1Char(' ')));
            }
        }
    }
    return out.join(QLatin1Char('\n')).toStdString();
}

} // namespace

class BuiltInTemplatesTest : public LayoutFixture {
protected:
    void SetUp() override {
        LayoutFixture::SetUp();
        m_seeder.emplace(&LMBuiltInTemplates::seedBuiltInTemplates);
        m_resource = LMBuiltInTemplates::openResource();
        ASSERT_NE(m_resource, nullptr);
    }

    QList<LMInvoiceTemplateClass *> resourceTemplates() const {
        return TAContextDatabase::objectsAs<LMInvoiceTemplateClass>(
            TAContextDatabase::fetchEntity(TAEntity::InvoiceTemplate, m_resource->context.get()));
    }

    std::optional<TAApplicationHooks::ScopedTemplateSeeder> m_seeder;
    std::unique_ptr<LMBuiltInTemplates::ResourceDocument> m_resource;
};

TEST_F(BuiltInTemplatesTest, ADocumentWithoutTemplatesGetsTheBuiltInSet) {
    QList<LMInvoiceTemplateClass *> templates = TAContextDatabase::getTemplatesInContext(context());
    EXPECT_EQ(names(templates), sortedBuiltInNames());
    EXPECT_FALSE(context()->undoManager()->canUndo());
    // Asking again adds nothing.
    EXPECT_EQ(TAContextDatabase::getTemplatesInContext(context()).size(), 5);

    // Each copy is whole: pages, elements, columns and rows as in the built-in set.
    QMap<QString, std::string> expected;
    for (LMInvoiceTemplateClass *t : resourceTemplates())
        expected.insert(t->name(), outline(t));
    for (LMInvoiceTemplateClass *t : templates)
        EXPECT_EQ(outline(t), expected.value(t->name())) << t->name().toStdString();

    // Deleting them all brings the set back on the next read.
    TAContextDatabase::deleteObjects(QList<ManagedObject *>(templates.begin(), templates.end()),
                                     context());
    EXPECT_EQ(names(TAContextDatabase::getTemplatesInContext(context())), sortedBuiltInNames());

    // Without the seeder a new document stays empty.
    TAApplicationHooks::ScopedTemplateSeeder noSeeder({});
    auto other = newDocument();
    EXPECT_TRUE(TAContextDatabase::getTemplatesInContext(other->context.get()).isEmpty());
}

TEST_F(BuiltInTemplatesTest, ImportCopiesOneDesignInOrder) {
    LMInvoiceTemplateClass *time =
        LMBuiltInTemplates::importTemplateNamed(QStringLiteral("Time"), context());
    ASSERT_NE(time, nullptr);
    EXPECT_EQ(time->managedObjectContext(), context());
    LMInvoiceTemplateClass *source = nullptr;
    for (LMInvoiceTemplateClass *t : resourceTemplates())
        if (t->name() == QStringLiteral("Time"))
            source = t;
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(outline(time), outline(source));
    EXPECT_EQ(time->getSortedPages().size(), 2);
    EXPECT_EQ(time->size(), source->size());
    for (LMInvoiceTemplatePageClass *page : time->getSortedPages())
        for (LMInvoiceElementClass *element : page->elements())
            for (LMInvoiceTemplateColumnClass *column : element->columns() + element->rows())
                EXPECT_EQ(column->managedObjectContext(), context());

    // The same name twice gives two templates; an unknown name adds nothing.
    LMBuiltInTemplates::importTemplateNamed(QStringLiteral("Sky"), context());
    LMBuiltInTemplates::importTemplateNamed(QStringLiteral("Sky"), context());
    EXPECT_EQ(LMBuiltInTemplates::importTemplateNamed(QStringLiteral("Meadow"), context()),
              nullptr);
    const QStringList found = names(TAContextDatabase::objectsAs<LMInvoiceTemplateClass>(
        TAContextDatabase::fetchEntity(TAEntity::InvoiceTemplate, context())));
    EXPECT_EQ(found,
              (QStringList{QStringLiteral("Sky"), QStringLiteral("Sky"), QStringLiteral("Time")}));
    EXPECT_EQ(outline(resourceTemplates().first()),
              outline(TAContextDatabase::objectsAs<LMInvoiceTemplateClass>(
                          TAContextDatabase::fetchEntity(
                              TAEntity::InvoiceTemplate,
                              LMBuiltInTemplates::openResource()->context.get()))
                          .first()));
}

TEST_F(BuiltInTemplatesTest, ReadingTheTablesChangesNothingInTheBuiltInColumns) {
    TAContextDatabase::getPreferencesInContext(context())->setTaxesEnabled(true);
    for (LMInvoiceTemplateClass *t : TAContextDatabase::getTemplatesInContext(context())) {
        const std::string before = outline(t);
        for (LMInvoiceTemplatePageClass *page : t->getSortedPages())
            for (LMInvoiceElementClass *element : page->elements())
                if (element->type() == 13 || element->type() == 2) {
                    element->getColsArray();
                    element->getRowsArray();
                }
        EXPECT_EQ(outline(t), before) << t->name().toStdString();
    }
}

// The designs cannot be looked at until pages are drawn; their structure can.
TEST_F(BuiltInTemplatesTest, DesignsAreCompleteAndLaidOutCleanly) {
    const QList<int> required{2, 3, 4, 5, 6, 8, 9, 11, 13, 14, 15};
    const QMap<int, QString> tagOfType{
        {3, "[INVOICE NUMBER]"}, {4, "[DATE]"},      {5, "[DUE DATE]"},       {6, "[YOUR "},
        {9, "[FULL NAME]"},      {14, "[COMMENTS]"}, {15, "[PURCHASE ORDER]"}};
    QSet<int> styles;
    QSet<int> backgrounds;
    bool multiPage = false;
    ASSERT_EQ(resourceTemplates().size(), 5);
    for (LMInvoiceTemplateClass *t : resourceTemplates()) {
        SCOPED_TRACE(t->name().toStdString());
        const QSizeF paper = LMGeometry::sizeFromString(t->size());
        EXPECT_TRUE(paper == QSizeF(595, 842) || paper == QSizeF(612, 792));
        const QRectF page(QPointF(0, 0), paper);
        const QRectF content = page.adjusted(36, 36, -36, -36);
        backgrounds.insert(t->backgroundType());
        if (t->backgroundType() == 3) {
            EXPECT_FALSE(t->bgImage().isNull());
        }
        QSet<int> types;
        const QList<LMInvoiceTemplatePageClass *> pages = t->getSortedPages();
        for (LMInvoiceTemplatePageClass *p : pages) {
            const QList<LMInvoiceElementClass *> elements = p->getSortedElements();
            for (LMInvoiceElementClass *e : elements) {
                const QRectF frame = LMGeometry::rectFromString(e->frame());
                types.insert(e->type());
                EXPECT_NE(LMElementTypes::kindForType(e->type()), LMElementKind::Stale);
                EXPECT_TRUE(page.contains(frame)) << e->frame().toStdString();
                if (!LMElementTypes::isShape(e->type())) {
                    EXPECT_TRUE(content.contains(frame)) << e->frame().toStdString();
                }
                if (tagOfType.contains(e->type())) {
                    EXPECT_TRUE(e->attributedString().string().contains(tagOfType[e->type()]));
                }
                if (e->type() == 11) {
                    const QString text = e->attributedString().string();
                    EXPECT_TRUE(text.contains(QLatin1Char('1')) && text.contains(QLatin1Char('2')));
                }
                if (e->type() == 13 || e->type() == 2) {
                    styles.insert(e->style());
                    double visible = 0;
                    for (LMInvoiceTemplateColumnClass *c : e->columns())
                        visible += c->visible() ? c->width() : 0;
                    const double inner = frame.width() - 12; // the drawn table's width
                    EXPECT_LE(visible, inner);
                    EXPECT_GE(visible, inner * 0.9);
                }
                if (e->type() == 13) {
                    EXPECT_EQ(e->columns().size(), 9);
                }
                if (e->type() == 2) {
                    EXPECT_EQ(e->rows().size(), 7);
                }
                for (LMInvoiceElementClass *other : elements) {
                    if (other == e || LMElementTypes::isShape(e->type()) ||
                        LMElementTypes::isShape(other->type()) || e->isHidden() ||
                        other->isHidden())
                        continue;
                    EXPECT_FALSE(frame.intersects(LMGeometry::rectFromString(other->frame())))
                        << e->type() << " and " << other->type();
                }
            }
        }
        for (int type : required)
            EXPECT_TRUE(types.contains(type)) << type;
        if (pages.size() > 1) {
            bool tableFirst = false;
            for (LMInvoiceElementClass *e : pages.first()->elements())
                tableFirst = tableFirst || e->type() == 13;
            multiPage = multiPage || tableFirst;
        }
    }
    EXPECT_EQ(styles, (QSet<int>{0, 1, 2, 3, 4}));
    EXPECT_TRUE(backgrounds.contains(1) && backgrounds.contains(2) && backgrounds.contains(3));
    EXPECT_TRUE(multiPage);
}
