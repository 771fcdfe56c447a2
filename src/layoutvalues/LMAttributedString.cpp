#include "layoutvalues/LMAttributedString.h"

#include "layoutvalues/LMCborEnvelope.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>

LMAttributedString::LMAttributedString(const QString &text, const LMTextAttributes &attributes) {
    append(text, attributes);
}

QString LMAttributedString::string() const {
    QString out;
    for (const Run &run : m_runs)
        out += run.text;
    return out;
}

qsizetype LMAttributedString::length() const {
    qsizetype n = 0;
    for (const Run &run : m_runs)
        n += run.text.size();
    return n;
}

void LMAttributedString::append(const QString &text, const LMTextAttributes &attributes) {
    if (text.isEmpty())
        return;
    if (!m_runs.isEmpty() && m_runs.last().attributes == attributes)
        m_runs.last().text += text;
    else
        m_runs.append({text, attributes});
}

void LMAttributedString::append(const LMAttributedString &other) {
    for (const Run &run : other.m_runs)
        append(run.text, run.attributes);
}

LMTextAttributes LMAttributedString::attributesAtIndex(qsizetype index) const {
    if (index < 0)
        return {};
    for (const Run &run : m_runs) {
        if (index < run.text.size())
            return run.attributes;
        index -= run.text.size();
    }
    return {};
}

LMAttributedString LMAttributedString::slice(qsizetype start, qsizetype count) const {
    LMAttributedString out;
    qsizetype position = 0;
    for (const Run &run : m_runs) {
        const qsizetype from = qMax(start, position);
        const qsizetype to = qMin(start + count, position + run.text.size());
        if (from < to)
            out.append(run.text.mid(from - position, to - from), run.attributes);
        position += run.text.size();
    }
    return out;
}

void LMAttributedString::replaceCharacters(qsizetype start, qsizetype count, const QString &text,
                                           const LMTextAttributes &attributes) {
    const qsizetype total = length();
    start = qBound<qsizetype>(0, start, total);
    count = qBound<qsizetype>(0, count, total - start);
    LMAttributedString out = slice(0, start);
    out.append(text, attributes);
    out.append(slice(start + count, total - start - count));
    m_runs = out.m_runs;
}

QByteArray LMAttributedString::archive() const {
    QCborArray runs;
    for (const Run &run : m_runs) {
        QCborMap entry;
        entry.insert(QStringLiteral("t"), run.text);
        entry.insert(QStringLiteral("a"), run.attributes.toCbor());
        runs.append(entry);
    }
    QCborMap map;
    map.insert(QStringLiteral("v"), version);
    map.insert(QStringLiteral("runs"), runs);
    return QCborValue(map).toCbor();
}

LMAttributedString LMAttributedString::unarchive(const QByteArray &data) {
    const std::optional<QCborMap> map =
        LMCborEnvelope::versionedMap(LMCborEnvelope::parse(data), version);
    if (!map)
        return {};
    const QCborValue runs = map->value(QStringLiteral("runs"));
    if (!runs.isArray())
        return {};
    LMAttributedString out;
    for (const QCborValue &entry : runs.toArray()) {
        const QCborValue text = entry.toMap().value(QStringLiteral("t"));
        if (!text.isString())
            return {};
        out.append(text.toString(),
                   LMTextAttributes::fromCbor(entry.toMap().value(QStringLiteral("a"))));
    }
    return out;
}
