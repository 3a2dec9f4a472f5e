#pragma once

#include "DownloadList.h"
#include "Transfer.h"

#include <QStringList>

/// Brings nothing; it does to its entry what the user asks and remembers that.
class FakeTransfer : public Transfer {
public:
    FakeTransfer(DownloadList &list, const QString &id)
        : m_list(list)
        , m_id(id)
    {
    }

    void pause() override { become(u"pause", Download::State::Paused); }
    void resume() override { become(u"resume", Download::State::Running); }
    void cancel() override { become(u"cancel", Download::State::Cancelled); }
    void leave() override { become(u"leave", Download::State::Unfinished); }

    QStringList asked;

private:
    void become(QStringView what, Download::State state)
    {
        asked.append(what.toString());
        m_list.change(m_id, [state](Download &download) { download.state = state; });
    }

    DownloadList &m_list;
    QString m_id;
};

/// Downloads made by hand, in the program's one list.
namespace FakeDownloads {

inline Download make(const QString &name, Download::State state = Download::State::Running)
{
    Download download;
    download.id = DownloadList::newId();
    download.name = name;
    download.folder = QStringLiteral("/nowhere");
    download.address = QUrl(QStringLiteral("https://files.example/") + name);
    download.page = QUrl(QStringLiteral("https://page.example/"));
    download.size = 1000000;
    download.received = download.isOver() ? 0 : 250000;
    if (state == Download::State::Done)
        download.received = download.size;
    download.began = QDateTime::currentDateTimeUtc();
    download.state = state;
    return download;
}

/// Puts it into the list; its transfer, null for one that is over.
inline FakeTransfer *add(const Download &download, DownloadList &list = downloadList())
{
    auto *transfer = download.isUnderWay() ? new FakeTransfer(list, download.id) : nullptr;
    list.add(download, transfer);
    if (transfer)
        transfer->setParent(&list);
    return transfer;
}

inline void set(const Download &download, Download::State state,
                Download::Problem problem = Download::Problem::None,
                DownloadList &list = downloadList())
{
    list.change(download.id, [=](Download &each) {
        each.state = state;
        each.problem = problem;
        if (each.isOver())
            each.ended = QDateTime::currentDateTimeUtc();
        if (state == Download::State::Done)
            each.received = each.size;
    });
}

inline void clear(DownloadList &list = downloadList())
{
    QStringList ids;
    for (const Download &download : list.all())
        ids.append(download.id);
    list.remove(ids);
}

}
