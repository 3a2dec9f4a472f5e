#include "KeyTable.h"

#include "Texts.h"

namespace {

constexpr Texts<"frmKeys"> texts;
constexpr const Text *window = &texts.at<"cmdWindow", "Window %1">;

// clang-format off
constexpr PlainCommand commands[] = {
    {"cmdBlankWindow", &texts.at<"cmdBlankWindow", "New blank window, ready for an address">,
     "mnuFile"},
    {"cmdFindNext", &texts.at<"strNextHit", "Next hit">, "mnuEdit"},
    {"cmdFindPrevious", &texts.at<"strPreviousHit", "Previous hit">, "mnuEdit"},
    {"cmdAddress", &texts.at<"cmdAddress", "Address bar">, "mnuNavigation"},
    {"cmdWindow1", window, "mnuWindow", 1},
    {"cmdWindow2", window, "mnuWindow", 2},
    {"cmdWindow3", window, "mnuWindow", 3},
    {"cmdWindow4", window, "mnuWindow", 4},
    {"cmdWindow5", window, "mnuWindow", 5},
    {"cmdWindow6", window, "mnuWindow", 6},
    {"cmdWindow7", window, "mnuWindow", 7},
    {"cmdWindow8", window, "mnuWindow", 8},
    {"cmdLastWindow", &texts.at<"cmdLastWindow", "Last window">, "mnuWindow"},
};

constexpr KeyEntry keys[] = {
    {"Ctrl+T", "cmdBlankWindow"},
    {"Ctrl+W", "mnuFileClose"},
    {"Ctrl+U", "mnuViewDocumentHTML"},
    {"Ctrl+=", "mnuViewZoomIn"},
    {"Ctrl+G", "cmdFindNext"},
    {"Ctrl+Shift+G", "cmdFindPrevious"},
    {"Alt+Left", "mnuNavigationBackwards"},
    {"Alt+Right", "mnuNavigationForwards"},
    {"Ctrl+L", "cmdAddress"},
    {"Alt+D", "cmdAddress"},
    {"Ctrl+1", "cmdWindow1"},
    {"Ctrl+2", "cmdWindow2"},
    {"Ctrl+3", "cmdWindow3"},
    {"Ctrl+4", "cmdWindow4"},
    {"Ctrl+5", "cmdWindow5"},
    {"Ctrl+6", "cmdWindow6"},
    {"Ctrl+7", "cmdWindow7"},
    {"Ctrl+8", "cmdWindow8"},
    {"Ctrl+9", "cmdLastWindow"},
};
// clang-format on

}

std::span<const PlainCommand> plainCommands()
{
    return commands;
}

std::span<const KeyEntry> keyTable()
{
    return keys;
}
