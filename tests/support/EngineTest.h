#pragma once

#include "AppFolder.h"
#include "EngineStart.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

/// Runs a test class in the surroundings of the program: its rendering backend and logging, and
/// the engine's data, the application folder and the downloads in a temporary folder. `prepare` is
/// called before the engine starts.
template <typename Test>
int runEngineTest(
    int argc, char **argv, const std::function<void()> &prepare = [] {})
{
    const QTemporaryDir folder;
    for (const char *variable :
         {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DOWNLOAD_DIR"})
        qputenv(variable, (folder.path() + QLatin1Char('/') + QLatin1String(variable)).toUtf8());
    // The certificate store of the engine is in the home folder.
    qputenv("HOME", folder.path().toUtf8());
    chooseRenderingBackend();
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("OrvaneTest"));
    AppFolder::setPath(folder.path());
    QString why;
    if (!sandboxUsable(&why))
        qFatal("%s", qPrintable(why));
    prepare();
    startEngine();
    int result = 0;
    {
        Test test;
        QTEST_SET_MAIN_SOURCE_PATH
        result = QTest::qExec(&test, argc, argv);
    }
    stopEngine();
    return result;
}

#define ORVANE_ENGINE_TEST_MAIN(Test)                                                              \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return runEngineTest<Test>(argc, argv);                                                    \
    }
