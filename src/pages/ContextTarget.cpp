#include "ContextTarget.h"

#include "AddressCompletion.h"
#include "OutsideRequests.h"
#include "RefusedAddress.h"

#include <QSet>
#include <QWebEngineContextMenuRequest>

using namespace Qt::StringLiterals;

namespace {
using Request = QWebEngineContextMenuRequest;

/// Characters; a link may be made of a whole page.
constexpr qsizetype longestLinkText = 10'000;
constexpr qsizetype mostSuggestions = 6;
constexpr qsizetype longestSuggestion = 100;

/// As the engine has it for a click: the web leads to no file, and nothing to what would be written
/// by the page under an address of nobody's.
bool leadsTo(const QUrl &page, const QUrl &url)
{
    static const QSet<QString> web{u"http"_s, u"https"_s};
    if (!url.isValid() || isRefusedAddress(url))
        return false;
    return web.contains(url.scheme()) || (url.isLocalFile() && page.isLocalFile());
}

ContextTarget::Link linkOf(const QUrl &page, const QUrl &link)
{
    if (link.isEmpty())
        return ContextTarget::Link::None;
    if (leadsTo(page, link))
        return ContextTarget::Link::Opens;
    const bool isScript = link.scheme() == "javascript"_L1;
    return isOutsideAddress(link) && !isScript ? ContextTarget::Link::Outside
                                               : ContextTarget::Link::Fixed;
}

ContextTarget::Media mediaOf(Request::MediaType type)
{
    switch (type) {
    case Request::MediaTypeImage:
        return ContextTarget::Media::Image;
    case Request::MediaTypeCanvas:
        return ContextTarget::Media::Canvas;
    case Request::MediaTypeVideo:
        return ContextTarget::Media::Video;
    case Request::MediaTypeAudio:
        return ContextTarget::Media::Audio;
    default:
        return ContextTarget::Media::None;
    }
}

void takeMedia(ContextTarget &target, const Request &request)
{
    target.media = mediaOf(request.mediaType());
    if (target.media == ContextTarget::Media::None)
        return;
    target.mediaUrl = request.mediaUrl();
    target.mediaOpens = leadsTo(target.page, target.mediaUrl);
    const Request::MediaFlags flags = request.mediaFlags();
    target.mediaFailed = flags.testFlag(Request::MediaInError);
    target.mediaPaused = flags.testFlag(Request::MediaPaused);
    target.mediaMuted = flags.testFlag(Request::MediaMuted);
    target.mediaRepeats = flags.testFlag(Request::MediaLoop);
    target.mediaHasSound = flags.testFlag(Request::MediaHasAudio);
    target.mediaHasControls = flags.testFlag(Request::MediaControls);
    target.mediaMayHaveControls = flags.testFlag(Request::MediaCanToggleControls);
    // What a server has is asked of that, also where the page could not show it.
    target.mediaSaves =
        target.mediaOpens || (flags.testFlag(Request::MediaCanSave) && !target.mediaUrl.isEmpty());
}

void takeField(ContextTarget &target, const Request &request)
{
    const Request::EditFlags flags = request.editFlags();
    target.canCopy = flags.testFlag(Request::CanCopy);
    target.isField = request.isContentEditable();
    if (!target.isField)
        return;
    target.isRichField = flags.testFlag(Request::CanEditRichly);
    target.canUndo = flags.testFlag(Request::CanUndo);
    target.canRedo = flags.testFlag(Request::CanRedo);
    target.canCut = flags.testFlag(Request::CanCut);
    target.canPaste = flags.testFlag(Request::CanPaste);
    target.canDelete = flags.testFlag(Request::CanDelete);
    target.canSelectAll = flags.testFlag(Request::CanSelectAll);
    target.misspelled = request.misspelledWord();
    target.suggestions = request.spellCheckerSuggestions().mid(0, mostSuggestions);
    target.suggestions.removeIf(
        [](const QString &word) { return word.isEmpty() || word.size() > longestSuggestion; });
}
}

ContextTarget contextTargetOf(const Request &request, const QUrl &page, const QPoint &place)
{
    ContextTarget target;
    target.place = place;
    target.page = page;
    target.link = request.linkUrl();
    target.linkIs = linkOf(page, target.link);
    target.linkText = request.linkText().left(longestLinkText).simplified();
    target.selection = request.selectedText();
    takeMedia(target, request);
    takeField(target, request);
    return target;
}
