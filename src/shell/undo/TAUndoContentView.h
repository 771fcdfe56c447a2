#pragma once

#include <QWidget>

// The face of the undo message: its text, large, in a rounded panel of the palette's tool tip
// colours, so that it reads on light and dark themes alike.
class TAUndoContentView : public QWidget {
    Q_OBJECT
    // How much of the panel shows, 0 to 1. The message fades through this where the window
    // system cannot change a window's opacity.
    Q_PROPERTY(qreal opacity READ opacity WRITE setOpacity)
public:
    explicit TAUndoContentView(QWidget *parent = nullptr);

    QString string() const { return m_string; }
    void setString(const QString &string);
    qreal opacity() const { return m_opacity; }
    void setOpacity(qreal opacity);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QFont messageFont() const;
    int padding() const;

    QString m_string;
    qreal m_opacity = 1.0;
};
