#pragma once

#include "core/AppState.h"
#include "fakes/FakeAppearance.h"
#include "platform/Clock.h"
#include "shell/MainWindow.h"
#include "shell/MainWindowController.h"
#include "shell/MainWindowToolbar.h"
#include "shell/MenuButton.h"
#include "shell/Resources.h"
#include "shell/StatusItem.h"
#include "shell/StatusLine.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/ProcessThreatsTable.h"

#include <QApplication>
#include <QMenu>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>

namespace korvale {

/// The controller of the details window with everything real around it but the agent.
class WindowFixture : public testing::Test {
protected:
    WindowFixture() { makeController(); }

    void makeController() {
        m_controller.reset();
        m_controller = std::make_unique<MainWindowController>(MainWindowContext{
            .state = state,
            .resources = resources,
            .statusItem = statusItem,
            .statusLine = statusLine,
            .iconDisplay = statusItem,
            .tables = {fileThreats, processThreats, events, externalDevices},
            .statusMenu = &statusMenu,
            .parseTimerAggregatedMessage = [this] { ++batchesRead; },
            .visitHome = [this] { ++homeVisits; },
            .displayName = QStringLiteral("Program"),
            .shortVersion = QStringLiteral("1.2"),
            .placementFile = m_folder.filePath(QStringLiteral("window.json")),
        });
    }

    MainWindowController& controller() { return *m_controller; }

    /// Shows the window and lets what follows from that happen.
    MainWindow& shownWindow() {
        m_controller->showDetails();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_controller->window()));
        QApplication::processEvents();
        return *m_controller->window();
    }

    /// A part of the window, by its name in the layout.
    template <class Widget>
    Widget& part(const char* name) {
        auto* found = m_controller->window()->findChild<Widget*>(QString::fromLatin1(name));
        if (found == nullptr) {
            throw std::runtime_error(name);
        }
        return *found;
    }

    QTabWidget& tabView() { return part<QTabWidget>("tabView"); }

    AppState state;
    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    StatusItem statusItem{state, resources};
    SystemClock clock;
    StatusLine statusLine{state, clock};
    RememberedSelections selections;
    FileThreatsTable fileThreats{selections};
    ProcessThreatsTable processThreats{selections};
    EventsTable events{selections};
    ExternalDevicesTable externalDevices{selections};
    QMenu statusMenu;
    int batchesRead = 0;
    int homeVisits = 0;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<MainWindowController> m_controller;
};

} // namespace korvale
