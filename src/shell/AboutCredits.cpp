#include "shell/AboutCredits.h"

#include "core/base/TextFormat.h"
#include "platform/Texts.h"

namespace korvale {

QString aboutCredits(const AppState& state) {
    QString credits =
        formatText(u"%@ %@  (%@)\n%@ %@",
                   {localizedText("AboutPolicy"), state.policyName, state.policyMode,
                    localizedText("AboutPolicyLastUpdated"), state.policyLastUpdateTime});
    if (!state.sondarVersionNumberString.isEmpty()) {
        credits.prepend(formatText(u"SONDAR Version : %@\n", {state.sondarVersionNumberString}));
    }
    return credits;
}

} // namespace korvale
