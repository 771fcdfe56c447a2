#include "importsync/json/JsonDocumentImporter.h"

#include "foundation/Check.h"
#include "importsync/json/JsonDocumentExporter.h"
#include "importsync/json/JsonKeyIndex.h"
#include "importsync/json/JsonText.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/ObjectGraph.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"
#include "store/entities/TAInvoice.h"

#include <QHash>
#include <QSet>

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <numeric>
#include <string_view>
#include <utility>

namespace {

// The library's own allocator answers a null when memory runs out, and the parser writes
// through it: running out must stop the reading (the command reports it) instead.
struct ThrowingAllocator {
    static const bool kNeedFree = true;
    void *Malloc(size_t size) {
        if (size == 0)
            return nullptr;
        if (void *memory = std::malloc(size))
            return memory;
        throw std::bad_alloc();
    }
    void *Realloc(void *original, size_t, size_t size) {
        if (size == 0) {
            std::free(original);
            return nullptr;
        }
        if (void *memory = std::realloc(original, size))
            return memory;
        throw std::bad_alloc();
    }
    static void Free(void *memory) { std::free(memory); }
};

using JsonDocument =
    rapidjson::GenericDocument<rapidjson::UTF8<>, rapidjson::MemoryPoolAllocator<ThrowingAllocator>,
                               ThrowingAllocator>;
using Json = JsonDocument::ValueType;

// In place: strings are unescaped inside the text's own buffer, so the parsed tree holds no
// copy of them. The encoding is checked beforehand, on the whole text at once. Nesting is
// followed without recursion, so no text can exhaust the stack.
constexpr unsigned kParseFlags = rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag |
                                 rapidjson::kParseFullPrecisionFlag;
constexpr qsizetype kScanPadding = 16;

std::string_view textOf(const Json &value) {
    return {value.GetString(), value.GetStringLength()};
}

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

QByteArrayView viewOf(std::string_view text) {
    return QByteArrayView(text.data(), qsizetype(text.size()));
}

Error fault(const QString &path, const QString &reason) {
    return Error{ErrorCode::FileDamaged, path + QStringLiteral(": ") + reason};
}

QString objectPath(std::string_view key) {
    return QStringLiteral("$.objects[") + JsonText::excerpt(key) + u']';
}

QString objectPath(const QString &key) {
    const QByteArray utf8 = key.toUtf8();
    return objectPath(std::string_view(utf8.constData(), std::size_t(utf8.size())));
}

bool isPlainName(std::string_view name) {
    if (name.empty() || name.size() > std::size_t(JsonText::kExcerptLength) ||
        (name[0] >= '0' && name[0] <= '9'))
        return false;
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    });
}

// `.name` for the names of the model, `["..."]` (cut short when long) for any other.
QString memberPath(const QString &base, std::string_view name) {
    if (isPlainName(name))
        return base + u'.' + QLatin1String(name.data(), qsizetype(name.size()));
    return base + u'[' + JsonText::excerpt(name) + u']';
}

QString typeName(const Json *value) {
    if (!value)
        return QStringLiteral("nothing");
    switch (value->GetType()) {
    case rapidjson::kNullType:
        return QStringLiteral("null");
    case rapidjson::kFalseType:
    case rapidjson::kTrueType:
        return QStringLiteral("a boolean");
    case rapidjson::kNumberType:
        return QStringLiteral("a number");
    case rapidjson::kStringType:
        return QStringLiteral("a string");
    case rapidjson::kArrayType:
        return QStringLiteral("an array");
    case rapidjson::kObjectType:
        return QStringLiteral("an object");
    }
    return QStringLiteral("nothing");
}

Error wrongType(const QString &path, const QString &expected, const Json *value) {
    return fault(path, QStringLiteral("expected %1, found %2").arg(expected, typeName(value)));
}

// The first member of that name; null when there is none.
const Json *memberOf(const Json &object, std::string_view name) {
    for (auto it = object.MemberBegin(); it != object.MemberEnd(); ++it)
        if (textOf(it->name) == name)
            return &it->value;
    return nullptr;
}

