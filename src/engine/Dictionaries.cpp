#include "Dictionaries.h"

#include "DictionaryConversion.h"
#include "Log.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
constexpr char variable[] = "QTWEBENGINE_DICTIONARIES_PATH";
constexpr auto readable = ".bdic"_L1;
constexpr auto words = ".dic"_L1;
constexpr auto rules = ".aff"_L1;

/// What the converter refused, so that it is not asked anew for each page.
QSet<QString> &refused()
{
    static QSet<QString> tags;
    return tags;
}

/// The folder that the engine reads.
QString folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + "/orvane/Dictionaries"_L1;
}

/// Empty where the name is not that of a language.
QString tagOf(const QFileInfo &file)
{
    static const QRegularExpression form(u"^[a-z]{2,3}([_-][A-Za-z0-9]{2,10})*$"_s);
    const QString name = file.completeBaseName();
    if (!form.match(name).hasMatch() || QLocale(name).language() == QLocale::C)
        return {};
    return QString(name).replace(u'_', u'-');
}

/// By tag. What the engine can read as it is goes before what it cannot.
QMap<QString, QFileInfo> found()
{
    QMap<QString, QFileInfo> all;
    const auto addFrom = [&all](const QString &folderName, QLatin1StringView suffix) {
        const QStringList folders = QStandardPaths::locateAll(
            QStandardPaths::GenericDataLocation, folderName, QStandardPaths::LocateDirectory);
        for (const QString &each : folders) {
            const QFileInfoList files = QDir(each).entryInfoList({u'*' + suffix}, QDir::Files);
            for (const QFileInfo &file : files) {
                const QString tag = tagOf(file);
                if (!tag.isEmpty() && !all.contains(tag))
                    all.insert(tag, file);
            }
        }
    };
    addFrom(u"hunspell-bdic"_s, readable);
    if (DictionaryConversion::isPossible()) {
        addFrom(u"hunspell"_s, words);
        addFrom(u"myspell/dicts"_s, words);
    }
    return all;
}

QString fileFor(const QString &tag)
{
    return folder() + u'/' + tag + readable;
}

/// The newer of the two files of a dictionary.
QDateTime changed(const QFileInfo &dictionary)
{
    const QFileInfo rulesFile(dictionary.path() + u'/' + dictionary.completeBaseName() + rules);
    return qMax(dictionary.lastModified(), rulesFile.lastModified());
}

/// What was converted before is of use until the system has a newer one.
bool isReady(const QString &tag, const QFileInfo &dictionary)
{
    const QFileInfo made(fileFor(tag));
    if (dictionary.fileName().endsWith(readable))
        return made.symLinkTarget() == dictionary.absoluteFilePath();
    return made.isFile() && !made.isSymLink() && made.lastModified() >= changed(dictionary);
}

bool link(const QString &tag, const QFileInfo &dictionary)
{
    QFile::remove(fileFor(tag));
    return QFile::link(dictionary.absoluteFilePath(), fileFor(tag));
}

/// One call of `prepare`.
struct Wanted {
    QStringList ready;
    qsizetype left = 0;
    std::function<void(const QStringList &)> done;

    void note(const QString &tag, bool isReady)
    {
        if (isReady)
            ready.append(tag);
        if (--left == 0)
            done(ready);
    }
};

/// Calls `note` with whether the engine can read it.
void make(const QString &tag, const QFileInfo &dictionary, QObject *context,
          const std::function<void(bool)> &note)
{
    if (isReady(tag, dictionary)) {
        note(true);
    } else if (dictionary.fileName().endsWith(readable)) {
        const bool isLinked = link(tag, dictionary);
        if (!isLinked)
            qCWarning(lcEngine) << "cannot link the dictionary" << fileFor(tag);
        note(isLinked);
    } else {
        DictionaryConversion::begin(dictionary.absoluteFilePath(), fileFor(tag), context,
                                    [tag, note](bool isDone) {
                                        if (!isDone)
                                            refused().insert(tag);
                                        note(isDone);
                                    });
    }
}
}

namespace Dictionaries {

QStringList all()
{
    QStringList tags;
    for (const QString &tag : found().keys()) {
        if (!refused().contains(tag))
            tags.append(tag);
    }
    return tags;
}

QStringList ofDesktop(const QStringList &all)
{
    QStringList result;
    QSet<QLocale::Language> served;
    for (const QString &tag : QLocale::system().uiLanguages()) {
        const QLocale::Language language = QLocale(tag).language();
        if (language == QLocale::C || served.contains(language))
            continue;
        // A language alone stands for its greatest country.
        const QString full = QLocale(tag).name().replace(u'_', u'-');
        for (const QString &wanted : {tag, full, full.section(u'-', 0, 0)}) {
            if (!served.contains(language) && all.contains(wanted)) {
                result.append(wanted);
                served.insert(language);
            }
        }
    }
    return result;
}

QString nameOf(const QString &tag)
{
    const QLocale locale(tag);
    QString name = locale.nativeLanguageName();
    if (name.isEmpty())
        return tag;
    // The name of the language may hold the country ("American English").
    return u"%1 (%2)"_s.arg(name, tag);
}

void announce()
{
    // The user's own word stays in force.
    if (qEnvironmentVariableIsSet(variable))
        return;
    // The engine looks for it once, as it starts.
    if (QDir().mkpath(folder()))
        qputenv(variable, QFile::encodeName(folder()));
    else
        qCWarning(lcEngine) << "cannot make the folder of dictionaries" << folder();
}

void prepare(const QStringList &tags, QObject *context,
             const std::function<void(const QStringList &ready)> &done)
{
    const QMap<QString, QFileInfo> there = found();
    const auto wanted = std::make_shared<Wanted>();
    wanted->done = done;
    // The end of the call is one of them, so that it is done once, and after all.
    wanted->left = tags.size() + 1;
    for (const QString &tag : tags) {
        if (!there.contains(tag) || refused().contains(tag))
            wanted->note(tag, false);
        else
            make(tag, there.value(tag), context,
                 [wanted, tag](bool isDone) { wanted->note(tag, isDone); });
    }
    if (--wanted->left == 0)
        done(wanted->ready);
}

}
