#include "ControlPanel.h"

#include "Log.h"
#include "StartProgram.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {
QString command()
{
    const QString named = QStandardPaths::findExecutable(u"rundll32.exe"_s);
    return named.isEmpty() ? QStandardPaths::findExecutable(u"rundll32"_s) : named;
}
}

namespace ControlPanel {

bool open(int page)
{
    const QString program = command();
    if (program.isEmpty())
        return false;
    const auto failure = startProgram(
        program, {u"shell32.dll,Control_RunDLL"_s, u"inetcpl.cpl,,"_s + QString::number(page)});
    if (failure)
        qCWarning(lcFrame) << "cannot start" << program << failure->text;
    return !failure;
}

}
