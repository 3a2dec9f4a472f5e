#pragma once

#include "VisitErasure.h"

#include <QAction>
#include <QDate>
#include <QList>
#include <QObject>
#include <functional>

class VisitHistory;

/// What can be done with visits that were chosen, as actions for buttons, menu and keys.
class VisitActions : public QObject {
    Q_OBJECT

public:
    struct Chosen {
        /// Exact ones, each once.
        QList<QByteArray> addresses;
        /// The day of the current row.
        QDate day;
    };
    using Asked = std::function<Chosen()>;

    VisitActions(VisitHistory &history, const Asked &chosen, QWidget &owner);

    QList<QAction *> all() const { return m_all; }
    void translate();
    /// Enables what goes with what is chosen.
    void refresh();

    void open();
    void openInNewWindows();
    void copyAddresses();
    void deletePages();

signals:
    void openWanted(const QString &address);
    void newWindowWanted(const QString &address);

private:
    QAction *add(const char *name, void (VisitActions::*act)());
    void deleteSite();
    void deleteDay();
    void deleteOlder();
    void deleteAll();
    /// `what` is named below the question.
    void askToDelete(const QString &text, const QString &what, const VisitErasure &erasure);
    void erase(const VisitErasure &erasure);

    VisitHistory &m_history;
    Asked m_chosen;
    QWidget &m_owner;
    QList<QAction *> m_all;
    QAction *m_open;
    QAction *m_newWindow;
    QAction *m_copy;
    QAction *m_delete;
    QAction *m_site;
    QAction *m_day;
    QAction *m_older;
    QAction *m_everything;
};
