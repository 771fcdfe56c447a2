#include "objectstore/PredicateParser.h"

#include <QDateTime>

using Operator = ComparisonPredicate::Operator;

namespace {

// Deep enough for any hand-written text, shallow enough to keep the stack safe.
constexpr int kMaxDepth = 100;

const char *const kReservedWords[] = {"AND",  "OR",       "NOT",           "BETWEEN",
                                      "IN",   "CONTAINS", "BEGINSWITH",    "ENDSWITH",
                                      "LIKE", "MATCHES",  "TRUEPREDICATE", "FALSEPREDICATE"};

struct Word {
    const char *text;
    Operator op;
};
const Word kOperatorWords[] = {
    {"BETWEEN", Operator::Between},   {"IN", Operator::In},
    {"CONTAINS", Operator::Contains}, {"BEGINSWITH", Operator::BeginsWith},
    {"ENDSWITH", Operator::EndsWith}, {"LIKE", Operator::Like},
    {"MATCHES", Operator::Matches},   {"==", Operator::Equal},
    {"=", Operator::Equal},           {"!=", Operator::NotEqual},
    {"<>", Operator::NotEqual},       {"<", Operator::Less},
    {"<=", Operator::LessOrEqual},    {"=<", Operator::LessOrEqual},
    {">", Operator::Greater},         {">=", Operator::GreaterOrEqual},
    {"=>", Operator::GreaterOrEqual},
};

const char *const kValueWords[] = {"NULL", "NIL", "TRUE", "FALSE", "YES", "NO", "SELF"};

} // namespace

