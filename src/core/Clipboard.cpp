#include "Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <optional>

using namespace Qt::StringLiterals;

namespace {
std::optional<ClipboardKinds> &known()
{
    static std::optional<ClipboardKinds> kinds;
    return kinds;
}

ClipboardKinds ask(const QClipboard &clipboard)
{
    const QMimeData *data = clipboard.mimeData();
    if (!data)
        return {};
    // One question for all: each is a wait of its own when nobody answers.
    const QStringList formats = data->formats();
    ClipboardKinds kinds;
    for (const QString &format : formats) {
        kinds.text |= format == "text/plain"_L1 || format == "text/uri-list"_L1;
        kinds.html |= format == "text/html"_L1;
        kinds.image |= format.startsWith("image/"_L1) || format == "application/x-qt-image"_L1;
    }
    return kinds;
}
}

void watchClipboard()
{
    static bool watches = false;
    if (!std::exchange(watches, true))
        QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, qApp,
                         [] { known().reset(); });
}

ClipboardKinds clipboardKinds()
{
    const QClipboard &clipboard = *QGuiApplication::clipboard();
    if (clipboard.ownsClipboard()) {
        ClipboardKinds kinds = ask(clipboard);
        kinds.text = !clipboard.text().isEmpty();
        return kinds;
    }
    watchClipboard();
    if (!known())
        known() = ask(clipboard);
    return *known();
}

bool clipboardHasText()
{
    return clipboardKinds().text;
}

bool clipboardMayHaveText()
{
    if (QGuiApplication::clipboard()->ownsClipboard())
        return clipboardHasText();
    return !known() || known()->text;
}

QString clipboardText()
{
    return clipboardHasText() ? QGuiApplication::clipboard()->text() : QString();
}
