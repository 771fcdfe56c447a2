#pragma once

#include "foundation/Result.h"
#include "objectstore/ComparisonPredicate.h"
#include "objectstore/PredicateLexer.h"
#include "objectstore/PredicateNode.h"

#include <QVariantList>

#include <optional>

// Recursive descent over the predicate grammar:
//   predicate  := and (("OR" | "||") and)*
//   and        := not (("AND" | "&&") not)*
//   not        := ("NOT" | "!") not | "(" predicate ")" | TRUEPREDICATE | FALSEPREDICATE
//               | expression operator modifiers? expression
//   expression := keypath | constant | %@ | %K | $variable | "{" expression, ... "}"
// Format arguments are consumed left to right as they are met.
class PredicateParser {
public:
    PredicateParser(const QString &format, const QVariantList &arguments);
    Result<PredicateNodePtr> parse();

    // Words that read as something other than a key where a key path may stand.
    static bool isKeywordText(QStringView word);
    // Dotted keys, each starting with a letter, '_' or '@'.
    static bool isValidKeyPath(QStringView text);

private:
    using Token = PredicateLexer::Token;
    using TokenType = Token::Type;

    PredicateNodePtr parseOr();
    PredicateNodePtr parseAnd();
    PredicateNodePtr parseUnary();
    PredicateNodePtr parseComparison();
    std::optional<ComparisonPredicate::Operator> parseOperator();
    std::optional<PredicateValue::StringOptions> parseModifiers();
    std::optional<PredicateExpression> parseExpression();
    std::optional<PredicateExpression> parseIdentifier();
    std::optional<PredicateExpression> parseArgument();
    std::optional<PredicateExpression> parseAggregate();
    std::optional<PredicateExpression> parseNumber();
    std::optional<PredicateExpression> parseDate();

    const Token &peek(int ahead = 0) const;
    const Token &take() { return m_tokens.at(m_index++); }
    bool isKeyword(const Token &token, const char *keyword) const;
    bool isSymbol(const Token &token, const char *symbol) const;
    bool expect(TokenType type, const QString &what);
    std::nullopt_t fail(const QString &message, int position);
    std::nullopt_t failAtToken(const QString &expected);

    const QString &m_format;
    const QVariantList &m_arguments;
    qsizetype m_nextArgument = 0;
    QList<Token> m_tokens;
    qsizetype m_index = 0;
    int m_depth = 0;
    std::optional<PredicateLexer::Failure> m_failure;
};
