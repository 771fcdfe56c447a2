#include "objectstore/PredicateLexer.h"

using Token = PredicateLexer::Token;
using Type = Token::Type;

namespace {

bool isIdentifierStart(QChar c) {
    return c.isLetter() || c == QLatin1Char('_') || c == QLatin1Char('@');
}

bool isIdentifierPart(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('@') ||
           c == QLatin1Char('.');
}

bool isDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

} // namespace

std::optional<QList<Token>> PredicateLexer::tokenize() {
    QList<Token> tokens;
    while (true) {
        while (at(m_pos).isSpace())
            ++m_pos;
        if (m_pos >= m_text.size())
            break;
        if (!next(tokens))
            return std::nullopt;
    }
    tokens.append(Token{Type::End, QString(), int(m_text.size())});
    return tokens;
}

bool PredicateLexer::next(QList<Token> &tokens) {
    Token token;
    token.position = m_pos;
    const QChar c = at(m_pos);
    const QChar following = at(m_pos + 1);
    bool ok = true;
    if (isIdentifierStart(c)) {
        ok = readIdentifier(token);
    } else if (isDigit(c) || (c == QLatin1Char('.') && isDigit(following)) ||
               ((c == QLatin1Char('-') || c == QLatin1Char('+')) &&
                (isDigit(following) || following == QLatin1Char('.')))) {
        ok = readNumber(token);
    } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
        ok = readString(token);
    } else if (c == QLatin1Char('%')) {
        ok = readArgument(token);
    } else if (c == QLatin1Char('$')) {
        ++m_pos;
        token.type = Type::Variable;
        while (isIdentifierPart(at(m_pos)) && at(m_pos) != QLatin1Char('.'))
            token.text += m_text.at(m_pos++);
        if (token.text.isEmpty())
            return fail(QStringLiteral("A variable needs a name"), token.position);
    } else {
        ok = readSymbol(token);
    }
    if (ok)
        tokens.append(token);
    return ok;
}

bool PredicateLexer::readIdentifier(Token &token) {
    token.type = Type::Identifier;
    while (isIdentifierPart(at(m_pos)))
        token.text += m_text.at(m_pos++);
    return true;
}

bool PredicateLexer::readNumber(Token &token) {
    token.type = Type::Number;
    const int start = m_pos;
    if (at(m_pos) == QLatin1Char('-') || at(m_pos) == QLatin1Char('+'))
        ++m_pos;
    while (isDigit(at(m_pos)))
        ++m_pos;
    if (at(m_pos) == QLatin1Char('.')) {
        ++m_pos;
        while (isDigit(at(m_pos)))
            ++m_pos;
    }
    if (at(m_pos) == QLatin1Char('e') || at(m_pos) == QLatin1Char('E')) {
        int end = m_pos + 1;
        if (at(end) == QLatin1Char('-') || at(end) == QLatin1Char('+'))
            ++end;
        if (isDigit(at(end))) {
            m_pos = end;
            while (isDigit(at(m_pos)))
                ++m_pos;
        }
    }
    token.text = m_text.mid(start, m_pos - start);
    if (isIdentifierStart(at(m_pos)))
        return fail(QStringLiteral("Malformed number"), start);
    return true;
}

bool PredicateLexer::readString(Token &token) {
    token.type = Type::String;
    const QChar quote = at(m_pos++);
    while (m_pos < m_text.size()) {
        const QChar c = m_text.at(m_pos++);
        if (c == quote)
            return true;
        if (c != QLatin1Char('\\')) {
            token.text += c;
            continue;
        }
        if (m_pos >= m_text.size())
            break;
        const QChar escaped = m_text.at(m_pos++);
        if (escaped == QLatin1Char('n'))
            token.text += QLatin1Char('\n');
        else if (escaped == QLatin1Char('t'))
            token.text += QLatin1Char('\t');
        else if (escaped == QLatin1Char('r'))
            token.text += QLatin1Char('\r');
        else
            token.text += escaped;
    }
    return fail(QStringLiteral("Unterminated string"), token.position);
}

bool PredicateLexer::readArgument(Token &token) {
    token.type = Type::Argument;
    ++m_pos;
    QString modifiers;
    while (at(m_pos) == QLatin1Char('l'))
        modifiers += m_text.at(m_pos++);
    const QChar kind = at(m_pos);
    static const QString kinds = QStringLiteral("@Kdiufs");
    if (kind.isNull() || !kinds.contains(kind) ||
        (!modifiers.isEmpty() && kind == QLatin1Char('@')))
        return fail(QStringLiteral("Unknown format specifier"), token.position);
    ++m_pos;
    token.text = QLatin1Char('%') + modifiers + kind;
    return true;
}

bool PredicateLexer::readSymbol(Token &token) {
    static const char *const symbols[] = {
        "==", "=<", "=>", "!=", "<>", "<=", ">=", "&&", "||", "=", "<", ">", "!"};
    for (const char *symbol : symbols) {
        const QLatin1String text(symbol);
        if (QStringView(m_text).mid(m_pos).startsWith(text)) {
            token.type = Type::Symbol;
            token.text = text;
            m_pos += int(text.size());
            return true;
        }
    }
    static const QString singles = QStringLiteral("(){}[],");
    static const Type singleTypes[] = {Type::LeftParen,  Type::RightParen,  Type::LeftBrace,
                                       Type::RightBrace, Type::LeftBracket, Type::RightBracket,
                                       Type::Comma};
    const qsizetype single = singles.indexOf(at(m_pos));
    if (single < 0)
        return fail(QStringLiteral("Unexpected character '%1'").arg(at(m_pos)), m_pos);
    token.type = singleTypes[single];
    token.text = at(m_pos++);
    return true;
}

bool PredicateLexer::fail(const QString &message, int position) {
    m_failure = Failure{message, position};
    return false;
}
