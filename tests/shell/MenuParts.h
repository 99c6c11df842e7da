#pragma once

#include "fakes/FakeAppearance.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/RecordingAgentCommands.h"
#include "model/HostCache.h"
#include "shell/Resources.h"
#include "shell/StatusItem.h"
#include "shell/StatusItemMenu.h"

namespace korvale {

/// A status item's menu, which is not built yet, and what it needs.
struct MenuParts {
    MenuParts() { resources.initialize(); }

    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    AppState state;
    StatusItem statusItem{state, resources};
    fakes::MemoryUserDefaults defaults;
    HostCache hostCache{defaults, QStringLiteral("/nonexistent")};
    QStringList done; ///< what the agent was asked for
    fakes::RecordingAgentCommands commands{done};
    StatusItemMenu menu{state, hostCache, statusItem, commands};
};

} // namespace korvale
