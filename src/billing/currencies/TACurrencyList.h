#pragma once

#include "billing/currencies/TACommandOutcome.h"
#include "foundation/money/Decimal.h"

#include <functional>

class TACurrency;
class TADatabase;
class TADocumentHooks;

// The currency commands of the preferences: add, remove, change the default, and the table's
// values against the default currency. After each change the notification goes out with the
// document as its object.
class TACurrencyList {
public:
    using Poster = std::function<void(const QString &name, TADocumentHooks *document)>;
    static const QString kCurrenciesChangedNotification;

    explicit TACurrencyList(TADatabase *database, Poster poster = {});

    // Needs both; a code already in the document is refused. Not undoable.
    TACommandOutcome addCurrency(const QString &title, const QString &code);
    // Refused while a client uses the currency; payments and rates are not looked at.
    TACommandOutcome removeCurrency(TACurrency *currency);
    TACommandOutcome changeDefaultCurrency(TACurrency *currency);
    // The "active" column.
    void setAutomaticallyDownload(TACurrency *currency, bool value);

    // Columns "one" and "in": the rates of the row from the default currency to this one;
    // 1 for the default currency itself.
    Decimal oneColumn(TACurrency *currency);
    Decimal inColumn(TACurrency *currency);

private:
    void post();

    TADatabase *m_database = nullptr;
    Poster m_poster;
};
