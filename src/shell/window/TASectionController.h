#pragma once

#include "shell/window/TAController.h"

#include <QIcon>

class TAClient;
class TAProject;

// A section of the main window as the sidebar sees it: its page and the commands the sidebar
// hands to it. Until a section is built, its page says so and its commands beep: the
// sidebar and menus keep their place and rules, and nothing pretends to work.
class TASectionController : public TAController {
    Q_OBJECT
public:
    TASectionController(TADocument *document, const QString &title, const QIcon &icon,
                        QObject *parent = nullptr);

    QString title() const { return m_title; }

    // Scope of the list: the project or client it shows, or everything.
    virtual void setProject(TAProject *project) { (void)project; }
    virtual void setClient(TAClient *client) { (void)client; }

    virtual void actionNewInvoice();
    virtual void actionNewInventory();
    virtual void actionNewProject();
    virtual void actionNewClient();
    virtual void actionRemove();
    virtual void actionDuplicate();
    // The invoices, recurring and reports sections print; the others refuse the command.
    virtual bool canPrint() const { return false; }
    virtual void actionPrint();

protected:
    QWidget *makeView() override;

private:
    QString m_title;
    QIcon m_icon;
};
