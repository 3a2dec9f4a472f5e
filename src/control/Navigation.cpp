#include "Navigation.h"

#include "Addresses.h"

using namespace Addresses;
using namespace Qt::StringLiterals;

namespace {
/// The address that the engine's page of an error tells as its own.
constexpr auto errorPage = "chrome-error://chromewebdata/"_L1;
constexpr auto errorScheme = "chrome-error:"_L1;

Navigation::Event event(Navigation::What what, const QUrl &url = {})
{
    return {what, url, {}};
}

Navigation::Event event(Navigation::What what, const QString &text)
{
    return {what, {}, text};
}
}

void Navigation::waitAt(const QString &url)
{
    m_location = url;
    m_waiting = true;
}

void Navigation::name(bool forPage)
{
    m_waiting = false;
    m_beginning.name(forPage);
}

void Navigation::handOver(const QUrl &url)
{
    m_handedOver = isBlank(url) ? QUrl() : url;
}

void Navigation::beginBlank(const QUrl &url)
{
    m_isTyped = false;
    m_arrival = m_beginning.take(Type::Typed);
    m_stopped = false;
    m_asked = m_pending = url;
    m_stage = Stage::Asked;
}

void Navigation::adopt(bool isEmpty)
{
    m_adopted = true;
    m_opensEmpty = isEmpty;
}

Navigation::Request Navigation::asked(const QUrl &url, Type type)
{
    m_handedOver.clear();
    if (type == Type::Redirect && isUnderWay())
        return Request::Redirected;
    if (!m_replacing.isEmpty() && isSamePage(m_replacing, url))
        return Request::Replacing;
    m_arrival = m_beginning.take(type);
    m_stopped = false;
    return Request::New;
}

bool Navigation::replaces(const QUrl &url, Type type, const EnginePlace &place)
{
    if (type != Type::Typed || leavesTrace() || place.entries == 0 || !isWeb(url) || m_showsError
        || isSamePage(url, QUrl(m_location)))
        return false;
    refuse();
    m_replacing = url;
    return true;
}

void Navigation::accept(const QUrl &url, Type type, Request request)
{
    if (request != Request::Redirected) {
        m_replacesEntry = request == Request::Replacing;
        m_isTyped = type == Type::Typed;
        m_asked = url;
    }
    m_opensEmpty = false;
    m_replacing.clear();
    m_startedAhead.clear();
    m_pending = url;
    m_stage = Stage::Asked;
}

Navigation::Events Navigation::refuseForGood(const QUrl &url, Type type)
{
    m_handedOver.clear();
    // A redirect ends the load that is under way, any other is a load of its own.
    if (type == Type::Redirect && isUnderWay())
        m_redirectedTo = url;
    else
        refuse();
    return {event(What::Refused, url)};
}

Navigation::Events Navigation::loadStarted(const QUrl &url)
{
    Events events;
    if (m_stage != Stage::Asked) {
        if (m_refusals > 0)
            return {};
        // The empty document that a window begins with is no navigation.
        if (std::exchange(m_opensEmpty, false))
            return {};
        // A page opens about:blank, which the engine neither asks for nor lets us refuse;
        // stopping one in a window opened without an address would end the program.
        m_arrival = Arrival::ByPage;
        m_pending = url;
        m_isTyped = false;
        events.append(event(What::Begun, url));
    }
    m_stage = Stage::Started;
    m_busy = true;
    // Whether the address may be shown ahead of its page is known from here on.
    if (m_adopted && !m_hasDocument)
        events.append(event(What::Location, m_location));
    events.append(event(What::Opening, m_pending));
    return events;
}

/// The address of what the page shows, as the engine has it; empty while the window holds nothing
/// but what its opener may have put there. No page has a say in it.
QUrl Navigation::committedAddress(const EnginePlace &place) const
{
    if (place.entries == 0)
        return {};
    // The current entry of the history is no answer by itself: a step in it counts at once.
    const QUrl &shown = place.shown;
    const bool isOnlyOnItsWay = !shown.isEmpty()
        && (shown == m_handedOver
            || (m_isTyped && isUnderWay() && (shown == m_pending || shown == m_asked)));
    return isOnlyOnItsWay ? place.entry : shown;
}

