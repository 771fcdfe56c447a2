#include "store/TAApplicationHooks.h"

#include <atomic>
#include <utility>

namespace {
TAApplicationHooks g_defaultHooks;
std::atomic<TAApplicationHooks *> g_hooks{nullptr};
TAApplicationHooks::TemplateSeeder g_templateSeeder;
} // namespace

TAApplicationHooks &TAApplicationHooks::instance() {
    TAApplicationHooks *hooks = g_hooks.load();
    return hooks ? *hooks : g_defaultHooks;
}

TAApplicationHooks *TAApplicationHooks::exchangeInstance(TAApplicationHooks *hooks) {
    return g_hooks.exchange(hooks);
}

void TAApplicationHooks::seedBuiltInTemplates(ManagedObjectContext *context) {
    if (g_templateSeeder)
        g_templateSeeder(context);
}

TAApplicationHooks::TemplateSeeder
TAApplicationHooks::setBuiltInTemplateSeeder(TemplateSeeder seeder) {
    return std::exchange(g_templateSeeder, std::move(seeder));
}
