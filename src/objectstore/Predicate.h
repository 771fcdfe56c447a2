#pragma once

#include "foundation/Result.h"
#include "objectstore/KeyValueCoding.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <memory>
#include <type_traits>

class PredicateNode;

// A condition on objects, parsed from text such as
//   "status == %@ && client == %@"       (%@ takes the next argument)
//   "archived == $param1"                 ($variables are filled in later)
//   "client.displayName CONTAINS[cd] %@"  ([c] ignores case, [d] diacritics)
//   "SELF.date BETWEEN {%@, %@}"          (inclusive at both ends)
// A predicate is an immutable value; copies share the parsed form.
class Predicate {
public:
    Predicate(); // matches every object

    static Result<Predicate> parse(const QString &format, const QVariantList &arguments = {});

    static Predicate truePredicate();
    static Predicate falsePredicate();
    static Predicate andPredicate(const QList<Predicate> &predicates);
    static Predicate orPredicate(const QList<Predicate> &predicates);
    static Predicate notPredicate(const Predicate &predicate);

    // Escapes the backslash, then the double quote, then the single quote, for use inside a
    // quoted predicate string.
    static QString formattedPredicateString(const QString &text);

    // A copy with the $variables that the map names replaced by its values. Variables the
    // map lacks stay and read as NULL.
    Predicate withSubstitutionVariables(const QVariantMap &variables) const;

    bool evaluate(const KeyValueCoding &object) const;
    // Evaluates against a plain value (text, number, object variant): SELF is the value.
    bool evaluateValue(const QVariant &value) const;

    // Keys (one-key paths) whose value is NULL in every object the predicate matches, as far
    // as its top-level AND shows: lets a store read only the rows that can match.
    QStringList keysRequiredNull() const;

    template <class T> QList<T *> filtered(const QList<T *> &objects) const;

    // Canonical text that parses back to an equivalent predicate. Arguments appear as
    // literals; objects, which have no literal, appear as a marker that does not parse.
    QString predicateFormat() const;

private:
    explicit Predicate(std::shared_ptr<const PredicateNode> root);
    static Predicate compound(int type, const QList<Predicate> &predicates);

    std::shared_ptr<const PredicateNode> m_root;
};

template <class T> QList<T *> Predicate::filtered(const QList<T *> &objects) const {
    static_assert(std::is_base_of_v<KeyValueCoding, T>, "objects must offer key-value coding");
    QList<T *> result;
    for (T *object : objects) {
        if (object && evaluate(*object))
            result.append(object);
    }
    return result;
}
