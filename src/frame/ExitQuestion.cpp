#include "ExitQuestion.h"

#include "Language.h"
#include "MsgBox.h"
#include "ProgramInfo.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

bool mayExit(QWidget *frame)
{
    if (!Settings::askOnExit.isOne())
        return true;
    const QString text =
        languageText(u"frmMain"_s, u"alertExit"_s, u"Are you sure you wish to exit"_s);
    return MsgBox::askAndWait(frame, text + u' ' + ProgramInfo::title() + u'?')
        == MsgBox::Answer::Yes;
}
