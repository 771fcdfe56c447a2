#include "billing/currencies/TAKnownCurrencies.h"

#include <QFile>

#include <algorithm>

// Outside any namespace: the resource registration is a global function.
static void loadCurrencyListResource() {
    Q_INIT_RESOURCE(DMCL);
}

QList<TAKnownCurrencies::Entry> TAKnownCurrencies::parse(const QString &text) {
    QList<Entry> entries;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        const QStringList parts = line.trimmed().split(QLatin1Char('|'));
        if (parts.size() < 2)
            continue;
        entries.append({parts.at(0), parts.at(1)});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return QString::compare(a.title, b.title, Qt::CaseInsensitive) < 0;
    });
    return entries;
}

const QList<TAKnownCurrencies::Entry> &TAKnownCurrencies::all() {
    static const QList<Entry> entries = [] {
        loadCurrencyListResource();
        QFile file(QStringLiteral(":/resources/DMCL"));
        if (!file.open(QIODevice::ReadOnly))
            return QList<Entry>();
        return parse(QString::fromUtf8(file.readAll()));
    }();
    return entries;
}

QString TAKnownCurrencies::codeForTitle(const QString &title) {
    for (const Entry &entry : all())
        if (entry.title == title)
            return entry.code;
    return {};
}
