#include "RunnableFile.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QSet>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Kinds of files that are run; so is what is derived from one of them, as most scripts are.
constexpr QLatin1StringView runnableTypes[] = {
    "application/x-executable"_L1,
    "application/x-sharedlib"_L1,
    "application/x-pie-executable"_L1,
    "application/x-elf"_L1,
    "application/x-desktop"_L1,
    "application/x-shellscript"_L1,
    "application/vnd.appimage"_L1,
    "application/x-iso9660-appimage"_L1,
    "application/java-archive"_L1,
    "application/x-java-archive"_L1,
    "application/x-java"_L1,
    "application/x-java-jnlp-file"_L1,
    "text/x-python"_L1,
    "text/x-python3"_L1,
    "application/x-python-bytecode"_L1,
    "application/x-perl"_L1,
    "application/x-ruby"_L1,
    "application/x-php"_L1,
    "application/x-msdos-program"_L1,
    "application/x-ms-dos-executable"_L1,
    "application/x-msdownload"_L1,
    "application/vnd.microsoft.portable-executable"_L1,
    "application/x-dosexec"_L1,
    "application/x-msi"_L1,
    "application/x-ms-shortcut"_L1,
    "application/x-bat"_L1,
};

/// Endings that are run where a desktop has the program for them, whatever is known of their kind.
bool hasRunnableEnding(const QString &name)
{
    static const QSet<QString> endings{
        u"desktop"_s,  u"sh"_s,  u"bash"_s, u"zsh"_s, u"csh"_s,   u"ksh"_s, u"fish"_s, u"command"_s,
        u"run"_s,      u"bin"_s, u"out"_s,  u"py"_s,  u"pyw"_s,   u"pyc"_s, u"pyz"_s,  u"pl"_s,
        u"rb"_s,       u"tcl"_s, u"lua"_s,  u"awk"_s, u"php"_s,   u"jar"_s, u"jnlp"_s, u"class"_s,
        u"appimage"_s, u"exe"_s, u"com"_s,  u"bat"_s, u"cmd"_s,   u"msi"_s, u"scr"_s,  u"pif"_s,
        u"ps1"_s,      u"vbs"_s, u"vbe"_s,  u"js"_s,  u"jse"_s,   u"wsf"_s, u"wsh"_s,  u"hta"_s,
        u"lnk"_s,      u"elf"_s, u"so"_s,   u"ko"_s,  u"kdelnk"_s};
    return endings.contains(name.section(u'.', -1).toLower());
}

/// What interpreters and loaders look at, whatever a table of kinds makes of the rest.
bool beginsAsProgram(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray start = file.read(4);
    return start.startsWith("#!") || start.startsWith("MZ")
        || start
        == "\x7f"
           "ELF";
}

bool isRunnableType(const QMimeType &type)
{
    return std::any_of(std::begin(runnableTypes), std::end(runnableTypes),
                       [&type](QLatin1StringView each) { return type.inherits(each); });
}
}

bool isRunnable(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    if (hasRunnableEnding(name) || beginsAsProgram(path))
        return true;
    const QMimeDatabase kinds;
    QList<QMimeType> types = kinds.mimeTypesForFileName(name);
    types.append(kinds.mimeTypeForFile(path, QMimeDatabase::MatchContent));
    return std::any_of(types.cbegin(), types.cend(), isRunnableType);
}
