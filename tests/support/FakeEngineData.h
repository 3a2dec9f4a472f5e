#pragma once

#include "EngineData.h"
#include "EngineOptions.h"

#include <QPointer>

/// What an engine would keep, as the test says; it counts what it is asked.
class FakeEngineData : public EngineData {
public:
    using EngineData::EngineData;

    bool isStored() const override { return stored; }
    QList<StoredCookie> cookies() const override { return kept; }
    void deleteCookies(const QList<StoredCookie> &cookies) override
    {
        for (const StoredCookie &cookie : cookies)
            kept.removeAll(cookie);
        emit cookiesChanged();
    }
    void deleteAllCookies() override
    {
        kept.clear();
        emit cookiesChanged();
    }
    void measureCache() override { emit cacheMeasured(bytes); }
    void clearCache() override
    {
        bytes = 0;
        emit cacheMeasured(bytes);
    }
    void clearVisitedLinks() override { ++linksCleared; }
    void use(const EngineOptions &options) override { used.append(options); }

    bool stored = true;
    QList<StoredCookie> kept;
    qint64 bytes = 0;
    int linksCleared = 0;
    QList<EngineOptions> used;
};

/// While it lives, the dialog of internet options works on such data.
class FakeData {
public:
    FakeData()
        : m_old(setEngineDataMaker([this](QObject *parent) -> EngineData * {
            newest = new FakeEngineData(parent);
            newest->kept = kept;
            newest->bytes = bytes;
            newest->stored = stored;
            return newest;
        }))
    {
    }
    ~FakeData() { setEngineDataMaker(m_old); }
    FakeData(const FakeData &) = delete;
    FakeData &operator=(const FakeData &) = delete;

    /// Of the dialog that was opened last.
    QPointer<FakeEngineData> newest;
    /// What the next dialog finds.
    QList<StoredCookie> kept;
    qint64 bytes = 0;
    bool stored = true;

private:
    EngineDataMaker m_old;
};
