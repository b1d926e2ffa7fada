#include "sketch/app/preferences_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

QDoubleSpinBox* numberField(const char* name, double least, double most, double step, int decimals,
                            const QString& suffix = {})
{
    auto* const field = new QDoubleSpinBox;
    field->setObjectName(name);
    field->setRange(least, most);
    field->setSingleStep(step);
    field->setDecimals(decimals);
    field->setSuffix(suffix);
    return field;
}

QCheckBox* switchField(const char* name, const QString& text)
{
    auto* const field = new QCheckBox(text);
    field->setObjectName(name);
    return field;
}

QComboBox* choiceField(const char* name, const QStringList& texts)
{
    auto* const field = new QComboBox;
    field->setObjectName(name);
    field->addItems(texts);
    return field;
}

} // namespace

PreferencesDialog::PreferencesDialog(const Settings& settings, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Preferences"));
    auto* const tabs = new QTabWidget;
    tabs->addTab(drawingPage(), tr("&Drawing"));
    tabs->addTab(pensPage(), tr("&Pens"));
    tabs->addTab(lookPage(), tr("&Look"));
    tabs->addTab(picturesPage(), tr("P&ictures"));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::RestoreDefaults);
    buttons->button(QDialogButtonBox::Close)->setIcon({}); // the style's own is black, in the dark as well
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this, [this] {
        setSettings(Settings());
        emit changed(m_settings);
    });
    auto* const column = new QVBoxLayout(this);
    column->addWidget(tabs);
    column->addWidget(buttons);
    setSettings(settings);
    for (QCheckBox* field : findChildren<QCheckBox*>())
        connect(field, &QCheckBox::toggled, this, &PreferencesDialog::take);
    for (QSpinBox* field : findChildren<QSpinBox*>())
        connect(field, &QSpinBox::valueChanged, this, &PreferencesDialog::take);
    for (QDoubleSpinBox* field : findChildren<QDoubleSpinBox*>())
        connect(field, &QDoubleSpinBox::valueChanged, this, &PreferencesDialog::take);
    for (QComboBox* field : findChildren<QComboBox*>())
        connect(field, &QComboBox::currentIndexChanged, this, &PreferencesDialog::take);
}

QWidget* PreferencesDialog::drawingPage()
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    m_convertAlways = switchField("convertAlways", tr("&Convert every stroke, without holding still"));
    m_hold = new QSpinBox;
    m_hold->setObjectName("hold");
    m_hold->setRange(150, 3000);
    m_hold->setSingleStep(50);
    m_hold->setSuffix(tr(" ms"));
    m_tolerance = numberField("tolerance", 0, 3, 0.1, 2);
    m_leastSize = numberField("leastSize", 0, 200, 1, 0, tr(" px"));
    m_snapToGrid = switchField("snapToGrid", tr("to the &grid"));
    m_snapToShapes = switchField("snapToShapes", tr("to &shapes that are there"));
    m_snapToAngles = switchField("snapToAngles", tr("to steps of &15°"));
    m_ownGrid = numberField("ownGrid", 0, 500, 5, 0, tr(" px"));
    m_ownGrid->setSpecialValueText(tr("none"));
    form->addRow(m_convertAlways);
    form->addRow(tr("&Hold still for"), m_hold);
    form->addRow(tr("&Tolerance"), m_tolerance);
    form->addRow(tr("&Least size of a shape"), m_leastSize);
    form->addRow(tr("Snap"), m_snapToGrid);
    form->addRow(QString(), m_snapToShapes);
    form->addRow(QString(), m_snapToAngles);
    form->addRow(tr("Grid &of own sheets"), m_ownGrid);
    return page;
}

QWidget* PreferencesDialog::pensPage()
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    m_stabiliser = numberField("stabiliser", 0, 1, 0.05, 2);
    m_inkWidth = numberField("inkWidth", 0.5, 20, 0.5, 1, tr(" px"));
    m_fingersDraw = switchField("fingersDraw", tr("&Fingers draw (else they move the sheet)"));
    form->addRow(tr("&Steadiness"), m_stabiliser);
    form->addRow(tr("&Width of the ink"), m_inkWidth);
    form->addRow(m_fingersDraw);
    return page;
}

