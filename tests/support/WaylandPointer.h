#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QPoint>
#include <QString>

/// A mouse of a test's own on the Wayland compositor that the program runs on. To the compositor it
/// is one more device, so what it does comes to the program as a user's acts do, serial numbers,
/// grabs and drags included. Only compositors with "zwlr_virtual_pointer_manager_v1" have it.
class WaylandPointer {
public:
    WaylandPointer();

    /// False when there is no such compositor.
    bool isValid() const { return m_valid; }
    /// To a place on the screen, in logical pixels.
    void moveTo(QPoint place);
    /// The left button.
    void press() { button(true); }
    void release() { button(false); }
    void click(QPoint place);

private:
    void send(quint32 object, quint16 opcode, const QByteArray &arguments = {});
    void button(bool down);
    quint32 findManager();

    QLocalSocket m_compositor;
    quint32 m_time = 0;
    bool m_valid = false;
};
