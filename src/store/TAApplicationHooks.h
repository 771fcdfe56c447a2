#pragma once

#include <functional>

class ManagedObject;
class ManagedObjectContext;

// What the data layer asks of process-wide services that live outside the store: the timers
// pool, the menu bar's main timer, the user's own address card and the built-in templates.
// One instance serves every document; with none installed the defaults do nothing.
class TAApplicationHooks {
public:
    virtual ~TAApplicationHooks() = default;

    // The installed hooks, or a do-nothing instance. Install at start-up, before any document
    // opens; the object must outlive every use. Null restores the do-nothing instance.
    static TAApplicationHooks &instance();
    static void setInstance(TAApplicationHooks *hooks);

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
    static void setBuiltInTemplateSeeder(TemplateSeeder seeder);
};
