#include "HtmlColourer.h"

#include "HtmlFixups.h"

#include <algorithm>

namespace {
/// Characters between two looks at the clock.
constexpr qsizetype stride = 100'000;
}

HtmlColourer::HtmlColourer(const QString &text,
                           const std::array<char, HtmlColouring::slotCount> &indexes)
    : m_text(text)
    , m_indexes(indexes)
    , m_colours(text.size(), indexes[HtmlColouring::PlainText])
    , m_sink{m_colours.data(), m_indexes}
    , m_scanner(m_text, m_sink, u'\n')
{
}

void HtmlColourer::Sink::text(qsizetype from, qsizetype to)
{
    std::fill(colours + from, colours + to, indexes[slot]);
}

void HtmlColourer::fill(qsizetype from, qsizetype to, HtmlColouring::Slot slot)
{
    std::fill(m_colours.data() + from, m_colours.data() + to, m_indexes[slot]);
}

bool HtmlColourer::run(QDeadlineTimer deadline)
{
    while (m_phase != Phase::Done) {
        step();
        if (deadline.hasExpired())
            break;
    }
    return m_phase == Phase::Done;
}

void HtmlColourer::step()
{
    if (m_phase == Phase::Scan) {
        if (m_scanner.run(m_scanner.position() + stride))
            m_phase = Phase::PlainText;
        return;
    }
    const qsizetype until = m_fixed + stride;
    while (m_fixed < until) {
        const bool comments = m_phase == Phase::Comments;
        const HtmlFixups::Range range = comments ? HtmlFixups::nextComment(m_text, m_fixed)
                                                 : HtmlFixups::nextPlainText(m_text, m_fixed);
        if (!range.found()) {
            m_phase = comments ? Phase::Done : Phase::Comments;
            m_fixed = 0;
            return;
        }
        if (comments)
            fill(range.start, range.end, HtmlColouring::Comment);
        else
            fill(range.start + 1, range.end - 1, HtmlColouring::PlainText);
        m_fixed = range.end;
    }
}
