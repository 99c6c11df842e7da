#pragma once

#include "core/base/AppState.h"
#include "fakes/FakeAppearance.h"
#include "fakes/RecordingFileManager.h"
#include "fakes/RecordingLinkOpener.h"
#include "model/StatusWatch.h"
#include "platform/Clock.h"
#include "shell/MainWindowController.h"
#include "shell/NotificationHistory.h"
#include "shell/Resources.h"
#include "shell/StatusItem.h"
#include "shell/StatusLine.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/ProcessThreatsTable.h"

#include <QMenu>
#include <QTemporaryDir>

namespace korvale {

/// Everything real that the details window needs around it; only the agent is missing.
struct WindowParts {
    AppState state;
    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    StatusItem statusItem{state, resources};
    SystemClock clock;
    StatusLine statusLine{state, clock};
    StatusWatch statusWatch{state};
    RememberedSelections selections;
    FileThreatsTable fileThreats{selections};
    ProcessThreatsTable processThreats{selections};
    EventsTable events{selections};
    ExternalDevicesTable externalDevices{selections};
    QMenu statusMenu;
    int batchesRead = 0;
    fakes::RecordingLinkOpener links;
    QTemporaryDir stateFolder;
    NotificationHistory notifications{stateFolder.filePath(QStringLiteral("told.json")), clock};
    fakes::RecordingFileManager files;

    [[nodiscard]] MainWindowContext context(const QString& placementFile) {
        return {.state = state,
                .resources = resources,
                .statusItem = statusItem,
                .statusLine = statusLine,
                .statusWatch = statusWatch,
                .iconDisplay = statusItem,
                .tables = {fileThreats, processThreats, events, externalDevices},
                .linkOpener = links,
                .notifications = notifications,
                .fileManager = files,
                .statusMenu = &statusMenu,
                .displayName = QStringLiteral("KorvaleUI"),
                .shortVersion = QStringLiteral("1.0.0"),
                .placementFile = placementFile};
    }
};

} // namespace korvale
