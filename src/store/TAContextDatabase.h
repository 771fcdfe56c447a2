#pragma once

#include "store/TAContextFetching.h"
#include "store/TAContextUndo.h"
#include "store/TACurrencyQueries.h"
#include "store/TAEntityCreation.h"
#include "store/TAEntityDeletion.h"
#include "store/TAEntityQueries.h"
#include "store/TAInvoiceQueries.h"
#include "store/TAProjectQueries.h"

// The data access layer for code that holds a context but no document (background contexts
// among others): every operation of its parts, each of which takes the context last. Failures
// are logged and answer nothing: a failed fetch is an empty list, a failed lookup null, and a
// null context answers nothing.
class TAContextDatabase : public TAContextFetching,
                          public TAProjectQueries,
                          public TAInvoiceQueries,
                          public TAEntityQueries,
                          public TACurrencyQueries,
                          public TAEntityCreation,
                          public TAContextUndo,
                          public TAEntityDeletion {
private:
    TAContextDatabase() = delete;
};
