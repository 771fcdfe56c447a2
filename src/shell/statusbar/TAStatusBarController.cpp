#include "shell/statusbar/TAStatusBarController.h"

#include "shell/statusbar/TAStatusBarGrid.h"
#include "toolkit/OTIcons.h"

#include <QCoreApplication>
#include <QIcon>

#include <optional>

namespace {

struct ButtonKind {
    const char *title;
    std::optional<OTIcons::Name> icon; // none for a button shown by its title alone
    bool hasDisabledLook;
};

// In the order of TAStatusBarController::Button.
constexpr ButtonKind kButtons[] = {
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Add"), OTIcons::Name::Add, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Pay"), OTIcons::Name::Pay, true},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Edit"), OTIcons::Name::Edit, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Info"), OTIcons::Name::Info, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Add New"), OTIcons::Name::Add, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Copy"), OTIcons::Name::Duplicate, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Style"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Text"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Shapes"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Colors"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Fonts"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Print"), OTIcons::Name::Print, true},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Send"), OTIcons::Name::Send, true},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Template"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Invoice"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Client"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Projects"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Inventory"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Invoices"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Activity"), std::nullopt, false},
    {QT_TRANSLATE_NOOP("TAStatusBarController", "Preview"), OTIcons::Name::Preview, true},
};
static_assert(std::size(kButtons) == TAStatusBarController::ButtonCount,
              "one entry per button, in the order of the enumeration");

QIcon iconFor(const ButtonKind &kind) {
    return kind.icon ? OTIcons::icon(*kind.icon) : QIcon();
}

} // namespace

TAStatusBarController::TAStatusBarController(QObject *parent)
    : QObject(parent)
    , m_bar(new TAStatusBarView) {
    for (int which = 0; which < ButtonCount; ++which) {
        const ButtonKind &kind = kButtons[which];
        auto *button =
            new TAStatusBarButton(QCoreApplication::translate("TAStatusBarController", kind.title),
                                  iconFor(kind), kind.hasDisabledLook, m_bar);
        button->hide();
        m_buttons[which] = button;
    }
    editButton()->setCheckable(true); // pressed down while the invoice is being edited
    m_searchButton = new TAStatusBarSearchButton(m_bar);
    m_searchButton->hide();
}

TAStatusBarController::~TAStatusBarController() {
    if (m_bar && !m_bar->parent())
        delete m_bar;
}

void TAStatusBarController::setLeftViews(const QList<QWidget *> &views) {
    if (!m_bar)
        return;
    QList<QWidget *> withSearch = views;
    if (m_searchEnabled && m_searchButton) {
        withSearch.removeAll(m_searchButton.data());
        withSearch.prepend(m_searchButton);
    }
    fillGrid(m_bar->leftGrid(), withSearch);
}

void TAStatusBarController::setCenterViews(const QList<QWidget *> &views) {
    if (m_bar)
        fillGrid(m_bar->centerGrid(), views);
}

void TAStatusBarController::setRightViews(const QList<QWidget *> &views) {
    if (m_bar)
        fillGrid(m_bar->rightGrid(), views);
}

void TAStatusBarController::setLeftViews(const QList<QWidget *> &left,
                                         const QList<QWidget *> &center,
                                         const QList<QWidget *> &right) {
    setLeftViews(left);
    setCenterViews(center);
    setRightViews(right);
}

void TAStatusBarController::fillGrid(TAStatusBarGrid *grid, const QList<QWidget *> &views) {
    const QList<QWidget *> previous = grid->views();
    for (QWidget *view : previous)
        grid->removeView(view);
    for (QWidget *view : views) {
        if (!view)
            continue;
        grid->addView(view);
        if (auto *button = qobject_cast<TAStatusBarButton *>(view))
            button->setEnabled(true);
    }
    // A view that left this group for no other stays with the bar, hidden, so that a section
    // can put it back later.
    for (QWidget *view : previous)
        hideIfUnplaced(view);
    m_bar->updateGeometry();
}

void TAStatusBarController::hideIfUnplaced(QWidget *view) {
    const TAStatusBarView *bar = m_bar;
    if (bar->leftGrid()->containsView(view) || bar->centerGrid()->containsView(view) ||
        bar->rightGrid()->containsView(view))
        return;
    view->hide();
    view->setParent(m_bar);
}

void TAStatusBarController::setSearchEnabled(bool enabled) {
    m_searchEnabled = enabled;
    if (!m_bar || !m_searchButton)
        return;
    TAStatusBarGrid *left = m_bar->leftGrid();
    if (enabled) {
        if (!left->containsView(m_searchButton))
            left->insertView(0, m_searchButton);
        return;
    }
    left->removeView(m_searchButton);
    m_searchButton->clearTarget();
}

bool TAStatusBarController::isEditing() const {
    const TAStatusBarButton *edit = editButton();
    return edit && !edit->isHidden() && edit->isChecked();
}
