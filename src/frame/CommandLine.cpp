#include "CommandLine.h"

#include "DraggedUrls.h"
#include "EngineAge.h"
#include "ProgramInfo.h"
#include "Texts.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView help = "--help";
constexpr QByteArrayView version = "--version";
constexpr auto inPrivate = "--private"_L1;
/// For the options' names, in characters.
constexpr int column = 12;

constexpr Texts<"CommandLine"> texts;

QString usage(const QString &program)
{
    const QString call = program + " ["_L1 + inPrivate + "] ["_L1
        + texts.at<"strArguments", "ADDRESS | FILE | PROFILE.orp">() + u']';
    const auto option = [](const QString &name, const QString &meaning) {
        return "  "_L1 + name.leftJustified(column) + meaning + u'\n';
    };
    return texts.at<"strUsage", "Usage: %1">().replace("%1"_L1, call) + "\n\n"_L1
        + texts.at<"strOpens",
                   "Opens the address, the file or every address of the profile; without any, the "
                   "home page.">()
        + u'\n' + texts.at<"strOpensThere", "Where Orvane runs already, it is opened there.">()
        + "\n\n"_L1 + option(inPrivate, texts.at<"strPrivate", "Opens it in a private window">())
        + option(QString::fromLatin1(help), texts.at<"strHelp", "Shows this text">())
        + option(QString::fromLatin1(version), texts.at<"strVersion", "Shows the version">());
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

QString startAddressElsewhere(const QString &text, const QString &folder)
{
    const QString address = startAddress(text, folder);
    const QFileInfo profile(QDir(folder), address);
    return isProfileName(address) && profile.isFile() ? profile.absoluteFilePath() : address;
}

bool asksForWords(QByteArrayView argument)
{
    return argument == help || argument == version;
}

QString commandLineAnswer(QByteArrayView argument, const QString &program)
{
    if (argument == version)
        return ProgramInfo::title() + u' ' + ProgramInfo::version() + u'\n'
            + EngineAge::versions().join(", "_L1) + u'\n';
    return usage(program);
}
