#pragma once

#include "document/TADocument.h"

#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QWidget>

// A section of the main window: its page, its action menu, and the moments it is shown,
// hidden, reloaded and cleaned. The groups controller switches between sections; a section
// fills the status bar's buttons when it comes in and clears them when it goes.
class TAController : public QObject {
    Q_OBJECT
public:
    explicit TAController(TADocument *document, QObject *parent = nullptr);
    ~TAController() override;

    TADocument *document() const { return m_document; }
    // The page shown in the section stack; made on first use and owned by the controller.
    QWidget *view();
    // The section's commands for the main menu; null when it has none.
    QMenu *actionMenu() const { return m_actionMenu; }

    virtual void switchIn() {}
    virtual void switchOut() {}
    virtual void reload() {}
    virtual void clean() {}

    // This section is the one the sidebar shows.
    bool isActive() const { return m_active; }
    void reloadIfActive();

protected:
    virtual QWidget *makeView() = 0;
    void setActionMenu(QMenu *menu) { m_actionMenu = menu; }

private:
    friend class TAGroupsController; // marks the current section as it switches
    QPointer<TADocument> m_document;
    QPointer<QWidget> m_view;
    QPointer<QMenu> m_actionMenu;
    bool m_active = false;
};
