#pragma once

#include "billing/currencies/TACommandOutcome.h"

#include <functional>

class TADatabase;
class TADocumentHooks;
class TATax;

// The tax commands of the preferences. A rate is typed as a percentage and stored as a
// fraction. Items keep their own copy of rate and name, so a change here alters no item.
class TATaxList {
public:
    using Poster = std::function<void(const QString &name, TADocumentHooks *document)>;
    static const QString kTaxesChangedNotification;

    explicit TATaxList(TADatabase *database, Poster poster = {});

    TATax *addTax(const QString &name, const QString &percentText);
    void setTaxName(TATax *tax, const QString &name);
    void setTaxPercent(TATax *tax, const QString &percentText);
    void removeTax(TATax *tax);

private:
    void post();

    TADatabase *m_database = nullptr;
    Poster m_poster;
};
