#pragma once

#include <QList>
#include <QString>

// The ISO 4217 currencies a document may add, from the compiled-in list "DMCL": one
// "CODE|Title" a line.
class TAKnownCurrencies {
public:
    struct Entry {
        QString code;
        QString title;
    };

    // Titles sorted case-insensitively; lines with fewer than two parts are skipped.
    static QList<Entry> parse(const QString &text);
    static const QList<Entry> &all();
    // The code that goes with a chosen title; empty when the title is unknown.
    static QString codeForTitle(const QString &title);

private:
    TAKnownCurrencies() = delete;
};
