#include "EngineData.h"

#include "CacheFolder.h"
#include "CookieList.h"
#include "EngineProfile.h"
#include "EngineSetup.h"
#include "Profiles.h"

#include <QWebEngineProfile>
#include <utility>

namespace {
class ProfileData : public EngineData {
public:
    explicit ProfileData(QObject *parent)
        : EngineData(parent)
    {
        connect(engineCookies(), &CookieList::changed, this, &EngineData::cookiesChanged);
    }

    bool isStored() const override { return engineProfileIsStored(); }
    QList<StoredCookie> cookies() const override { return engineCookies()->cookies(); }
    void deleteCookies(const QList<StoredCookie> &cookies) override
    {
        for (const StoredCookie &cookie : cookies)
            engineCookies()->remove(cookie);
    }
    void deleteAllCookies() override { engineCookies()->removeAll(); }
    void measureCache() override
    {
        CacheFolder::measure(cacheFolder(), this, [this](qint64 bytes) { tell(bytes); });
    }
    void clearCache() override
    {
        CacheFolder::clear(cacheFolder(), this, [this](qint64 bytes) { tell(bytes); });
    }
    void clearVisitedLinks() override { engineProfile()->clearAllVisitedLinks(); }
    void use(const EngineOptions &options) override
    {
        engineProfile();
        for (QWebEngineProfile *profile : Profiles::all())
            EngineSetup::change(profile, options);
        noticeProxy();
    }

private:
    static QString cacheFolder() { return engineProfile()->cachePath(); }
    void tell(qint64 bytes) { emit cacheMeasured(bytes); }
};

EngineDataMaker &maker()
{
    static EngineDataMaker current = [](QObject *parent) -> EngineData * {
        return new ProfileData(parent);
    };
    return current;
}
}

EngineData *makeEngineData(QObject *parent)
{
    return maker()(parent);
}

EngineDataMaker setEngineDataMaker(const EngineDataMaker &newMaker)
{
    return std::exchange(maker(), newMaker);
}
