#pragma once

#include "shell/window/TASectionController.h"

// The invoices section: its list, filters and editors come with the invoices work.
class TAInvoicesController : public TASectionController {
    Q_OBJECT
public:
    explicit TAInvoicesController(TADocument *document, QObject *parent = nullptr);

    void setProject(TAProject *project) override { m_project = project; }
    void setClient(TAClient *client) override { m_client = client; }
    TAProject *project() const { return m_project; }
    TAClient *client() const { return m_client; }
    bool canPrint() const override { return true; }

private:
    TAProject *m_project = nullptr;
    TAClient *m_client = nullptr;
};
