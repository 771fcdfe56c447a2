#pragma once

#include <QWidget>

class QFrame;
class TAStatusBarGrid;

// The bar along the bottom of the sections: a group of views at the left, one centred, one at
// the right, under a separator line. The centre group keeps to the middle of the bar as long
// as it does not run into the others.
class TAStatusBarView : public QWidget {
    Q_OBJECT
public:
    explicit TAStatusBarView(QWidget *parent = nullptr);

    TAStatusBarGrid *leftGrid() const { return m_left; }
    TAStatusBarGrid *centerGrid() const { return m_center; }
    TAStatusBarGrid *rightGrid() const { return m_right; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QMargins rowMargins() const;
    int groupGap() const;
    void layoutGrids();

    QFrame *m_separator;
    TAStatusBarGrid *m_left;
    TAStatusBarGrid *m_center;
    TAStatusBarGrid *m_right;
};
