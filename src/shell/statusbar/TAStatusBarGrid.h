#pragma once

#include <QList>
#include <QWidget>

class QHBoxLayout;

// One group of the bottom bar: views side by side in the order a section gives them.
class TAStatusBarGrid : public QWidget {
    Q_OBJECT
public:
    explicit TAStatusBarGrid(QWidget *parent = nullptr);

    // The views in their order; a view moved into another grid leaves this one by itself.
    QList<QWidget *> views() const;
    bool containsView(const QWidget *view) const;
    void insertView(int index, QWidget *view);
    void addView(QWidget *view) { insertView(-1, view); }
    // Takes the view out of the row; the view stays with its parent, hidden.
    void removeView(QWidget *view);

private:
    QHBoxLayout *m_row;
};
