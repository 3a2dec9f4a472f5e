#include "QuestionAccessible.h"

#include "PageQuestionBox.h"

#include <QAccessibleWidget>

namespace {
QAccessibleInterface *make(const QString &, QObject *object)
{
    auto *question = qobject_cast<PageQuestionBox *>(object);
    return question ? new QAccessibleWidget(question, QAccessible::AlertMessage) : nullptr;
}
}

void QuestionAccessible::install()
{
    QAccessible::installFactory(make);
}
