#include "QtTexts.h"

#include "Log.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *catalogs[] = {"qtbase", "qtwebengine"};

/// The two letters of a language in Qt's file names; none for English, whose texts need no file.
QString codeOf(const QString &language)
{
    for (int index = QLocale::C + 1; index <= QLocale::LastLanguage; ++index) {
        const auto candidate = QLocale::Language(index);
        if (candidate != QLocale::English && QLocale::languageToString(candidate) == language)
            return QLocale::languageToCode(candidate);
    }
    return {};
}

void install(const QString &catalog, const QString &code)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    translator->setObjectName("QtTexts"_L1);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator->load(catalog + u'_' + code, folder)
        && QCoreApplication::installTranslator(translator))
        return;
    qCInfo(lcStart) << "no translation" << catalog << code << "in" << folder;
    delete translator;
}

}

void QtTexts::follow(const QString &language)
{
    static QString current;
    const QString code = language == "English"_L1 ? QString() : codeOf(language);
    if (std::exchange(current, code) == code)
        return;
    // A translator that goes takes itself off the list and has every widget look its texts up.
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>(
        u"QtTexts"_s, Qt::FindDirectChildrenOnly));
    if (code.isEmpty())
        return;
    for (const char *catalog : catalogs)
        install(QLatin1String(catalog), code);
}
