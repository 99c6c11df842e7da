#pragma once

namespace korvale {

class EventsTable;
class ExternalDevicesTable;
class FileThreatsTable;
class ProcessThreatsTable;

/// The controllers of the four tables. They hold rows from launch on and get their views when the
/// details window is built.
struct TableControllers {
    FileThreatsTable& fileThreatsTableCtrl;
    ProcessThreatsTable& memExploitTableCtrl;
    EventsTable& eventsTableCtrl;
    ExternalDevicesTable& externalDevicesTableCtrl;
};

} // namespace korvale
