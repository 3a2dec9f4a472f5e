#include "FieldEdit.h"

#include "Clipboard.h"

#include <QLineEdit>

namespace FieldEdit {

QLineEdit *focused(const QWidget &window)
{
    QWidget *control = window.focusWidget();
    if (auto *field = qobject_cast<QLineEdit *>(control))
        return field;
    auto *field = control ? control->findChild<QLineEdit *>() : nullptr;
    return field && field->focusProxy() == control ? field : nullptr;
}

void cut(QLineEdit &field)
{
    // The toolkit's own takes the selection out of any line.
    if (!field.isReadOnly())
        field.cut();
}

void paste(QLineEdit &field)
{
    if (!field.isReadOnly())
        field.insert(clipboardText());
}

}
