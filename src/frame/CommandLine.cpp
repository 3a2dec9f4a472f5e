#include "CommandLine.h"

#include "DraggedUrls.h"
#include "Language.h"
#include "ProgramInfo.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView help = "--help";
constexpr QByteArrayView version = "--version";
/// For the options' names, in characters.
constexpr int column = 12;

QString text(const QString &key, const QString &english)
{
    return languageText(u"CommandLine"_s, key, english);
}

QString usage(const QString &program)
{
    const QString call =
        program + " ["_L1 + text(u"strArguments"_s, u"ADDRESS | FILE | PROFILE.orp"_s) + u']';
    const auto option = [](const QString &name, const QString &meaning) {
        return "  "_L1 + name.leftJustified(column) + meaning + u'\n';
    };
    return text(u"strUsage"_s, u"Usage: %1"_s).replace("%1"_L1, call) + "\n\n"_L1
        + text(u"strOpens"_s,
               u"Opens the address, the file or every address of the profile; without any, the "
               u"home page."_s)
        + "\n\n"_L1 + option(QString::fromLatin1(help), text(u"strHelp"_s, u"Shows this text"_s))
        + option(QString::fromLatin1(version), text(u"strVersion"_s, u"Shows the version"_s));
}

}

QString unquoted(const QString &commandLine)
{
    QString text = commandLine;
    if (text.startsWith(u'"'))
        text.remove(0, 1);
    if (text.endsWith(u'"'))
        text.chop(1);
    return text;
}

QString startAddress(const QString &text, const QString &folder)
{
    const QUrl address(text);
    if (address.isLocalFile() && isProfileName(address.toLocalFile()))
        return address.toLocalFile();
    const QFileInfo file(QDir(folder), text);
    if (text.isEmpty() || isProfileName(text) || !file.isFile())
        return text;
    // Encoded: its name may hold what means something in an address.
    return QUrl::fromLocalFile(file.absoluteFilePath()).toString(QUrl::FullyEncoded);
}

bool asksForWords(QByteArrayView argument)
{
    return argument == help || argument == version;
}

QString commandLineAnswer(QByteArrayView argument, const QString &program)
{
    if (argument == version)
        return ProgramInfo::title() + u' ' + ProgramInfo::version() + u'\n';
    return usage(program);
}
