#pragma once

#include "shell/window/TASectionController.h"

// The projects section: a list of projects, or one project when the sidebar selects it.
class TAProjectsController : public TASectionController {
    Q_OBJECT
public:
    explicit TAProjectsController(TADocument *document, QObject *parent = nullptr);

    void setProject(TAProject *project) override { m_project = project; }
    void setClient(TAClient *client) override { m_client = client; }
    TAProject *project() const { return m_project; }
    TAClient *client() const { return m_client; }

private:
    TAProject *m_project = nullptr;
    TAClient *m_client = nullptr;
};
