#include "store/TAApplicationHooks.h"

#include <atomic>

namespace {
TAApplicationHooks g_defaultHooks;
std::atomic<TAApplicationHooks *> g_hooks{nullptr};
} // namespace

TAApplicationHooks &TAApplicationHooks::instance() {
    TAApplicationHooks *hooks = g_hooks.load();
    return hooks ? *hooks : g_defaultHooks;
}

void TAApplicationHooks::setInstance(TAApplicationHooks *hooks) {
    g_hooks.store(hooks);
}
