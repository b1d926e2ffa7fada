// How it stands with the editor, always in view: an icon, words, who else waits, and the buttons that answer.
#pragma once

#include <QFrame>
#include <QString>
#include <QTimer>

class IconLabel;
class QAction;
class QBoxLayout;
class QLabel;
class QPushButton;
class SketchSession;

class LinkPanel : public QFrame {
    Q_OBJECT

public:
    // isLinked: false when the program was started without the link.
    LinkPanel(SketchSession& session, QAction& send, QAction& cancel, bool isLinked,
              QWidget* parent = nullptr);

    QString stateText() const;
    QString othersText() const; // empty when nobody else waits
    bool focusFirst();

    // In a narrow window the buttons stand below the words.
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

signals:
    void listenAgain(); // the user wants the port tried once more

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    bool isNarrow(int width) const;
    int leastWordsWidth() const;
    int buttonsWidth(int ofOthers) const;
    void arrange();
    void refresh();
    QString words() const;
    const char* iconName() const;

    SketchSession& m_session;
    bool m_isLinked;
    IconLabel* m_icon;
    QLabel* m_state;
    QLabel* m_others;
    QPushButton* m_again;
    QWidget* m_send;
    QBoxLayout* m_parts;   // words and buttons
    QBoxLayout* m_words;   // the icon and the state
    QBoxLayout* m_buttons; // who else waits, and the buttons
    QTimer m_minutes;      // what is said of times grows old
};
