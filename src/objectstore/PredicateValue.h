#pragma once

#include "foundation/money/Decimal.h"
#include "objectstore/TextFolding.h"

#include <QString>
#include <QVariant>

#include <optional>

// How predicates and sort descriptors see the values that objects answer: what kind a
// value is, when two values are equal, and how they order. Values of different kinds never
// match and never order; nothing here fails on an unexpected type.
namespace PredicateValue {

enum class Kind { Null, Number, String, Date, Bytes, Object, List, Other };

// Invalid variants, null pointers, null strings, null dates and null byte arrays are Null.
// Booleans and every integer, floating and decimal type are Number.
Kind kindOf(const QVariant &value);

// String matching modifiers: [c] and [d].
using StringOptions = TextFolding::Options;
constexpr StringOptions CaseSensitive = 0;
constexpr StringOptions CaseInsensitive = TextFolding::CaseInsensitive;
constexpr StringOptions DiacriticInsensitive = TextFolding::DiacriticInsensitive;

// A number prepared for repeated comparison: integers stay integers, the rest is exact.
struct Number {
    bool isInteger = true;
    bool isDouble = false; // two doubles compare as doubles, not through rounded decimals
    qint64 integer = 0;
    double real = 0;
    Decimal decimal;
};
Number toNumber(const QVariant &value); // value must be of kind Number
int compareNumbers(const Number &a, const Number &b);

// Three-way comparison of text that has been through TextFolding::fold.
int compareFoldedText(QStringView a, QStringView b);

// The object a value refers to, for identity comparison; nullptr when it holds none.
const void *objectIdentity(const QVariant &value);

bool isEqual(const QVariant &a, const QVariant &b, StringOptions options = CaseSensitive);
// Three-way order of two values of the same kind; nullopt when they can't be ordered
// (different kinds, a null, objects, or not-a-number doubles).
std::optional<int> compare(const QVariant &a, const QVariant &b,
                           StringOptions options = CaseSensitive);

// Elements of a collection value (QVariantList, QStringList); nullopt if it is none.
std::optional<QVariantList> toList(const QVariant &value);

QDateTime toDateTime(const QVariant &value); // value must be of kind Date

} // namespace PredicateValue
