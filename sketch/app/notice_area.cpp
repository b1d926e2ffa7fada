#include "sketch/app/notice_area.h"

#include "sketch/app/icon_label.h"
#include "sketch/app/icons.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

NoticeBar::NoticeBar(const char* icon, const QString& text, QWidget* parent)
    : QFrame(parent), m_label(new QLabel(text)), m_row(new QHBoxLayout(this))
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    setAccessibleName(text);
    auto* const picture = new IconLabel(style()->pixelMetric(QStyle::PM_LargeIconSize) * 3 / 4);
    picture->setIcon(iconOf(icon));
    m_label->setWordWrap(true);
    m_label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_row->addWidget(picture);
    m_row->addWidget(m_label, 1);
}

QPushButton* NoticeBar::addButton(const QString& text)
{
    auto* const button = new QPushButton(text);
    button->setAutoDefault(true); // Return presses the one that has the focus
    m_row->addWidget(button);
    return button;
}

QString NoticeBar::text() const { return m_label->text(); }

NoticeArea::NoticeArea(QWidget* parent) : QWidget(parent), m_column(new QVBoxLayout(this))
{
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    setVisible(false);
}

void NoticeArea::ask(const QString& name, const char* icon, const QString& text,
                     const std::vector<NoticeButton>& buttons)
{
    dismiss(name);
    auto* const bar = new NoticeBar(icon, text, this);
    bar->setObjectName(name);
    for (const NoticeButton& each : buttons) {
        connect(bar->addButton(each.text), &QPushButton::clicked, this, [this, name, act = each.act] {
            dismiss(name);
            emit answered();
            if (act)
                act();
        });
    }
    m_bars.insert(name, bar);
    m_column->addWidget(bar);
    setVisible(true);
    QAccessibleEvent alert(bar, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void NoticeArea::showProblem(const QString& name, const QString& sentence)
{
    ask(name, "state-closed", sentence,
        {
            {tr("Close"), {}}
    });
}

void NoticeArea::dismiss(const QString& name)
{
    NoticeBar* const bar = m_bars.take(name);
    if (bar == nullptr)
        return;
    m_column->removeWidget(bar);
    bar->hide();
    bar->deleteLater(); // it may be what was just clicked
    setVisible(!m_bars.isEmpty());
}

NoticeBar* NoticeArea::find(const QString& name) const { return m_bars.value(name); }

bool NoticeArea::focusFirst()
{
    const auto buttons = findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->isVisible()) {
            button->setFocus(Qt::ShortcutFocusReason);
            return true;
        }
    }
    return false;
}
