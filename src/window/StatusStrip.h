#pragma once

#include <QString>
#include <QWidget>

/// The status bar of a browser window: the status text, and at the right end the privacy and the
/// secure indicator while they apply. Painted by itself; cheap to change many times a second.
class StatusStrip : public QWidget {
    Q_OBJECT

public:
    explicit StatusStrip(QWidget *parent);

    /// Height in pixels: 17, more only where the font needs it.
    int stripHeight() const;

    /// Panel 1.
    QString text() const { return m_text; }
    void setText(const QString &text);
    /// Panel 2: third-party cookies of the page were refused.
    bool privacyShown() const { return m_privacy; }
    void setPrivacyShown(bool shown);
    /// Panel 3: the page is secure.
    bool secureShown() const { return m_secure; }
    void setSecureShown(bool shown);

    QRect privacyRect() const;
    QRect secureRect() const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QRect indicatorRect(int fromRight) const;
    void refreshAccessibleText();

    QString m_text;
    bool m_privacy = false;
    bool m_secure = false;
};
