#include "PopupBudget.h"

#include "Language.h"
#include "MsgBox.h"

#include <QTimer>
#include <QWidget>

using namespace Qt::StringLiterals;

bool PopupBudget::mayOpen(const QString &url, QWidget *owner, const Open &open)
{
    if (m_answer == Answer::Yes && m_waiting.isEmpty())
        return true;
    if (m_answer == Answer::No)
        return false;
    if (m_answer == Answer::None && m_opened < unaskedWindows) {
        ++m_opened;
        return true;
    }
    if (m_waiting.size() < waitingWindows)
        m_waiting.append(url);
    if (m_answer == Answer::None) {
        m_owner = owner;
        m_open = open;
        ask();
    }
    return false;
}

void PopupBudget::giveBack()
{
    if (m_opened > 0)
        --m_opened;
}

void PopupBudget::ask()
{
    m_answer = Answer::Asked;
    const QString question =
        languageText(u"frmBrowser"_s, u"strManyWindows"_s,
                     u"This page has opened many windows by itself and wants to open more. "
                     u"Do you want to allow this?"_s);
    const QString title =
        languageText(u"frmBrowser"_s, u"strManyWindowsTitle"_s, u"Allow More Windows?"_s);
    MsgBox::askBeside(m_owner, question, title, [self = weak_from_this()](MsgBox::Answer answer) {
        const std::shared_ptr<PopupBudget> budget = self.lock();
        if (!budget)
            return;
        const bool yes = answer == MsgBox::Answer::Yes;
        budget->m_answer = yes ? Answer::Yes : Answer::No;
        if (yes)
            budget->openNext();
        else
            budget->m_waiting.clear();
    });
}

void PopupBudget::openNext()
{
    if (!m_owner)
        m_waiting.clear();
    if (m_waiting.isEmpty())
        return;
    m_open(m_waiting.takeFirst());
    QTimer::singleShot(0, m_owner.data(), [self = weak_from_this()] {
        if (const std::shared_ptr<PopupBudget> budget = self.lock())
            budget->openNext();
    });
}
