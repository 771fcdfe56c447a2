#pragma once

#include <QMenu>

class TARecentDocuments;

// The "Open Recent" submenu. It is built afresh each time it opens, so it always shows the
// list as it is now: one item per file (its name, the full path as tooltip), a separator when
// there is at least one, and "Clear Menu" always last.
class TARecentDocumentsMenu : public QMenu {
    Q_OBJECT
public:
    // The list must outlive the menu.
    explicit TARecentDocumentsMenu(TARecentDocuments &recent, QWidget *parent = nullptr);

    void rebuild();

signals:
    void openRecent(const QString &path);

private:
    TARecentDocuments &m_recent;
};
