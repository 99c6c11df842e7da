#include "agent/devices/DeviceFacts.h"

#include "agent/devices/UsbGuard.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

DeviceProperties stick() {
    return {{"DEVTYPE", "usb_device"},
            {"ID_VENDOR_ENC", "SanDisk"},
            {"ID_MODEL_ENC", "Cruzer\\x20Blade"},
            {"ID_SERIAL", "SanDisk_Cruzer_Blade_4C5300"},
            {"ID_SERIAL_SHORT", "4C5300"},
            {"ID_USB_INTERFACES", ":080650:"}};
}

TEST(DeviceFactsTest, AStickIsADriveWithItsOwnNames) {
    EXPECT_EQ(deviceFactsOf(stick()),
              (DeviceFacts{"USB Drive", "SanDisk", "Cruzer Blade", "4C5300"}));
}

TEST(DeviceFactsTest, TheDatabaseKnowsBetterAndAttributesAreTheLastResort) {
    DeviceProperties properties = stick();
    properties["ID_VENDOR_FROM_DATABASE"] = "SanDisk Corp.";
    EXPECT_EQ(deviceFactsOf(properties)->vendor, "SanDisk Corp.");
    const DeviceProperties plain{{"DEVTYPE", "usb_device"},
                                 {"ATTR/manufacturer", "Maker"},
                                 {"ATTR/product", "Thing"},
                                 {"ATTR/serial", "1"}};
    EXPECT_EQ(deviceFactsOf(plain), (DeviceFacts{"USB Device", "Maker", "Thing", "1"}));
}

TEST(DeviceFactsTest, PhonesAndCamerasAreKnown) {
    for (const auto& [name, value] : DeviceProperties{
             {"ID_MTP_DEVICE", "1"}, {"ID_GPHOTO2", "1"}, {"ID_USB_INTERFACES", ":060101:"}}) {
        const DeviceProperties properties{{"DEVTYPE", "usb_device"}, {name, value}};
        EXPECT_EQ(deviceFactsOf(properties)->type, "Phone or Camera") << name;
    }
}

TEST(DeviceFactsTest, WhatNobodyPluggedInIsLeftOut) {
    EXPECT_FALSE(deviceFactsOf({}));
    EXPECT_FALSE(deviceFactsOf({{"DEVTYPE", "usb_interface"}}));
    EXPECT_FALSE(deviceFactsOf({{"DEVTYPE", "usb_device"}, {"ID_USB_INTERFACES", ":090000:"}}));
}

TEST(DeviceFactsTest, WhatAMakerWroteIsOneHarmlessLine) {
    DeviceProperties properties = stick();
    properties["ID_MODEL_ENC"] = "\\x0a<b>\\x1b[31mEvil\\xff\\x\\x9\xe2\x80\xae";
    properties["ID_SERIAL_SHORT"] = std::string(100'000, 'x');
    const auto facts = deviceFactsOf(properties);
    ASSERT_TRUE(facts);
    for (const char c : facts->product) {
        EXPECT_TRUE(static_cast<unsigned char>(c) >= 0x20) << facts->product;
    }
    EXPECT_EQ(facts->product.find("\xe2\x80\xae"), std::string::npos);
    EXPECT_LE(facts->serial.size(), 256U);
}

TEST(UsbGuardTest, ThePortIsReadFromTheRule) {
    EXPECT_EQ(portOfRule("block id 0781:5567 serial \"4C\" name \"X\" hash \"a\" parent-hash \"b\" "
                         "via-port \"1-2.3\" with-interface 08:06:50"),
              "1-2.3");
    EXPECT_EQ(portOfRule("block id 0781:5567"), "");
    EXPECT_EQ(portOfRule("block via-port \"1-2"), "");
    EXPECT_EQ(portOfRule(""), "");
}

} // namespace
} // namespace korvale::agent
