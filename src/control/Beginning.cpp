#include "Beginning.h"

#include <utility>

/// The engine gives the type "typed" to what this program has it load, and to nothing else.
Arrival Beginning::take(Type type)
{
    const bool acted = m_act.take();
    const bool stepped = std::exchange(m_stepping, false);
    switch (type) {
    case Type::Typed:
        return std::exchange(m_forPage, false) ? Arrival::ByPage : Arrival::ByAddress;
    case Type::Step:
        return stepped ? Arrival::ByStep : Arrival::ByPage;
    case Type::Link:
    case Type::Form:
        return acted ? Arrival::ByStep : Arrival::ByPage;
    default:
        return Arrival::ByPage;
    }
}
