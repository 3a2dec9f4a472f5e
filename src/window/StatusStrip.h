#pragma once

#include <QString>
#include <QWidget>

class UseMark;
class ZoomMark;

/// The status bar of a browser window: the status text, and at the right end the privacy and the
/// secure indicator while they apply, or that the page is not secure where it ought to be. Painted
/// by itself; cheap to change many times a second.
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

    /// In place of panel 3: the page comes from a server that could not prove who it is.
    bool unprovenShown() const { return m_unproven; }
    void setUnprovenShown(bool shown);

    /// Before them: what the page uses of camera, microphone and screen, in words; empty: nothing.
    void setUse(const QString &text);
    /// How large the page is shown, percent.
    void setZoom(int percent);

    QRect privacyRect() const;
    QRect secureRect() const;
    QRect unprovenRect() const;

signals:
    /// The user pressed what the strip says of the page's connection.
    void connectionPressed();
    /// The user wants the use of all of those to end.
    void endOfUseWanted();
    /// The user wants the page in its usual size.
    void usualZoomWanted();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QRect indicatorRect(int fromRight) const;
    void refreshAccessibleText();
    void paintIndicators(QPainter &painter) const;
    /// Pixels that the words of the open lock need; 0 where there is no room for them.
    int wordsWidth() const;
    void placeMarks();

    QString m_text;
    UseMark *m_use;
    ZoomMark *m_zoom;
    /// Where the marks begin, pixels.
    int m_marksLeft = 0;
    bool m_privacy = false;
    bool m_secure = false;
    bool m_unproven = false;
};
