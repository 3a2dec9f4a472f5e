#pragma once

#include "Download.h"

#include <QAction>
#include <QObject>

#include <functional>

class DownloadList;

/// What the user can do with the downloads he has chosen: one action for each, enabled while one
/// or more of them have a use for it. Buttons, context menu and keys are these.
class DownloadActions : public QObject {
    Q_OBJECT

public:
    using Chosen = std::function<QList<Download>()>;

    /// `chosen` tells which they are; what cannot be done is told over `owner`.
    DownloadActions(DownloadList &list, const Chosen &chosen, QWidget &owner);

    /// In the order shown.
    QList<QAction *> all() const;
    void translate();
    /// After a change of what is chosen, or of its states.
    void refresh();

    /// As Enter and a double click do; shows the folder of a file that is not to be opened.
    void open();
    /// As Space does: those that come in are stopped, or where there are none those stopped go on.
    void pauseOrResume();
    void copyAddress();
    /// Those that are over.
    void remove();

private:
    using Does = bool (*)(const Download &);
    using Act = void (DownloadActions::*)();
    struct Entry {
        QAction *action;
        Does isFor;
    };

    QAction *add(const char *name, Does isFor, Act act);
    /// The chosen ones that the action is for.
    QList<Download> chosenFor(const QAction *action) const;
    void forEach(const QAction *action, void (DownloadList::*act)(const QString &));
    void pause();
    void resume();
    void cancel();
    void retry();
    void openFolder();
    void show(const QList<Download> &files);
    void tell(const QString &text);

    DownloadList &m_list;
    Chosen m_chosen;
    QWidget &m_owner;
    QList<Entry> m_entries;
    QAction *m_pause;
    QAction *m_resume;
    QAction *m_cancel;
    QAction *m_retry;
    QAction *m_open;
    QAction *m_openFolder;
    QAction *m_copyAddress;
    QAction *m_remove;
};
