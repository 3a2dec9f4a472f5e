#pragma once

#include <QAccessible>
#include <QSet>
#include <QString>

/// Reads the program as a screen reader does: everything it is shown, and again what it was shown
/// before, by number, as long as the program knows it.
class ScreenReader {
public:
    ScreenReader() = default;
    ~ScreenReader();
    Q_DISABLE_COPY_MOVE(ScreenReader)

    /// Reads all that there is below `top`; the texts, one per line.
    QString read(QObject *top);
    /// How many things the last reading came across.
    int met() const { return m_met; }

private:
    void readAgain();
    void note(QAccessibleInterface *face, int depth);
    static QString told(QAccessibleInterface *face);

    QSet<QAccessible::Id> m_known;
    QStringList m_texts;
    int m_met = 0;
};
