#include "PrivateProfiles.h"

#include "EngineProfile.h"
#include "Profiles.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
constexpr char numberName[] = "privateNumber";

/// The profile is there while it is held.
struct Kept {
    explicit Kept(QWebEngineProfile *made)
        : profile(made)
    {
    }
    ~Kept();
    Kept(const Kept &) = delete;
    Kept &operator=(const Kept &) = delete;

    /// Null once the program has ended it.
    QPointer<QWebEngineProfile> profile;
    const QWebEngineProfile *key = profile;
};

QHash<const QWebEngineProfile *, std::weak_ptr<Kept>> &known()
{
    static QHash<const QWebEngineProfile *, std::weak_ptr<Kept>> all;
    return all;
}

/// It may be the page that goes last that let go of it, and is in the middle of going.
Kept::~Kept()
{
    known().remove(key);
    if (!profile)
        return;
    QMetaObject::invokeMethod(
        qApp,
        [ended = profile] {
            if (ended)
                Profiles::end(ended);
        },
        Qt::QueuedConnection);
}

PrivateProfiles::Session begin()
{
    static int lastNumber = 0;
    // It starts the engine, with switches of its own.
    engineProfile();
    const auto kept = std::make_shared<Kept>(new QWebEngineProfile);
    kept->profile->setProperty(numberName, ++lastNumber);
    known().insert(kept->profile, kept);
    Profiles::begin(kept->profile, {});
    return {std::make_shared<std::shared_ptr<Kept>>(kept), kept->profile};
}
}

namespace PrivateProfiles {

Session join()
{
    static std::weak_ptr<QWebEngineProfile> current;
    Session session = current.lock();
    if (!session) {
        session = begin();
        current = session;
    }
    return session;
}

std::shared_ptr<void> hold(const QWebEngineProfile *profile)
{
    return known().value(profile).lock();
}

int numberOf(const QWebEngineProfile *profile)
{
    return profile ? profile->property(numberName).toInt() : 0;
}

QString siteForLog(const QWebEnginePage &page)
{
    return numberOf(page.profile()) == 0 ? page.url().host() : u"(private)"_s;
}

}
