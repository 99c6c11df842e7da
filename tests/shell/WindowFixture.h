#pragma once

#include "shell/MainWindow.h"
#include "shell/MainWindowToolbar.h"
#include "shell/MenuButton.h"
#include "shell/WindowParts.h"

#include <QApplication>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

namespace korvale {

/// The controller of the details window, and hands and eyes for its window.
class WindowFixture : public testing::Test, protected WindowParts {
protected:
    WindowFixture() { makeController(); }

    /// Ends the controller and makes another, as a new run of the program would.
    void makeController() {
        m_controller.reset();
        m_controller = std::make_unique<MainWindowController>(
            context(m_folder.filePath(QStringLiteral("window.json"))));
        QObject::connect(m_controller.get(), &MainWindowController::becameMain,
                         [this] { ++batchesRead; });
    }

    MainWindowController& controller() { return *m_controller; }

    /// Shows the window and lets what follows from that happen.
    MainWindow& shownWindow() {
        m_controller->showDetails();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_controller->window()));
        QApplication::processEvents();
        return *m_controller->window();
    }

    /// As large as on a desktop, whatever the platform's screen has room for.
    MainWindow& roomyWindow() {
        MainWindow& window = shownWindow();
        window.resize(920, 560);
        QApplication::processEvents();
        return window;
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

private:
    QTemporaryDir m_folder;
    std::unique_ptr<MainWindowController> m_controller;
};

} // namespace korvale