Error syntaxError(std::size_t offset, rapidjson::ParseErrorCode code) {
    // The library's sentences, in the lower case and without the stop of the other messages.
    QString reason = QString::fromUtf8(rapidjson::GetParseError_En(code));
    if (reason.endsWith(u'.'))
        reason.chop(1);
    if (!reason.isEmpty())
        reason[0] = reason[0].toLower();
    return Error{ErrorCode::FileDamaged,
                 QStringLiteral("not valid JSON at offset %1 (%2)").arg(offset).arg(reason)};
}

// The members of one entity by their UTF-8 names. Objects of an entity list their members in
// the same order, so the member at a position is first guessed to be the one that stood there
// in the previous object, and only a miss is hashed.
class MemberNames {
public:
    explicit MemberNames(const EntityDescription *entity) {
        for (const AttributeDescription &attribute : entity->attributes())
            add(attribute.name, entity);
        for (const RelationshipDescription &link : entity->relationships())
            add(link.name, entity);
        for (std::size_t i = 0; i < m_names.size(); ++i)
            m_index.insert(QByteArrayView(m_names[i]), int(i));
    }

    const PropertySlot *find(std::string_view name, std::size_t position) {
        if (position < m_sequence.size() &&
            QByteArrayView(m_names[m_sequence[position]]) == viewOf(name))
            return m_slots[m_sequence[position]];
        const auto found = m_index.constFind(viewOf(name));
        if (found == m_index.constEnd())
            return nullptr;
        if (position < m_sequence.size())
            m_sequence[position] = *found;
        else if (position == m_sequence.size())
            m_sequence.push_back(*found);
        return m_slots[*found];
    }

private:
    void add(const QString &name, const EntityDescription *entity) {
        m_names.push_back(name.toUtf8());
        m_slots.push_back(entity->slot(name));
    }

    std::vector<QByteArray> m_names;
    std::vector<const PropertySlot *> m_slots;
    QHash<QByteArrayView, int> m_index;
    std::vector<int> m_sequence;
};

// Where the text of the string that holds offset `at` begins, just past its opening quote; the
// text must be valid JSON up to there. In place, a parsed string starts at that very byte.
qsizetype stringStartBefore(QByteArrayView json, qsizetype at) {
    qsizetype start = -1;
    bool inString = false;
    for (qsizetype i = 0; i < at; ++i) {
        if (!inString && json[i] == '"') {
            inString = true;
            start = i + 1;
        } else if (inString && json[i] == '\\') {
            ++i;
        } else if (inString && json[i] == '"') {
            inString = false;
        }
    }
    return start;
}

// The path of the string (a value, or the name of a member) parsed in place at `text`. The
// walk keeps its own stack, as nesting may be deep.
QString pathOfStringAt(const Json &root, const char *text) {
    struct Frame {
        const Json *node;
        rapidjson::SizeType next = 0;
    };
    std::vector<Frame> stack;
    if (root.IsObject() || root.IsArray())
        stack.push_back({&root});
    while (!stack.empty()) {
        Frame &frame = stack.back();
        const Json &node = *frame.node;
        const rapidjson::SizeType count = node.IsObject() ? node.MemberCount() : node.Size();
        if (frame.next == count) {
            stack.pop_back();
            continue;
        }
        const rapidjson::SizeType index = frame.next++;
        const bool isObject = node.IsObject();
        const Json &child = isObject ? node.MemberBegin()[index].value : node[index];
        // A name and its value share the member's path.
        if ((isObject && node.MemberBegin()[index].name.GetString() == text) ||
            (child.IsString() && child.GetString() == text))
            break;
        if (child.IsObject() || child.IsArray())
            stack.push_back({&child});
    }
    // Deep nesting is shown by its first and last steps, with the count of those left out.
    constexpr std::size_t kHead = 5, kTail = 3;
    QString path = QStringLiteral("$");
    for (std::size_t i = 0; i < stack.size(); ++i) {
        if (stack.size() > kHead + kTail + 1 && i == kHead) {
            path += QStringLiteral("…(%1 more)…").arg(stack.size() - kHead - kTail);
            i = stack.size() - kTail;
        }
        const Frame &frame = stack[i];
        const rapidjson::SizeType index = frame.next - 1;
        if (frame.node->IsObject())
            path = memberPath(path, textOf(frame.node->MemberBegin()[index].name));
        else
            path += u'[' + QString::number(index) + u']';
    }
    return path;
}

} // namespace

