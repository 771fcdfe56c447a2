#include "cli/CliListingKeys.h"

#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/PredicateLexer.h"
#include "objectstore/PredicateParser.h"
#include "store/TADocModel.h"

namespace {

using Token = PredicateLexer::Token;

Error keyError(const QString &message) {
    return Error{ErrorCode::Generic, message};
}

// Attributes and links of the entity and of its subentities, whose objects a listing of a
// parent entity shows as well.
template <class Found>
auto findInKinds(const EntityDescription *entity, const Found &find) -> decltype(find(entity)) {
    if (auto found = find(entity))
        return found;
    for (const EntityDescription *sub : entity->subentities())
        if (auto found = find(sub))
            return found;
    return nullptr;
}

const AttributeDescription *attributeNamed(const EntityDescription *entity, const QString &key) {
    return findInKinds(entity, [&key](const EntityDescription *e) { return e->attribute(key); });
}

const RelationshipDescription *linkNamed(const EntityDescription *entity, const QString &key) {
    return findInKinds(entity,
                       [&key](const EntityDescription *e) -> const RelationshipDescription * {
                           for (const RelationshipDescription &link : e->relationships())
                               if (link.name == key)
                                   return &link;
                           return nullptr;
                       });
}

bool isValueToken(const Token &token) {
    return token.type == Token::Type::String || token.type == Token::Type::Number;
}

// The value compared with the key at `at`, if it is a plain text or number.
const Token *comparedValue(const QList<Token> &tokens, qsizetype at) {
    qsizetype next = at + 2;
    if (next < tokens.size() && tokens[next].type == Token::Type::LeftBracket)
        next += 3; // modifiers: [cd]
    if (next < tokens.size() && isValueToken(tokens[next]))
        return &tokens[next];
    if (at >= 2 && isValueToken(tokens[at - 2]))
        return &tokens[at - 2];
    return nullptr;
}

} // namespace

CliListingKeys::CliListingKeys(const CliListing &listing)
    : m_listing(listing)
    , m_entity(TADocModel::model().entity(listing.entity)) {}

QStringList CliListingKeys::computedKeys(const EntityDescription *entity) {
    QStringList keys;
    for (const QString &kind : CliListing::kinds()) {
        const auto listing = CliListing::forKind(kind);
        const EntityDescription *shown = TADocModel::model().entity(listing->entity);
        if (!shown || !(entity->isKindOfEntity(shown) || shown->isKindOfEntity(entity)))
            continue;
        for (const CliColumn &column : listing->columns)
            if (!column.keyPath.isEmpty())
                keys.append(column.keyPath.section(u'.', 0, 0));
    }
    return keys;
}

// A column name stands for what the column shows ("client" for the client's name); a column
// the listing works out itself has no key path, unless the objects store a key of that name.
QString CliListingKeys::columnKeyPath(const QString &name, QString *computedColumn) const {
    for (const CliColumn &column : m_listing.columns) {
        if (column.name != name)
            continue;
        if (!column.keyPath.isEmpty())
            return column.keyPath;
        if (!attributeNamed(m_entity, name) && !linkNamed(m_entity, name))
            *computedColumn = name;
        return name;
    }
    return name;
}

Result<const AttributeDescription *> CliListingKeys::resolve(const QString &path) const {
    const EntityDescription *entity = m_entity;
    const QStringList keys = path.split(u'.');
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const QString &key = keys[i];
        if (i == 0 && key.compare(QLatin1String("SELF"), Qt::CaseInsensitive) == 0)
            continue;
        if (key.startsWith(u'@'))
            return nullptr; // a collection operator: counted or summed as the store does
        if (const AttributeDescription *attribute = attributeNamed(entity, key)) {
            if (i + 1 == keys.size())
                return attribute;
            return keyError(QStringLiteral("'%1': %2 is a value of %3, not a link")
                                .arg(path, key, entity->name()));
        }
        if (const RelationshipDescription *link = linkNamed(entity, key)) {
            if (link->toMany)
                return nullptr;
            entity = link->destination;
            continue;
        }
        if (computedKeys(entity).contains(key))
            return nullptr;
        return keyError(
            QStringLiteral("unknown key '%1' for %2 (in '%3')").arg(key, entity->name(), path));
    }
    return nullptr;
}

Result<QString> CliListingKeys::sortKeyPath(const QString &key) const {
    QString computed;
    const QString path = columnKeyPath(key, &computed);
    if (!computed.isEmpty())
        return keyError(
            QStringLiteral("'%1' is worked out by the listing and cannot be sorted by").arg(key));
    if (!PredicateParser::isValidKeyPath(path))
        return keyError(QStringLiteral("'%1' is no key").arg(key));
    if (auto resolved = resolve(path); !resolved)
        return resolved.error();
    return path;
}

Result<QString> CliListingKeys::where(const QString &predicate) const {
    PredicateLexer lexer(predicate);
    const auto tokens = lexer.tokenize();
    if (!tokens)
        return predicate; // the parser reports the fault with its position
    QString rewritten = predicate;
    for (qsizetype i = tokens->size() - 1; i >= 0; --i) {
        const Token &token = (*tokens)[i];
        const bool modifiers = i > 0 && (*tokens)[i - 1].type == Token::Type::LeftBracket;
        const bool call = i + 1 < tokens->size() && (*tokens)[i + 1].type == Token::Type::LeftParen;
        if (token.type != Token::Type::Identifier || modifiers || call ||
            PredicateParser::isKeywordText(token.text))
            continue;
        QString computed;
        const QString path = columnKeyPath(token.text, &computed);
        if (!computed.isEmpty())
            return keyError(QStringLiteral("'%1' is worked out by the listing and cannot be "
                                           "compared; compare the stored keys it comes from")
                                .arg(token.text));
        auto resolved = resolve(path);
        if (!resolved)
            return resolved.error();
        if (*resolved && (*resolved)->type == AttributeType::Date) {
            if (const Token *value = comparedValue(*tokens, i))
                return keyError(QStringLiteral("'%1' is a date: compare it with "
                                               "DATE(\"2025-03-10T00:00:00Z\"), not with %2")
                                    .arg(token.text, value->type == Token::Type::String
                                                         ? QStringLiteral("a text")
                                                         : QStringLiteral("a number")));
        }
        rewritten.replace(token.position, token.text.size(), path);
    }
    return rewritten;
}
