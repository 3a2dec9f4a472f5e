#pragma once

#include "Download.h"
#include "IniText.h"

#include <optional>

/// A download as a section of the list's file. Anybody may have written there: what is read is
/// harmless, whatever it says.
namespace DownloadRecord {
/// Whether a section of that name is a download's.
bool isId(QByteArrayView section);

/// Of a section in UTF-8; nothing where no name, folder or address can be made of what it says.
/// Name and stage have the shapes that the program gives to them; that they are there, or are this
/// download's, is not said.
std::optional<Download> read(const IniText::Section &section);

struct Line {
    QByteArrayView key;
    QString value;
};
/// All that is kept, the bytes come so far as they are known now.
QList<Line> lines(const Download &download);
}
