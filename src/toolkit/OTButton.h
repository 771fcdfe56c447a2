#pragma once

#include "toolkit/OTActionList.h"

#include <QAbstractButton>
#include <QVariant>

// A button drawn from its images, with the click rules of the in-house toolkit on top of
// QAbstractButton's keyboard operation, focus and accessibility:
// - a press (mouse, or Space when focused) informs mouseDownActions;
// - a click counts only when press and release are both inside the button;
// - then the down state flips: a down button goes up when canUnpress, an up button goes down
//   when canPressDown;
// - then clickActions are informed with the button as sender.
// A disabled button (QWidget::setEnabled(false)) gets no input, so a click does nothing.
//
// The images are the modes and states of icon(): the plain image is Normal/Off, pressed is
// Selected, over is Active, disabled is Disabled, and the down images are the On state. Modes
// without an image of their own are derived from the plain one by the style. The label is
// text(), drawn beside the image. A button with an image and no label needs an accessible name.
class OTButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit OTButton(QWidget *parent = nullptr);
    explicit OTButton(const QString &label, QWidget *parent = nullptr);

    // Each adds a file (SVG keeps it sharp at any scale) to icon() in its mode and state.
    void setImage(const QString &file) { addImage(file, QIcon::Normal, QIcon::Off); }
    void setPressedImage(const QString &file) { addImage(file, QIcon::Selected, QIcon::Off); }
    void setOverImage(const QString &file) { addImage(file, QIcon::Active, QIcon::Off); }
    void setDisabledImage(const QString &file) { addImage(file, QIcon::Disabled, QIcon::Off); }
    void setDownImage(const QString &file) { addImage(file, QIcon::Normal, QIcon::On); }
    void setDownPressedImage(const QString &file) { addImage(file, QIcon::Selected, QIcon::On); }

    // The mode and state icon() is drawn in now.
    QIcon::Mode imageMode() const;
    QIcon::State imageState() const { return isButtonDown() ? QIcon::On : QIcon::Off; }

    bool isButtonDown() const { return isChecked(); }
    void setButtonDown(bool down);
    bool canUnpress() const { return m_canUnpress; }
    void setCanUnpress(bool can);
    bool canPressDown() const { return m_canPressDown; }
    void setCanPressDown(bool can);

    // The style's tool-button panel under the pointer, while pressed and while down. Buttons
    // whose images show those states themselves turn it off.
    bool drawsPanel() const { return m_drawsPanel; }
    void setDrawsPanel(bool draws);

    // Whatever the owner wants to find again from the button in a click action.
    QVariant representedObject() const { return m_representedObject; }
    void setRepresentedObject(const QVariant &object) { m_representedObject = object; }

    OTActionList &clickActions() { return m_clickActions; }
    const OTActionList &clickActions() const { return m_clickActions; }
    OTActionList &mouseDownActions() { return m_mouseDownActions; }
    const OTActionList &mouseDownActions() const { return m_mouseDownActions; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void nextCheckState() override;

private:
    void addImage(const QString &file, QIcon::Mode mode, QIcon::State state);
    // A button that can be down is checkable, so assistive technology announces it as a toggle.
    void updateCheckable();
    int margin() const;
    int spacing() const;

    QVariant m_representedObject;
    OTActionList m_clickActions;
    OTActionList m_mouseDownActions;
    bool m_canUnpress = false;
    bool m_canPressDown = false;
    bool m_drawsPanel = true;
};
