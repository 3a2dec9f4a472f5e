#include "NotSaved.h"

#include "Language.h"
#include "MsgBox.h"
#include "WriteResult.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace NotSaved {

void tell(QWidget *owner, const QString &path, const WriteResult &result)
{
    QString message = languageText(u"NotSaved"_s, u"strNotSaved"_s, u"This could not be saved:"_s);
    message += u'\n' + QDir::toNativeSeparators(path);
    if (const QString why = result.text(); !why.isEmpty())
        message += u"\n\n"_s + why;
    MsgBox::inform(owner, message);
}

}
