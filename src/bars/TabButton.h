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
    bool isPressed() const { return m_pressed; }
    void setPressed(bool pressed);

    QSize sizeHint() const override;

signals:
    void middleClicked();
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

    QString m_key;
    QString m_caption;
    int m_width = 0;
    bool m_pressed = false;
    bool m_middleDown = false;
};
