#include "shell/window/TAController.h"

#include "document/TADocument.h"

#include <QMenu>
#include <QWidget>

TAController::TAController(TADocument *document, QObject *parent)
    : QObject(parent)
    , m_document(document) {}

TAController::~TAController() {
    // The page may sit in the section stack, which would otherwise delete it a second time.
    delete m_view.data();
}

QWidget *TAController::view() {
    if (!m_view)
        m_view = makeView();
    return m_view;
}

void TAController::reloadIfActive() {
    if (isActive())
        reload();
}
