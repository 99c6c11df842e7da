#include "shell/AboutCredits.h"

#include "platform/TextFormat.h"
#include "platform/Texts.h"

namespace korvale {

QString aboutCredits(const AppState& state) {
    const QString credits =
        formatText(u"%@ %@  (%@)\n%@ %@",
                   {localizedText("AboutPolicy"), state.policyName, state.policyMode,
                    localizedText("AboutPolicyLastUpdated"), state.policyLastUpdateTime});
    if (state.sondarVersionNumberString.isEmpty()) {
        return credits;
    }
    return formatText(u"SONDAR Version : %@\n", {state.sondarVersionNumberString}) + credits;
}

} // namespace korvale
