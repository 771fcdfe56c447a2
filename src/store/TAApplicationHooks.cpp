#include "store/TAApplicationHooks.h"

#include <atomic>

namespace {
TAApplicationHooks g_defaultHooks;
std::atomic<TAApplicationHooks *> g_hooks{nullptr};
TAApplicationHooks::TemplateSeeder g_templateSeeder;
} // namespace

TAApplicationHooks &TAApplicationHooks::instance() {
    TAApplicationHooks *hooks = g_hooks.load();
    return hooks ? *hooks : g_defaultHooks;
}

void TAApplicationHooks::setInstance(TAApplicationHooks *hooks) {
    g_hooks.store(hooks);
}

void TAApplicationHooks::seedBuiltInTemplates(ManagedObjectContext *context) {
    if (g_templateSeeder)
        g_templateSeeder(context);
}

void TAApplicationHooks::setBuiltInTemplateSeeder(TemplateSeeder seeder) {
    g_templateSeeder = std::move(seeder);
}
