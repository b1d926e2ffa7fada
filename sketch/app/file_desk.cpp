#include "sketch/app/file_desk.h"

#include "sketch/app/notice_area.h"
#include "sketch/app/picture_export.h"
#include "sketch/app/sketch_session.h"

#include <QBuffer>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

FileDesk::FileDesk(SketchSession& session, SettingsStore& store, NoticeArea& notices, QWidget& window)
    : QObject(&window), m_session(session), m_store(store), m_notices(notices), m_window(window)
{
}

QString FileDesk::folder() const
{
    const QString last = m_store.lastFolder();
    return QDir(last).exists() && !last.isEmpty()
               ? last
               : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void FileDesk::ask(const QString& title, const QString& filter, const QString& suffix, bool isForSaving,
                   const std::function<void(const QString&)>& chosen)
{
    auto* const dialog = new QFileDialog(&m_window, title, folder(), filter);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(isForSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(isForSaving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setDefaultSuffix(suffix);
    if (isForSaving) {
        const QString base = QFileInfo(m_session.file()).completeBaseName();
        dialog->selectFile((base.isEmpty() ? tr("sketch") : base) + "." + suffix);
    }
    connect(dialog, &QFileDialog::fileSelected, this, [this, chosen](const QString& file) {
        m_store.saveLastFolder(QFileInfo(file).absolutePath());
        chosen(file);
    });
    dialog->open();
}

void FileDesk::askOpen()
{
    ask(tr("Open a Sketch"), tr("Sketches (*.xml);;All files (*)"), "xml", false,
        [this](const QString& file) { open(file); });
}

void FileDesk::askInsert()
{
    ask(tr("Insert a Sketch"), tr("Sketches (*.xml);;All files (*)"), "xml", false,
        [this](const QString& file) { insert(file); });
}

void FileDesk::askSaveAs()
{
    ask(tr("Save the Sketch"), tr("Sketches (*.xml)"), "xml", true,
        [this](const QString& file) { saveAs(file); });
}

void FileDesk::askExportSvg()
{
    ask(tr("Export as SVG"), tr("Scalable vector graphics (*.svg)"), "svg", true,
        [this](const QString& file) { exportSvg(file); });
}

void FileDesk::askExportPng()
{
    ask(tr("Export as PNG"), tr("Pictures (*.png)"), "png", true,
        [this](const QString& file) { exportPng(file); });
}

void FileDesk::save()
{
    if (m_session.file().isEmpty())
        askSaveAs();
    else
        saveAs(m_session.file());
}

bool FileDesk::tell(const QString& problem, const QString& done)
{
    if (problem.isEmpty()) {
        m_notices.dismiss("file");
        emit said(done);
    } else
        m_notices.showProblem("file", problem);
    return problem.isEmpty();
}

bool FileDesk::open(const QString& file)
{
    const QString name = QDir::toNativeSeparators(file);
    const bool isOpened = tell(m_session.open(file).sentence, tr("Opened %1.").arg(name));
    if (isOpened)
        emit opened();
    return isOpened;
}

bool FileDesk::insert(const QString& file)
{
    return tell(m_session.insert(file).sentence, tr("Inserted %1.").arg(QDir::toNativeSeparators(file)));
}

bool FileDesk::saveAs(const QString& file)
{
    return tell(m_session.save(file).sentence, tr("Saved %1.").arg(QDir::toNativeSeparators(file)));
}

bool FileDesk::exportSvg(const QString& file)
{
    SketchModel& model = m_session.model();
    const QByteArray svg = svgOf(model.document().strokes(), model.sheet(), m_picture);
    return tell(writeWhole(file, svg).sentence, tr("Exported %1.").arg(QDir::toNativeSeparators(file)));
}

bool FileDesk::exportPng(const QString& file)
{
    SketchModel& model = m_session.model();
    const QImage image = imageOf(model.document().strokes(), model.sheet(), m_picture);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return tell(
            tr("Cannot export %1: the picture would be too large. Choose a smaller size in the preferences.")
                .arg(QDir::toNativeSeparators(file)),
            {});
    return tell(writeWhole(file, bytes).sentence, tr("Exported %1.").arg(QDir::toNativeSeparators(file)));
}