class JsonDocumentImporter::Reader {
public:
    explicit Reader(std::vector<Planned> &objects)
        : m_objects(objects) {}

    Result<void> readHeader(const Json &root);
    // Keys first, so that every reference can be resolved while its object is read.
    Result<void> readKeys(const Json &objects);
    Result<void> readObjects(const Json &objects);

private:
    // Where a value stands in the text; the path is only spelled out for a fault.
    struct Place {
        std::string_view key;
        std::string_view member;
        const char *suffix = "";
        QString path() const { return memberPath(objectPath(key), member) + QLatin1String(suffix); }
    };

    Result<void> readObject(Planned &planned, std::string_view key, const Json &value);
    Result<void> readLink(Planned &planned, const Place &place, int declaration, const Json &value);
    Result<QVariant> readAttribute(const Place &place, int index, const Json &value,
                                   Planned &planned);
    Result<QVariant> readText(const Place &place, int index, const Json &value, Planned &planned);
    Result<JsonKeyIndex::Found> resolve(const Place &place, std::string_view key) const;
    MemberNames &membersOf(const EntityDescription *entity);

    std::vector<Planned> &m_objects;
    JsonKeyIndex m_keys{TADocModel::model()};
    std::vector<std::unique_ptr<MemberNames>> m_members; // by entity index
    std::vector<bool> m_given;                           // per member of the current object
};

Result<void> JsonDocumentImporter::read(QByteArray json) {
    m_objects.clear();
    if (const qsizetype invalid = JsonText::invalidUtf8At(json); invalid >= 0)
        return syntaxError(std::size_t(invalid), rapidjson::kParseErrorStringInvalidEncoding);
    // The parser refuses a lone high surrogate with no more than an offset and lets a lone low
    // one through as bytes that are no UTF-8. Both are made harmless for the parse, and the
    // first is then named by the path of its string.
    const qsizetype lone = JsonText::loneSurrogateAt(json);
    const QByteArray loneEscape = lone >= 0 ? json.mid(lone, 6) : QByteArray();
    const qsizetype loneString = lone >= 0 ? stringStartBefore(json, lone) : -1;
    for (qsizetype at = lone; at >= 0; at = JsonText::loneSurrogateAt(json, at + 6))
        json.replace(at, 6, "\\ufffd");
    const qsizetype length = json.size();
    // The parser scans strings in aligned 16-byte blocks: the block holding the final NUL must
    // lie inside the buffer.
    json.append(QByteArray(kScanPadding, '\0'));
    JsonDocument document;
    rapidjson::InsituStringStream stream(json.data());
    document.ParseStream<kParseFlags>(stream);
    if (document.HasParseError())
        return syntaxError(document.GetErrorOffset(), document.GetParseError());
    // The parser stops at a NUL character, which is no white space.
    if (stream.Tell() != std::size_t(length))
        return syntaxError(stream.Tell(), rapidjson::kParseErrorDocumentRootNotSingular);
    if (lone >= 0)
        return fault(
            pathOfStringAt(document, loneString >= 0 ? json.constData() + loneString : nullptr),
            QStringLiteral("a lone surrogate %1 at offset %2 is no character")
                .arg(QString::fromLatin1(loneEscape))
                .arg(lone));
    if (!document.IsObject())
        return wrongType(QStringLiteral("$"), QStringLiteral("an object"), &document);
    Reader reader(m_objects);
    if (auto header = reader.readHeader(document); !header)
        return header;
    const Json &objects = *memberOf(document, "objects");
    if (auto keys = reader.readKeys(objects); !keys)
        return keys;
    return reader.readObjects(objects);
}

