#pragma once

#include <utility>

// Installs a process-wide value through an exchange function (one that answers the value it
// replaced) and puts the replaced value back when it goes, so that a test or a short piece of
// work can change a hook without leaving it changed for whatever runs next.
template <typename T> class ScopedOverride {
public:
    using Exchange = T (*)(T);

    ScopedOverride(Exchange exchange, T value)
        : m_exchange(exchange)
        , m_previous(exchange(std::move(value))) {}
    ~ScopedOverride() { m_exchange(std::move(m_previous)); }

    ScopedOverride(const ScopedOverride &) = delete;
    ScopedOverride &operator=(const ScopedOverride &) = delete;

private:
    Exchange m_exchange;
    T m_previous;
};
