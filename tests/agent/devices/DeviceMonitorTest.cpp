#include "agent/devices/DeviceMonitor.h"

#include "agent/fakes/Needs.h"
#include "fakes/WaitUntil.h"

#include <gtest/gtest.h>
#include <umockdev.h>

namespace korvale::agent {
namespace {

/// Devices of a testbed, which libudev takes for the machine's.
class DeviceMonitorTest : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(umockdev());
        m_bed = umockdev_testbed_new();
        m_monitor = std::make_unique<DeviceMonitor>();
        ASSERT_TRUE(m_monitor->works());
        QObject::connect(m_monitor.get(), &DeviceMonitor::came, m_monitor.get(),
                         [this](const std::string& port, const DeviceFacts& device) {
                             m_came.emplace_back(port, device);
                         });
        QObject::connect(m_monitor.get(), &DeviceMonitor::went, m_monitor.get(),
                         [this](const std::string& port) { m_went.push_back(port); });
    }
    void TearDown() override {
        m_monitor.reset();
        g_clear_object(&m_bed);
    }
    /// The path of the new device, which is announced at once.
    std::string plug(const char* port) {
        gchar* const path = umockdev_testbed_add_device(
            m_bed, "usb", port, nullptr, "serial", "4C5300", nullptr, "DEVTYPE", "usb_device",
            "ID_VENDOR_ENC", "SanDisk", "ID_MODEL_ENC", "Cruzer\\x20Blade", "ID_SERIAL_SHORT",
            "4C5300", "ID_USB_INTERFACES", ":080650:", nullptr);
        const std::string text = path == nullptr ? "" : path;
        g_free(path);
        return text;
    }

    UMockdevTestbed* m_bed = nullptr;
    std::unique_ptr<DeviceMonitor> m_monitor;
    std::vector<std::pair<std::string, DeviceFacts>> m_came;
    std::vector<std::string> m_went;
};

TEST_F(DeviceMonitorTest, ADeviceThatComesIsToldOnceAndAgainWhenItComesBack) {
    const std::string path = plug("1-2");
    ASSERT_TRUE(waitUntil([this] { return m_came.size() == 1; }));
    EXPECT_EQ(m_came[0].first, "1-2");
    EXPECT_EQ(m_came[0].second, (DeviceFacts{"USB Drive", "SanDisk", "Cruzer Blade", "4C5300"}));
    umockdev_testbed_uevent(m_bed, path.c_str(), "bind");
    umockdev_testbed_uevent(m_bed, path.c_str(), "remove");
    ASSERT_TRUE(waitUntil([this] { return m_went.size() == 1; }));
    EXPECT_EQ(m_came.size(), 1U) << "\"bind\" is the same device";
    umockdev_testbed_uevent(m_bed, path.c_str(), "add");
    EXPECT_TRUE(waitUntil([this] { return m_came.size() == 2; }));
}

} // namespace
} // namespace korvale::agent
