// What is remembered of desktop notifications.

#include "Target.h"
#include "platform/LinkOpener.h"
#include "shell/NotificationRecords.h"

#include <algorithm>

using namespace korvale;

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textOf(data, size);
    const auto records =
        notificationRecords(QByteArray(text.data(), static_cast<qsizetype>(text.size())));
    if (!records) {
        return 0;
    }
    fuzz::taken += records->isEmpty() ? 0U : 1U;
    fuzz::require(records->size() <= 200);
    fuzz::require(std::all_of(records->begin(), records->end(), [](const auto& record) {
        return !record.title.isEmpty() && !record.message.isEmpty() && record.when >= 0 &&
               (record.link.isEmpty() || isOpenableLink(record.link));
    }));
    const QByteArray json = toJson(*records);
    fuzz::require(json.size() <= largestNotificationFile);
    const auto again = notificationRecords(json);
    fuzz::require(again && again->size() == records->size());
    return 0;
}
