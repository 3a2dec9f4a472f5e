#include "Texts.h"

QString Text::operator()(const QString &shown) const
{
    return languageText(QString::fromLatin1(section), QString::fromLatin1(key), shown);
}
