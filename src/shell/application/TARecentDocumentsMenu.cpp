#include "shell/application/TARecentDocumentsMenu.h"

#include "shell/application/TARecentDocuments.h"

#include <QFileInfo>

TARecentDocumentsMenu::TARecentDocumentsMenu(TARecentDocuments &recent, QWidget *parent)
    : QMenu(tr("Open Recent"), parent)
    , m_recent(recent) {
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &TARecentDocumentsMenu::rebuild);
}

void TARecentDocumentsMenu::rebuild() {
    clear();
    const QStringList paths = m_recent.paths();
    for (const QString &path : paths) {
        // A "&" in a file name is text, not the mark of a shortcut letter.
        QString title = QFileInfo(path).fileName();
        title.replace(QLatin1Char('&'), QStringLiteral("&&"));
        QAction *item = addAction(title);
        item->setToolTip(path);
        item->setData(path);
        connect(item, &QAction::triggered, this, [this, path] { emit openRecent(path); });
    }
    if (!paths.isEmpty())
        addSeparator();
    connect(addAction(tr("Clear Menu")), &QAction::triggered, this, [this] { m_recent.clear(); });
}
