#pragma once

#include "Desk.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <memory>
#include <optional>

/// Keeps the desk in the file of the last desk, with the mark of a program that runs. It writes in
/// a thread of its own; what cannot be written is logged and tried again.
class DeskStore : public QObject {
    Q_OBJECT

public:
    explicit DeskStore(QObject *parent = nullptr);
    ~DeskStore() override;

    /// The desk as it is now; where it is as in the file nothing is written.
    void put(const Desk &desk);
    /// Returns when the file has what was put last, or when that could not be written.
    void flush();

private:
    /// On its way to the file.
    struct Write {
        Desk desk;
        /// The worker's; read when it is done.
        bool isWritten = false;
    };

    void start();
    void end(const Write *write);

    QThreadPool m_worker;
    QTimer m_again;
    /// What was put and is not on its way yet.
    std::optional<Desk> m_next;
    /// In the file.
    std::optional<Desk> m_known;
    std::shared_ptr<Write> m_write;
    /// The worker's.
    bool m_hasMark = false;
};