Result<void> JsonDocumentImporter::Reader::readHeader(const Json &root) {
    static constexpr std::string_view known[] = {"format", "formatVersion", "model", "objects"};
    bool given[std::size(known)] = {};
    for (auto it = root.MemberBegin(); it != root.MemberEnd(); ++it) {
        const auto name = std::find(std::begin(known), std::end(known), textOf(it->name));
        if (name == std::end(known))
            return fault(memberPath(QStringLiteral("$"), textOf(it->name)),
                         QStringLiteral("unknown key"));
        if (std::exchange(given[name - std::begin(known)], true))
            return fault(memberPath(QStringLiteral("$"), *name), QStringLiteral("duplicate key"));
    }
    const Json *format = memberOf(root, "format");
    if (!format || !format->IsString() ||
        textOf(*format) != JsonDocumentExporter::kFormat.toUtf8().toStdString())
        return fault(QStringLiteral("$.format"),
                     QStringLiteral("expected \"%1\"").arg(JsonDocumentExporter::kFormat));
    // The version is the integer token alone: 1.0 or 1e0 name no version of the form.
    const Json *version = memberOf(root, "formatVersion");
    if (!version || !version->IsInt() || version->GetInt() != JsonDocumentExporter::kFormatVersion)
        return fault(QStringLiteral("$.formatVersion"),
                     QStringLiteral("expected %1").arg(JsonDocumentExporter::kFormatVersion));
    const Json *model = memberOf(root, "model");
    if (!model || !model->IsString())
        return wrongType(QStringLiteral("$.model"), QStringLiteral("a string"), model);
    // Members are checked against this version's model: a file of another one would be read
    // by the wrong rules. The name is compared as it stands, byte for byte.
    if (const QString &current = TADocModel::model().versionName();
        viewOf(textOf(*model)) != current.toUtf8())
        return fault(QStringLiteral("$.model"),
                     QStringLiteral("unknown data model %1; this version reads \"%2\"")
                         .arg(JsonText::excerpt(textOf(*model)), current));
    if (const Json *objects = memberOf(root, "objects"); !objects || !objects->IsObject())
        return wrongType(QStringLiteral("$.objects"), QStringLiteral("an object"), objects);
    return {};
}

Result<void> JsonDocumentImporter::Reader::readKeys(const Json &objects) {
    m_objects.resize(objects.MemberCount());
    qsizetype at = 0;
    for (auto it = objects.MemberBegin(); it != objects.MemberEnd(); ++it, ++at) {
        const std::string_view key = textOf(it->name);
        const auto parts = JsonKeyIndex::split(key);
        if (!parts)
            return fault(objectPath(key), QStringLiteral("a key is \"Entity/number\", the "
                                                         "number from 1"));
        if (!PersistentStore::isObjectNumber(parts->number))
            return fault(objectPath(key), QStringLiteral("the number of a key is at most %1")
                                              .arg(PersistentStore::kMaxObjectNumber));
        const EntityDescription *entity = m_keys.entity(parts->entityName);
        if (!entity || entity->isAbstract())
            return fault(
                objectPath(key),
                QStringLiteral("unknown entity %1").arg(JsonText::excerpt(parts->entityName)));
        if (!m_keys.insert(entity, parts->number, at))
            return fault(objectPath(key), QStringLiteral("duplicate key"));
        m_objects[at].entity = entity;
        m_objects[at].number = parts->number;
    }
    return {};
}

Result<void> JsonDocumentImporter::Reader::readObjects(const Json &objects) {
    qsizetype at = 0;
    for (auto it = objects.MemberBegin(); it != objects.MemberEnd(); ++it, ++at)
        if (auto object = readObject(m_objects[at], textOf(it->name), it->value); !object)
            return object;
    return {};
}

MemberNames &JsonDocumentImporter::Reader::membersOf(const EntityDescription *entity) {
    if (m_members.size() <= std::size_t(entity->index()))
        m_members.resize(entity->index() + 1);
    std::unique_ptr<MemberNames> &members = m_members[entity->index()];
    if (!members)
        members = std::make_unique<MemberNames>(entity);
    return *members;
}

Result<JsonKeyIndex::Found> JsonDocumentImporter::Reader::resolve(const Place &place,
                                                                  std::string_view key) const {
    const JsonKeyIndex::Found found = m_keys.find(key);
    if (found.at < 0)
        return fault(place.path(),
                     QStringLiteral("%1 names no object of the file").arg(JsonText::excerpt(key)));
    return found;
}

