#include "DefaultBrowserChoice.h"

#include "Captioned.h"
#include "DefaultBrowser.h"
#include "MainWindow.h"
#include "MsgBox.h"
#include "Settings.h"
#include "Texts.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"DefaultBrowser"> texts;

void tellFailure(QWidget *owner)
{
    MsgBox::inform(owner,
                   texts.at<"strFailed",
                            "The desktop did not take Orvane for its browser. Its own settings may "
                            "have a place to choose it.">());
}

void ask(MainWindow &frame)
{
    // Also if the program ends before there is an answer.
    if (!Settings::defaultBrowserAsked.write(true))
        return;
    MsgBox::askLate(&frame,
                    texts.at<"strAsk",
                             "Shall Orvane open the web addresses of other programs? You are asked "
                             "this once; Tools > Options can change it at any time.">(),
                    [&frame](MsgBox::Answer answer) {
                        if (answer != MsgBox::Answer::Yes)
                            return;
                        DefaultBrowser::make(&frame, [&frame](bool isDone) {
                            if (!isDone)
                                tellFailure(&frame);
                        });
                    });
}
}

namespace DefaultBrowserChoice {

void askOnce(MainWindow &frame)
{
    if (Settings::defaultBrowserAsked.read().value_or(true))
        return;
    DefaultBrowser::find(&frame, [&frame](DefaultBrowser::Is is) {
        if (is == DefaultBrowser::Is::Another)
            ask(frame);
    });
}

QPushButton *makeButton()
{
    auto *button = captionedInEnglish<QPushButton>(
        Texts<"frmOptions">::at<"cmdDefaultBrowser", "&Make Orvane The Default Browser">);
    button->setAutoDefault(false);
    button->setEnabled(false);
    const auto show = [button](DefaultBrowser::Is is) {
        button->setEnabled(is == DefaultBrowser::Is::Another);
        if (is == DefaultBrowser::Is::Orvane)
            button->setToolTip(texts.at<"strIs", "Orvane is the default browser.">());
    };
    DefaultBrowser::find(button, show);
    QObject::connect(button, &QPushButton::clicked, button, [button, show] {
        button->setEnabled(false);
        DefaultBrowser::make(button, [button, show](bool isDone) {
            if (!isDone)
                tellFailure(button->window());
            DefaultBrowser::find(button, show);
        });
    });
    return button;
}

}
