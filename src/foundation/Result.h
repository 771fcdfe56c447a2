#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

// A failure a person can act on: what went wrong, said in a sentence, plus a code for callers
// that need to tell failures apart.
struct Error {
    int code = 0;
    QString message;
    // Which family the code belongs to, for the few callers that match codes across modules.
    QString domain = {};
};

// A value or an Error. Errors are values here: no exceptions cross module or event-loop
// boundaries.
template <typename T> class [[nodiscard]] Result {
public:
    Result(T value)
        : m_data(std::in_place_index<0>, std::move(value)) {}
    Result(Error error)
        : m_data(std::in_place_index<1>, std::move(error)) {}

    bool ok() const { return m_data.index() == 0; }
    explicit operator bool() const { return ok(); }

    T &value() & { return std::get<0>(m_data); }
    const T &value() const & { return std::get<0>(m_data); }
    T &&value() && { return std::get<0>(std::move(m_data)); }
    T *operator->() { return &value(); }
    const T *operator->() const { return &value(); }
    T &operator*() { return value(); }

    const Error &error() const { return std::get<1>(m_data); }

private:
    std::variant<T, Error> m_data;
};

template <> class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error error)
        : m_error(std::move(error)) {}

    bool ok() const { return !m_error.has_value(); }
    explicit operator bool() const { return ok(); }
    const Error &error() const { return *m_error; }

private:
    std::optional<Error> m_error;
};

namespace ErrorCode {
enum : int {
    Generic = 1,
    FileMissing = 10,
    FileNotReadable,
    FileNotADocument,
    FileDamaged,
    FileNewerModel,
    FileLocked,
    FileReadOnly,
    WriteFailed,
    UnknownEntity,
    InvalidPredicate,
    FileChangedElsewhere,
};
}
