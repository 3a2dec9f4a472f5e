#pragma once

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
    /// Its window has given its page up: the picture is dimmed, and it is said in words.
    void setAsleep(bool asleep);
    bool isAsleep() const { return m_asleep; }
    bool isPressed() const { return m_pressed; }
    void setPressed(bool pressed);

    QSize sizeHint() const override;

signals:
    void middleClicked();
    void useClicked();
    /// An arrow key: -1 to the previous tab, 1 to the next; further for Home and End.
    void stepWanted(int step);
    void focused();

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    int wantedWidth() const;
    void nameIt();
    /// Empty without a mark.
    QRect useRect() const;

    QString m_key;
    QString m_caption;
    QString m_use;
    int m_width = 0;
    bool m_pressed = false;
    bool m_asleep = false;
    bool m_middleDown = false;
    bool m_useDown = false;
};
