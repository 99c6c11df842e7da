#include "core/StatusCommand.h"

#include "core/AnswerLimit.h"
#include "core/StatusFollower.h"
#include "core/StatusOptions.h"
#include "core/TerminalOutput.h"
#include "platform/BusProbe.h"
#include "platform/Texts.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sysexits.h>

namespace korvale {
namespace {

constexpr std::chrono::seconds longestWait{5};

void print(const QByteArray& text) {
    const bool isTaken = std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()),
                                     stdout) == static_cast<std::size_t>(text.size()) &&
                         std::fflush(stdout) == 0;
    if (!isTaken) {
        std::_Exit(EXIT_FAILURE); // nobody reads any more
    }
}

/// Of two equal texts in a row only the first is printed.
class Printer {
public:
    explicit Printer(StatusForm form) : m_form(form) {}
    void operator()(StatusAnswer answer, const QVariantMap& properties) {
        const QByteArray text = statusText(m_form, answer, properties);
        if (text != m_last) {
            m_last = text;
            print(text);
        }
    }

private:
    StatusForm m_form;
    QByteArray m_last;
};

int askAndPrint(const StatusOptions& options) {
    const StatusForm form = options.form;
    const QByteArray tooLate = statusText(form, StatusAnswer::NoAnswer, {});
    // A bus that hangs holds up the toolkit itself.
    std::optional<AnswerLimit> limit;
    limit.emplace(longestWait, [form, tooLate] {
        print(tooLate);
        std::_Exit(statusExitCode(form, StatusAnswer::NoAnswer, {}));
    });
    Printer printer(form);
    const auto bus =
        sessionBusAddress().isEmpty() ? QDBusConnection(QString()) : QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        printer(StatusAnswer::NotRunning, {});
        return statusExitCode(form, StatusAnswer::NotRunning, {});
    }
    StatusFollower follower(bus, [&](StatusAnswer answer, const QVariantMap& properties) {
        printer(answer, properties);
        limit.reset();
        const bool isBusGone = !bus.isConnected();
        if (!options.watches || isBusGone) {
            QCoreApplication::exit(statusExitCode(form, answer, properties));
        }
    });
    return QCoreApplication::exec();
}

} // namespace

int runStatusCommand(const std::vector<QByteArray>& arguments) {
    const auto options = parseStatusOptions(arguments);
    if (!options) {
        TerminalOutput().complain(localizedText("HPS_StatusUsage"));
        return EX_USAGE;
    }
    return askAndPrint(*options);
}

} // namespace korvale
