#include "sketch/app/appearance.h"

#include "sketch/app/desktop_wishes.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>

#include <utility>

namespace {

struct Inks {
    QColor window, base, other, button, text, faint, highlight, highlightedText, link, edge;
};

const Inks kLight{QColor(0xf2, 0xf3, 0xf5), QColor(0xff, 0xff, 0xff), QColor(0xf7, 0xf8, 0xfa),
                  QColor(0xe9, 0xeb, 0xef), QColor(0x1a, 0x1d, 0x23), QColor(0x8a, 0x90, 0x9a),
                  QColor(0x1a, 0x5f, 0xb4), QColor(0xff, 0xff, 0xff), QColor(0x0b, 0x4f, 0xa3),
                  QColor(0xff, 0xff, 0xff)};
const Inks kDark{QColor(0x2b, 0x2e, 0x35), QColor(0x1f, 0x22, 0x27), QColor(0x27, 0x2a, 0x30),
                 QColor(0x3a, 0x3e, 0x47), QColor(0xe8, 0xeb, 0xf0), QColor(0x85, 0x8c, 0x98),
                 QColor(0x4a, 0x90, 0xe0), QColor(0x0a, 0x0c, 0x10), QColor(0x7c, 0xb7, 0xff),
                 QColor(0x4a, 0x4f, 0x5a)};
const Inks kContrastLight{
    Qt::white, Qt::white, Qt::white,          Qt::white, Qt::black, QColor(0x50, 0x50, 0x50),
    Qt::black, Qt::white, QColor(0, 0, 0xa8), Qt::black};
const Inks kContrastDark{Qt::black,  Qt::black, Qt::black,  Qt::black, Qt::white, QColor(0xb0, 0xb0, 0xb0),
                         Qt::yellow, Qt::black, Qt::yellow, Qt::white};

QPalette paletteOf(const Inks& inks)
{
    QPalette palette(inks.button, inks.window);
    const QColor text = inks.text;
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::BrightText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, inks.base);
    palette.setColor(QPalette::AlternateBase, inks.other);
    palette.setColor(QPalette::ToolTipBase, inks.other);
    palette.setColor(QPalette::PlaceholderText, inks.faint);
    palette.setColor(QPalette::Highlight, inks.highlight);
    palette.setColor(QPalette::HighlightedText, inks.highlightedText);
    palette.setColor(QPalette::Link, inks.link);
    palette.setColor(QPalette::LinkVisited, inks.link);
    palette.setColor(QPalette::Light, inks.edge);
    if (inks.window == inks.button) { // without shades: lines of frames and separators
        for (const auto role : {QPalette::Midlight, QPalette::Mid, QPalette::Dark, QPalette::Shadow})
            palette.setColor(role, inks.faint);
    }
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, inks.faint);
    return palette;
}

