#include "shell/statusbar/TAStatusBarSearchButton.h"

#include "toolkit/OTIcons.h"

#include <QAction>
#include <QActionGroup>
#include <QIcon>
#include <QMenu>

TAStatusBarSearchButton::TAStatusBarSearchButton(QWidget *parent)
    : QLineEdit(parent)
    , m_menuAction(addAction(OTIcons::icon(OTIcons::Name::Search), QLineEdit::LeadingPosition)) {
    setPlaceholderText(tr("Search"));
    setAccessibleName(tr("Search"));
    setClearButtonEnabled(true);
    m_menuAction->setText(tr("Search Menu"));
    m_menuAction->setToolTip(tr("Search categories"));
    m_typingPause.setSingleShot(true);
    m_typingPause.setInterval(kTypingPauseMs);
    connect(&m_typingPause, &QTimer::timeout, this, &TAStatusBarSearchButton::search);
    // textEdited, not textChanged: only the user's typing (and the clear button) searches, a
    // reset from code does not.
    connect(this, &QLineEdit::textEdited, this, [this] { m_typingPause.start(); });
    connect(this, &QLineEdit::returnPressed, this, &TAStatusBarSearchButton::search);
    connect(m_menuAction, &QAction::triggered, this, &TAStatusBarSearchButton::popUpMenu);
}

void TAStatusBarSearchButton::setTarget(QObject *target, const QStringList &categories,
                                        OTAction::Selector doSearch) {
    if (target && target == m_target)
        return;
    // By the action, not the target: a target that was destroyed can no longer be named.
    m_searchActions.removeAction(m_searchAction);
    m_searchAction = OTAction();
    m_target = target;
    if (target && doSearch)
        m_searchAction = m_searchActions.addTarget(target, std::move(doSearch));
    rebuildMenu(target ? categories : QStringList());
}

void TAStatusBarSearchButton::rebuildMenu(const QStringList &categories) {
    delete m_menu; // its items and their group go with it
    m_menu = nullptr;
    m_categories = nullptr;
    if (categories.isEmpty())
        return;
    m_menu = new QMenu(tr("Search Menu"), this);
    m_categories = new QActionGroup(m_menu);
    m_categories->setExclusive(true);
    for (int index = 0; index < categories.size(); ++index) {
        QAction *item = m_menu->addAction(categories.at(index));
        item->setCheckable(true);
        item->setData(index);
        item->setChecked(index == 0);
        m_categories->addAction(item);
    }
    connect(m_categories, &QActionGroup::triggered, this, &TAStatusBarSearchButton::chooseCategory);
}

QString TAStatusBarSearchButton::searchPhrase() const {
    const QString phrase = text();
    return phrase.isEmpty() ? QString() : phrase;
}

int TAStatusBarSearchButton::selectedCategoryIndex() const {
    const QAction *checked = m_categories ? m_categories->checkedAction() : nullptr;
    return checked ? checked->data().toInt() : -1;
}

void TAStatusBarSearchButton::setCategoryIndex(int index) {
    if (m_categories && index >= 0 && index < m_categories->actions().size())
        m_categories->actions().at(index)->setChecked(true);
}

void TAStatusBarSearchButton::chooseCategory(QAction *item) {
    item->setChecked(true);
    search();
}

void TAStatusBarSearchButton::resetSearch() {
    m_typingPause.stop();
    clear();
}

void TAStatusBarSearchButton::focusSearch() {
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
}

void TAStatusBarSearchButton::popUpMenu() {
    if (!m_menu) {
        focusSearch(); // without categories the magnifier only leads into the field
        return;
    }
    m_menu->popup(mapToGlobal(rect().bottomLeft()));
}

void TAStatusBarSearchButton::search() {
    m_typingPause.stop();
    m_searchActions.inform(this);
}

QSize TAStatusBarSearchButton::sizeHint() const {
    // Room for a phrase of a few words beside the magnifier and the clear button.
    QSize size = QLineEdit::sizeHint();
    size.setWidth(fontMetrics().averageCharWidth() * 24);
    return size;
}
