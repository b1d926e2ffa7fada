// What the user sets once, kept from one start to the next.
//
// Shapes: an INI file in the user's configuration folder. What is missing, malformed or out of range there has
//         its default, or the nearest value that is in range.
// Errors: a file that cannot be written loses what was changed; the program goes on with it until it ends.
#pragma once

#include "sketch/app/sketch_canvas.h"

#include <QByteArray>
#include <QSettings>
#include <QString>

enum class ColourChoice { automatic, light, dark, highContrastLight, highContrastDark };
enum class MotionChoice { automatic, full, reduced };
enum class PictureArea { sheet, sketch };

// How a sketch becomes a picture.
struct PictureSettings {
    PictureArea area = PictureArea::sheet;
    double scale = 2;         // PNG: pixels a sheet pixel
    bool transparent = false; // else the sheet is white
    double lineWidth = 2;     // sheet pixels, of shapes and of ink at full pressure
};

struct Settings {
    CanvasSettings canvas; // its reducedMotion follows from motion and from the desktop's wish
    ColourChoice colours = ColourChoice::automatic;
    MotionChoice motion = MotionChoice::automatic;
    QString language;   // "en", "de"; empty: the desktop's
    double ownGrid = 0; // sheet pixels between the grid lines of a sheet that is no editor's; 0: no grid
    PictureSettings picture;
};

class SettingsStore {
public:
    // file: where it lies; made when something is saved.
    explicit SettingsStore(const QString& file);

    // The user's own, in QStandardPaths::AppConfigLocation.
    static QString usualFile();

    Settings load() const;
    void save(const Settings& settings);

    QByteArray windowGeometry() const;
    QByteArray windowState() const;
    void saveWindow(const QByteArray& geometry, const QByteArray& state);
    QString lastFolder() const; // where files were opened or saved last; empty at first
    void saveLastFolder(const QString& folder);

private:
    QSettings m_file;
};
