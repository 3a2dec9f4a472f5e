#include "Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

bool clipboardHasText()
{
    const QClipboard *clipboard = QGuiApplication::clipboard();
    if (clipboard->ownsClipboard())
        return !clipboard->text().isEmpty();
    const QMimeData *data = clipboard->mimeData();
    return data && data->hasText();
}
