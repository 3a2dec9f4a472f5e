#pragma once

#include "DeskStore.h"
#include "LastDeskFile.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class BrowserWindow;
class DeskOffer;
class MainWindow;
class MdiArea;

/// The desk of the frame from one start to the next: what is open is written as it changes, and
/// what an earlier program left comes back. What was left and is neither open again nor declined
/// is written with it, so that no end of the program, whenever it comes, loses a window.
class LastDesk : public QObject {
    Q_OBJECT

public:
    /// Before the frame loads; this goes before the frame.
    explicit LastDesk(MainWindow &frame);

    /// Once the frame has loaded: offers the windows of a program that was ended in between; false
    /// where there are none.
    bool offer();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(BrowserWindow *window);
    void watchWaking(BrowserWindow *window);
    void changeComes();
    void write();
    bool openAtStart();
    void openThese(const QList<qsizetype> &windows);
    void putBack(const Desk &desk);
    void decline();
    bool keep();
    void endOffer();
    void end(bool isByUser);

    MainWindow &m_frame;
    MdiArea &m_area;
    DeskStore m_store;
    QTimer m_soon;
    LastDeskFile::Left m_left;
    /// Of these, what is neither open again nor declined.
    Desk m_pending;
    QPointer<DeskOffer> m_offer;
    bool m_isOver = false;
};
