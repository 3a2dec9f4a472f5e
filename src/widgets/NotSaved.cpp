#include "NotSaved.h"

#include "MsgBox.h"
#include "Texts.h"
#include "WriteResult.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace NotSaved {

QString reason(const WriteResult &result)
{
    using Failure = WriteResult::Failure;
    constexpr Texts<"WriteResult"> texts;
    switch (result.failure()) {
    case Failure::NoRoom:
        return texts.at<"strNoRoom", "There is no room left on the disk.">();
    case Failure::NotAllowed:
        return texts.at<"strNotAllowed", "The file or its folder may not be changed.">();
    case Failure::FolderMissing:
        return texts.at<"strFolderMissing", "The folder is missing.">();
    case Failure::Taken:
        return texts.at<"strTaken", "There is a file of that name already.">();
    case Failure::Busy:
        return texts.at<"strBusy", "Another program keeps the folder locked.">();
    case Failure::Unreadable:
        return texts.at<"strUnreadable", "What is there in its place cannot be read.">();
    case Failure::SixteenBits:
        return texts
            .at<"strSixteenBits", "The file there is UTF-16 text, which is left as it is.">();
    case Failure::Refused:
    case Failure::Other:
        break;
    }
    return result.detail();
}

void tell(QWidget *owner, const QString &path, const WriteResult &result)
{
    QString message = Texts<"NotSaved">::at<"strNotSaved", "This could not be saved:">();
    message += u'\n' + QDir::toNativeSeparators(path);
    if (const QString why = reason(result); !why.isEmpty())
        message += u"\n\n"_s + why;
    MsgBox::inform(owner, message);
}

}
