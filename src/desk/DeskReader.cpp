#include "DeskReader.h"

#include "NumberedName.h"
#include "TextRules.h"
#include "Twips.h"
#include "UrlProfile.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>

namespace {

/// As long as what `readIni` gives of a value.
constexpr int longestValue = 999;
/// Longer ones no engine opens.
constexpr int longestAddress = 2 * 1024 * 1024;
/// No desk has so many windows; a file may have that many sections.
constexpr std::size_t mostSections = 100'000;
/// The largest a window can be, pixels.
constexpr int farthest = 32'767;
/// The farthest a page can be scrolled, CSS pixels; backwards where it is read from the right.
constexpr int farthestScroll = 1 << 25;
constexpr double leastZoom = 0.25;
constexpr double mostZoom = 5;

bool isNamed(QByteArrayView name, QByteArrayView wanted)
{
    return name.compare(wanted, Qt::CaseInsensitive) == 0;
}

/// Gives each window its place in the order; those without one come last, in front.
void straightenOrder(QList<DeskWindow> &windows)
{
    QList<DeskWindow *> stack;
    for (DeskWindow &window : windows)
        stack.append(&window);
    std::stable_sort(stack.begin(), stack.end(),
                     [](const DeskWindow *a, const DeskWindow *b) { return a->order < b->order; });
    int order = 0;
    for (DeskWindow *window : std::as_const(stack))
        window->order = order++;
}

}

DeskReader::DeskReader(QByteArrayView file)
    : m_file(file)
{
    IniText::walk(file, *this);
}

void DeskReader::section(QByteArrayView name)
{
    m_values = nullptr;
    m_part = partOf(name);
}

/// The first section of a name counts.
DeskReader::Part DeskReader::partOf(QByteArrayView name)
{
    if (isNamed(name, "Profile_URLS"))
        return std::exchange(m_hasAddresses, true) ? Part::Other : Part::Addresses;
    if (isNamed(name, "URL_Count"))
        return std::exchange(m_hasCount, true) ? Part::Other : Part::Count;
    if (isNamed(name, DeskKeys::frameSection)) {
        if (m_frame)
            return Part::Other;
        m_values = &m_frame.emplace();
        return Part::Places;
    }
    const qint32 number = numberBehind(DeskKeys::windowSection, name);
    if (number == 0 || m_windows.contains(number) || m_windows.size() >= mostSections)
        return Part::Other;
    m_values = &m_windows[number];
    return Part::Places;
}

/// The first key of a name counts.
void DeskReader::key(QByteArrayView name, QByteArrayView value)
{
    if (m_part == Part::Addresses) {
        if (const qint32 number = numberBehind("URL", name))
            m_addresses.try_emplace(number, value);
    } else if (m_part == Part::Count) {
        if (m_count.isNull() && isNamed(name, "Count"))
            m_count = value;
    } else if (m_part == Part::Places) {
        const auto found =
            std::find_if(DeskKeys::names.begin(), DeskKeys::names.end(),
                         [name](QByteArrayView each) { return isNamed(name, each); });
        if (found == DeskKeys::names.end())
            return;
        QByteArrayView &kept = (*m_values)[std::size_t(found - DeskKeys::names.begin())];
        if (kept.isNull())
            kept = value;
    }
}

Desk DeskReader::desk()
{
    Desk desk;
    const qint32 count = UrlProfile::countIn(text(m_count, longestValue));
    const int active =
        m_frame ? this->number((*m_frame)[DeskKeys::Active], 0, INT_MAX).value_or(0) : 0;
    for (const auto &[number, bytes] : m_addresses) {
        if (number > count)
            break;
        const auto values = m_windows.find(number);
        const bool hasSection = values != m_windows.end();
        DeskWindow each = hasSection ? window(values->second) : DeskWindow();
        if (!hasSection)
            each.order = INT_MAX;
        each.address = address(bytes, hasSection);
        if (each.address.isEmpty())
            continue;
        if (number == active)
            desk.active = int(desk.windows.size());
        desk.windows.append(each);
    }
    straightenOrder(desk.windows);
    if (m_frame) {
        desk.frame = place(*m_frame);
        desk.isFrameMaximized = flag((*m_frame)[DeskKeys::Maximized]);
    }
    return desk;
}

QString DeskReader::text(QByteArrayView value, int characters)
{
    if (!m_encoding && !TextEncoding::isAscii(value))
        m_encoding = TextEncoding::detect(m_file);
    return IniText::valueText(value, m_encoding.value_or(TextEncoding::Encoding::Utf8), characters);
}

std::optional<int> DeskReader::number(QByteArrayView value, int least, int most)
{
    const std::optional<double> stored = textToNumber(text(value, longestValue));
    if (!stored)
        return {};
    return int(std::clamp(std::nearbyint(*stored), double(least), double(most)));
}

bool DeskReader::flag(QByteArrayView value)
{
    return textToBoolean(text(value, longestValue)).value_or(false);
}

/// Invalid without a width and a height.
QRect DeskReader::place(const Values &values)
{
    constexpr int most = Twips::fromPixels(farthest);
    const auto pixels = [&](DeskKeys::Key key, int least) {
        return Twips::toPixels(number(values[key], least, most).value_or(0));
    };
    const QRect place(pixels(DeskKeys::Left, -most), pixels(DeskKeys::Top, -most),
                      pixels(DeskKeys::Width, 0), pixels(DeskKeys::Height, 0));
    return place.isValid() ? place : QRect();
}

/// An older reader would cut a long one; who wrote a section for the window did not.
QString DeskReader::address(QByteArrayView value, bool hasSection)
{
    return text(value, hasSection ? longestAddress : longestValue);
}

DeskWindow DeskReader::window(const Values &values)
{
    DeskWindow window;
    window.title = text(values[DeskKeys::Title], longestTitle);
    window.place = place(values);
    constexpr int none = int(DeskWindow::State::Maximized) + 1;
    const int state = number(values[DeskKeys::State], -1, none).value_or(none);
    if (state >= 0 && state < none)
        window.state = DeskWindow::State(state);
    window.order = number(values[DeskKeys::Order], INT_MIN, INT_MAX).value_or(INT_MAX);
    window.scroll = {
        number(values[DeskKeys::ScrollX], -farthestScroll, farthestScroll).value_or(0),
        number(values[DeskKeys::ScrollY], -farthestScroll, farthestScroll).value_or(0)};
    const std::optional<double> zoom = textToNumber(text(values[DeskKeys::Zoom], longestValue));
    window.zoom = std::clamp(zoom.value_or(1), leastZoom, mostZoom);
    window.isMuted = flag(values[DeskKeys::Muted]);
    return window;
}
