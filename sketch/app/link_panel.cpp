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

#include <algorithm>

namespace {

constexpr int kRefreshMilliseconds = 15000;
// Of the words beside the buttons, and of those about others when there is little room.
constexpr int kLeastLetters = 32;
constexpr int kLeastOthersLetters = 14;

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
      m_send(buttonFor(send, this)), m_parts(new QHBoxLayout(this)), m_words(new QHBoxLayout),
      m_buttons(new QHBoxLayout)
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setObjectName("linkPanel");
    setAccessibleName(tr("Editor"));
    m_state->setObjectName("linkState");
    m_others->setObjectName("linkOthers");
    m_again->setObjectName("listenAgain");
    m_state->setWordWrap(true);
    m_others->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_parts->setContentsMargins(8, 4, 8, 4);
    m_parts->addLayout(m_words, 1);
    m_parts->addLayout(m_buttons);
    m_words->addWidget(m_icon);
    m_words->addWidget(m_state, 1);
    m_buttons->addWidget(m_others, 1);
    m_buttons->addWidget(m_again);
    m_buttons->addWidget(buttonFor(cancel, this));
    m_buttons->addWidget(m_send);
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
    QWidget* const first = m_send->isEnabled() ? m_send : m_again;
    if (!first->isVisible() || !first->isEnabled())
        return false;
    first->setFocus(Qt::ShortcutFocusReason);
    return true;
}

int LinkPanel::leastWordsWidth() const
{
    return m_words->sizeHint().width() - m_state->sizeHint().width() +
           std::min(m_state->sizeHint().width(), fontMetrics().averageCharWidth() * kLeastLetters);
}

// With as much room for the words of others, if there are any.
int LinkPanel::buttonsWidth(int ofOthers) const
{
    const int width = m_buttons->sizeHint().width();
    return m_others->isHidden() ? width : width - m_others->sizeHint().width() + ofOthers;
}

bool LinkPanel::isNarrow(int width) const
{
    const QMargins around = m_parts->contentsMargins() + contentsMargins();
    return width - around.left() - around.right() <
           leastWordsWidth() + m_parts->spacing() +
               buttonsWidth(m_others->fontMetrics().horizontalAdvance(m_others->text()));
}

int LinkPanel::heightForWidth(int width) const
{
    const QMargins around = m_parts->contentsMargins() + contentsMargins();
    const int inner = width - around.left() - around.right();
    const auto heightOf = [](const QBoxLayout& row, int across) {
        return std::max(row.hasHeightForWidth() ? row.heightForWidth(across) : 0, row.minimumSize().height());
    };
    const int buttons = buttonsWidth(m_others->fontMetrics().horizontalAdvance(m_others->text()));
    const int height = isNarrow(width)
                           ? heightOf(*m_words, inner) + m_parts->spacing() + heightOf(*m_buttons, inner)
                           : std::max(heightOf(*m_words, inner - buttons - m_parts->spacing()),
                                      heightOf(*m_buttons, buttons));
    return height + around.top() + around.bottom();
}

QSize LinkPanel::minimumSizeHint() const
{
    const QMargins around = m_parts->contentsMargins() + contentsMargins();
    const int width =
        std::max(leastWordsWidth(), buttonsWidth(fontMetrics().averageCharWidth() * kLeastOthersLetters)) +
        around.left() + around.right();
    return {width, heightForWidth(width)};
}

void LinkPanel::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    arrange();
}

void LinkPanel::arrange()
{
    const bool isBelow = isNarrow(width());
    m_parts->setDirection(isBelow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_others->setWordWrap(isBelow);
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
        if (link.isSending())
            return tr("Sending…");
        const auto minutes = link.waitingSince().secsTo(QDateTime::currentDateTime()) / 60;
        const QString since = timeText(link.waitingSince());
        return minutes < 1 ? tr("The editor has been waiting since %1.").arg(since)
                           : tr("The editor has been waiting since %1, for %n minute(s).", nullptr,
                                static_cast<int>(minutes))
                                 .arg(since);
    }
    case LinkServer::State::sent: {
        if (m_session.wasCancelled())
            return tr("Cancelled: the editor has got an empty figure.");
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
    m_words->invalidate();
    m_buttons->invalidate();
    arrange();
    updateGeometry();
    if (m_state->text() != before) {
        QAccessibleEvent alert(m_state, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}
