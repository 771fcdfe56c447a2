#pragma once

#include "toolkit/OTActionList.h"

#include <QAccessible>
#include <QColor>
#include <QIcon>
#include <QWidget>

// The base of the in-house views. By default it draws nothing, so the palette of whatever it
// sits on shows through; a background colour or image is drawn only when one is set. A click
// (press and release both inside) informs mouseClickedActions. The cursor is QWidget's own.
class OTView : public QWidget {
    Q_OBJECT
public:
    explicit OTView(QWidget *parent = nullptr);

    // An invalid colour, the default, draws no background.
    QColor backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const QColor &color);
    // Stretched over the whole view, above the colour. An SVG icon stays sharp at any scale.
    QIcon backgroundImage() const { return m_backgroundImage; }
    void setBackgroundImage(const QIcon &image);

    OTActionList &mouseClickedActions() { return m_mouseClickedActions; }
    const OTActionList &mouseClickedActions() const { return m_mouseClickedActions; }

    // What assistive technology is told about the view; subclasses that show something say so.
    virtual QAccessible::Role accessibleRole() const { return QAccessible::Client; }
    virtual QString accessibleText() const { return {}; }
    // True when a click does something; assistive technology then offers a press action.
    virtual bool isClickable() const { return !m_mouseClickedActions.isEmpty(); }
    // What a completed click does; also the press action of assistive technology.
    virtual void performClick();

protected:
    // The mouse went down inside and has not been released; false while it is outside.
    bool isPressed() const { return m_pressed; }
    bool isHovered() const { return m_hovered; }

    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void setPressed(bool pressed);

    QColor m_backgroundColor;
    QIcon m_backgroundImage;
    OTActionList m_mouseClickedActions;
    bool m_pressStarted = false;
    bool m_pressed = false;
    bool m_hovered = false;
};
