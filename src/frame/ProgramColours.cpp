#include "ProgramColours.h"

#include <QApplication>
#include <QPalette>
#include <utility>

namespace {
bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QPalette darkColours()
{
    const QColor ground(45, 45, 48);
    const QColor field(30, 30, 32);
    const QColor ink(236, 236, 236);
    QPalette palette(ink, ground, QColor(80, 80, 84), QColor(20, 20, 22), QColor(60, 60, 64), ink,
                     Qt::white, field, ground);
    palette.setColor(QPalette::AlternateBase, QColor(38, 38, 41));
    palette.setColor(QPalette::Button, QColor(56, 56, 60));
    palette.setColor(QPalette::ButtonText, ink);
    palette.setColor(QPalette::ToolTipBase, field);
    palette.setColor(QPalette::ToolTipText, ink);
    palette.setColor(QPalette::Highlight, QColor(53, 116, 190));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(120, 180, 250));
    palette.setColor(QPalette::LinkVisited, QColor(196, 160, 240));
    palette.setColor(QPalette::PlaceholderText, QColor(165, 165, 168));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(130, 130, 133));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(80, 80, 84));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(160, 160, 163));
    return palette;
}
}

ProgramColours::ProgramColours(QObject *parent)
    : QObject(parent)
{
    connect(&m_desktop, &DesktopColours::changed, this, &ProgramColours::follow);
    follow();
}

void ProgramColours::follow()
{
    const bool wantsDark = m_desktop.wish() == DesktopColours::Wish::Dark;
    if (wantsDark && !m_isOurs && !isDark(QApplication::palette())) {
        m_isOurs = true;
        QApplication::setPalette(darkColours());
    } else if (!wantsDark && std::exchange(m_isOurs, false)) {
        // The toolkit's own again.
        QApplication::setPalette(QPalette());
    }
}
