#include "agent/publish/HostCacheNames.h"

#include <array>

namespace korvale::agent {
namespace {

struct FileBit {
    QStringView name;
    std::uint32_t bit;
};

constexpr std::array kFileBits{
    FileBit{u"file_states.log", bit::kFileStates},
    FileBit{u"scanner_state.log", bit::kScannerState},
    FileBit{u"analysis_count.log", bit::kAnalysisCount},
    FileBit{u"process_state.log", bit::kProcesses},
    FileBit{u"process_states.log", bit::kProcesses},
    FileBit{u"file_process_events.log", bit::kProcesses},
    FileBit{u"exe_blocked.log", bit::kExeBlocked},
    FileBit{u"quillmar_status.log", bit::kQuillmarStatus},
    FileBit{u"process_terminated.log", bit::kProcessTerminated},
    FileBit{u"process_action_blocked.log", bit::kProcessActionBlocked},
    FileBit{u"halyx_host_status.log", bit::kHalyxHostStatus},
    FileBit{u"consumer_notification.log", bit::kConsumerNotification},
    FileBit{u"external_device_control_events.log", bit::kDeviceEvents},
};

} // namespace

std::uint32_t maskBitOfFile(const QString& name) {
    for (const FileBit& entry : kFileBits) {
        if (entry.name == name) {
            return entry.bit;
        }
    }
    return 0;
}

} // namespace korvale::agent
