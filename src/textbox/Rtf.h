#pragma once

#include "ColouredText.h"

/// The rich text the source editor speaks: paragraphs, and a colour for each character.
namespace Rtf {

/// Whether `document` is rich text at all and not plain text.
bool isRtf(QStringView document);

/// Reads text and colours; fonts, sizes and what else a document may hold are passed over. A
/// document inside the document has a colour table of its own. Characters stand for themselves
/// or are written \'hh or \uN. In a colour table an empty entry, other than a leading one, is no
/// entry. Of documents made here two things are known: their tail is no line of the text, and a
/// blank that stands after two colour switches in a row, the first without its delimiter, was that
/// delimiter.
ColouredText read(QStringView document);

/// The document that `read` gets `text` back from.
QString write(QStringView text, QByteArrayView colours, const QList<int> &palette);

}
