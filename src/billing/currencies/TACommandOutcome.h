#pragma once

#include <QString>

// How a list command ended, for the window to show: done, a beep, or a message panel.
struct TACommandOutcome {
    enum class Kind { Done, Beep, Message };
    Kind kind = Kind::Done;
    QString message;

    static TACommandOutcome done() { return {}; }
    static TACommandOutcome beep() { return {Kind::Beep, {}}; }
    static TACommandOutcome withMessage(const QString &text) { return {Kind::Message, text}; }
    bool isDone() const { return kind == Kind::Done; }
};
