#include "toolkit/OTIcons.h"

#include "foundation/Check.h"
#include "toolkit/OTSvgIconEngine.h"

#include <array>

namespace {

struct Entry {
    OTIcons::Name name;
    const char *key;
    const char *themeName;
};

// Theme names are those of the freedesktop naming list that the common themes carry. No
// common name means "payment", so the pay button always shows our own banknote.
constexpr std::array entries{
    Entry{OTIcons::Name::GroupInvoice, "groupInvoice", "x-office-document"},
    Entry{OTIcons::Name::GroupCalendar, "groupCalendar", "x-office-calendar"},
    Entry{OTIcons::Name::GroupInventory, "groupInventory", "package-x-generic"},
    Entry{OTIcons::Name::GroupClients, "groupClients", "system-users"},
    Entry{OTIcons::Name::GroupProjects, "groupProjects", "folder"},
    Entry{OTIcons::Name::GroupReports, "groupReports", "x-office-spreadsheet"},
    Entry{OTIcons::Name::GroupTimers, "groupTimers", "appointment-soon"},
    Entry{OTIcons::Name::Add, "add", "list-add"},
    Entry{OTIcons::Name::Pay, "pay", ""},
    Entry{OTIcons::Name::Edit, "edit", "document-edit"},
    Entry{OTIcons::Name::Info, "info", "dialog-information"},
    Entry{OTIcons::Name::Duplicate, "duplicate", "edit-copy"},
    Entry{OTIcons::Name::Print, "print", "document-print"},
    Entry{OTIcons::Name::Send, "send", "mail-send"},
    Entry{OTIcons::Name::Preview, "preview", "document-print-preview"},
    Entry{OTIcons::Name::Search, "search", "edit-find"},
    Entry{OTIcons::Name::Lock, "lock", "changes-prevent"},
};

const Entry *entryFor(OTIcons::Name name) {
    for (const Entry &entry : entries) {
        if (entry.name == name)
            return &entry;
    }
    return nullptr;
}

} // namespace

// Outside the anonymous namespace: Q_INIT_RESOURCE declares the loader in the enclosing one.
static void loadResources() {
    static const bool loaded = [] {
        Q_INIT_RESOURCE(billfold_icons);
        return true;
    }();
    Q_UNUSED(loaded);
}

QList<OTIcons::Name> OTIcons::allNames() {
    QList<Name> names;
    for (const Entry &entry : entries)
        names.append(entry.name);
    return names;
}

QString OTIcons::key(Name name) {
    const Entry *entry = entryFor(name);
    BF_CHECK(entry, return {});
    return QString::fromLatin1(entry->key);
}

QString OTIcons::themeName(Name name) {
    const Entry *entry = entryFor(name);
    BF_CHECK(entry, return {});
    return QString::fromLatin1(entry->themeName);
}

std::optional<OTIcons::Name> OTIcons::nameForKey(const QString &key) {
    for (const Entry &entry : entries) {
        if (key == QLatin1String(entry.key))
            return entry.name;
    }
    return std::nullopt;
}

QIcon OTIcons::fallbackIcon(Name name) {
    loadResources();
    QString path = QStringLiteral(":/icons/symbolic/%1.svg").arg(key(name));
    return QIcon(new OTSvgIconEngine(path, OTSvgIconEngine::Style::Symbolic));
}

QIcon OTIcons::icon(Name name) {
    QString theme = themeName(name);
    if (theme.isEmpty())
        return fallbackIcon(name);
    return QIcon::fromTheme(theme, fallbackIcon(name));
}

QIcon OTIcons::icon(const QString &key) {
    std::optional<Name> name = nameForKey(key);
    BF_CHECK(name, return {});
    return icon(*name);
}

QIcon OTIcons::applicationIcon() {
    loadResources();
    // An installed copy wins, so a packager's icon and the window's are the same picture.
    QIcon ours(new OTSvgIconEngine(QStringLiteral(":/icons/com.ostrel.Billfold.svg"),
                                   OTSvgIconEngine::Style::FullColor));
    return QIcon::fromTheme(applicationId(), ours);
}
