#pragma once

#include <QObject>

class QWidget;

/// Shows the caption of a window as it stands. Qt takes "[*]" in it for the place of a mark of
/// unsaved changes and leaves it out, though a page's title or address may well have it. What
/// `windowTitle()` says stays the whole caption.
class PlainCaption : public QObject {
public:
    /// For `window` with a frame of the desktop's. Becomes its child.
    explicit PlainCaption(QWidget &window);

    /// Whether Qt would show another caption than `text`.
    static bool isNeededFor(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &m_window;
};