bool PredicateParser::isKeywordText(QStringView word) {
    for (const char *reserved : kReservedWords) {
        if (word.compare(QLatin1String(reserved), Qt::CaseInsensitive) == 0)
            return true;
    }
    for (const char *value : kValueWords) {
        if (word.compare(QLatin1String(value), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool PredicateParser::isValidKeyPath(QStringView text) {
    for (QStringView key : text.split(QLatin1Char('.'))) {
        if (key.isEmpty() || !(key.front().isLetter() || key.front() == QLatin1Char('_') ||
                               key.front() == QLatin1Char('@')))
            return false;
        for (QChar c : key) {
            if (!c.isLetterOrNumber() && c != QLatin1Char('_') && c != QLatin1Char('@'))
                return false;
        }
    }
    return true;
}

PredicateParser::PredicateParser(const QString &format, const QVariantList &arguments)
    : m_format(format)
    , m_arguments(arguments) {}

Result<PredicateNodePtr> PredicateParser::parse() {
    PredicateLexer lexer(m_format);
    std::optional<QList<Token>> tokens = lexer.tokenize();
    PredicateNodePtr root;
    if (!tokens) {
        m_failure = lexer.failure();
    } else {
        m_tokens = std::move(*tokens);
        root = parseOr();
        if (root && peek().type != TokenType::End) {
            failAtToken(QStringLiteral("the end of the predicate"));
            root.reset();
        }
    }
    if (root)
        return root;
    return Error{ErrorCode::InvalidPredicate, QStringLiteral("%1 at position %2 in \"%3\"")
                                                  .arg(m_failure->message)
                                                  .arg(m_failure->position)
                                                  .arg(m_format)};
}

const PredicateParser::Token &PredicateParser::peek(int ahead) const {
    return m_tokens.at(qMin(m_index + ahead, m_tokens.size() - 1));
}

bool PredicateParser::isKeyword(const Token &token, const char *keyword) const {
    return token.type == TokenType::Identifier &&
           token.text.compare(QLatin1String(keyword), Qt::CaseInsensitive) == 0;
}

bool PredicateParser::isSymbol(const Token &token, const char *symbol) const {
    return token.type == TokenType::Symbol && token.text == QLatin1String(symbol);
}

std::nullopt_t PredicateParser::fail(const QString &message, int position) {
    if (!m_failure)
        m_failure = PredicateLexer::Failure{message, position};
    return std::nullopt;
}

std::nullopt_t PredicateParser::failAtToken(const QString &expected) {
    const Token &token = peek();
    const QString found = token.type == TokenType::End ? QStringLiteral("the end")
                                                       : QStringLiteral("'%1'").arg(token.text);
    return fail(QStringLiteral("Expected %1 but found %2").arg(expected, found), token.position);
}

bool PredicateParser::expect(TokenType type, const QString &what) {
    if (peek().type == type) {
        take();
        return true;
    }
    failAtToken(what);
    return false;
}

PredicateNodePtr PredicateParser::parseOr() {
    if (++m_depth > kMaxDepth) {
        fail(QStringLiteral("Predicate nested too deeply"), peek().position);
        return nullptr;
    }
    QList<PredicateNodePtr> children;
    do {
        PredicateNodePtr child = parseAnd();
        if (!child)
            return nullptr;
        children.append(std::move(child));
    } while ((isKeyword(peek(), "OR") || isSymbol(peek(), "||")) && (take(), true));
    --m_depth;
    if (children.size() == 1)
        return children.first();
    return std::make_shared<CompoundPredicate>(CompoundPredicate::Type::Or, std::move(children));
}

PredicateNodePtr PredicateParser::parseAnd() {
    QList<PredicateNodePtr> children;
    do {
        PredicateNodePtr child = parseUnary();
        if (!child)
            return nullptr;
        children.append(std::move(child));
    } while ((isKeyword(peek(), "AND") || isSymbol(peek(), "&&")) && (take(), true));
    if (children.size() == 1)
        return children.first();
    return std::make_shared<CompoundPredicate>(CompoundPredicate::Type::And, std::move(children));
}

PredicateNodePtr PredicateParser::parseUnary() {
    const Token &token = peek();
    if (isKeyword(token, "NOT") || isSymbol(token, "!")) {
        take();
        if (++m_depth > kMaxDepth) {
            fail(QStringLiteral("Predicate nested too deeply"), token.position);
            return nullptr;
        }
        PredicateNodePtr child = parseUnary();
        --m_depth;
        if (!child)
            return nullptr;
        return std::make_shared<CompoundPredicate>(CompoundPredicate::Type::Not,
                                                   QList<PredicateNodePtr>{child});
    }
    if (token.type == TokenType::LeftParen) {
        take();
        PredicateNodePtr inner = parseOr();
        if (!inner || !expect(TokenType::RightParen, QStringLiteral("')'")))
            return nullptr;
        return inner;
    }
    if (isKeyword(token, "TRUEPREDICATE") || isKeyword(token, "FALSEPREDICATE")) {
        take();
        return std::make_shared<ConstantPredicate>(isKeyword(token, "TRUEPREDICATE"));
    }
    return parseComparison();
}

PredicateNodePtr PredicateParser::parseComparison() {
    std::optional<PredicateExpression> left = parseExpression();
    if (!left)
        return nullptr;
    const std::optional<Operator> op = parseOperator();
    if (!op)
        return nullptr;
    const std::optional<PredicateValue::StringOptions> options = parseModifiers();
    if (!options)
        return nullptr;
    std::optional<PredicateExpression> right = parseExpression();
    if (!right)
        return nullptr;
    return std::make_shared<ComparisonPredicate>(std::move(*left), *op, *options,
                                                 std::move(*right));
}

std::optional<Operator> PredicateParser::parseOperator() {
    const Token &token = peek();
    if (token.type == TokenType::Identifier || token.type == TokenType::Symbol) {
        for (const Word &word : kOperatorWords) {
            if (token.text.compare(QLatin1String(word.text), Qt::CaseInsensitive) == 0) {
                take();
                return word.op;
            }
        }
    }
    return failAtToken(QStringLiteral("a comparison operator"));
}

std::optional<PredicateValue::StringOptions> PredicateParser::parseModifiers() {
    PredicateValue::StringOptions options = PredicateValue::CaseSensitive;
    if (peek().type != TokenType::LeftBracket)
        return options;
    take();
    const Token &letters = peek();
    if (letters.type != TokenType::Identifier)
        return failAtToken(QStringLiteral("modifiers c, d or n"));
    for (QChar letter : letters.text) {
        if (letter == QLatin1Char('c'))
            options |= PredicateValue::CaseInsensitive;
        else if (letter == QLatin1Char('d'))
            options |= PredicateValue::DiacriticInsensitive;
        else if (letter != QLatin1Char('n')) // normalized text: nothing to do
            return failAtToken(QStringLiteral("modifiers c, d or n"));
    }
    take();
    if (!expect(TokenType::RightBracket, QStringLiteral("']'")))
        return std::nullopt;
    return options;
}

std::optional<PredicateExpression> PredicateParser::parseExpression() {
    const Token &token = peek();
    switch (token.type) {
    case TokenType::Identifier:
        return parseIdentifier();
    case TokenType::Number:
        return parseNumber();
    case TokenType::String:
        return PredicateExpression::constant(take().text);
    case TokenType::Argument:
        return parseArgument();
    case TokenType::Variable:
        return PredicateExpression::variable(take().text);
    case TokenType::LeftBrace:
        return parseAggregate();
    default:
        return failAtToken(QStringLiteral("a key path or a value"));
    }
}

std::optional<PredicateExpression> PredicateParser::parseIdentifier() {
    const Token &token = peek();
    for (const char *reserved : kReservedWords) {
        if (isKeyword(token, reserved))
            return failAtToken(QStringLiteral("a key path or a value"));
    }
    if (isKeyword(token, "NULL") || isKeyword(token, "NIL")) {
        take();
        return PredicateExpression::constant(QVariant());
    }
    if (isKeyword(token, "TRUE") || isKeyword(token, "YES") || isKeyword(token, "FALSE") ||
        isKeyword(token, "NO")) {
        take();
        return PredicateExpression::constant(isKeyword(token, "TRUE") || isKeyword(token, "YES"));
    }
    if (isKeyword(token, "DATE") && peek(1).type == TokenType::LeftParen)
        return parseDate();
    if (!isValidKeyPath(token.text))
        return fail(QStringLiteral("Malformed key path '%1'").arg(token.text), token.position);
    return PredicateExpression::keyPath(KeyPath(take().text));
}

std::optional<PredicateExpression> PredicateParser::parseArgument() {
    const Token &token = take();
    if (m_nextArgument >= m_arguments.size())
        return fail(QStringLiteral("Missing argument for %1").arg(token.text), token.position);
    const QVariant &argument = m_arguments.at(m_nextArgument++);
    if (token.text != QLatin1String("%K"))
        return PredicateExpression::constant(argument);
    const QString path = argument.toString();
    if (argument.typeId() != QMetaType::QString || !isValidKeyPath(path))
        return fail(QStringLiteral("%K needs a key path text"), token.position);
    return PredicateExpression::keyPath(KeyPath(path));
}

std::optional<PredicateExpression> PredicateParser::parseAggregate() {
    take();
    QList<PredicateExpression> items;
    if (peek().type != TokenType::RightBrace) {
        do {
            std::optional<PredicateExpression> item = parseExpression();
            if (!item)
                return std::nullopt;
            items.append(std::move(*item));
        } while (peek().type == TokenType::Comma && (take(), true));
    }
    if (!expect(TokenType::RightBrace, QStringLiteral("'}'")))
        return std::nullopt;
    return PredicateExpression::aggregate(std::move(items));
}

std::optional<PredicateExpression> PredicateParser::parseNumber() {
    const Token &token = take();
    QString text = token.text;
    if (text.startsWith(QLatin1Char('+')))
        text.remove(0, 1);
    bool isInteger = false;
    const qint64 integer = text.toLongLong(&isInteger);
    if (isInteger)
        return PredicateExpression::constant(integer);
    const Decimal decimal = Decimal::fromString(text);
    if (decimal.isNaN())
        return fail(QStringLiteral("Malformed number '%1'").arg(token.text), token.position);
    return PredicateExpression::constant(QVariant::fromValue(decimal));
}

// DATE("2024-01-31T12:00:00.000Z"): the literal form dates print as.
std::optional<PredicateExpression> PredicateParser::parseDate() {
    const int position = take().position;
    take(); // '('
    const Token &text = peek();
    if (text.type != TokenType::String)
        return failAtToken(QStringLiteral("a date text"));
    take();
    if (!expect(TokenType::RightParen, QStringLiteral("')'")))
        return std::nullopt;
    const QDateTime date = QDateTime::fromString(text.text, Qt::ISODateWithMs);
    if (!date.isValid())
        return fail(QStringLiteral("Malformed date '%1'").arg(text.text), position);
    return PredicateExpression::constant(date);
}
