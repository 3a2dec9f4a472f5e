#pragma once

#include <QByteArray>
#include <QPixmap>
#include <QWidget>

class QPainter;

/// What a page looked like when it was given up: shown in its place, coarsely, until it is back.
/// The picture is kept packed, and unpacked only to be painted. Where nobody has seen the page yet
/// the title of the window it is in stands there.
class SleepPicture : public QWidget {
    Q_OBJECT

public:
    /// A picture as it is kept.
    static QByteArray packed(const QPixmap &page);

    /// `picture`: as `packed` gives it; empty for a page that nobody has seen as it is.
    SleepPicture(const QByteArray &picture, QWidget *parent);

    /// Bytes that the picture takes.
    qsizetype size() const { return m_packed.size(); }

signals:
    /// The user wants the page itself.
    void pressed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void paintTitle(QPainter &painter) const;

    QByteArray m_packed;
};
