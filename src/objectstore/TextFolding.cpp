#include "objectstore/TextFolding.h"

#include <array>
#include <atomic>
#include <cstring>

namespace TextFolding {

namespace {

bool isMark(char32_t codePoint) {
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
        return true;
    default:
        return false;
    }
}

// The general path over the whole text: decompose, drop marks, fold case.
QString foldSlowly(const QString &text, Options options) {
    QString folded;
    if (options & DiacriticInsensitive) {
        const QString decomposed = text.normalized(QString::NormalizationForm_D);
        folded.reserve(decomposed.size());
        for (qsizetype i = 0; i < decomposed.size(); ++i) {
            const QChar c = decomposed.at(i);
            if (c.isHighSurrogate() && i + 1 < decomposed.size() &&
                decomposed.at(i + 1).isLowSurrogate()) {
                const QChar low = decomposed.at(++i);
                if (!isMark(QChar::surrogateToUcs4(c, low)))
                    folded.append(c).append(low);
            } else if (!isMark(c.unicode())) {
                folded.append(c);
            }
        }
    } else {
        folded = text;
    }
    return (options & CaseInsensitive) ? folded.toCaseFolded() : folded;
}

// What one non-ASCII UTF-16 code unit folds to under each option set, learnt on first sight:
// text uses few distinct letters, and normalizing every string anew is far too slow for
// searches over many objects. Concurrent first sights store the same value.
constexpr quint32 kUnknown = 0;
constexpr quint32 kDrop = 1;    // a combining mark
constexpr quint32 kSpecial = 2; // surrogates and multi-unit results: take the general path
constexpr quint32 kChar = 0x10000;

quint32 foldedUnit(char16_t c, Options options) {
    static std::array<std::array<std::atomic<quint32>, 0x10000>, 4> tables{};
    std::atomic<quint32> &slot = tables[options & 3][c];
    quint32 entry = slot.load(std::memory_order_relaxed);
    if (entry != kUnknown)
        return entry;
    if (QChar::isSurrogate(c)) {
        entry = kSpecial;
    } else {
        const QString folded = foldSlowly(QString(QChar(c)), options);
        if (folded.isEmpty())
            entry = kDrop;
        else if (folded.size() == 1)
            entry = kChar | folded.at(0).unicode();
        else
            entry = kSpecial;
    }
    slot.store(entry, std::memory_order_relaxed);
    return entry;
}

// Four code units at a time for the ASCII bulk of most text.
constexpr quint64 kLanes = 0x0001000100010001ULL;

bool allAscii(quint64 four) {
    return (four & (0xFF80 * kLanes)) == 0;
}

// Lower-cases the ASCII capitals among four ASCII code units: a lane reaches 0x80 after
// adding 0x3F exactly when it is at least 'A', and after adding 0x25 when it is past 'Z'.
quint64 lowerAscii(quint64 four) {
    const quint64 atLeastA = four + 0x3F * kLanes;
    const quint64 pastZ = four + 0x25 * kLanes;
    const quint64 capitals = atLeastA & ~pastZ & (0x80 * kLanes);
    return four | (capitals >> 2);
}

quint64 load(const char16_t *units) {
    quint64 four;
    std::memcpy(&four, units, sizeof four);
    return four;
}

qsizetype asciiPrefix(const char16_t *units, qsizetype size) {
    qsizetype i = 0;
    while (i + 4 <= size && allAscii(load(units + i)))
        i += 4;
    while (i < size && units[i] < 0x80)
        ++i;
    return i;
}

} // namespace

QStringView fold(const QString &text, Options options, QString &buffer) {
    options &= CaseInsensitive | DiacriticInsensitive;
    const char16_t *units = reinterpret_cast<const char16_t *>(text.constData());
    const qsizetype size = text.size();
    if (!options || (options == DiacriticInsensitive && asciiPrefix(units, size) == size))
        return text;

    buffer.resize(size);
    char16_t *out = reinterpret_cast<char16_t *>(buffer.data());
    const bool lower = options & CaseInsensitive;
    qsizetype written = 0;
    qsizetype i = 0;
    while (i < size) {
        if (i + 4 <= size && allAscii(load(units + i))) {
            const quint64 four = lower ? lowerAscii(load(units + i)) : load(units + i);
            std::memcpy(out + written, &four, sizeof four);
            written += 4;
            i += 4;
            continue;
        }
        const char16_t c = units[i++];
        if (c < 0x80) {
            out[written++] = (lower && c >= u'A' && c <= u'Z') ? c + 32 : c;
            continue;
        }
        const quint32 entry = foldedUnit(c, options);
        if (entry == kSpecial) {
            buffer = foldSlowly(text, options);
            return buffer;
        }
        if (entry != kDrop)
            out[written++] = char16_t(entry & 0xFFFF);
    }
    buffer.truncate(written);
    return buffer;
}

QString fold(const QString &text, Options options) {
    QString buffer;
    const QStringView folded = fold(text, options, buffer);
    return folded.data() == text.constData() ? text : buffer;
}

} // namespace TextFolding
