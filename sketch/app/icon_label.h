// An icon that stands beside words, and follows the palette.
#pragma once

#include <QIcon>
#include <QWidget>

class IconLabel : public QWidget {
    Q_OBJECT

public:
    explicit IconLabel(int size, QWidget* parent = nullptr);

    void setIcon(const QIcon& icon);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_icon;
};
