#pragma once

#include <QObject>

class QDBusVariant;

/// What the desktop wishes programs to look like, told by the service for its settings, as it is
/// now and each time it changes.
class DesktopColours : public QObject {
    Q_OBJECT

public:
    enum class Wish { None, Dark, Light };

    /// Asks a service that runs, and waits for a moment, so that nothing comes up in other colours
    /// first and the engine can be told. An answer that takes longer counts when it comes.
    explicit DesktopColours(QObject *parent = nullptr);

    Wish wish() const { return m_wish; }

signals:
    void changed();

private slots:
    void noteSetting(const QString &group, const QString &key, const QDBusVariant &value);

    // NOLINTNEXTLINE(readability-redundant-access-specifiers): what follows are no slots
private:
    bool askAtOnce();
    void ask();
    void take(const QVariant &value);

    Wish m_wish = Wish::None;
    bool m_isTold = false;
};
