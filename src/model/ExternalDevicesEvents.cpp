#include "model/ExternalDevicesEvents.h"

#include "core/base/Logging.h"
#include "model/TableFeeds.h"
#include "model/TextRows.h"
#include "model/Values.h"
#include "platform/Texts.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace korvale {
namespace {

constexpr std::array deviceColumns{RowKey::DeviceType, RowKey::When,         RowKey::VendorId,
                                   RowKey::ProductId,  RowKey::SerialNumber, RowKey::Action,
                                   RowKey::Meaning};

struct DeviceAction {
    std::string_view action;
    const char* key;
    const char* meaning;
};

constexpr std::array deviceActions{
    DeviceAction{"Block", "Blocked", "DeviceBlocked"},
    DeviceAction{"FullAccess", "FullAccess", "DeviceAllowed"},
};

/// nullptr for an action that the program does not know.
const DeviceAction* knownAction(const JsonValue& action) {
    if (!action.isText()) {
        return nullptr;
    }
    const auto* const known =
        std::ranges::find(deviceActions, action.utf8(), &DeviceAction::action);
    return known != deviceActions.end() ? &*known : nullptr;
}

std::optional<QString> actionText(const DeviceAction* action) {
    return action != nullptr ? std::optional(localizedText(action->key)) : std::nullopt;
}

QString actionMeaning(const DeviceAction* action) {
    return QString::fromLatin1(action != nullptr ? action->meaning : "Unknown");
}

void trace(const JsonValue& list) {
    for (const JsonMember& record : list.members()) {
        logTrace("%@", {valueText(record.value)});
    }
    for (const JsonMember& record : list.members()) {
        logTrace("dictkey=%@ dictvalue=%@", {valueText(record.name), valueText(record.value)});
        if (record.value.isNull()) {
            logTrace(" the theData is nil", {});
        }
    }
}

} // namespace

RowBatchPtr deviceRows(const JsonValue& list) {
    auto rows = std::make_shared<TextRows>(deviceColumns);
    for (const JsonMember& record : list.members()) {
        if (rows->size() >= mostTableRows) {
            break; // the rest of this file is never shown
        }
        if (!record.value.isObject()) {
            continue;
        }
        const DeviceAction* action = knownAction(record.value["Action"]);
        rows->add({cellText(record.value["Device Type"]), cellText(record.value["When"]),
                   cellText(record.value["Vendor ID"]), cellText(record.value["Product ID"]),
                   cellText(record.value["Serial Number"]), actionText(action),
                   actionMeaning(action)});
    }
    rows->shrinkToFit();
    return rows;
}

bool ExternalDevicesEvents::parseExternalDevicesEvents(const std::optional<JsonValue>& list) {
    if (!list || list->size() == 0) {
        return false;
    }
    trace(*list);
    const RowBatchPtr rows = deviceRows(*list);
    if (rows->size() == 0) {
        return false;
    }
    // Unlike those of the event list, the records found at start-up are shown.
    m_state.externalDevicesCount += static_cast<std::int64_t>(rows->size());
    m_externalDevicesTable.addData(rows);
    return true;
}

} // namespace korvale
