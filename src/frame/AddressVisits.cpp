#include "AddressVisits.h"

#include "AddressBox.h"
#include "AddressSuggestions.h"
#include "VisitHistory.h"

namespace {
constexpr int mostProposed = 8;

QList<AddressSuggestion> visitsFor(const QString &typed)
{
    QList<AddressSuggestion> pages;
    const VisitHistory *history = VisitHistory::current();
    if (!history)
        return pages;
    const VisitIndex &index = history->index();
    const QList<int> numbers = index.best(typed, mostProposed);
    for (const int number : numbers) {
        const VisitIndex::Page &page = index.page(number);
        pages.append({QString::fromUtf8(page.title), QString::fromUtf8(page.address)});
    }
    return pages;
}
}

void proposeVisits(AddressBox &bar)
{
    bar.setSuggester(visitsFor);
    // Beside the interface, and so there by the time that something is typed.
    QObject::connect(&bar, &AddressBox::gotFocus, &bar, [] {
        if (VisitHistory *history = VisitHistory::current())
            history->refresh();
    });
}