Result<void> JsonDocumentImporter::Reader::readObject(Planned &planned, std::string_view key,
                                                      const Json &value) {
    if (!value.IsObject())
        return wrongType(objectPath(key), QStringLiteral("an object"), &value);
    const EntityDescription *entity = planned.entity;
    const auto &attributes = entity->attributes();
    const auto &relationships = entity->relationships();
    planned.values.resize(attributes.size());
    planned.links.reserve(entity->toOneCount());
    // A link the text leaves out is empty, whatever the insert rules would choose.
    for (qsizetype i = 0; i < relationships.size(); ++i)
        if (!relationships[i].toMany)
            planned.links.push_back({int(i), -1});

    MemberNames &names = membersOf(entity);
    m_given.assign(attributes.size() + relationships.size(), false);
    std::size_t position = 0;
    for (auto it = value.MemberBegin(); it != value.MemberEnd(); ++it, ++position) {
        const Place place{key, textOf(it->name)};
        const PropertySlot *slot = names.find(place.member, position);
        if (!slot ||
            (slot->kind == PropertySlot::Attribute && attributes[slot->declaration].transient))
            return fault(place.path(), QStringLiteral("unknown key for %1").arg(entity->name()));
        if (slot->kind == PropertySlot::ToMany)
            return fault(place.path(), QStringLiteral("a to-many link is given by the "
                                                      "to-one links of its members; leave "
                                                      "it out"));
        const bool isAttribute = slot->kind == PropertySlot::Attribute;
        auto given = m_given[(isAttribute ? 0 : attributes.size()) + slot->declaration];
        if (given)
            return fault(place.path(), QStringLiteral("duplicate key"));
        given = true;
        if (!isAttribute) {
            if (auto link = readLink(planned, place, slot->declaration, it->value); !link)
                return link;
            continue;
        }
        auto read = readAttribute(place, slot->declaration, it->value, planned);
        if (!read)
            return read.error();
        planned.values[slot->declaration] = std::move(*read);
    }
    // An attribute the text leaves out takes the model's default.
    for (qsizetype i = 0; i < attributes.size(); ++i)
        if (!m_given[i])
            planned.values[i] = attributes[i].defaultValue;
    return {};
}
Result<void> JsonDocumentImporter::Reader::readLink(Planned &planned, const Place &place,
                                                    int declaration, const Json &value) {
    if (value.IsNull())
        return {};
    if (!value.IsString())
        return wrongType(place.path(), QStringLiteral("an object key or null"), &value);
    auto resolved = resolve(place, textOf(value));
    if (!resolved)
        return resolved.error();
    const RelationshipDescription &link = planned.entity->relationships()[declaration];
    if (!resolved->entity->isKindOfEntity(link.destination))
        return fault(place.path(),
                     QStringLiteral("%1 is no %2")
                         .arg(JsonText::excerpt(textOf(value)), link.destinationEntityName));
    for (Link &l : planned.links)
        if (l.relationship == declaration)
            l.target = resolved->at;
    return {};
}

Result<QVariant> JsonDocumentImporter::Reader::readText(const Place &place, int index,
                                                        const Json &value, Planned &planned) {
    if (value.IsString())
        return QVariant(toQString(textOf(value)));
    if (!value.IsObject())
        return wrongType(place.path(), QStringLiteral("a string"), &value);
    const Json *uri = memberOf(value, "objectURI");
    if (value.MemberCount() != 1 || !uri || !uri->IsString())
        return fault(place.path(), QStringLiteral("expected a string or {\"objectURI\": key}"));
    const Place uriPlace{place.key, place.member, ".objectURI"};
    auto target = resolve(uriPlace, textOf(*uri));
    if (!target)
        return target.error();
    const QString &attribute = planned.entity->attributes()[index].name;
    if (const EntityDescription *named =
            JsonDocumentExporter::uriTargetOf(planned.entity, attribute);
        named && !target->entity->isKindOfEntity(named))
        return fault(
            uriPlace.path(),
            QStringLiteral("%1 is no %2").arg(JsonText::excerpt(textOf(*uri)), named->name()));
    planned.uriTexts.push_back({index, target->at});
    return QVariant();
}

