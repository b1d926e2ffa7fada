// All keys of the window in a list, and those of the sheet itself.
#pragma once

#include <QDialog>

class KeysDialog : public QDialog {
    Q_OBJECT

public:
    explicit KeysDialog(const QList<QAction*>& actions, QWidget* parent = nullptr);
};