/// What the script in the page tells is when to look, and how the page spells its address; which
/// address that is, the engine tells.
Navigation::Events Navigation::documentStarted(const QString &address, const EnginePlace &place)
{
    // The start of a page whose end was told first: no news, whatever has been asked for since.
    if (!m_startedUnheard.isEmpty() && std::exchange(m_startedUnheard, {}) == address)
        return {};
    const QUrl committed = committedAddress(place);
    if (isUnderWay() && isAhead(address, committed)) {
        m_startedAhead = address;
        return {};
    }
    if (!isUnderWay() || committed.isEmpty())
        return {};
    // The load that a blank page was opened over has got this far.
    if (isBlank(m_pending) && !isBlank(committed))
        return {};
    const QString spelled = QUrl(address) == committed ? address : encoded(committed);
    Events events{commit(spelled, !address.startsWith(errorScheme), place)};
    if (isBlank(committed))
        events.append(event(What::BlankCame));
    return events;
}

/// The document on its way tells of its start, and the engine has yet to say that it is there. From
/// Qt 6.5 on it may be so: both come from another process, each in its own way.
bool Navigation::isAhead(const QString &address, const QUrl &committed) const
{
    if (!address.startsWith(errorScheme) && !isSamePage(QUrl(address), m_pending))
        return false;
    if (committed.isEmpty() || (!m_hasDocument && isBlank(committed)))
        return !isBlank(m_pending);
    return committed == QUrl(m_location) && !isSamePage(committed, m_pending);
}

Navigation::Event Navigation::commit(const QString &url, bool hasArrived, const EnginePlace &place)
{
    m_stage = Stage::Committed;
    m_startedAhead.clear();
    // The page tells of the address it is the source of.
    m_location = place.shown.scheme() == "view-source"_L1 ? encoded(place.shown) : url;
    m_hasDocument = true;
    m_completed = false;
    m_showsError = false;
    m_busy = true;
    Event came{What::PageCame, QUrl(url), m_location};
    came.hasArrived = m_hasArrived = hasArrived;
    came.isSkipped = !leavesTrace() && !m_replacesEntry && place.entries > 1;
    return came;
}

/// A blank page opened over another load has no end of its own that the engine would tell; there is
/// nothing in it to wait for.
Navigation::Events Navigation::blankShown()
{
    if (m_stage != Stage::Committed || !m_location.startsWith("about:"_L1))
        return {};
    Events events = documentLoaded();
    m_busy = false;
    m_stage = Stage::None;
    events.append({event(What::Done), event(What::Ended)});
    return events;
}

Navigation::Events Navigation::documentLoaded()
{
    if (m_stage != Stage::Committed || std::exchange(m_completed, true))
        return {};
    return {event(What::Complete, m_location)};
}

Navigation::Events Navigation::loadEnded(const LoadEnd &end, const EnginePlace &place)
{
    Events events;
    // Not at the end of an earlier load, which the one on its way has stopped.
    if (isSamePage(end.url, m_handedOver))
        m_handedOver.clear();
    if (end.isStopped && m_refusals > 0) {
        --m_refusals;
        // A page that was still on its way when it asked for another has no end but this.
        if (m_stage != Stage::Committed) {
            if (isGivenUp())
                events.append(event(What::GivenUp));
            events.append(event(What::Ended));
            return events;
        }
    }
    if (isUnderWay() && !end.isStopped && !isSamePage(end.url, m_pending)) {
        // The end of an earlier load, told late. A blank page is under way before the engine knows.
        if (end.isFollowed || isBlank(m_pending) || !m_hasDocument
            || !isSamePage(end.url, QUrl(m_location)))
            return {};
        events.append(returnToPage(place));
    } else if (isUnderWay() && !end.isStopped) {
        const bool isHeard = !m_startedAhead.isEmpty();
        events.append(commit(encoded(committedAddress(place)), !end.error, place));
        if (!isHeard)
            m_startedUnheard = end.error ? errorPage : m_location;
    }
    if (end.error) {
        m_showsError = true;
        events.append({What::ErrorCame, place.shown, {}, *end.error});
    }
    events.append(documentLoaded());
    finish(end, place, events);
    return events;
}

