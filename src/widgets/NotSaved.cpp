#include "NotSaved.h"

#include "MsgBox.h"
#include "Texts.h"
#include "WriteResult.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace NotSaved {

void tell(QWidget *owner, const QString &path, const WriteResult &result)
{
    QString message = Texts<"NotSaved">::at<"strNotSaved", "This could not be saved:">();
    message += u'\n' + QDir::toNativeSeparators(path);
    if (const QString why = result.text(); !why.isEmpty())
        message += u"\n\n"_s + why;
    MsgBox::inform(owner, message);
}

}
