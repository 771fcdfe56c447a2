#pragma once

#include "toolkit/OTView.h"

#include <QPalette>

#include <optional>

// One line of text drawn in palette roles, so it follows light and dark themes. A label with
// click actions is a link: it draws in the Link role unless told otherwise, shows a pointing
// hand, and when it may take focus, Enter and Space activate it. The font and the minimum size
// are QWidget's; the contents margins give the spacing around the text.
class OTLabel : public OTView {
    Q_OBJECT
public:
    explicit OTLabel(QWidget *parent = nullptr);
    explicit OTLabel(const QString &text, QWidget *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);

    // The roles of the text at rest, under the pointer and while pressed. Unset, a link uses
    // Link and any other label WindowText; over and pressed follow the role at rest.
    QPalette::ColorRole colorRole() const;
    void setColorRole(QPalette::ColorRole role);
    QPalette::ColorRole overColorRole() const { return m_overRole.value_or(colorRole()); }
    void setOverColorRole(QPalette::ColorRole role);
    QPalette::ColorRole pressedColorRole() const { return m_pressedRole.value_or(overColorRole()); }
    void setPressedColorRole(QPalette::ColorRole role);

    Qt::Alignment horizontalAlignment() const { return m_alignment; }
    void setHorizontalAlignment(Qt::Alignment alignment);
    bool withUnderline() const { return m_withUnderline; }
    void setWithUnderline(bool underline);

    // The pointer shown over a link; an explicit setCursor() on the label wins over it.
    Qt::CursorShape overCursor() const { return m_overCursor; }
    void setOverCursor(Qt::CursorShape shape) { m_overCursor = shape; }

    // Whether Tab stops at the label, as it does at a button.
    bool canBecomeKeyView() const { return focusPolicy() != Qt::NoFocus; }
    void setCanBecomeKeyView(bool can);

    // A number the owner tells its labels apart by.
    int tag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }

    OTActionList &clickActions() { return m_clickActions; }
    const OTActionList &clickActions() const { return m_clickActions; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    QAccessible::Role accessibleRole() const override;
    QString accessibleText() const override { return m_text; }
    bool isClickable() const override;
    void performClick() override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool isLink() const { return !m_clickActions.isEmpty(); }
    QFont textFont() const;
    QPalette::ColorRole currentRole() const;

    QString m_text;
    std::optional<QPalette::ColorRole> m_role;
    std::optional<QPalette::ColorRole> m_overRole;
    std::optional<QPalette::ColorRole> m_pressedRole;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    bool m_withUnderline = false;
    Qt::CursorShape m_overCursor = Qt::PointingHandCursor;
    bool m_cursorIsOurs = false;
    int m_tag = 0;
    OTActionList m_clickActions;
};
