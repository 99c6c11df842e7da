#include "model/RowMeaning.h"

#include <algorithm>
#include <array>

namespace korvale {
namespace {

constexpr std::array meanings{
    RowMeaning{u"Unknown", "HPS_MeansUnknown", "HPS_DoUnknown"}, // the first is that of all others
    // files
    RowMeaning{u"Unsafe", "HPS_MeansUnsafe", "HPS_DoUnsafe"},
    RowMeaning{u"Abnormal", "HPS_MeansAbnormal", "HPS_DoAbnormal"},
    RowMeaning{u"Quarantined", "HPS_MeansQuarantined", "HPS_DoQuarantined"},
    RowMeaning{u"Waived", "HPS_MeansWaived", "HPS_DoWaived"},
    // programs
    RowMeaning{u"Alert", "HPS_MeansAlert", "HPS_DoAlert"},
    RowMeaning{u"Ignored", "HPS_MeansIgnored", "HPS_DoWaived"},
    RowMeaning{u"Blocked", "HPS_MeansBlocked", "HPS_DoStopped"},
    RowMeaning{u"Terminated", "HPS_MeansTerminated", "HPS_DoStopped"},
    // what happened to a file
    RowMeaning{u"EventThreatStringFromValueDetected", "HPS_MeansDetected", "HPS_DoEvent"},
    RowMeaning{u"EventThreatStringFromValueRemoved", "HPS_MeansRemoved", "HPS_DoEvent"},
    RowMeaning{u"EventThreatStringFromValueStateChange", "HPS_MeansChanged", "HPS_DoEvent"},
    // devices
    RowMeaning{u"DeviceBlocked", "HPS_MeansDeviceBlocked", "HPS_DoDeviceBlocked"},
    RowMeaning{u"DeviceAllowed", "HPS_MeansDeviceAllowed", "HPS_DoDeviceAllowed"},
};

} // namespace

std::span<const RowMeaning> rowMeanings() {
    return meanings;
}

const RowMeaning& rowMeaning(QStringView name) {
    const auto* const found = std::ranges::find(meanings, name, &RowMeaning::name);
    return found != meanings.end() ? *found : meanings.front();
}

} // namespace korvale
