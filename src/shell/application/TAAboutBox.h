#pragma once

#include <QMessageBox>

// The "About Billfold" box: the program's icon and name, its version and build, what it is
// for, and whose it is.
class TAAboutBox : public QMessageBox {
    Q_OBJECT
public:
    explicit TAAboutBox(QWidget *parent = nullptr);
};
