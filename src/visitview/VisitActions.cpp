#include "VisitActions.h"

#include "MsgBox.h"
#include "NotSaved.h"
#include "ShownAddress.h"
#include "Texts.h"
#include "VisitHistory.h"

#include <QApplication>
#include <QClipboard>
#include <QLocale>
#include <QPointer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmVisits"> texts;
/// Windows that one key opens.
constexpr int mostWindows = 10;

qint64 beginOf(QDate day)
{
    return day.startOfDay().toSecsSinceEpoch();
}

QString inWords(QDate day)
{
    return QLocale().toString(day, QLocale::LongFormat);
}
}

VisitActions::VisitActions(VisitHistory &history, const Asked &chosen, QWidget &owner)
    : QObject(&owner)
    , m_history(history)
    , m_chosen(chosen)
    , m_owner(owner)
    , m_open(add("cmdOpen", &VisitActions::open))
    , m_newWindow(add("cmdNewWindow", &VisitActions::openInNewWindows))
    , m_copy(add("cmdCopyAddress", &VisitActions::copyAddresses))
    , m_delete(add("cmdDelete", &VisitActions::deletePages))
    , m_site(add("cmdDeleteSite", &VisitActions::deleteSite))
    , m_day(add("cmdDeleteDay", &VisitActions::deleteDay))
    , m_older(add("cmdDeleteOlder", &VisitActions::deleteOlder))
    , m_everything(add("cmdDeleteAll", &VisitActions::deleteAll))
{
}

QAction *VisitActions::add(const char *name, void (VisitActions::*act)())
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1StringView(name));
    connect(action, &QAction::triggered, this, act);
    m_all.append(action);
    return action;
}

void VisitActions::translate()
{
    m_open->setText(texts.at<"cmdOpen", "Open">());
    m_newWindow->setText(texts.at<"cmdNewWindow", "Open in New Window">());
    m_copy->setText(texts.at<"cmdCopyAddress", "Copy Address">());
    m_delete->setText(texts.at<"cmdDelete", "Delete Page">());
    m_site->setText(texts.at<"cmdDeleteSite", "Delete Site...">());
    m_day->setText(texts.at<"cmdDeleteDay", "Delete Day...">());
    m_older->setText(texts.at<"cmdDeleteOlder", "Delete Older...">());
    m_everything->setText(texts.at<"cmdDeleteAll", "Delete All...">());
}

void VisitActions::refresh()
{
    const Chosen chosen = m_chosen();
    const auto count = chosen.addresses.size();
    m_open->setEnabled(count == 1);
    m_newWindow->setEnabled(count > 0 && count <= mostWindows);
    m_copy->setEnabled(count > 0);
    m_delete->setEnabled(count > 0);
    m_site->setEnabled(count == 1 && !VisitErasure::hostOf(chosen.addresses.first()).isEmpty());
    m_day->setEnabled(chosen.day.isValid());
    m_older->setEnabled(chosen.day.isValid());
}

void VisitActions::open()
{
    const Chosen chosen = m_chosen();
    if (chosen.addresses.size() == 1)
        emit openWanted(QString::fromUtf8(chosen.addresses.first()));
}

void VisitActions::openInNewWindows()
{
    const Chosen chosen = m_chosen();
    if (chosen.addresses.size() > mostWindows)
        return;
    for (const QByteArray &address : chosen.addresses)
        emit newWindowWanted(QString::fromUtf8(address));
}

void VisitActions::copyAddresses()
{
    const QList<QByteArray> addresses = m_chosen().addresses;
    if (!addresses.isEmpty())
        QApplication::clipboard()->setText(QString::fromUtf8(addresses.join('\n')));
}

void VisitActions::deletePages()
{
    const QList<QByteArray> addresses = m_chosen().addresses;
    if (!addresses.isEmpty())
        erase(VisitErasure::ofPages({addresses.cbegin(), addresses.cend()}));
}

void VisitActions::deleteSite()
{
    const QList<QByteArray> addresses = m_chosen().addresses;
    if (addresses.size() != 1)
        return;
    const QByteArray host = VisitErasure::hostOf(addresses.first());
    if (host.isEmpty())
        return;
    const QString site = shownSite(QUrl::fromEncoded(addresses.first()));
    askToDelete(
        texts.at<"strDeleteSite", "Delete all pages of this site from the visited pages?">(), site,
        VisitErasure::ofSite(host));
}

void VisitActions::deleteDay()
{
    const QDate day = m_chosen().day;
    if (day.isValid())
        askToDelete(texts.at<"strDeleteDay", "Delete the visits of this day?">(), inWords(day),
                    VisitErasure::between(beginOf(day), beginOf(day.addDays(1))));
}

void VisitActions::deleteOlder()
{
    const QDate day = m_chosen().day;
    if (day.isValid())
        askToDelete(texts.at<"strDeleteOlder", "Delete the visits of all days before this one?">(),
                    inWords(day), VisitErasure::before(beginOf(day)));
}

void VisitActions::deleteAll()
{
    askToDelete(texts.at<"strDeleteAll", "Delete all visited pages?">(), {}, VisitErasure::ofAll());
}

void VisitActions::askToDelete(const QString &text, const QString &what,
                               const VisitErasure &erasure)
{
    MsgBox::ask(&m_owner, what.isEmpty() ? text : text + u"\n\n"_s + what, m_owner.windowTitle(),
                [self = QPointer(this), erasure](MsgBox::Answer answer) {
                    if (self && answer == MsgBox::Answer::Yes)
                        self->erase(erasure);
                });
}

void VisitActions::erase(const VisitErasure &erasure)
{
    m_history.erase(erasure, [self = QPointer(this)](const WriteResult &result) {
        if (!result && self)
            NotSaved::tell(&self->m_owner, self->m_history.file(), result);
    });
}