// The style's own frames are shades of the window, and vanish where that is black or white.
const char* const kContrastFrames = R"(
QPushButton { border: 2px solid palette(button-text); border-radius: 3px; padding: 4px 10px; }
QPushButton:disabled { border-style: dashed; border-color: palette(mid); }
QPushButton:focus, QToolButton:focus { border: 3px double palette(highlight); }
QPushButton:pressed, QPushButton:checked { background: palette(highlight); color: palette(highlighted-text); }
QToolButton { border: 2px solid transparent; border-radius: 3px; padding: 2px; }
QToolButton:hover { border-color: palette(highlight); }
QToolButton:checked { border: 2px solid palette(button-text); border-bottom-width: 5px; }
QSlider { min-height: 22px; }
QSlider::groove:horizontal { height: 4px; background: palette(button-text); }
QSlider::handle:horizontal { width: 12px; margin: -6px 0; border: 2px solid palette(button-text); background: palette(button); }
QSlider::handle:horizontal:focus { background: palette(highlight); }
LinkPanel QToolButton { border-color: palette(button-text); padding: 4px 10px; }
LinkPanel QToolButton:disabled { border-style: dashed; border-color: palette(mid); }
QCheckBox::indicator { width: 14px; height: 14px; border: 2px solid palette(text); background: palette(base); }
QCheckBox::indicator:checked { image: url(:/icons/tick-%1.svg); }
QCheckBox::indicator:disabled { border-style: dashed; border-color: palette(mid); }
QCheckBox::indicator:focus { border: 3px double palette(highlight); }
QAbstractSpinBox, QComboBox, QLineEdit { border: 2px solid palette(text); padding: 2px 4px; background: palette(base); }
QAbstractSpinBox:focus, QComboBox:focus, QLineEdit:focus { border-color: palette(highlight); border-style: double; border-width: 3px; }
QAbstractSpinBox:disabled, QComboBox:disabled, QLineEdit:disabled { border-style: dashed; border-color: palette(mid); }
QAbstractSpinBox::up-button { subcontrol-origin: border; subcontrol-position: top right; width: 18px; border-left: 2px solid palette(text); border-bottom: 1px solid palette(text); }
QAbstractSpinBox::down-button { subcontrol-origin: border; subcontrol-position: bottom right; width: 18px; border-left: 2px solid palette(text); border-top: 1px solid palette(text); }
QAbstractSpinBox::up-arrow { image: url(:/icons/up-%1.svg); width: 10px; height: 7px; }
QAbstractSpinBox::down-arrow, QComboBox::down-arrow { image: url(:/icons/down-%1.svg); width: 10px; height: 7px; }
QComboBox::drop-down { subcontrol-origin: border; subcontrol-position: top right; width: 18px; border-left: 2px solid palette(text); }
QComboBox QAbstractItemView { border: 2px solid palette(text); }
QTabWidget::pane { border: 2px solid palette(window-text); top: -2px; }
QTabBar::tab { border: 2px solid palette(window-text); padding: 4px 10px; margin-right: 2px; }
QTabBar::tab:selected { background: palette(highlight); color: palette(highlighted-text); }
QTabBar::tab:focus { border: 3px double palette(highlight); }
QTableView { border: 2px solid palette(text); gridline-color: palette(mid); }
QHeaderView::section { border: none; border-bottom: 2px solid palette(window-text); padding: 3px; background: palette(button); color: palette(button-text); }
QMenu { border: 2px solid palette(window-text); }
QMenu::icon { background: palette(window); border: 2px solid palette(window); }
QMenu::icon:checked { border-color: palette(window-text); }
QMenu::item:selected, QMenuBar::item:selected { background: palette(highlight); color: palette(highlighted-text); }
QToolTip { border: 1px solid palette(window-text); color: palette(window-text); background: palette(window); }
NoticeBar, LinkPanel { border-top: 2px solid palette(window-text); }
)";

Look ownLook(ColourChoice choice)
{
    switch (choice) {
    case ColourChoice::dark: return {paletteOf(kDark), CanvasColours::dark(), false};
    case ColourChoice::highContrastLight:
        return {paletteOf(kContrastLight), CanvasColours::highContrast(false), true};
    case ColourChoice::highContrastDark:
        return {paletteOf(kContrastDark), CanvasColours::highContrast(true), true};
    case ColourChoice::light:
    case ColourChoice::automatic: break;
    }
    return {paletteOf(kLight), CanvasColours::light(), false};
}

} // namespace

bool is_dark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

Look lookOf(ColourChoice choice, const DesktopWishes& wishes, const QPalette& desktop)
{
    if (choice != ColourChoice::automatic)
        return ownLook(choice);
    const bool isDark = wishes.dark() || is_dark(desktop);
    if (wishes.highContrast())
        return ownLook(isDark ? ColourChoice::highContrastDark : ColourChoice::highContrastLight);
    if (wishes.dark() && !is_dark(desktop))
        return ownLook(ColourChoice::dark);
    return {std::nullopt, isDark ? CanvasColours::dark() : CanvasColours::light(), false};
}

Appearance::Appearance() : m_style(QApplication::style()->name()), m_palette(QApplication::palette()) {}

bool Appearance::followDesktop()
{
    if (m_isOwn || QApplication::palette() == m_palette)
        return false;
    m_palette = QApplication::palette();
    return true;
}

void Appearance::apply(const Look& look)
{
    QString frames;
    if (look.isHighContrast)
        frames = QString::fromLatin1(kContrastFrames)
                     .replace("%1", look.palette && is_dark(*look.palette) ? "white" : "black");
    if (qApp->styleSheet() != frames)
        qApp->setStyleSheet({}); // it hides the style's name
    // Of all styles this one alone follows any palette.
    const QString style = look.palette ? QStringLiteral("fusion") : m_style;
    if (QApplication::style()->name() != style)
        QApplication::setStyle(style);
    const bool wasOwn = std::exchange(m_isOwn, look.palette.has_value());
    if (wasOwn || m_isOwn)
        QApplication::setPalette(look.palette.value_or(QPalette())); // none: the desktop's
    if (qApp->styleSheet() != frames)
        qApp->setStyleSheet(frames);
}
