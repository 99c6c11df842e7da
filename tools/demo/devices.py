#!/usr/bin/python3
"""Devices that do not exist, for whoever has the same UMOCKDEV_DIR: says where that is, and plugs in a USB
stick at each line that it reads. To be run with libumockdev-preload.so.0."""
import sys

import gi

gi.require_version("UMockdev", "1.0")
from gi.repository import UMockdev  # noqa: E402

testbed = UMockdev.Testbed.new()
print(testbed.get_root_dir(), flush=True)
for number, _ in enumerate(sys.stdin):
    testbed.add_device(
        "usb", f"1-{number + 1}", None, ["serial", "4C5300"],
        ["DEVTYPE", "usb_device", "ID_VENDOR_ENC", "Example", "ID_MODEL_ENC", r"Data\x20Stick",
         "ID_SERIAL_SHORT", "4C5300", "ID_USB_INTERFACES", ":080650:"])
