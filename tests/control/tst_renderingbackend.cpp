#include <QApplication>
#include <QtTest>

#include "AppFolder.h"
#include "EngineOptions.h"
#include "EngineStart.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

/// The choice that is made before there is an application object.
class tst_RenderingBackend : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void deviceIsUsed();
    void softwareWithoutADevice();
    void softwareWhereTheUserWantsIt();
    void environmentHasTheLastWord();
    void folderIsKnownBeforeTheApplication();

private:
    static constexpr char variable[] = "QT_QUICK_BACKEND";
    void choose() const { chooseRenderingBackend(m_folder->file(u"dev"_s)); }

    std::unique_ptr<TempAppFolder> m_folder;
};

static QString folderBefore;

void tst_RenderingBackend::init()
{
    m_folder.reset();
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->write(u"dev/renderD128"_s, {}));
    qunsetenv(variable);
}

void tst_RenderingBackend::cleanup()
{
    qunsetenv(variable);
    qunsetenv("QT_XCB_GL_INTEGRATION");
}

void tst_RenderingBackend::deviceIsUsed()
{
    choose();
    QVERIFY(!qEnvironmentVariableIsSet(variable));
}

void tst_RenderingBackend::softwareWithoutADevice()
{
    QVERIFY(QFile::remove(m_folder->file(u"dev/renderD128"_s)));
    choose();
    QCOMPARE(qgetenv(variable), "software");
}

void tst_RenderingBackend::softwareWhereTheUserWantsIt()
{
    EngineOptions options;
    options.hardwareRendering = false;
    QVERIFY(options.write());
    choose();
    QCOMPARE(qgetenv(variable), "software");
}

void tst_RenderingBackend::environmentHasTheLastWord()
{
    EngineOptions options;
    options.hardwareRendering = false;
    QVERIFY(options.write());
    qputenv(variable, "rhi");
    choose();
    QCOMPARE(qgetenv(variable), "rhi");
}

void tst_RenderingBackend::folderIsKnownBeforeTheApplication()
{
    m_folder.reset();
    QCOMPARE(folderBefore, QCoreApplication::applicationDirPath());
    QCOMPARE(AppFolder::path(), folderBefore);
}

int main(int argc, char **argv)
{
    folderBefore = AppFolder::path();
    QApplication app(argc, argv);
    tst_RenderingBackend test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_renderingbackend.moc"
