#include "QtTexts.h"

#include "Language.h"
#include "Log.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *catalogs[] = {"qtbase", "qtwebengine"};

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
    // English texts need no file.
    const QString code = language == "English"_L1 ? QString() : languageCode(language);
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
