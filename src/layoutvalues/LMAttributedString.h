#pragma once

#include "layoutvalues/LMTextAttributes.h"

#include <QByteArray>
#include <QList>
#include <QString>

// Text in runs, each run with its own attributes. Neighbouring runs with equal attributes are
// joined, and empty runs are dropped, so that equal texts compare equal.
//
// Stored form: CBOR map {"v": 1, "runs": [{"t": text, "a": <attribute map>}, ...]}. Damaged
// data reads as the empty string; a damaged run's attributes read as empty.
class LMAttributedString {
public:
    struct Run {
        QString text;
        LMTextAttributes attributes;
        bool operator==(const Run &) const = default;
    };

    static constexpr int version = 1;

    LMAttributedString() = default;
    LMAttributedString(const QString &text, const LMTextAttributes &attributes);

    const QList<Run> &runs() const { return m_runs; }
    QString string() const;
    qsizetype length() const;
    bool isEmpty() const { return m_runs.isEmpty(); }

    void append(const QString &text, const LMTextAttributes &attributes);
    void append(const LMAttributedString &other);
    // The attributes of the character at the index; empty outside the text.
    LMTextAttributes attributesAtIndex(qsizetype index) const;
    // Replaces the characters [start, start + count) by the text with the attributes given.
    void replaceCharacters(qsizetype start, qsizetype count, const QString &text,
                           const LMTextAttributes &attributes);

    bool operator==(const LMAttributedString &) const = default;

    QByteArray archive() const;
    static LMAttributedString unarchive(const QByteArray &data);

private:
    LMAttributedString slice(qsizetype start, qsizetype count) const;
    QList<Run> m_runs;
};
