#include "sketch/app/link_panel.h"

#include "sketch/app/icon_label.h"
#include "sketch/app/icons.h"
#include "sketch/app/sketch_session.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace {

constexpr int kRefreshMilliseconds = 15000;

QString timeText(const QDateTime& time)
{
    const bool isToday = time.date() == QDate::currentDate();
    return isToday ? QLocale().toString(time.time(), QLocale::ShortFormat)
                   : QLocale().toString(time, QLocale::ShortFormat);
}

int iconSize(const QWidget& widget) { return widget.style()->pixelMetric(QStyle::PM_LargeIconSize) * 3 / 4; }

QToolButton* buttonFor(QAction& action, QWidget* parent)
{
    auto* const button = new QToolButton(parent);
    button->setDefaultAction(&action);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setIconSize({iconSize(*button), iconSize(*button)});
    return button;
}

} // namespace

LinkPanel::LinkPanel(SketchSession& session, QAction& send, QAction& cancel, bool isLinked, QWidget* parent)
    : QFrame(parent), m_session(session), m_isLinked(isLinked), m_icon(new IconLabel(iconSize(*this))),
      m_state(new QLabel), m_others(new QLabel), m_again(new QPushButton(tr("&Try Again"))),
      m_send(buttonFor(send, this))
{
    setFrameShape(QFrame::StyledPanel);
    setObjectName("linkPanel");
    setAccessibleName(tr("Editor"));
    m_state->setObjectName("linkState");
    m_others->setObjectName("linkOthers");
    m_again->setObjectName("listenAgain");
    m_state->setWordWrap(true);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(m_icon);
    row->addWidget(m_state, 1);
    row->addWidget(m_others);
    row->addWidget(m_again);
    row->addWidget(buttonFor(cancel, this));
    row->addWidget(m_send);
    connect(m_again, &QPushButton::clicked, this, &LinkPanel::listenAgain);
    connect(&session.link(), &LinkServer::stateChanged, this, &LinkPanel::refresh);
    connect(&session.link(), &LinkServer::othersWaitingChanged, this, &LinkPanel::refresh);
    connect(&session, &SketchSession::stateChanged, this, &LinkPanel::refresh);
    connect(&m_minutes, &QTimer::timeout, this, &LinkPanel::refresh);
    m_minutes.start(kRefreshMilliseconds);
    refresh();
}

QString LinkPanel::stateText() const { return m_state->text(); }

QString LinkPanel::othersText() const { return m_others->text(); }

bool LinkPanel::focusFirst()
{
    if (!m_send->isEnabled())
        return false;
    m_send->setFocus(Qt::ShortcutFocusReason);
    return true;
}

QString LinkPanel::words() const
{
    const LinkServer& link = m_session.link();
    switch (link.state()) {
    case LinkServer::State::closed:
        if (!link.problem().isEmpty())
            return link.problem();
        return m_isLinked ? tr("Not linked to an editor.") : tr("Started without the link to an editor.");
    case LinkServer::State::idle: return tr("Waiting for the editor: choose Start VANT there.");
    case LinkServer::State::editorWaiting: {
        const auto minutes = link.waitingSince().secsTo(QDateTime::currentDateTime()) / 60;
        const QString since = timeText(link.waitingSince());
        return minutes < 1 ? tr("The editor has been waiting since %1.").arg(since)
                           : tr("The editor has been waiting since %1, for %n minute(s).", nullptr,
                                static_cast<int>(minutes))
                                 .arg(since);
    }
    case LinkServer::State::sent: {
        const QString time = timeText(m_session.sentAt());
        if (!m_session.wasSent())
            return tr("The editor has its answer. Waiting for the next.");
        return m_session.isAsSent() ? tr("Sent at %1. The sketch stays here.").arg(time)
                                    : tr("Sent at %1; the sketch was changed since.").arg(time);
    }
    case LinkServer::State::editorGone:
        return tr("The editor is gone without its answer. The sketch is kept.");
    }
    return {};
}

const char* LinkPanel::iconName() const
{
    switch (m_session.link().state()) {
    case LinkServer::State::closed: return "state-closed";
    case LinkServer::State::idle: return "state-idle";
    case LinkServer::State::editorWaiting: return "state-waiting";
    case LinkServer::State::sent: return "state-sent";
    case LinkServer::State::editorGone: return "state-gone";
    }
    return "state-closed";
}

void LinkPanel::refresh()
{
    const QString before = m_state->text();
    m_icon->setIcon(iconOf(iconName()));
    m_state->setText(words());
    m_state->setAccessibleName(words());
    const int others = m_session.link().othersWaiting();
    m_others->setText(others == 0 ? QString() : tr("%n other editor(s) wait their turn.", nullptr, others));
    m_others->setVisible(others > 0);
    m_again->setVisible(m_session.link().state() == LinkServer::State::closed && m_isLinked);
    if (m_state->text() != before) {
        QAccessibleEvent alert(m_state, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}
