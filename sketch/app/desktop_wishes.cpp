#include "sketch/app/desktop_wishes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kGnome = QStringLiteral("org.gnome.desktop.interface");

constexpr uint kPrefersDark = 1;
constexpr uint kPrefersContrast = 1;
constexpr uint kPrefersLessMotion = 1;
constexpr int kAnswerMilliseconds = 3000;

} // namespace

DesktopWishes::DesktopWishes(QObject* parent) : QObject(parent) {}

void DesktopWishes::follow()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(take(QString, QString, QDBusVariant)));
    for (const char* key : {"color-scheme", "contrast", "reduced-motion"})
        ask(kAppearance, QLatin1String(key));
    ask(kGnome, QStringLiteral("enable-animations"));
}

void DesktopWishes::ask(const QString& group, const QString& key)
{
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    call.setArguments({group, key});
    auto* const watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, kAnswerMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, group, key, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            take(group, key, reply.value());
        watcher->deleteLater();
    });
}

// Read answers with a variant within a variant, the signal with the inner one alone.
void DesktopWishes::take(const QString& group, const QString& key, const QDBusVariant& value)
{
    QVariant inner = value.variant();
    while (inner.canConvert<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    if (group == kAppearance && key == QLatin1String("color-scheme"))
        m_dark = inner.toUInt() == kPrefersDark;
    else if (group == kAppearance && key == QLatin1String("contrast"))
        m_highContrast = inner.toUInt() == kPrefersContrast;
    else if (group == kAppearance && key == QLatin1String("reduced-motion"))
        m_reducedMotion = inner.toUInt() == kPrefersLessMotion;
    else if (group == kGnome && key == QLatin1String("enable-animations"))
        m_reducedMotion = !inner.toBool();
    else
        return;
    emit changed();
}
