#include "sketch/app/icon_label.h"

#include <QPainter>

IconLabel::IconLabel(int size, QWidget* parent) : QWidget(parent) { setFixedSize(size, size); }

void IconLabel::setIcon(const QIcon& icon)
{
    m_icon = icon;
    update();
}

void IconLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    m_icon.paint(&painter, rect());
}
