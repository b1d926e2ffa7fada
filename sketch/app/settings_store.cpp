#include "sketch/app/settings_store.h"

#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

constexpr std::array kColourNames = {"automatic", "light", "dark", "high-contrast-light",
                                     "high-contrast-dark"};
constexpr std::array kMotionNames = {"automatic", "full", "reduced"};
constexpr std::array kAreaNames = {"sheet", "sketch"};

template <class Choice, std::size_t Count>
Choice choiceIn(const QSettings& file, const QString& key, const std::array<const char*, Count>& names,
                Choice usual)
{
    const auto found = std::find(names.begin(), names.end(), file.value(key).toString());
    return found == names.end() ? usual : static_cast<Choice>(found - names.begin());
}

template <class Choice, std::size_t Count>
QString nameOf(Choice choice, const std::array<const char*, Count>& names)
{
    return QLatin1String(names[static_cast<std::size_t>(choice)]);
}

double numberIn(const QSettings& file, const QString& key, double usual, double least, double most)
{
    bool isNumber = false;
    const double number = file.value(key).toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::clamp(number, least, most) : usual;
}

int wholeNumberIn(const QSettings& file, const QString& key, int usual, int least, int most)
{
    return static_cast<int>(std::lround(numberIn(file, key, usual, least, most)));
}

bool flagIn(const QSettings& file, const QString& key, bool usual)
{
    const QString text = file.value(key).toString();
    return text == QLatin1String("true") || (text != QLatin1String("false") && usual);
}

CanvasSettings canvasIn(const QSettings& file)
{
    const CanvasSettings usual;
    CanvasSettings canvas;
    canvas.convertAlways = flagIn(file, "canvas/convertAlways", usual.convertAlways);
    canvas.holdMilliseconds =
        wholeNumberIn(file, "canvas/holdMilliseconds", usual.holdMilliseconds, 150, 3000);
    canvas.tolerance = numberIn(file, "canvas/tolerance", usual.tolerance, 0, 3);
    canvas.leastSizePx = numberIn(file, "canvas/leastSizePx", usual.leastSizePx, 0, 200);
    canvas.stabiliser = numberIn(file, "canvas/stabiliser", usual.stabiliser, 0, 1);
    canvas.inkWidth = numberIn(file, "canvas/inkWidth", usual.inkWidth, 0.5, 20);
    canvas.snapToGrid = flagIn(file, "canvas/snapToGrid", usual.snapToGrid);
    canvas.snapToShapes = flagIn(file, "canvas/snapToShapes", usual.snapToShapes);
    canvas.snapToAngles = flagIn(file, "canvas/snapToAngles", usual.snapToAngles);
    canvas.fingersDraw = flagIn(file, "canvas/fingersDraw", usual.fingersDraw);
    return canvas;
}

void putCanvas(QSettings& file, const CanvasSettings& canvas)
{
    file.setValue("canvas/convertAlways", canvas.convertAlways);
    file.setValue("canvas/holdMilliseconds", canvas.holdMilliseconds);
    file.setValue("canvas/tolerance", canvas.tolerance);
    file.setValue("canvas/leastSizePx", canvas.leastSizePx);
    file.setValue("canvas/stabiliser", canvas.stabiliser);
    file.setValue("canvas/inkWidth", canvas.inkWidth);
    file.setValue("canvas/snapToGrid", canvas.snapToGrid);
    file.setValue("canvas/snapToShapes", canvas.snapToShapes);
    file.setValue("canvas/snapToAngles", canvas.snapToAngles);
    file.setValue("canvas/fingersDraw", canvas.fingersDraw);
}

PictureSettings pictureIn(const QSettings& file)
{
    const PictureSettings usual;
    PictureSettings picture;
    picture.area = choiceIn(file, "picture/area", kAreaNames, usual.area);
    picture.scale = numberIn(file, "picture/scale", usual.scale, 0.25, 16);
    picture.transparent = flagIn(file, "picture/transparent", usual.transparent);
    picture.lineWidth = numberIn(file, "picture/lineWidth", usual.lineWidth, 0.1, 50);
    return picture;
}

void putPicture(QSettings& file, const PictureSettings& picture)
{
    file.setValue("picture/area", nameOf(picture.area, kAreaNames));
    file.setValue("picture/scale", picture.scale);
    file.setValue("picture/transparent", picture.transparent);
    file.setValue("picture/lineWidth", picture.lineWidth);
}

} // namespace

SettingsStore::SettingsStore(const QString& file) : m_file(file, QSettings::IniFormat) {}

QString SettingsStore::usualFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           QStringLiteral("/settings.ini");
}

Settings SettingsStore::load() const
{
    Settings settings;
    settings.canvas = canvasIn(m_file);
    settings.colours = choiceIn(m_file, "appearance/colours", kColourNames, settings.colours);
    settings.motion = choiceIn(m_file, "appearance/motion", kMotionNames, settings.motion);
    settings.language = m_file.value("appearance/language").toString();
    settings.ownGrid = numberIn(m_file, "sheet/ownGrid", settings.ownGrid, 0, 500);
    settings.picture = pictureIn(m_file);
    return settings;
}

void SettingsStore::save(const Settings& settings)
{
    putCanvas(m_file, settings.canvas);
    m_file.setValue("appearance/colours", nameOf(settings.colours, kColourNames));
    m_file.setValue("appearance/motion", nameOf(settings.motion, kMotionNames));
    m_file.setValue("appearance/language", settings.language);
    m_file.setValue("sheet/ownGrid", settings.ownGrid);
    putPicture(m_file, settings.picture);
    m_file.sync();
}

QByteArray SettingsStore::windowGeometry() const { return m_file.value("window/geometry").toByteArray(); }

QByteArray SettingsStore::windowState() const { return m_file.value("window/state").toByteArray(); }

void SettingsStore::saveWindow(const QByteArray& geometry, const QByteArray& state)
{
    m_file.setValue("window/geometry", geometry);
    m_file.setValue("window/state", state);
    m_file.sync();
}

QString SettingsStore::lastFolder() const { return m_file.value("files/lastFolder").toString(); }

void SettingsStore::saveLastFolder(const QString& folder) { m_file.setValue("files/lastFolder", folder); }
