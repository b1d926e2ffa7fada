// What the user has told the desktop of colours, contrast and motion.
//
// Source: the interface org.freedesktop.portal.Settings on the session bus: color-scheme, contrast and
//         reduced-motion of org.freedesktop.appearance, and GNOME's key for animations.
// Errors: none; what the desktop does not tell is false.
#pragma once

#include <QObject>
#include <QString>

class QDBusVariant;

class DesktopWishes : public QObject {
    Q_OBJECT

public:
    explicit DesktopWishes(QObject* parent = nullptr);

    // Asks the desktop, and follows it from now on; what it tells comes with changed().
    void follow();

    bool dark() const { return m_dark; }
    bool highContrast() const { return m_highContrast; }
    bool reducedMotion() const { return m_reducedMotion; }

public slots:
    void take(const QString& group, const QString& key, const QDBusVariant& value);

signals:
    void changed();

private:
    void ask(const QString& group, const QString& key);

    bool m_dark = false;
    bool m_highContrast = false;
    bool m_reducedMotion = false;
};
