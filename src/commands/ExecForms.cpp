#include "ExecForms.h"

#include "WebBrowser.h"

namespace ExecForms {

bool two(WebBrowser &page, OleCmd command)
{
    return page.execCommand(command, OleExecOpt::Default);
}

bool four(WebBrowser &page, OleCmd command)
{
    const QVariant in = QVariant::fromValue<qint16>(0);
    QVariant out = QVariant::fromValue<qint16>(0);
    return page.execCommand(command, OleExecOpt::Default, &in, &out);
}

}
