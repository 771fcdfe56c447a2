#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <vector>

class EntityDescription;
class ManagedObject;
class ManagedObjectContext;
struct AttributeDescription;

// Reads the JSON form that JsonDocumentExporter writes and builds the document it describes.
// read() checks everything first (entities, keys, types, numbers, references) and names the
// JSON path of the first fault (a key given twice is one); build() only runs on a text that
// passed. Objects keep their
// keys as primary keys, and every value is set after the entities' own insert and change
// rules have run, so the built document holds exactly the values of the text, but for the
// invoices' cached totals, which build() computes again from their items.
class JsonDocumentImporter {
public:
    // Parses the text in its own buffer: pass it as an rvalue to spare a copy.
    Result<void> read(QByteArray json);
    // Builds into an empty context of a new store, with undo off.
    Result<void> build(ManagedObjectContext &context);

    qsizetype objectCount() const { return qsizetype(m_objects.size()); }

private:
    struct Link {
        int relationship;      // index into the entity's relationships()
        qsizetype target = -1; // index into m_objects; -1 for null
    };
    struct UriText {
        int attribute;
        qsizetype target;
    };
    struct Planned {
        const EntityDescription *entity = nullptr;
        qint64 number = 0;
        std::vector<QVariant> values; // per attribute; the model default where not given
        std::vector<Link> links;      // every to-one link of the entity
        std::vector<UriText> uriTexts;
        ManagedObject *object = nullptr;
    };

    // Walks the parsed text and fills m_objects; lives only while read() runs.
    class Reader;
    Result<void> insertObjects(ManagedObjectContext &context);
    void setLinks(bool &changed);
    void setAttributes();
    Result<void> verify() const;
    Result<void> refreshTotals(ManagedObjectContext &context);
    QString keyOf(const Planned &planned) const;

    std::vector<Planned> m_objects;
};
