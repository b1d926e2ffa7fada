// Questions and problems as bars above the sheet. Nothing waits for them: whoever draws on, draws on.
#pragma once

#include <QFrame>
#include <QMap>
#include <QString>

#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;

struct NoticeButton {
    QString text;
    std::function<void()> act; // the notice has gone when it is called
};

// One of them: an icon, a sentence and its buttons.
class NoticeBar : public QFrame {
    Q_OBJECT

public:
    NoticeBar(const char* icon, const QString& text, QWidget* parent);
    QPushButton* addButton(const QString& text);
    QString text() const;

private:
    QLabel* m_label;
    QHBoxLayout* m_row;
};

class NoticeArea : public QWidget {
    Q_OBJECT

public:
    explicit NoticeArea(QWidget* parent = nullptr);

    // In the place of the one with the same name, if there is one.
    void ask(const QString& name, const char* icon, const QString& text,
             const std::vector<NoticeButton>& buttons);
    // What went wrong, with a button that puts it away.
    void showProblem(const QString& name, const QString& sentence);
    void dismiss(const QString& name);
    NoticeBar* find(const QString& name) const; // null when it is not shown
    bool focusFirst();                          // false when there is nothing to answer

signals:
    void answered(); // by one of the buttons; the focus is free

private:
    QVBoxLayout* m_column;
    QMap<QString, NoticeBar*> m_bars;
};
