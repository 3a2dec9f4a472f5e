#include "PlaceKeys.h"

#include "BandFocus.h"
#include "Texts.h"

namespace {

constexpr Texts<"frmKeys"> texts;
constexpr Texts<"frmDownloads"> downloads;
constexpr Texts<"frmVisits"> visits;
constexpr Texts<"frmCosts"> costs;
constexpr Texts<"frmSource"> source;
constexpr Texts<"frmPrintPreview"> preview;

constexpr const Text *page = &texts.at<"strPage", "Page">;
constexpr const Text *fields = &texts.at<"strFields", "Fields">;
constexpr const Text *address = &texts.at<"cmdAddress", "Address bar">;
constexpr const Text *bars = &texts.at<"strBars", "Bars">;
constexpr const Text *tabs = &texts.at<"strTabs", "Tab strip">;
constexpr const Text *findBar = &texts.at<"strFindBar", "Find bar">;
constexpr const Text *questions = &texts.at<"strQuestions", "Questions of pages">;
constexpr const Text *list = &downloads.at<"Caption", "Downloads">;
constexpr const Text *visited = &visits.at<"Caption", "Visited Pages">;
constexpr const Text *cost = &costs.at<"Caption", "What Windows Cost">;
constexpr const Text *html = &source.at<"Caption", "Document HTML">;
constexpr const Text *sheets = &preview.at<"Caption", "Print Preview">;
constexpr const Text *nextHit = &texts.at<"strNextHit", "Next hit">;
constexpr const Text *previousHit = &texts.at<"strPreviousHit", "Previous hit">;

// clang-format off
constexpr PlaceKeys all[] = {
    {page, "Backspace", &texts.at<"strBack", "Back, outside of fields">},
    {page, "Esc", &texts.at<"strEndFullScreen", "Leave full screen">},
    {page, "Shift+F10 Menu", &texts.at<"strPageMenu", "Menu of what has the keyboard">},

    {fields, "Ctrl+Z", &texts.at<"strUndo", "Undo">},
    {fields, "Ctrl+Shift+Z Ctrl+Y", &texts.at<"strRedo", "Redo">},
    {fields, "Ctrl+Left Ctrl+Right", &texts.at<"strWords", "Word by word">},
    {fields, "Ctrl+Backspace Ctrl+Del", &texts.at<"strDeleteWord", "Delete a word">},
    {fields, "Home End", &texts.at<"strEnds", "To the start or the end">},
    {fields, "Shift+Del", &texts.at<"strOldCut", "Cut, in a field of a page">},
    {fields, "Ctrl+Ins", &texts.at<"strOldCopy", "Copy, in a field of a page">},

    {address, "Return", &texts.at<"strOpenAddress", "Open what is typed">},
    {address, "Esc", &texts.at<"strPageAddress", "Bring the address of the page back">},
    {address, "Up Down Alt+Down", &texts.at<"strDropList", "Drop the list">},

    {bars, BandFocus::nextKey,
     &texts.at<"strNextPlace", "To the next bar, side bar, question or the page">, true},
    {bars, BandFocus::previousKey, &texts.at<"strPreviousPlace", "To the one before">, true},
    {bars, "Left Right Up Down", &texts.at<"strMoveBand", "Move the band, at its gripper">},
    {bars, "Shift+Left Shift+Right",
     &texts.at<"strBandEdge", "Move the edge of the band, at its gripper">},
    {bars, "Space Return",
     &texts.at<"strBandWide", "Make the band wide or narrow, at its gripper">},

    {tabs, "Left Right Up Down Home End", &texts.at<"strWalkTabs", "To another tab">},
    {tabs, "Space Return", &texts.at<"strPressTab", "Bring its window to the front">},
    {tabs, "Shift+Left Shift+Right", &texts.at<"strMoveTab", "Move the tab">},
    {tabs, "Menu", &texts.at<"strListWindows", "List all windows">},

    {findBar, "Return", nextHit},
    {findBar, "Shift+Return", previousHit},
    {findBar, "Esc", &texts.at<"strCloseBar", "Close the bar">},

    {questions, "Return", &texts.at<"strPressButton", "Press the button">},
    {questions, "Esc", &texts.at<"strAnswerNo", "Answer no">},

    {list, "Return", &downloads.at<"cmdOpen", "Open">},
    {list, "Space", &downloads.at<"cmdPause", "Pause">},
    {list, "Del", &downloads.at<"cmdRemove", "Remove From List">},

    {visited, "Return", &visits.at<"cmdOpen", "Open">},
    {visited, "Ctrl+Return", &visits.at<"cmdNewWindow", "Open in New Window">},
    {visited, "Del", &visits.at<"cmdDelete", "Delete Page">},

    {cost, "Return", &costs.at<"cmdGoTo", "&Go To">},
    {cost, "Del", &costs.at<"cmdClose", "&Close">},

    {html, "Ctrl+O", &texts.at<"strOpenFile", "Open a file">},
    {html, "Ctrl+S", &texts.at<"strSaveFile", "Save to a file">},
    {html, "Ctrl+F", &source.at<"cmdFind", "Find">},
    {html, "F3", nextHit},
    {html, "Shift+F3", previousHit},
    {html, "Ctrl+G", &source.at<"cmdGoToLine", "Go To Line">},
    {html, "Alt+Z", &source.at<"cmdWrap", "Wrap">},
    {html, "Ctrl+W", &texts.at<"strCloseWindow", "Close the window">},

    {sheets, "Ctrl+PgDown", &preview.at<"cmdNext", "&Next">},
    {sheets, "Ctrl+PgUp", &preview.at<"cmdPrevious", "P&revious">},
    {sheets, "Ctrl+P", &preview.at<"cmdPrint", "&Print...">},
    {sheets, "Esc", &preview.at<"cmdClose", "&Close">},
};
// clang-format on

}

std::span<const PlaceKeys> placeKeys()
{
    return all;
}
