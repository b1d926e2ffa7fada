// The sketch window: the sheet, what one can do with it, and how it stands with the editor.
#pragma once

#include "sketch/app/appearance.h"
#include "sketch/app/desktop_wishes.h"
#include "sketch/app/log_file.h"
#include "sketch/app/settings_store.h"
#include "sketch/app/sketch_session.h"

#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <optional>

class Actions;
class FileDesk;
class KeysDialog;
class LinkPanel;
class NoticeArea;
class OptionsBar;
class PreferencesDialog;
class Questions;
class SketchCanvas;
class StatusPanel;

struct WindowSetup {
    QString settingsFile = SettingsStore::usualFile();
    QString journalFolder = SketchJournal::usualFolder();
    QString logFile = LogFile::usualPath();
    bool isLinked = true; // listens for editors
    quint16 port = LinkServer::kPort;
};

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(const WindowSetup& setup, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Listens, and offers what a crash or a closed window has left.
    void begin();
    // In front of all other windows, as far as the desktop lets it.
    void bringUp();
    bool openFile(const QString& file);
    // How the editor shows its sheet: of the one that waits, else of the next. In degrees, clockwise.
    void turnEditorSheet(double degrees);

    SketchSession& session() { return m_session; }
    SketchCanvas& canvas() { return *m_canvas; }
    LinkPanel& linkPanel() { return *m_linkPanel; }
    NoticeArea& notices() { return *m_notices; }
    StatusPanel& status() { return *m_status; }
    const Settings& settings() const { return m_settings; }
    void applySettings(const Settings& settings);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeMenus();
    void makeDrawMenu();
    void makeViewMenu();
    void makeBars();
    void connectFiles();
    void connectEditing();
    void connectSelecting();
    void connectView();
    void connectOptions();
    void connectLink();
    void listen();
    void send();
    void takeEditorSheet(bool isSketchThere);
    void showEditorSheet(double turn);
    void showSheet();
    void keepOnScreen();
    void makeRoomFor(const vnt::sketch::Sheet& sheet);
    void selectBeside(int step);
    void moveSelection(double x, double y);
    void showPreferences();
    void showKeys();
    void showAbout();
    void goToNextPane();
    void showTitle();
    void showWhatIsPossible();
    void changeCanvas(const std::function<void(CanvasSettings&)>& change);
    void applyLook();

    LogFile m_log;
    SettingsStore m_store;
    Settings m_settings;
    Appearance m_appearance;
    DesktopWishes m_wishes;
    SketchSession m_session;
    WindowSetup m_setup;
    Actions* m_actions;
    SketchCanvas* m_canvas;
    NoticeArea* m_notices;
    LinkPanel* m_linkPanel;
    StatusPanel* m_status;
    OptionsBar* m_options = nullptr;
    FileDesk* m_files;
    Questions* m_questions;
    PreferencesDialog* m_preferences = nullptr;
    KeysDialog* m_keys = nullptr;
    std::optional<double> m_editorTurn; // of the sheet that comes next
    QTimer m_saving;                    // of settings that have changed, when they have come to rest
    bool m_wasShown = false;
};
