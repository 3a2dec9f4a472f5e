#include "ExecForms.h"

#include "WebBrowser.h"

namespace ExecForms {

void two(WebBrowser &page, OleCmd command)
{
    page.execCommand(command, OleExecOpt::Default);
}

void four(WebBrowser &page, OleCmd command)
{
    const QVariant in = QVariant::fromValue<qint16>(0);
    QVariant out = QVariant::fromValue<qint16>(0);
    page.execCommand(command, OleExecOpt::Default, &in, &out);
}

}
