#pragma once

#include <QSettings>
#include <QStringList>

#include <memory>

// The documents opened last, most recent first, kept in the user's settings so that the menu,
// the reopen rule and the next start all read the same list. A file that has gone away stays
// listed: opening it fails then with a message that says so.
class TARecentDocuments {
public:
    static constexpr int kMaximumCount = 10;

    // On the user's settings file.
    TARecentDocuments();
    // On given settings (a temporary file in tests); it does not own them.
    explicit TARecentDocuments(QSettings *settings);

    // Puts the file first, once, and drops the oldest beyond the maximum.
    void note(const QString &path);
    void clear();
    QStringList paths() const;
    // The most recent file, or an empty text when the list is empty.
    QString first() const;

private:
    std::unique_ptr<QSettings> m_owned;
    QSettings *m_settings;
};