QWidget* PreferencesDialog::lookPage()
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    m_colours = choiceField("colours", {tr("As the desktop"), tr("Light"), tr("Dark"),
                                        tr("High contrast, light"), tr("High contrast, dark")});
    m_motion = choiceField("motion", {tr("As the desktop"), tr("Full"), tr("Reduced")});
    m_language = choiceField("language", {});
    m_language->addItem(tr("As the desktop"), QString());
    m_language->addItem(QStringLiteral("English"), QStringLiteral("en"));
    m_language->addItem(QStringLiteral("Deutsch"), QStringLiteral("de"));
    m_language->setToolTip(tr("Another language comes with the next start."));
    form->addRow(tr("&Colours"), m_colours);
    form->addRow(tr("&Motion"), m_motion);
    form->addRow(tr("L&anguage (from the next start)"), m_language);
    return page;
}

QWidget* PreferencesDialog::picturesPage()
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    m_area = choiceField("area", {tr("The sheet"), tr("What is drawn")});
    m_scale = numberField("scale", 0.25, 16, 0.5, 2, tr(" times"));
    m_lineWidth = numberField("lineWidth", 0.1, 50, 0.5, 1, tr(" px"));
    m_transparent = switchField("transparent", tr("&Transparent (else white)"));
    form->addRow(tr("Pictures &show"), m_area);
    form->addRow(tr("Si&ze of a PNG"), m_scale);
    form->addRow(tr("&Width of lines"), m_lineWidth);
    form->addRow(m_transparent);
    return page;
}

void PreferencesDialog::setSettings(const Settings& settings)
{
    m_settings = settings;
    m_isShowing = true;
    fill(settings);
    m_isShowing = false;
}

void PreferencesDialog::fill(const Settings& settings)
{
    m_convertAlways->setChecked(settings.canvas.convertAlways);
    m_hold->setValue(settings.canvas.holdMilliseconds);
    m_tolerance->setValue(settings.canvas.tolerance);
    m_leastSize->setValue(settings.canvas.leastSizePx);
    m_snapToGrid->setChecked(settings.canvas.snapToGrid);
    m_snapToShapes->setChecked(settings.canvas.snapToShapes);
    m_snapToAngles->setChecked(settings.canvas.snapToAngles);
    m_stabiliser->setValue(settings.canvas.stabiliser);
    m_inkWidth->setValue(settings.canvas.inkWidth);
    m_fingersDraw->setChecked(settings.canvas.fingersDraw);
    m_ownGrid->setValue(settings.ownGrid);
    m_colours->setCurrentIndex(static_cast<int>(settings.colours));
    m_motion->setCurrentIndex(static_cast<int>(settings.motion));
    m_language->setCurrentIndex(std::max(0, m_language->findData(settings.language)));
    m_area->setCurrentIndex(static_cast<int>(settings.picture.area));
    m_scale->setValue(settings.picture.scale);
    m_lineWidth->setValue(settings.picture.lineWidth);
    m_transparent->setChecked(settings.picture.transparent);
}

void PreferencesDialog::take()
{
    if (m_isShowing)
        return;
    CanvasSettings& canvas = m_settings.canvas;
    canvas.convertAlways = m_convertAlways->isChecked();
    canvas.holdMilliseconds = m_hold->value();
    canvas.tolerance = m_tolerance->value();
    canvas.leastSizePx = m_leastSize->value();
    canvas.snapToGrid = m_snapToGrid->isChecked();
    canvas.snapToShapes = m_snapToShapes->isChecked();
    canvas.snapToAngles = m_snapToAngles->isChecked();
    canvas.stabiliser = m_stabiliser->value();
    canvas.inkWidth = m_inkWidth->value();
    canvas.fingersDraw = m_fingersDraw->isChecked();
    m_settings.ownGrid = m_ownGrid->value();
    m_settings.colours = static_cast<ColourChoice>(m_colours->currentIndex());
    m_settings.motion = static_cast<MotionChoice>(m_motion->currentIndex());
    m_settings.language = m_language->currentData().toString();
    m_settings.picture.area = static_cast<PictureArea>(m_area->currentIndex());
    m_settings.picture.scale = m_scale->value();
    m_settings.picture.lineWidth = m_lineWidth->value();
    m_settings.picture.transparent = m_transparent->isChecked();
    emit changed(m_settings);
}
