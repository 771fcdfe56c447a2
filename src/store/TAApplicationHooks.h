#pragma once

#include "foundation/ScopedOverride.h"

#include <functional>

class ManagedObject;
class ManagedObjectContext;

// What the data layer asks of process-wide services that live outside the store: the timers
// pool, the menu bar's main timer, the user's own address card and the built-in templates.
// One instance serves every document; with none installed the defaults do nothing.
class TAApplicationHooks {
public:
    virtual ~TAApplicationHooks() = default;

    // The installed hooks, or a do-nothing instance.
    static TAApplicationHooks &instance();
    // Serves every use with the given hooks while it lives; null means the do-nothing instance.
    // The program holds one for its whole run, made before any document opens.
    class ScopedInstance : public ScopedOverride<TAApplicationHooks *> {
    public:
        explicit ScopedInstance(TAApplicationHooks *hooks)
            : ScopedOverride(&TAApplicationHooks::exchangeInstance, hooks) {}
    };

    // Timers pool.
    virtual bool timerIsActive(ManagedObject *timer) {
        (void)timer;
        return false;
    }
    virtual void removeTimer(ManagedObject *timer) { (void)timer; }

    // Menu bar.
    virtual ManagedObject *mainTimer() { return nullptr; }
    virtual void setMainTimer(ManagedObject *timer) { (void)timer; }

    // Fills a new preferences object from the user's own address card.
    virtual void updateFromAddressBook(ManagedObject *preferences) { (void)preferences; }

    // Copies the built-in templates into a context that has none. Without the template
    // resource there is nothing to copy, and getTemplates then answers the stored ones only.
    // By default this runs the seeder installed below, so that the template library can
    // provide it without taking over the other hooks.
    virtual void seedBuiltInTemplates(ManagedObjectContext *context);

    using TemplateSeeder = std::function<void(ManagedObjectContext *)>;
    // Installed once at start-up by the program; answers the seeder it replaced.
    static TemplateSeeder setBuiltInTemplateSeeder(TemplateSeeder seeder);
    // Uses the given seeder (empty: none) while it lives.
    class ScopedTemplateSeeder : public ScopedOverride<TemplateSeeder> {
    public:
        explicit ScopedTemplateSeeder(TemplateSeeder seeder)
            : ScopedOverride(&TAApplicationHooks::setBuiltInTemplateSeeder, std::move(seeder)) {}
    };

private:
    static TAApplicationHooks *exchangeInstance(TAApplicationHooks *hooks);
};
