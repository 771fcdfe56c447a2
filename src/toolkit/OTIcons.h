#pragma once

#include <QIcon>
#include <QList>
#include <QString>

#include <optional>

// The program's icons. Each answers the icon theme's own picture when the theme has the name,
// so the program looks at home, and otherwise our compiled-in SVG, drawn in the palette's text
// colour so that it follows a dark theme. Sidebar rows and status bar buttons ask by name or by
// the row's key ("groupInvoice", "print", ...).
class OTIcons {
public:
    enum class Name {
        GroupInvoice,
        GroupCalendar,
        GroupInventory,
        GroupClients,
        GroupProjects,
        GroupReports,
        GroupTimers,
        Add,
        Pay,
        Edit,
        Info,
        Duplicate,
        Print,
        Send,
        Preview,
        Search,
        Lock,
    };

    static QIcon icon(Name name);
    // A null icon for a key that names no icon.
    static QIcon icon(const QString &key);
    // Our own drawing, whatever the theme holds.
    static QIcon fallbackIcon(Name name);
    static QIcon applicationIcon();

    static QList<Name> allNames();
    static QString key(Name name);
    static std::optional<Name> nameForKey(const QString &key);
    // The freedesktop name asked of the theme; empty where no common name fits.
    static QString themeName(Name name);

    static QString applicationId() { return QStringLiteral("com.ostrel.Billfold"); }
};
