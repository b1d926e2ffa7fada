// Opening, saving and exporting, with the dialogs for it. None of them holds the window up.
#pragma once

#include "sketch/app/settings_store.h"

#include <QObject>
#include <QString>

#include <functional>

class NoticeArea;
class SketchSession;

class FileDesk : public QObject {
    Q_OBJECT

public:
    // window: over which the dialogs open.
    FileDesk(SketchSession& session, SettingsStore& store, NoticeArea& notices, QWidget& window);

    void setPicture(const PictureSettings& settings) { m_picture = settings; }

    void askOpen();
    void askInsert();
    void save(); // asks where, when the sketch has no file yet
    void askSaveAs();
    void askExportSvg();
    void askExportPng();

    bool open(const QString& file);
    bool insert(const QString& file);
    bool saveAs(const QString& file);
    bool exportSvg(const QString& file);
    bool exportPng(const QString& file);

signals:
    void said(const QString& sentence);
    void opened();

private:
    void ask(const QString& title, const QString& filter, const QString& suffix, bool isForSaving,
             const std::function<void(const QString&)>& chosen);
    bool tell(const QString& problem, const QString& done);
    QString folder() const;

    SketchSession& m_session;
    SettingsStore& m_store;
    NoticeArea& m_notices;
    QWidget& m_window;
    PictureSettings m_picture;
};
