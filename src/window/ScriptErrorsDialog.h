#pragma once

#include <QDialog>
#include <QList>
#include <QSet>
#include <QTimer>
#include <functional>

#include "ScriptError.h"

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

/// Collects the script errors of one browser window and shows them one at a time. It comes up by
/// itself beside the work, without taking the focus, and once closed it stays away until another
/// page is shown.
class ScriptErrorsDialog : public QDialog {
    Q_OBJECT

public:
    /// `page` tells the address of the page that the browser window shows.
    ScriptErrorsDialog(QWidget *owner, const std::function<QString()> &page);

    /// Takes an error of the page. Safe inside an engine callback: whatever is to be seen of it is
    /// seen later.
    void add(const ScriptError &error);
    /// Another page is shown in the browser window.
    void pageChanged();

    /// As much as a page that fails without end can fill.
    static constexpr qsizetype most = 500;

protected:
    void hideEvent(QHideEvent *event) override;

private:
    struct Entry {
        ScriptError error;
        /// Empty until it is first shown: an error can be told before the page's own address.
        QString page;
    };

    void buildControls();
    void translate();
    void nameThePage();
    void refresh();
    void showEntry();
    void step(int count);
    void copy() const;
    void ignorePage(bool ignore);
    QString details(const Entry &entry) const;

    std::function<QString()> m_page;
    QList<Entry> m_entries;
    QSet<QString> m_ignored;
    qsizetype m_current = 0;
    bool m_dismissed = false;
    QTimer m_refresh;
    QLabel *m_position;
    QPlainTextEdit *m_message;
    QCheckBox *m_ignorePage;
    QPushButton *m_previous;
    QPushButton *m_next;
    QPushButton *m_copy;
    QPushButton *m_close;
};
