#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// Text with a colour for each of its characters.
struct ColouredText {
    /// A line break is one line feed; every other code unit stands for itself.
    QString text;
    /// As long as `text`: for each code unit an index into `palette`.
    QByteArray colours;
    /// 0x00BBGGRR each. The first is the colour of text that was given none.
    QList<int> palette = {0};

    /// The palette index of a colour, which is added where it is missing.
    char indexOf(int colour);
};
