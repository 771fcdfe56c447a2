#pragma once

#include "shell/statusbar/TAStatusBarButton.h"
#include "shell/statusbar/TAStatusBarSearchButton.h"
#include "shell/statusbar/TAStatusBarView.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <array>

class TAStatusBarGrid;

// Every button of the bottom bar, made once; the section shown says which of them stand where
// and fills their click actions. A button in no group is hidden.
class TAStatusBarController : public QObject {
    Q_OBJECT
public:
    enum Button {
        Add,
        Pay,
        Edit,
        Info,
        AddNew,
        Duplicate,
        Style,
        TextBox,
        Shapes,
        Colors,
        Fonts,
        Print,
        Send,
        Template,
        Invoice,
        Client,
        Project,
        Inventory,
        Invoices,
        Activity,
        Preview,
        ButtonCount
    };

    explicit TAStatusBarController(QObject *parent = nullptr);
    // The bar goes with the controller unless a window took it into its layout.
    ~TAStatusBarController() override;

    TAStatusBarView *bar() const { return m_bar; }
    TAStatusBarButton *button(Button which) const { return m_buttons.at(which).data(); }
    TAStatusBarSearchButton *searchButton() const { return m_searchButton.data(); }

    TAStatusBarButton *addButton() const { return button(Add); }
    TAStatusBarButton *payButton() const { return button(Pay); }
    TAStatusBarButton *editButton() const { return button(Edit); }
    TAStatusBarButton *infoButton() const { return button(Info); }
    TAStatusBarButton *addNewButton() const { return button(AddNew); }
    TAStatusBarButton *duplicateButton() const { return button(Duplicate); }
    TAStatusBarButton *styleButton() const { return button(Style); }
    TAStatusBarButton *textBoxButton() const { return button(TextBox); }
    TAStatusBarButton *shapesButton() const { return button(Shapes); }
    TAStatusBarButton *colorsButton() const { return button(Colors); }
    TAStatusBarButton *fontsButton() const { return button(Fonts); }
    TAStatusBarButton *printButton() const { return button(Print); }
    TAStatusBarButton *sendButton() const { return button(Send); }
    TAStatusBarButton *templateButton() const { return button(Template); }
    TAStatusBarButton *invoiceButton() const { return button(Invoice); }
    TAStatusBarButton *clientButton() const { return button(Client); }
    TAStatusBarButton *projectButton() const { return button(Project); }
    TAStatusBarButton *inventoryButton() const { return button(Inventory); }
    TAStatusBarButton *invoicesButton() const { return button(Invoices); }
    TAStatusBarButton *activityButton() const { return button(Activity); }
    TAStatusBarButton *previewButton() const { return button(Preview); }

    // Each empties its group and puts the views in, in order; the left group starts with the
    // search field while search is on. Every button put in is enabled again, so a section never
    // inherits a button its predecessor disabled.
    void setLeftViews(const QList<QWidget *> &views);
    void setCenterViews(const QList<QWidget *> &views);
    void setRightViews(const QList<QWidget *> &views);
    void setLeftViews(const QList<QWidget *> &left, const QList<QWidget *> &center,
                      const QList<QWidget *> &right);

    bool isSearchEnabled() const { return m_searchEnabled; }
    // Off also drops the search target, so no hidden field searches a section.
    void setSearchEnabled(bool enabled);

    // The edit button stands in the bar and is pressed down.
    bool isEditing() const;

private:
    void fillGrid(TAStatusBarGrid *grid, const QList<QWidget *> &views);
    void hideIfUnplaced(QWidget *view);

    QPointer<TAStatusBarView> m_bar;
    // Children of the bar, so held weakly: a window that is closed takes its bar along.
    std::array<QPointer<TAStatusBarButton>, ButtonCount> m_buttons;
    QPointer<TAStatusBarSearchButton> m_searchButton;
    bool m_searchEnabled = false;
};
