#include "LookUpCheck.h"

#include "LanguageListener.h"

#include <QFile>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool isStopped = false;

QSet<QString> shippedKeys()
{
    QFile file(QStringLiteral(ORVANE_SOURCE_DIR "/appdata/Languages/English.ini"));
    QSet<QString> result;
    if (!file.open(QIODevice::ReadOnly))
        return result;
    QString section;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u"\r\n"_s)) {
        if (line.startsWith(u'['))
            section = line.mid(1, line.size() - 2);
        else if (line.contains(u'='))
            result.insert(section + u'/' + line.section(u'=', 0, 0));
    }
    return result;
}

void check(const QString &section, const QString &key)
{
    static const QSet<QString> keys = shippedKeys();
    const QString name = section + u'/' + key;
    if (!keys.contains(name))
        QTest::qFail(qPrintable("looked up and in no language: "_L1 + name), __FILE__, __LINE__);
}

}

namespace LookUpCheck {

void start()
{
    if (!isStopped)
        setLanguageListener(check);
}

void stop()
{
    isStopped = true;
    setLanguageListener(nullptr);
}

}
