#include "OptionControls.h"

#include <QLabel>

#include "Texts.h"

using namespace Qt::StringLiterals;

namespace OptionControls {

void name(QLabel &label, QWidget &control)
{
    label.setBuddy(&control);
    QString plain = label.text();
    // Captions without Latin letters have their access key in parentheses.
    const qsizetype mark = plain.indexOf("(&"_L1);
    if (mark >= 0)
        plain.remove(mark, 4);
    control.setAccessibleName(plain.remove(u'&').remove(u':').trimmed());
}

QLabel *nextStartNote(QWidget &control)
{
    const QString text =
        Texts<"frmInternetOptions">::at<"strNextStart", "from the next start on">();
    auto *note = new QLabel(text);
    note->setObjectName("lblNextStart"_L1);
    note->setForegroundRole(QPalette::PlaceholderText);
    control.setAccessibleDescription(text);
    return note;
}

}
