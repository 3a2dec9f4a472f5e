#pragma once

#include <QList>
#include <QObject>
#include <functional>

#include "StoredCookie.h"

struct EngineOptions;

/// What the engine keeps of the pages that were shown, and the options it runs with: what the
/// dialog of internet options shows and changes.
class EngineData : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// False when another process has the stored data: this one keeps nothing.
    virtual bool isStored() const = 0;

    /// In no order; `cookiesChanged` tells when others came or went.
    virtual QList<StoredCookie> cookies() const = 0;
    virtual void deleteCookies(const QList<StoredCookie> &cookies) = 0;
    virtual void deleteAllCookies() = 0;

    /// `cacheMeasured` answers, of both.
    virtual void measureCache() = 0;
    virtual void clearCache() = 0;

    virtual void clearVisitedLinks() = 0;

    /// Takes up what can be changed while pages are open.
    virtual void use(const EngineOptions &options) = 0;

signals:
    /// Maybe many times in a row.
    void cookiesChanged();
    void cacheMeasured(qint64 bytes);
};

/// The engine's; tests put another maker in. `setEngineDataMaker` returns the one in force.
using EngineDataMaker = std::function<EngineData *(QObject *parent)>;
EngineData *makeEngineData(QObject *parent);
EngineDataMaker setEngineDataMaker(const EngineDataMaker &maker);
