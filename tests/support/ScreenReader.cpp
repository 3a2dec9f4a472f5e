#include "ScreenReader.h"

#include <QCoreApplication>
#include <QRect>
#include <QStringList>

namespace {
constexpr int deepest = 100;
}

ScreenReader::~ScreenReader()
{
    QAccessible::setActive(false);
}

QString ScreenReader::read(QObject *top)
{
    // An engine that has started meanwhile is to know, too.
    QAccessible::setActive(true);
    m_texts.clear();
    m_met = 0;
    // A reader's questions come as events, behind those that are waiting already.
    QCoreApplication::sendPostedEvents();
    readAgain();
    note(QAccessible::queryAccessibleInterface(top), 0);
    return m_texts.join(u'\n');
}

void ScreenReader::readAgain()
{
    m_known.removeIf([](QAccessible::Id id) { return !QAccessible::accessibleInterface(id); });
    const QSet<QAccessible::Id> known = m_known;
    for (const QAccessible::Id id : known) {
        QAccessibleInterface *face = QAccessible::accessibleInterface(id);
        if (!face || !face->isValid())
            continue;
        told(face);
        // A screen reader finds the way up from what has changed.
        for (int i = 0; face && face->isValid() && i < deepest; ++i)
            face = face->parent();
    }
}

void ScreenReader::note(QAccessibleInterface *face, int depth)
{
    if (!face || !face->isValid() || depth > deepest)
        return;
    ++m_met;
    m_known.insert(QAccessible::uniqueId(face));
    const QString text = told(face);
    if (!text.isEmpty())
        m_texts += text;
    const int count = face->childCount();
    for (int i = 0; i < count; ++i)
        note(face->child(i), depth + 1);
}

QString ScreenReader::told(QAccessibleInterface *face)
{
    face->role();
    face->state();
    face->rect();
    face->text(QAccessible::Description);
    return face->text(QAccessible::Name);
}
