#include "WaylandPointer.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {
constexpr int limit = 5000; // milliseconds
constexpr char manager[] = "zwlr_virtual_pointer_manager_v1";
constexpr quint32 leftButton = 0x110;

// The objects of the connection, numbered as they are made, and the requests made of them.
namespace Id {
constexpr quint32 display = 1, registry = 2, synced = 3, manager = 4, pointer = 5;
}
namespace Request {
constexpr quint16 sync = 0, getRegistry = 1, bind = 0, create = 0, moveTo = 1, button = 2,
                  frame = 4;
}

QByteArray number(quint32 value)
{
    return {reinterpret_cast<const char *>(&value), sizeof value};
}

QByteArray numbers(std::initializer_list<quint32> values)
{
    QByteArray all;
    for (quint32 value : values)
        all += number(value);
    return all;
}

/// With its length, its end and what fills it up to whole numbers.
QByteArray text(const QByteArray &value)
{
    QByteArray padded = value + '\0';
    padded.append((4 - padded.size() % 4) % 4, '\0');
    return number(quint32(value.size() + 1)) + padded;
}

quint32 numberAt(const QByteArray &bytes, qsizetype place)
{
    return qFromUnaligned<quint32>(bytes.constData() + place);
}
}

WaylandPointer::WaylandPointer()
{
    const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (name.isEmpty())
        return;
    m_compositor.connectToServer(qEnvironmentVariable("XDG_RUNTIME_DIR") + u'/' + name);
    if (!m_compositor.waitForConnected(limit))
        return;
    send(Id::display, Request::getRegistry, number(Id::registry));
    send(Id::display, Request::sync, number(Id::synced));
    const quint32 found = findManager();
    if (found == 0)
        return;
    send(Id::registry, Request::bind, number(found) + text(manager) + numbers({1, Id::manager}));
    send(Id::manager, Request::create, numbers({0, Id::pointer}));
    m_valid = true;
}

/// Its number among what the compositor offers; 0 where it does not.
quint32 WaylandPointer::findManager()
{
    quint32 found = 0;
    QByteArray bytes;
    while (m_compositor.waitForReadyRead(limit)) {
        bytes += m_compositor.readAll();
        while (bytes.size() >= 8) {
            const qsizetype size = numberAt(bytes, 4) >> 16;
            if (size < 8 || bytes.size() < size)
                break;
            const quint32 object = numberAt(bytes, 0);
            const QByteArray event = bytes.left(size);
            bytes.remove(0, size);
            if (object == Id::synced)
                return found;
            if (object == Id::registry && event.mid(16).startsWith(text(manager).mid(4)))
                found = numberAt(event, 8);
        }
    }
    return found;
}

void WaylandPointer::send(quint32 object, quint16 opcode, const QByteArray &arguments)
{
    const quint32 size = quint32(8 + arguments.size());
    m_compositor.write(numbers({object, size << 16 | opcode}) + arguments);
    m_compositor.flush();
}

void WaylandPointer::moveTo(QPoint place)
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    send(Id::pointer, Request::moveTo,
         numbers({++m_time, quint32(place.x()), quint32(place.y()), quint32(screen.width()),
                  quint32(screen.height())}));
    send(Id::pointer, Request::frame);
}

void WaylandPointer::button(bool down)
{
    send(Id::pointer, Request::button, numbers({++m_time, leftButton, down ? 1u : 0u}));
    send(Id::pointer, Request::frame);
}

void WaylandPointer::click(QPoint place)
{
    moveTo(place);
    press();
    release();
}
