#pragma once

// Which menu commands can run, from the few facts they depend on. The menu bar asks before it
// shows a menu; the answer depends on nothing else, so it can be checked without a window.
class TAMenuValidation {
public:
    // The tags of the commands with a rule of their own. The menu resources title the
    // numbered ones; the rule is all that is known here.
    enum Tag : int {
        ImportLumarin3 = 19,
        ImportLumarin3Alternate = 21031,
        NeedsDocument2103 = 2103,
        NeedsDocument2104 = 2104,
        NeedsDocument21055 = 21055,
        NeedsUnlocked2105 = 2105,
        NeedsUnlocked2106 = 2106,
        Unconditional2121 = 2121,
        Print = 3131,
    };

    struct State {
        // A modal window is up: everything behind it waits.
        bool modalWindow = false;
        bool hasDocument = false;
        bool lockedWithPassword = false;
        // There is a file to import from.
        bool importSourceExists = false;
        // The current section's own answer for printing (invoices, recurring, reports).
        bool sectionCanPrint = false;
    };

    static bool validateMenuItem(int tag, const State &state);
};
