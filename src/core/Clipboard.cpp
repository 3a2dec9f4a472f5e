#include "Clipboard.h"

#include "TextEncoding.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QStringDecoder>
#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {
/// Plain text, perhaps with its encoding behind a semicolon: some programs offer no other.
bool isPlainText(const QString &format)
{
    return format == "text/plain"_L1 || format.startsWith("text/plain;"_L1);
}

/// In the encoding that the format names, else in what the bytes look like.
QString decoded(const QByteArray &bytes, const QString &format)
{
    static const QRegularExpression charset(u"charset\\s*=\\s*[\"']?([\\w.:-]+)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QString name = charset.match(format).captured(1);
    QStringDecoder decoder(name.toLatin1().constData());
    return decoder.isValid() ? QString(decoder(bytes)) : TextEncoding::decode(bytes);
}

/// What the toolkit takes for text, else what a format with an encoding of its own holds.
QString textOf(const QMimeData &data)
{
    const QString text = data.text();
    if (!text.isEmpty())
        return text;
    const QStringList formats = data.formats();
    const auto plain = std::find_if(formats.cbegin(), formats.cend(), isPlainText);
    return plain == formats.cend() ? QString() : decoded(data.data(*plain), *plain);
}

std::optional<ClipboardKinds> &known()
{
    static std::optional<ClipboardKinds> kinds;
    return kinds;
}

/// Makes text plain before whatever has the focus pastes it by key.
class PasteKeys : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress && watched->isWindowType()
            && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Paste))
            makeClipboardTextPlain();
        return false;
    }
};

ClipboardKinds ask(const QClipboard &clipboard)
{
    const QMimeData *data = clipboard.mimeData();
    if (!data)
        return {};
    // One question for all: each is a wait of its own when nobody answers.
    const QStringList formats = data->formats();
    ClipboardKinds kinds;
    for (const QString &format : formats) {
        kinds.text |= isPlainText(format) || format == "text/uri-list"_L1;
        kinds.html |= format == "text/html"_L1;
        kinds.image |= format.startsWith("image/"_L1) || format == "application/x-qt-image"_L1;
    }
    return kinds;
}
}

void watchClipboard()
{
    static bool watches = false;
    if (std::exchange(watches, true))
        return;
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, qApp,
                     [] { known().reset(); });
    qApp->installEventFilter(new PasteKeys(qApp));
}

ClipboardKinds clipboardKinds()
{
    const QClipboard &clipboard = *QGuiApplication::clipboard();
    if (clipboard.ownsClipboard()) {
        ClipboardKinds kinds = ask(clipboard);
        kinds.text = clipboard.mimeData() && !textOf(*clipboard.mimeData()).isEmpty();
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
    if (!clipboardHasText())
        return {};
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    return data ? textOf(*data) : QString();
}

void makeClipboardTextPlain()
{
    const ClipboardKinds kinds = clipboardKinds();
    QClipboard *clipboard = QGuiApplication::clipboard();
    const QMimeData *data = clipboard->mimeData();
    // Since Qt 6.5 the toolkit finds the text in other formats by itself, as the engine does not.
    if (!kinds.text || kinds.html || kinds.image || !data || data->hasFormat(u"text/plain"_s)
        || data->hasUrls())
        return;
    const QString text = textOf(*data);
    if (!text.isEmpty())
        clipboard->setText(text);
}
