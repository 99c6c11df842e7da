#pragma once

#include "agent/ctl/AgentCall.h"

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace korvale::agent {

/// One run of korvale-agentctl.
class Session {
public:
    /// Exit statuses, as korvale-agentctl(8) has them.
    enum Status : int {
        Done = 0,
        NotDone = 1,      ///< the agent could not do it, or not all of it
        Misused = 2,      ///< the command line makes no sense
        NoAgent = 3,      ///< it does not run
        Refused = 4,      ///< no consent
        ThreatsFound = 5, ///< by a scan that was waited for
    };
    using Call = std::function<CallResult(const QString& method, const QJsonObject& arguments)>;
    /// Waits a little between two looks at a scan.
    using Pause = std::function<void()>;

    /// `input`, `output` and `errors` are borrowed.
    Session(Call call, Pause pause, std::FILE* input, std::FILE* output, std::FILE* errors);

    /// `words`: the command line behind the program's name.
    int run(const std::vector<std::string>& words);

private:
    int report(const QString& method, const CallResult& result, bool json);
    int waitForScan(const QJsonObject& answer, bool json);
    [[nodiscard]] bool confirmed() const;
    void say(std::FILE* to, const std::string& text) const;

    Call m_call;
    Pause m_pause;
    std::FILE* m_input;
    std::FILE* m_output;
    std::FILE* m_errors;
};

} // namespace korvale::agent
