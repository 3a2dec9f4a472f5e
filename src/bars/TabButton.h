#pragma once

#include "WindowTabs.h"

#include <QAbstractButton>

/// One tab of the tab strip. Its caption is its accessible name and is shown as it stands, "&"
/// included; the tool tip is plain text. Pressed or not is said by its owner.
class TabButton : public QAbstractButton {
    Q_OBJECT

public:
    TabButton(const QString &key, const QString &caption, QWidget *parent);

    QString key() const { return m_key; }
    QString caption() const { return m_caption; }
    /// True when the wanted width changed.
    bool setCaption(const QString &caption);
    /// What its window uses of camera, microphone and screen, in words: the mark at its end says
    /// so, and ends that by a click of its own. Empty: nothing.
    void setUse(const QString &text);
    /// A mark before that one says so, and a click of its own turns it; nothing with `None`.
    void setSound(PageSound sound);
    PageSound sound() const { return m_sound; }
    /// Its window has given its page up: the picture is dimmed, and it is said in words.
    void setAsleep(bool asleep);
    bool isAsleep() const { return m_asleep; }
    /// A mask stands before the caption, and it is said in words.
    void setPrivate();
    bool isPressed() const { return m_pressed; }
    void setPressed(bool pressed);

    QSize sizeHint() const override;

signals:
    void middleClicked();
    void useClicked();
    void soundClicked();
    /// An arrow key: -1 to the previous tab, 1 to the next; further for Home and End.
    void stepWanted(int step);
    void focused();
    /// The pointer drags the tab, and is now at `x`, in the tab's own pixels; until `dragEnded`.
    void dragged(int x);
    void dragEnded(bool isDropped);
    /// -1 or 1: it is to change places with that neighbour.
    void moveWanted(int step);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    int wantedWidth() const;
    void nameIt();
    void endDrag(bool isDropped);
    /// Empty without a mark.
    QRect useRect() const;
    QRect soundRect() const;
    /// What a tool tip at that place says.
    QString tipAt(const QPoint &at) const;
    void paintFace(QPainter &painter) const;
    void paintMarks(QPainter &painter) const;

    QString m_key;
    QString m_caption;
    QString m_use;
    int m_width = 0;
    bool m_pressed = false;
    bool m_asleep = false;
    bool m_isPrivate = false;
    bool m_middleDown = false;
    bool m_useDown = false;
    bool m_soundDown = false;
    PageSound m_sound = PageSound::None;
    bool m_dragged = false;
    /// Where the left button went down.
    QPoint m_pressedAt;
};
