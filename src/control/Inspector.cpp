#include "Inspector.h"

#include "Addresses.h"
#include "PrivateProfiles.h"
#include "RefusedAddress.h"

#include <QApplication>
#include <QChildEvent>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {
/// Asks nobody anything, and goes nowhere else.
class ToolsPage : public QWebEnginePage {
public:
    explicit ToolsPage(QWebEngineProfile *profile)
        : QWebEnginePage(profile)
    {
        // Whatever the user's options say of pages.
        for (const auto needed :
             {QWebEngineSettings::JavascriptEnabled, QWebEngineSettings::AutoLoadImages,
              QWebEngineSettings::JavascriptCanAccessClipboard})
            settings()->setAttribute(needed, true);
    }

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame) override
    {
        return !isMainFrame || url.scheme() == "devtools"_L1;
    }
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int,
                                  const QString &) override
    {
    }
    void javaScriptAlert(const QUrl &, const QString &) override { }
    bool javaScriptConfirm(const QUrl &, const QString &) override { return false; }
    bool javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *) override
    {
        return false;
    }
    QStringList chooseFiles(FileSelectionMode, const QStringList &, const QStringList &) override
    {
        return {};
    }
};

/// Keys that lead out of the tools; they have all others, those of the menus too.
bool isOfFrame(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const int key = event.key();
    if (held & Qt::AltModifier)
        return true;
    if (held & Qt::ControlModifier) {
        const bool isNumber = key >= Qt::Key_1 && key <= Qt::Key_9;
        return isNumber || key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_W
            || key == Qt::Key_T || key == Qt::Key_L || key == Qt::Key_F4 || key == Qt::Key_F6
            || key == Qt::Key_PageDown || key == Qt::Key_PageUp;
    }
    return key == Qt::Key_F6 || key == Qt::Key_F10;
}

bool closesTools(const QKeyEvent &event)
{
    return event.key() == Qt::Key_I
        && event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
}
}

Inspector::Inspector(QWebEnginePage &page, QWidget *parent)
    : QWidget(parent)
    , m_profileHold(PrivateProfiles::hold(page.profile()))
    , m_tools(std::make_unique<ToolsPage>(page.profile()))
    , m_view(new QWebEngineView(m_tools.get(), this))
{
    setObjectName("Inspector"_L1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(m_view);
    setFocusProxy(m_view);
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
    m_view->installEventFilter(this);
    const QList<QWidget *> inside =
        m_view->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *widget : inside)
        watchChild(widget);
    connect(m_tools.get(), &QWebEnginePage::newWindowRequested, this,
            [this](const QWebEngineNewWindowRequest &request) {
                const QUrl url = request.requestedUrl();
                if (Addresses::isWeb(url) && !isRefusedAddress(url))
                    emit linkWanted(Addresses::encoded(url));
            });
    connect(m_tools.get(), &QWebEnginePage::renderProcessTerminated, this, &Inspector::end);
    connect(m_tools.get(), &QWebEnginePage::windowCloseRequested, this, &Inspector::end);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget *old, const QWidget *now) {
                if (now && isAncestorOf(now) && !(old && isAncestorOf(old)))
                    emit gotFocus();
            });
    m_tools->setInspectedPage(&page);
}

Inspector::~Inspector()
{
    if (m_tools->inspectedPage())
        m_tools->setInspectedPage(nullptr);
    delete m_view;
}

void Inspector::end()
{
    if (std::exchange(m_isOver, true))
        return;
    if (m_tools->inspectedPage())
        m_tools->setInspectedPage(nullptr);
    QMetaObject::invokeMethod(this, &Inspector::over, Qt::QueuedConnection);
}

void Inspector::watchChild(QObject *child)
{
    if (child->isWidgetType())
        child->installEventFilter(this);
}

bool Inspector::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ChildAdded) {
        watchChild(static_cast<QChildEvent *>(event)->child());
    } else if (event->type() == QEvent::ShortcutOverride) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (closesTools(key))
            end();
        event->setAccepted(!isOfFrame(key));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
