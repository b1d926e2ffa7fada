#include "sketch/app/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace {

// Draws anew for each size and palette: crisp at any scale, and right as soon as the colours change.
class OneColourEngine : public QIconEngine {
public:
    explicit OneColourEngine(QString name) : m_name(std::move(name)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        QFile file(":/icons/" + m_name + ".svg");
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QColor colour = colourOf(mode);
        QSvgRenderer renderer(file.readAll().replace("#000", colour.name().toLatin1()));
        renderer.render(painter, QRectF(rect));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        const QString key = QStringLiteral("%1 %2 %3x%4")
                                .arg(m_name, colourOf(mode).name(), QString::number(size.width()),
                                     QString::number(size.height()));
        QPixmap picture;
        if (!QPixmapCache::find(key, &picture)) {
            picture = QPixmap(size);
            picture.fill(Qt::transparent);
            QPainter painter(&picture);
            paint(&painter, QRect(QPoint(), size), mode, state);
            painter.end();
            QPixmapCache::insert(key, picture);
        }
        return picture;
    }

    QIconEngine* clone() const override { return new OneColourEngine(m_name); }

private:
    static QColor colourOf(QIcon::Mode mode)
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        return QGuiApplication::palette().color(group, role);
    }

    QString m_name;
};

} // namespace

QIcon iconOf(const char* name) { return QIcon(new OneColourEngine(QLatin1String(name))); }
