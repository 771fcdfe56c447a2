#include "foundation/Check.h"

Q_LOGGING_CATEGORY(lcBillfoldCheck, "billfold.check")

void BillfoldCheck::report(const char *condition, const char *file, int line) {
    qCWarning(lcBillfoldCheck, "%s:%d: %s", file, line, condition);
}
