#pragma once

#include "DownloadTexts.h"

#include <QPushButton>
#include <QTimer>

class DownloadList;

/// A slim strip at the bottom of the frame: what is under way, and after that what failed until the
/// user has seen the list. A click or Enter asks for the list (`clicked`).
class DownloadStrip : public QPushButton {
    Q_OBJECT

public:
    explicit DownloadStrip(DownloadList &list, QWidget *parent = nullptr);

    /// Whether the user has the list before him: then he knows what failed.
    void setListSeen(bool seen);
    void translate();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// What it tells.
    struct Told {
        /// Of the file, or how many there are.
        QString subject;
        QString rest;
        /// Hundredths; -1: unknown.
        int share = -1;
        /// What stays the same while bytes come in: names and states.
        QString constant;
    };

    void look();
    Told tell() const;
    Told tellOne(const Download &download) const;
    Told tellMany(const QList<Download> &downloads) const;
    void tellFailed(Told &told, const QList<Download> &failed) const;
    /// Failed since the user last saw the list.
    bool isNews(const Download &download) const;
    void nameAnew();

    DownloadList &m_list;
    DownloadTexts m_texts;
    Told m_told;
    QDateTime m_seen;
    bool m_isSeen = false;
    /// Somebody who has the strip read to him is not told each change.
    QTimer m_names;
    /// Many may be removed at once.
    QTimer m_looks;
};
