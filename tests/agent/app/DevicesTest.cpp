#include "agent/app/Devices.h"

#include "agent/publish/Publishing.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

class DevicesTest : public testing::Test {
protected:
    [[nodiscard]] QJsonObject written() const {
        return m_folder.readJson(QStringLiteral("external_device_control_events.log"));
    }
    [[nodiscard]] bool lists(qsizetype number) {
        return waitUntil([&] { return m_devices.list().size() == number; });
    }
    [[nodiscard]] QString action(qsizetype index) const {
        return m_devices.list().at(index).toObject().value(QStringLiteral("action")).toString();
    }

    TestFolder m_folder;
    Publishing m_publishing{m_folder.path()};
    Devices m_devices{m_publishing};
    const DeviceFacts m_stick{"USB Drive", "SanDisk", "Cruzer", "4C"};
};

TEST_F(DevicesTest, WithoutAnyWordADeviceMayBeUsed) {
    m_devices.came("1-2", m_stick);
    ASSERT_TRUE(lists(1));
    EXPECT_EQ(action(0), QStringLiteral("FullAccess"));
}

TEST_F(DevicesTest, ARefusedDeviceIsBlockedWhoeverIsFaster) {
    m_devices.came("1-2", m_stick);
    m_devices.decided("1-2", true);
    ASSERT_TRUE(lists(1));
    m_devices.decided("1-3", true);
    m_devices.came("1-3", m_stick);
    ASSERT_TRUE(lists(2));
    EXPECT_EQ(action(0), QStringLiteral("Block"));
    EXPECT_EQ(action(1), QStringLiteral("Block"));
    m_devices.decided("1-3", true);
    m_devices.decided("1-3", false);
    EXPECT_EQ(m_devices.list().size(), 3) << "another decision is news, the same is not";
    EXPECT_EQ(action(2), QStringLiteral("FullAccess"));
}

TEST_F(DevicesTest, WhatWasAnnouncedIsNotAnnouncedAgain) {
    m_devices.came("1-2", m_stick);
    ASSERT_TRUE(waitUntil([this] { return written().size() == 1 && m_publishing.isIdle(); }));
    const QString first = written().keys().first();
    m_devices.came("1-3", m_stick);
    EXPECT_TRUE(waitUntil([&] { return written().size() == 1 && !written().contains(first); }));
}

TEST_F(DevicesTest, ADecisionOnAPortThatWasLeftIsAboutTheNextDevice) {
    m_devices.came("1-2", m_stick);
    ASSERT_TRUE(lists(1));
    m_devices.went("1-2");
    m_devices.decided("1-2", true);
    EXPECT_EQ(m_devices.list().size(), 1);
    m_devices.came("1-2", {"USB Drive", "Other", "Thing", ""});
    ASSERT_TRUE(lists(2));
    EXPECT_EQ(action(1), QStringLiteral("Block"));
}

} // namespace
} // namespace korvale::agent
