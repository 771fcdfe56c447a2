#include "shell/application/TAMenuValidation.h"

bool TAMenuValidation::validateMenuItem(int tag, const State &state) {
    if (state.modalWindow)
        return false;
    const bool unlocked = state.hasDocument && !state.lockedWithPassword;
    switch (tag) {
    case ImportLumarin3:
    case ImportLumarin3Alternate:
        return unlocked && state.importSourceExists;
    case NeedsDocument2103:
    case NeedsDocument2104:
    case NeedsDocument21055:
        return state.hasDocument;
    case NeedsUnlocked2105:
    case NeedsUnlocked2106:
        return unlocked;
    case Unconditional2121:
        // On for a locked document too: the lock has no say here.
        return true;
    case Print:
        return state.hasDocument && state.sectionCanPrint;
    default:
        return true;
    }
}
