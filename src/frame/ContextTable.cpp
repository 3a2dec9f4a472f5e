#include "ContextTable.h"

#include "ContextTarget.h"

#include <algorithm>

namespace {

using enum MenuEntry::Kind;
using Link = ContextTarget::Link;
using Media = ContextTarget::Media;
using Target = ContextTarget;

constexpr auto always = [](const Target &) { return true; };
constexpr auto never = [](const Target &) { return false; };

constexpr auto misspelled = [](const Target &at) { return !at.misspelled.isEmpty(); };
constexpr auto unknownWord = [](const Target &at) {
    return !at.misspelled.isEmpty() && at.suggestions.isEmpty();
};

constexpr auto link = [](const Target &at) { return at.linkIs != Link::None; };
constexpr auto linkThatLeads = [](const Target &at) {
    return at.linkIs == Link::Opens || at.linkIs == Link::Outside;
};
constexpr auto linkToPage = [](const Target &at) { return at.linkIs == Link::Opens; };
constexpr auto linkWithText = [](const Target &at) {
    return at.linkIs != Link::None && !at.linkText.isEmpty();
};

constexpr auto image = [](const Target &at) { return at.media == Media::Image; };
constexpr auto imageWithAddress = [](const Target &at) {
    return at.media == Media::Image && !at.mediaUrl.isEmpty();
};
constexpr auto picture = [](const Target &at) {
    return at.media == Media::Image || at.media == Media::Canvas;
};
constexpr auto mediaOpens = [](const Target &at) { return at.mediaOpens; };

constexpr auto media = [](const Target &at) {
    return at.media == Media::Video || at.media == Media::Audio;
};
constexpr auto mediaWithAddress = [](const Target &at) {
    return media(at) && !at.mediaUrl.isEmpty();
};
constexpr auto stopped = [](const Target &at) { return media(at) && at.mediaPaused; };
constexpr auto playing = [](const Target &at) { return media(at) && !at.mediaPaused; };
constexpr auto plays = [](const Target &at) { return !at.mediaFailed; };
constexpr auto sounds = [](const Target &at) { return at.mediaHasSound; };
constexpr auto muted = [](const Target &at) { return at.mediaMuted; };
constexpr auto repeats = [](const Target &at) { return at.mediaRepeats; };
constexpr auto mayHaveControls = [](const Target &at) { return at.mediaMayHaveControls; };
constexpr auto hasControls = [](const Target &at) { return at.mediaHasControls; };
constexpr auto mediaSaves = [](const Target &at) { return at.mediaSaves; };

constexpr auto field = [](const Target &at) { return at.isField; };
constexpr auto richField = [](const Target &at) { return at.isRichField; };
constexpr auto undoes = [](const Target &at) { return at.canUndo; };
constexpr auto redoes = [](const Target &at) { return at.canRedo; };
constexpr auto cuts = [](const Target &at) { return at.canCut; };
constexpr auto copies = [](const Target &at) { return at.canCopy; };
constexpr auto pastes = [](const Target &at) { return at.canPaste; };
constexpr auto deletes = [](const Target &at) { return at.canDelete; };
constexpr auto selects = [](const Target &at) { return at.canSelectAll; };

constexpr auto text = [](const Target &at) {
    return std::any_of(at.selection.cbegin(), at.selection.cend(),
                       [](QChar each) { return !each.isSpace(); });
};
constexpr auto textOfPage = [](const Target &at) { return text(at) && !at.isField; };

constexpr auto page = [](const Target &at) {
    return at.linkIs == Link::None && at.media == Media::None && !at.isField && !text(at);
};
constexpr auto hasBack = [](const Target &at) { return at.canGoBack; };
constexpr auto hasForward = [](const Target &at) { return at.canGoForward; };

// clang-format off
constexpr ContextEntry table[] = {
    {{0, Item, "mnuFieldSuggestion", "%1"}, misspelled},
    {{0, Item, "mnuFieldNoSuggestion", "No Suggestions"}, unknownWord, never},
    {{0, Separator, "mnuContextBar0", "-"}},

    {{0, Item, "mnuLinkOpen", "Open &Link"}, linkThatLeads},
    {{0, Item, "mnuLinkNew", "Open in &New Window"}, linkToPage},
    {{0, Item, "mnuLinkBehind", "Open &Behind"}, linkToPage},
    {{0, Item, "mnuLinkPrivate", "Open in Private &Window"}, linkToPage},
    {{0, Item, "mnuLinkWindow", "Open in L&ink Window"}, linkToPage},
    {{0, Separator, "mnuContextBar1", "-"}},
    {{0, Item, "mnuLinkSave", "Sa&ve Link As..."}, linkToPage},
    {{0, Item, "mnuLinkFavorite", "Add to &Favorites..."}, linkToPage},
    {{0, Item, "mnuLinkCopy", "Copy Link Addr&ess"}, link},
    {{0, Item, "mnuLinkCopyText", "Copy Lin&k Text"}, linkWithText},
    {{0, Separator, "mnuContextBar2", "-"}},

    {{0, Item, "mnuImageOpen", "Open I&mage"}, image, mediaOpens},
    {{0, Item, "mnuImageSave", "Save Ima&ge As..."}, imageWithAddress},
    {{0, Item, "mnuImageCopy", "Cop&y Image"}, picture},
    {{0, Item, "mnuImageCopyAddress", "Copy Image Address"}, imageWithAddress},
    {{0, Separator, "mnuContextBar3", "-"}},

    {{0, Item, "mnuMediaPlay", "Pla&y"}, stopped, plays},
    {{0, Item, "mnuMediaPause", "Pause"}, playing, plays},
    {{0, Check, "mnuMediaMute", "&Mute"}, media, sounds, muted},
    {{0, Check, "mnuMediaRepeat", "Repeat"}, media, plays, repeats},
    {{0, Check, "mnuMediaControls", "S&how Controls"}, media, mayHaveControls, hasControls},
    {{0, Item, "mnuMediaSave", "Save Media As..."}, mediaWithAddress, mediaSaves},
    {{0, Item, "mnuMediaCopyAddress", "Copy Media Address"}, mediaWithAddress},
    {{0, Separator, "mnuContextBar4", "-"}},

    {{0, Item, "mnuFieldUndo", "&Undo"}, field, undoes},
    {{0, Item, "mnuFieldRedo", "&Redo"}, field, redoes},
    {{0, Separator, "mnuContextBar5", "-"}},
    {{0, Item, "mnuFieldCut", "Cu&t"}, field, cuts},
    {{0, Item, "mnuFieldCopy", "&Copy"}, field, copies},
    {{0, Item, "mnuFieldPaste", "&Paste"}, field, pastes},
    {{0, Item, "mnuFieldPasteText", "Paste as Te&xt"}, richField, pastes},
    {{0, Item, "mnuFieldDelete", "&Delete"}, field, deletes},
    {{0, Separator, "mnuContextBar6", "-"}},
    {{0, Item, "mnuFieldSelectAll", "Select &All"}, field, selects},
    {{0, Separator, "mnuContextBar7", "-"}},

    {{0, Item, "mnuTextCopy", "&Copy"}, textOfPage, copies},
    {{0, Item, "mnuTextSearch", "&Search %1 for \"%2\""}, text},
    {{0, Item, "mnuTextOpen", "&Open %1"}, text},
    {{0, Item, "mnuTextQuote", "&Quote in Source Window"}, textOfPage},
    {{0, Separator, "mnuContextBar8", "-"}},

    {{0, Item, "mnuPageBack", "&Back", {.same = "mnuNavigationBackwards"}}, page, hasBack},
    {{0, Item, "mnuPageForward", "&Forward", {.same = "mnuNavigationForwards"}}, page, hasForward},
    {{0, Item, "mnuPageReload", "&Reload", {.same = "mnuNavigationRefresh"}}, page},
    {{0, Separator, "mnuContextBar9", "-"}},
    {{0, Item, "mnuPageSave", "Save Page &As...", {.same = "mnuFileSaveAs"}}, page},
    {{0, Item, "mnuPagePrint", "&Print...", {.same = "mnuFilePrint"}}, page},
    {{0, Separator, "mnuContextBar10", "-"}},
    {{0, Item, "mnuPageSource", "&Source", {.same = "mnuViewDocumentHTML"}}, page},
    {{0, Item, "mnuPageSourceCame", "Source As It Came", {.same = "mnuViewSource"}}, page},
    {{0, Item, "mnuPageTools", "D&eveloper Tools", {.same = "mnuToolsDeveloper"}}, page},
    {{0, Check, "mnuPageLinkWindow", "Use as &Link Window"}, page, always},
};
// clang-format on

}

std::span<const ContextEntry> contextTable()
{
    return table;
}
