#include "sketch/app/keys_dialog.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(KeysDialog)
};

// Signs that are hardly seen have their names beside them.
QString nameOf(const QKeySequence& key)
{
    if (key == QKeySequence("."))
        return Words::tr("Full stop (.)");
    if (key == QKeySequence(","))
        return Words::tr("Comma (,)");
    return key.toString(QKeySequence::NativeText);
}

QString keysOf(const QAction& action)
{
    QStringList keys;
    for (const QKeySequence& key : action.shortcuts())
        keys += nameOf(key);
    return keys.join(", ");
}

void addRow(QTableWidget& table, const QString& keys, const QString& text)
{
    const int row = table.rowCount();
    table.insertRow(row);
    table.setItem(row, 0, new QTableWidgetItem(keys));
    table.setItem(row, 1, new QTableWidgetItem(text));
}

} // namespace

KeysDialog::KeysDialog(const QList<QAction*>& actions, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Keys"));
    auto* const table = new QTableWidget(0, 2);
    table->setHorizontalHeaderLabels({tr("Key"), tr("What it does")});
    table->setAccessibleName(tr("Keys"));
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    const QString tab = QKeySequence(Qt::Key_Tab).toString(QKeySequence::NativeText);
    addRow(*table, tr("hold still"),
           tr("At a stroke's end: shows what it is read as; drag on to change its size"));
    addRow(*table, tab, tr("Shows another reading of the stroke; with Shift the one before"));
    addRow(*table, tr("Enter"), tr("Takes the reading that is shown"));
    addRow(*table, tr("Esc"), tr("Keeps the stroke as it is; else clears the selection"));
    addRow(*table, tr("Alt or Ctrl, held"), tr("Nothing snaps"));
    addRow(*table, tr("Space, held"), tr("Drags the sheet"));
    addRow(*table, tr("Ctrl+wheel"), tr("Zooms about the pointer"));
    for (const QAction* action : actions) {
        if (!action->shortcuts().isEmpty())
            addRow(*table, keysOf(*action), action->iconText().remove(QChar(0x2026)));
    }
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    table->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setIcon({}); // the style's own is black, in the dark as well
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(table);
    column->addWidget(buttons);
    resize(640, 640);
}
