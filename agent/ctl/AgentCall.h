#pragma once

#include <QJsonObject>
#include <QString>

namespace korvale::agent {

/// What came of a call of the control interface.
struct CallResult {
    enum class Kind {
        Answered, ///< `answer` is what the agent says, "ok" or not
        NoAgent,  ///< no bus, or no agent on it
        Failed,   ///< anything else
    };

    Kind kind = Kind::Failed;
    QJsonObject answer;
    QString trouble; ///< a sentence, unless answered
};

/// Calls the agent on the system bus and waits for its answer as long as it takes.
[[nodiscard]] CallResult callAgent(const QString& method, const QJsonObject& arguments);

} // namespace korvale::agent
