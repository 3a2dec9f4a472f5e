#include "ExitQuestion.h"

#include "MsgBox.h"
#include "ProgramInfo.h"
#include "Settings.h"
#include "Texts.h"

bool mayExit(QWidget *frame)
{
    if (!Settings::askOnExit.isOne())
        return true;
    const QString text = Texts<"frmMain">::at<"alertExit", "Are you sure you wish to exit">();
    return MsgBox::askAndWait(frame, text + u' ' + ProgramInfo::title() + u'?')
        == MsgBox::Answer::Yes;
}
