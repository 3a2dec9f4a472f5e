#pragma once

#include "DesktopColours.h"

#include <QObject>

/// The colours of the program follow the desktop while it runs. Most desktops set the toolkit's
/// own; on those that only wish for dark ones the program brings its own.
class ProgramColours : public QObject {
    Q_OBJECT

public:
    explicit ProgramColours(QObject *parent = nullptr);

private:
    void follow();

    DesktopColours m_desktop;
    bool m_isOurs = false;
};
