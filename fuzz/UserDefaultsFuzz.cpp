// The user's preferences file: whatever is in it, a choice can be read, made and taken back.

#include "InputFiles.h"
#include "platform/IniUserDefaults.h"

using namespace korvale;

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::assignments;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::InputFolder folder;
    const QString name = QStringLiteral("K.conf");
    folder.write(name, fuzz::textOf(data, size));
    IniUserDefaults defaults(folder.path(name));
    const QString on = QStringLiteral("UserNotificationOn");
    const QString changed = QStringLiteral("ShowUserNotificationChanged");
    fuzz::taken += defaults.boolForKey(on) || defaults.boolForKey(changed) ? 1U : 0U;
    const bool before = defaults.boolForKey(changed);
    defaults.setInteger(on, 1);
    fuzz::require(defaults.boolForKey(on));
    fuzz::require(defaults.boolForKey(changed) == before);
    defaults.removeObject(on);
    fuzz::require(!defaults.boolForKey(on));
    fuzz::require(defaults.boolForKey(changed) == before);
    folder.remove(name);
    return 0;
}
