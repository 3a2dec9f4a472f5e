#include "EngineStart.h"

#include "Downloads.h"
#include "EngineOptions.h"
#include "EngineProfile.h"
#include "PageHold.h"
#include "PageLife.h"
#include "PageNotifications.h"
#include "ProgramInfo.h"
#include "SparePage.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {
constexpr char backendVariable[] = "QT_QUICK_BACKEND";
constexpr char glVariable[] = "QT_XCB_GL_INTEGRATION";
constexpr char readerVariable[] = "QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY";

QtMessageHandler previousHandler = nullptr;
bool glIsLeftOut = false;

void dropIdleTalk(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtInfoMsg && message.startsWith("Sandboxing disabled"_L1))
        return;
    // The plug-in for running without a screen says so at each window.
    if (message.startsWith("This plugin does not support"_L1))
        return;
    // What the toolkit says of the OpenGL that was left out on purpose.
    if (glIsLeftOut
        && (message.startsWith("QXcbIntegration: Cannot create platform OpenGL context"_L1)
            || message.startsWith("No suitable graphics backend found"_L1)))
        return;
    previousHandler(type, context, message);
}

void hearMessages()
{
    if (!previousHandler)
        previousHandler = qInstallMessageHandler(dropIdleTalk);
}

/// With the software backend nothing is drawn through OpenGL, yet the engine makes two contexts,
/// which loads a software renderer: half of the processor time of a start.
void leaveOutGl()
{
    if (qEnvironmentVariableIsSet(glVariable))
        return;
    qputenv(glVariable, "none");
    glIsLeftOut = true;
    hearMessages();
}

/// The engine reads it once, and tells what is on a page only while a program that reads the screen
/// is there, also one that is started later; until then it costs nothing.
void letPagesBeRead()
{
    if (!qEnvironmentVariableIsSet(readerVariable))
        qputenv(readerVariable, "1");
}

bool hasGraphicsDevice(const QString &devices)
{
    return !QDir(devices).entryList({u"renderD*"_s}, QDir::System | QDir::Files).isEmpty();
}
}

static void initResources()
{
    Q_INIT_RESOURCE(engine);
    Q_INIT_RESOURCE(guide);
}

void chooseRenderingBackend([[maybe_unused]] const QString &devices)
{
#ifdef Q_OS_LINUX
    if (!qEnvironmentVariableIsSet(backendVariable)
        && (!hasGraphicsDevice(devices) || !EngineOptions::read().hardwareRendering))
        qputenv(backendVariable, "software");
    if (qgetenv(backendVariable) == "software")
        leaveOutGl();
#endif
}

bool sandboxUsable(QString *why)
{
#ifdef Q_OS_LINUX
    if (geteuid() == 0 && qEnvironmentVariable("QTWEBENGINE_DISABLE_SANDBOX") != "1"_L1) {
        if (why) {
            *why = ProgramInfo::title()
                + u" cannot protect you from web pages when run as root: start it as an ordinary "
                  u"user, or set QTWEBENGINE_DISABLE_SANDBOX=1 to do without the protection."_s;
        }
        return false;
    }
#endif
    return true;
}

void startEngine()
{
    initResources();
    letPagesBeRead();
    QLoggingCategory::setFilterRules(u"qt.webenginecontext.info=false"_s);
    hearMessages();
    Downloads::install();
    PageNotifications::install();
    SparePage::install();
    // Read by now, and no affair of the programs that this one starts.
    if (glIsLeftOut)
        qunsetenv(glVariable);
}

void warmUpEngine()
{
    SparePage::prepare();
}

void stopEngine()
{
    PageLife::dropAll();
    PageHold::finishAll();
    // What was closed last waits for its deletion still; the profile must outlive it.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    dropEngineProfile();
    if (previousHandler)
        qInstallMessageHandler(std::exchange(previousHandler, nullptr));
}
