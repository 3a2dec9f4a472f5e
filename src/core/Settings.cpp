#include "Settings.h"

#include "AppFolder.h"
#include "TextRules.h"

using namespace Qt::StringLiterals;

namespace Settings {

namespace {

QString keyOf(const char *key, int position)
{
    return position > 0 ? QString::fromLatin1(key) + QString::number(position)
                        : QString::fromLatin1(key);
}

template <typename Setting>
QString stored(const Setting &setting, const QString &missing, int position = 0)
{
    return readIni(QString::fromLatin1(setting.section), keyOf(setting.key, position), missing,
                   AppFolder::settingsPath());
}

template <typename Setting>
IniEntry entryOf(const Setting &setting, const QString &value, int position = 0)
{
    return {QString::fromLatin1(setting.section), keyOf(setting.key, position), value};
}

QString textOf(bool on, Form form)
{
    if (form == TrueFalse)
        return booleanText(on);
    return on ? u"1"_s : u"0"_s;
}

}

std::optional<bool> Switch::read(int position) const
{
    return textToBoolean(stored(*this, missing ? textOf(*missing, form) : QString(), position));
}

std::optional<double> Switch::readNumber() const
{
    return textToNumber(stored(*this, textOf(missing.value_or(false), form)));
}

IniEntry Switch::entry(bool on, int position) const
{
    return entryOf(*this, textOf(on, form), position);
}

WriteResult Switch::write(bool on) const
{
    return Settings::write({entry(on)});
}

std::optional<double> Number::read(int position) const
{
    return textToNumber(stored(*this, missing ? QString::number(*missing) : QString(), position));
}

IniEntry Number::entry(qint64 value, int position) const
{
    return entryOf(*this, QString::number(value), position);
}

WriteResult Number::write(qint64 value) const
{
    return Settings::write({entry(value)});
}

QString Text::read(int position) const
{
    return stored(*this, missing(), position);
}

IniEntry Text::entry(const QString &text, int position) const
{
    return entryOf(*this, text, position);
}

WriteResult write(const QList<IniEntry> &entries)
{
    return writeIniEntries(entries, AppFolder::settingsPath());
}

}
