#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

/// Answers the next message box that is waited for, with a real click, as soon as it is there.
/// `count` tells how many were answered.
class Answer : public QObject {
    Q_OBJECT

public:
    explicit Answer(QMessageBox::StandardButton button)
    {
        connect(&m_look, &QTimer::timeout, this, [this, button] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || !box->button(button))
                return;
            m_text = box->text();
            m_more = box->informativeText();
            m_title = box->windowTitle();
            ++m_count;
            m_look.stop();
            box->button(button)->click();
        });
        m_look.start(10);
    }

    int count() const { return m_count; }
    QString text() const { return m_text; }
    /// What stands below it.
    QString more() const { return m_more; }
    QString title() const { return m_title; }

private:
    QTimer m_look;
    QString m_text;
    QString m_more;
    QString m_title;
    int m_count = 0;
};
