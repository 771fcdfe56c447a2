#pragma once

#include <QList>
#include <QString>

#include <optional>

// Splits predicate text into tokens. Dotted key paths stay one token; string escapes are
// resolved; a sign directly before a digit belongs to the number.
class PredicateLexer {
public:
    struct Token {
        enum class Type {
            End,
            Identifier,
            Number,
            String,
            Argument, // %@, %K, %d ...
            Variable, // $name, without the '$'
            Symbol,   // operators
            LeftParen,
            RightParen,
            LeftBrace,
            RightBrace,
            LeftBracket,
            RightBracket,
            Comma,
        };
        Type type = Type::End;
        QString text;
        int position = 0;
    };

    struct Failure {
        QString message;
        int position = 0;
    };

    explicit PredicateLexer(const QString &text)
        : m_text(text) {}
    // The tokens, ending with an End token, or the first failure.
    std::optional<QList<Token>> tokenize();
    const Failure &failure() const { return m_failure; }

private:
    bool next(QList<Token> &tokens);
    bool readIdentifier(Token &token);
    bool readNumber(Token &token);
    bool readString(Token &token);
    bool readArgument(Token &token);
    bool readSymbol(Token &token);
    bool fail(const QString &message, int position);
    QChar at(int index) const { return index < m_text.size() ? m_text.at(index) : QChar(); }

    const QString &m_text;
    int m_pos = 0;
    Failure m_failure;
};
