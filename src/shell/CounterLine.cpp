#include "shell/CounterLine.h"

namespace korvale {

CounterLine counterLine(TabIdentifier tab, const AppState& state) {
    CounterLine line;
    if (tab == TabIdentifier::Threats) {
        line.analyzed = QString::number(state.analyzedCount);
        if (state.quarantineCount >= 1) {
            line.quarantined = QString::number(state.quarantineCount);
        }
    }
    return line;
}

} // namespace korvale