/// While a page is still loading, the engine does not tell that a navigation away from it came to
/// nothing, as by a download. What it tells is the end of that page, when nothing loads any more.
Navigation::Events Navigation::returnToPage(const EnginePlace &place)
{
    m_stage = Stage::Committed;
    m_redirectedTo.clear();
    Events events = urlChanged(place);
    if (!isAnotherToCome())
        events.append(event(What::GivenUp));
    return events;
}

void Navigation::finish(const LoadEnd &end, const EnginePlace &place, Events &events)
{
    events.append(event(What::ForgetLinks));
    m_busy = false;
    m_stage = Stage::None;
    m_startedAhead.clear();
    if (end.isStopped) {
        // The page may have changed its address while the other one was on its way.
        events.append(urlChanged(place));
        if (isGivenUp())
            events.append(event(What::GivenUp));
        if (holdsNothing())
            events.append(event(What::PerhapsNothing));
        events.append(event(What::Refused, std::exchange(m_redirectedTo, {})));
    } else {
        events.append(event(What::Done));
    }
    events.append(event(What::Ended));
}

/// Comes when a page has taken the place of another, before any of its scripts runs, and when a
/// page gives itself another address.
Navigation::Events Navigation::urlChanged(const EnginePlace &place)
{
    const QUrl address = committedAddress(place);
    if (address.isEmpty())
        return m_adopted ? Events{event(What::Location, m_location)} : Events();
    if (!m_startedAhead.isEmpty()) {
        const Events came = documentStarted(std::exchange(m_startedAhead, {}), place);
        if (!came.isEmpty())
            return came;
    }
    const QUrl before(m_location);
    if (!m_hasDocument || address == before)
        return {};
    // The engine does not ask before it goes to another place in the page.
    if (address == m_handedOver && isSamePage(address, before))
        m_handedOver.clear();
    // Told when the navigation is over, one way or the other.
    if (isUnderWay() && (!isWeb(address) || isSameSite(address, before)))
        return {};
    Events events;
    // Nothing of one site stands over another's page, not even until its document begins.
    if (!isSameSite(address, before))
        events.append(event(What::Distrust));
    m_location = encoded(address);
    events.append(event(What::Location, m_location));
    return events;
}

void Navigation::crash()
{
    m_busy = false;
    m_stage = Stage::None;
}

/// The engine keeps the address on its way to itself from the moment on in which the opener may
/// have written into the window.
QString Navigation::addressBeforePage(const QString &asked, const QUrl &shown) const
{
    if (!m_adopted)
        return asked;
    return isUnderWay() && !shown.isEmpty() ? encoded(shown) : u"about:blank"_s;
}

bool Navigation::isOnItsWay(const QUrl &url) const
{
    constexpr auto beside = QUrl::RemoveFragment | QUrl::RemoveUserInfo;
    return isUnderWay() && url.adjusted(beside) == m_pending.adjusted(beside);
}

bool Navigation::holdsNothing() const
{
    return holdsNoPage() && m_stage == Stage::None && !m_stopped;
}

bool Navigation::holdsNoPage() const
{
    return !m_hasDocument || m_location.isEmpty() || m_location.startsWith("about:"_L1);
}

bool Navigation::isGivenUp() const
{
    return m_stage == Stage::None && !isAnotherToCome();
}

bool Navigation::isAnotherToCome() const
{
    return !m_handedOver.isEmpty() || !m_replacing.isEmpty();
}