Result<QVariant> JsonDocumentImporter::Reader::readAttribute(const Place &place, int index,
                                                             const Json &value, Planned &planned) {
    if (value.IsNull())
        return QVariant();
    switch (planned.entity->attributes()[index].type) {
    case AttributeType::String:
        return readText(place, index, value, planned);
    case AttributeType::Integer:
        // Integers beyond 64 bits, and numbers with a fraction or an exponent, are no integers.
        if (!value.IsInt64())
            return wrongType(place.path(), QStringLiteral("an integer"), &value);
        return QVariant(qint64(value.GetInt64()));
    case AttributeType::Boolean:
        if (!value.IsBool())
            return wrongType(place.path(), QStringLiteral("true, false or null"), &value);
        return QVariant(value.GetBool());
    case AttributeType::Decimal: {
        if (!value.IsString())
            return wrongType(place.path(), QStringLiteral("a decimal number as a string"), &value);
        const auto decimal = JsonText::parseDecimal(textOf(value));
        if (!decimal)
            return fault(place.path(), decimal.error().message);
        return decimal->toVariant();
    }
    case AttributeType::Date: {
        if (!value.IsString())
            return wrongType(place.path(),
                             QStringLiteral("an ISO 8601 date and time with an offset"), &value);
        auto date = JsonText::parseDate(textOf(value));
        if (!date)
            return fault(place.path(), date.error().message);
        return QVariant(*date);
    }
    case AttributeType::Binary: {
        if (!value.IsString())
            return wrongType(place.path(), QStringLiteral("base64 text"), &value);
        const auto decoded = JsonText::parseBase64(textOf(value));
        if (!decoded)
            return fault(place.path(), QStringLiteral("not valid base64 (standard, padded)"));
        return QVariant(*decoded);
    }
    case AttributeType::Float:
        if (value.IsNumber())
            return QVariant(value.GetDouble());
        if (const auto special =
                value.IsString() ? JsonText::parseSpecialDouble(textOf(value)) : std::nullopt)
            return QVariant(*special);
        return wrongType(place.path(), QStringLiteral("a number"), &value);
    }
    return QVariant();
}

namespace {

// The file holds the invoices' cached totals, so refreshing them while links are set would be
// wasted work that the file's values then replace. Other contexts keep their refresh.
class CacheRefreshPause {
public:
    explicit CacheRefreshPause(const ManagedObjectContext *context) {
        m_previous = TAInvoice::setCacheRequestHandler([this, context](TAInvoice *invoice) {
            if (invoice->managedObjectContext() == context)
                return;
            if (m_previous)
                m_previous(invoice);
            else
                invoice->updateCachedValuesWithoutUndo();
        });
    }
    ~CacheRefreshPause() { TAInvoice::setCacheRequestHandler(m_previous); }
    CacheRefreshPause(const CacheRefreshPause &) = delete;
    CacheRefreshPause &operator=(const CacheRefreshPause &) = delete;

private:
    TAInvoice::CacheRequestHandler m_previous;
};

} // namespace

Result<void> JsonDocumentImporter::build(ManagedObjectContext &context) {
    context.setUndoManager(nullptr);
    const CacheRefreshPause pause(&context);
    if (auto inserted = insertObjects(context); !inserted)
        return inserted;
    // Links are set as stored values, past the entities' change rules: those would move links
    // of other objects (an invoice handing its project to its items) that the file then puts
    // back. Only a one-to-one link can still take a partner from another object, so the
    // links are set again until nothing differs, and a file that contradicts itself fails
    // the check below.
    bool changed = true;
    for (int round = 0; changed && round < 8; ++round)
        setLinks(changed);
    // Objects the insert rules made on their own are not in the file.
    QSet<ManagedObject *> planned;
    for (const Planned &p : std::as_const(m_objects))
        planned.insert(p.object);
    context.processPendingChanges();
    for (ManagedObject *extra : context.insertedObjects())
        if (!planned.contains(extra))
            context.deleteObject(extra);
    setAttributes();
    context.processPendingChanges();
    if (auto verified = verify(); !verified)
        return verified;
    return refreshTotals(context);
}

