#include "LeavingPage.h"

#include "WebPage.h"

#include <QPointer>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
/// Milliseconds that a script has to come to its end.
constexpr int patience = 1000;
}

LeavingPage::LeavingPage(WebPage &page)
    : QObject(&page)
    , m_page(page)
{
    m_looks.setInterval(patience);
    connect(&m_looks, &QTimer::timeout, this, &LeavingPage::look);
    connect(&page, &WebPage::arrived, this, &LeavingPage::end);
}

void LeavingPage::begin(Way way)
{
    m_way = way;
    m_isOn = true;
    m_dialogs = 0;
    m_looks.start();
    if (!m_page.awaitsAnswer()) {
        askForLife();
        return;
    }
    // Nothing may be asked of the engine while it waits for an answer itself.
    connect(&m_page, &WebPage::answerGiven, this, &LeavingPage::askForLife,
            Qt::SingleShotConnection);
}

void LeavingPage::noteDialog()
{
    if (m_dialogs++ == 0 && m_isAlive)
        QMetaObject::invokeMethod(this, &LeavingPage::askForLife, Qt::QueuedConnection);
}

/// A script that runs keeps every other from running.
void LeavingPage::askForLife()
{
    m_isAlive = false;
    m_page.runJavaScript(u"1"_s, QWebEngineScript::ApplicationWorld,
                         [self = QPointer(this), number = ++m_question](const QVariant &answer) {
                             if (!self || number != self->m_question || !answer.isValid())
                                 return;
                             self->m_isAlive = true;
                             self->m_dialogs = 0;
                             if (self->m_way == Way::Stop)
                                 self->end();
                         });
}

void LeavingPage::look()
{
    if (!m_isAlive && m_dialogs > 0) {
        end();
        emit stuck();
    } else if (m_way == Way::Elsewhere && !m_page.isLoading()) {
        end();
    }
}

void LeavingPage::end()
{
    m_isOn = false;
    m_looks.stop();
}
