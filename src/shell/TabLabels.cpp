#include "shell/TabLabels.h"

#include "core/base/TextFormat.h"
#include "platform/Texts.h"

#include <algorithm>

namespace korvale {
namespace {

constexpr std::size_t eventsPosition = 2;
static_assert(tabFacts[eventsPosition].identifier == TabIdentifier::Events);

} // namespace

QString tabLabel(const TabFacts& tab, const AppState& state) {
    const std::int64_t count = tab.labelShowsCount ? state.*tab.unseenCount : 0;
    const QString suffix =
        count >= 1 ? formatText(u"(%li)", {QString::number(count)}) : QStringLiteral("");
    return formatText(u"%@ %@", {localizedText(tab.titleKey), suffix});
}

const TabFacts& factsOfTab(TabIdentifier identifier) {
    const auto* found = std::ranges::find(tabFacts, identifier, &TabFacts::identifier);
    return found != tabFacts.end() ? *found : tabFacts[eventsPosition];
}

} // namespace korvale