// The cached totals are computed again from the items, as the program does when it opens a
// document; totals that do not fit are the fault of the invoice that sums them.
Result<void> JsonDocumentImporter::refreshTotals(ManagedObjectContext &context) {
    const TAInvoice::TotalsSettings settings = TAInvoice::totalsSettingsInContext(&context);
    for (const Planned &planned : std::as_const(m_objects))
        if (auto *invoice = dynamic_cast<TAInvoice *>(planned.object))
            if (auto totals = invoice->refreshCachedValues(settings); !totals)
                return fault(objectPath(keyOf(planned)), totals.error().message);
    context.processPendingChanges();
    return {};
}

Result<void> JsonDocumentImporter::insertObjects(ManagedObjectContext &context) {
    // Objects go in by entity and key, so that each one can take its key as primary key.
    std::vector<qsizetype> order(m_objects.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [this](qsizetype a, qsizetype b) {
        const Planned &x = m_objects[a];
        const Planned &y = m_objects[b];
        return x.entity != y.entity ? x.entity->index() < y.entity->index() : x.number < y.number;
    });
    // The store is new, so its keys start at 1; the ones between two objects are skipped.
    PersistentStore *store = context.persistentStore();
    for (qsizetype at : order) {
        Planned &planned = m_objects[at];
        planned.object = context.insertNewObject(planned.entity->name());
        // Keys naming an unknown or abstract entity were refused while reading.
        BF_CHECK(planned.object,
                 return fault(objectPath(keyOf(planned)), QStringLiteral("could not be made")));
        if (auto skipped = store->skipPrimaryKeysThrough(planned.entity, planned.number - 1);
            !skipped)
            return fault(objectPath(keyOf(planned)), skipped.error().message);
        context.obtainPermanentIDs({planned.object});
        if (planned.object->objectID().number() != planned.number)
            return fault(objectPath(keyOf(planned)), QStringLiteral("the key could not be kept"));
    }
    return {};
}

void JsonDocumentImporter::setLinks(bool &changed) {
    changed = false;
    for (Planned &planned : m_objects) {
        const auto &relationships = planned.entity->relationships();
        for (const Link &link : planned.links) {
            ManagedObject *target = link.target < 0 ? nullptr : m_objects[link.target].object;
            const QString &name = relationships[link.relationship].name;
            if (planned.object->objectForKey(name) == target)
                continue;
            planned.object->setPrimitiveObjectForKey(target, name);
            changed = true;
        }
    }
}

void JsonDocumentImporter::setAttributes() {
    for (Planned &planned : m_objects) {
        const auto &attributes = planned.entity->attributes();
        for (qsizetype i = 0; i < attributes.size(); ++i)
            if (!attributes[i].transient)
                planned.object->setPrimitiveValueForKey(planned.values[i], attributes[i].name);
        for (const UriText &uri : planned.uriTexts)
            planned.object->setPrimitiveValueForKey(m_objects[uri.target].object->uriText(),
                                                    attributes[uri.attribute].name);
    }
}

Result<void> JsonDocumentImporter::verify() const {
    for (const Planned &planned : m_objects) {
        if (ObjectGraph::visible(planned.object) != planned.object)
            return fault(objectPath(keyOf(planned)),
                         QStringLiteral("was removed while the document was built"));
        const auto &relationships = planned.entity->relationships();
        for (const Link &link : planned.links) {
            ManagedObject *target = link.target < 0 ? nullptr : m_objects[link.target].object;
            if (planned.object->objectForKey(relationships[link.relationship].name) != target)
                return fault(objectPath(keyOf(planned)) + u'.' +
                                 relationships[link.relationship].name,
                             QStringLiteral("the link contradicts another one of the file"));
        }
    }
    return {};
}

QString JsonDocumentImporter::keyOf(const Planned &planned) const {
    return planned.entity->name() + u'/' + QString::number(planned.number);
}
