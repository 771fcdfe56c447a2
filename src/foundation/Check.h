#pragma once

#include <QLoggingCategory>

#include <atomic>

// Check-and-recover for states the code around it rules out: a null context where the caller
// always passes one, an object of the wrong entity where the model fixes the type. A failed
// check is a bug to report, not a case to handle, yet the program carries on by running the
// recovery action given:
//
//     BF_CHECK(context, return {});
//     BF_CHECK(row < rows.size(), continue);
//
// Failures log "file:line: condition" as a warning in the category "billfold.check". Debug
// builds, and any build with BILLFOLD_CHECK_VERBOSE, log every failure, so tests and CI see each
// one. Release builds log each failing check once, so a bug in a loop cannot flood the log.
//
// States a person can cause (a value left empty, a file not written yet) are not checks: they
// take a plain `if`, and failures a person should read return a Result.

Q_DECLARE_LOGGING_CATEGORY(lcBillfoldCheck)

namespace BillfoldCheck {
// Logs a failed check; called by BF_CHECK only.
void report(const char *condition, const char *file, int line);
} // namespace BillfoldCheck

#if !defined(NDEBUG) || defined(BILLFOLD_CHECK_VERBOSE)
#define BF_CHECK_REPORT(condition) ::BillfoldCheck::report(#condition, __FILE__, __LINE__)
#else
#define BF_CHECK_REPORT(condition)                                                                 \
    do {                                                                                           \
        static std::atomic_bool bfCheckReported{false};                                            \
        if (!bfCheckReported.exchange(true))                                                       \
            ::BillfoldCheck::report(#condition, __FILE__, __LINE__);                               \
    } while (false)
#endif

// The if/else form lets the action be `continue` or `break` of the caller's loop. The trailing
// do-while asks for a semicolon and turns an `else` after the check into a compile error
// instead of binding it to the check's own if.
// The action is variadic so that braces with commas in it, as in `return Error{code, text}`,
// need no extra parentheses.
#define BF_CHECK(condition, ...)                                                                   \
    if (Q_LIKELY(condition)) {                                                                     \
    } else {                                                                                       \
        BF_CHECK_REPORT(condition);                                                                \
        __VA_ARGS__;                                                                               \
    }                                                                                              \
    do {                                                                                           \
    } while (false)
