#include "agent_sim/CommandTable.h"

#include "agent_sim/CommandHandlers.h"
#include "agent_sim/FileFaults.h"
#include "agent_sim/ReplyFaults.h"

#include <array>

namespace korvale::sim {
namespace {

constexpr int kNoRest = Command::kNoRest;

constexpr Command command(const char* name, const char* arguments, int least, int most,
                          int restFrom, Outcome (*run)(Agent&, const QStringList&),
                          const char* help) {
    return {QLatin1String(name),
            QLatin1String(arguments),
            least,
            most,
            restFrom,
            QLatin1String(help),
            run};
}

// clang-format off
constexpr std::array kCommands{
    command("start", "", 0, 0, kNoRest, &message_commands::start,
            "post agent.started"),
    command("stop", "", 0, 0, kNoRest, &message_commands::stop,
            "post agent.stopped (the name on the bus is kept: see release-name)"),
    command("running", "", 0, 0, kNoRest, &message_commands::running,
            "post agent.running"),
    command("halyx", "on|off", 1, 1, kNoRest, &message_commands::halyx,
            "the management console is connected or not"),
    command("quillmar", "on|off", 1, 1, kNoRest, &message_commands::quillmar,
            "the cloud analysis is connected or not"),
    command("driver", "lost|connected|value [TEXT]", 1, 2, 1, &message_commands::driver,
            "the driver goes or comes; value sets only what GDRV answers"),
    command("exe-blocked", "PATH", 1, 1, 0, &message_commands::exeBlocked,
            "the start of a program was blocked"),
    command("process-terminated", "PATH", 1, 1, 0, &message_commands::processTerminated,
            "a process was terminated"),
    command("process-blocked", "PATH", 1, 1, 0, &message_commands::processBlocked,
            "an action of a process was blocked"),
    command("consumer-notification", "TEXT [URL]", 1, 2, kNoRest,
            &message_commands::consumerNotification, "a message of the management console"),
    command("sondar", "TEXT", 1, 1, 0, &message_commands::sondar,
            "send the unsolicited message with that text"),
    command("message", "DATA", 1, 1, 0, &message_commands::message,
            "send an unsolicited message with exactly these bytes"),
    command("analyzer", "PATH", 1, 1, 0, &message_commands::analyzer,
            "the analyser is at that file"),
    command("update-status", "TEXT", 1, 1, 0, &message_commands::updateStatus,
            "write an encrypted updater status file for today"),
    command("update-status-as", "NAME DATE TEXT", 3, 3, 2, &message_commands::updateStatusAs,
            "the same with a file name and the day (yyyy-mm-dd) of the key"),
    command("post", "NAME", 1, 1, kNoRest, &message_commands::post,
            "post any of the twenty notifications (\"com.korvale.\" may be left out)"),
    command("policy", "expired|invalid-company|invalid-signature|name TEXT|mode TEXT|"
            "notifications on|off", 1, 2, 1, &setting_commands::policy,
            "post a policy problem, or set what POLY answers"),
    command("set", "device-name|companion-version|policy-updated|log-level|resp TEXT", 2, 2, 1,
            &setting_commands::set, "set what CUST, GOPV, GPUT, GLOG and all \"RESP\" say"),
    command("settings", "", 0, 0, kNoRest, &setting_commands::settings,
            "print what the agent answers, as one line of JSON"),
    command("exploit", "PID PATH STATE [COUNT] [TYPE]", 3, 5, kNoRest, &list_commands::exploit,
            "an exploit attempt; STATE is alert, ignored, blocked, terminated or a number"),
    command("threat", "PATH STATE ID [SCORE]", 3, 4, kNoRest, &list_commands::threat,
            "a file's state bits (1 unsafe, 2 abnormal, 4 waived, 8 quarantined; 0 removes it)"),
    command("event", "threat PATH STATE EVENT | exploit PID PATH STATE TYPE | raw KEY JSON", 3, 5,
            kNoRest, &list_commands::event, "a record of the event list alone"),
    command("device", "TYPE ACTION [VENDOR] [PRODUCT] [SERIAL]", 2, 5, kNoRest,
            &list_commands::device, "a device event; ACTION is Block or FullAccess"),
    command("analysed", "NUMBER", 1, 1, kNoRest, &list_commands::analysed,
            "set the number of analysed files"),
    command("synthetic", "NUMBER [files|processes|events|devices|all]", 1, 2, kNoRest,
            &list_commands::synthetic, "put that many made-up records (files) into the lists"),
    command("clear", "", 0, 0, kNoRest, &list_commands::clear, "empty all lists"),
    command("batch", "on|off", 1, 1, kNoRest, &list_commands::batch,
            "collect changes until publish, or (at first) publish each change at once"),
    command("publish", "[MASK]", 0, 1, kNoRest, &list_commands::publish,
            "write the changed lists and header.log, post timer.aggregated_messages"),
    command("scan", "PATH", 1, 1, 0, &scan_commands::scan,
            "start to scan a folder (\"note scan finished\" tells the end)"),
    command("background-scan", "[PATH]", 0, 1, 0, &scan_commands::backgroundScan,
            "start a background scan, of the folder of --scan-folder unless PATH is given"),
    command("stop-scan", "", 0, 0, kNoRest, &scan_commands::stopScan, "end the scan"),
    command("wait-scan", "", 0, 0, kNoRest, &scan_commands::waitScan,
            "answer when no scan is running any more"),
    command("scan-pace", "MILLISECONDS", 1, 1, kNoRest, &scan_commands::scanPace,
            "least time for one file, so that people can watch"),
    command("quarantine", "PATH", 1, 1, 0, &scan_commands::quarantine,
            "move a file on the threat list to the quarantine folder"),
    command("waive", "PATH", 1, 1, 0, &scan_commands::waive, "waive a file on the threat list"),
    command("write-test-file", "PATH", 1, 1, 0, &scan_commands::writeTestFile,
            "write the EICAR test string into a new file"),
    command("write-abnormal-file", "PATH", 1, 1, 0, &scan_commands::writeAbnormalFile,
            "write a new file that counts as abnormal"),
    command("requests", "[clear]", 0, 1, kNoRest, &setting_commands::requests,
            "print the requests that came in, one line of JSON each, or forget them"),
    command("wait-request", "COMMAND [SECONDS]", 1, 2, kNoRest, &setting_commands::waitRequest,
            "answer when a request came that no earlier wait-request took (60 s unless told)"),
    command("set-reply", "COMMAND JSON", 2, 2, 1, &fault_commands::setReply,
            "always answer this object to that command (see normal-replies)"),
    command("raw-reply", "COMMAND DATA", 2, 2, 1, &fault_commands::rawReply,
            "always answer these bytes to that command"),
    command("reply-delay", "MILLISECONDS", 1, 1, kNoRest, &fault_commands::replyDelay,
            "answer that much later"),
    command("hang", "on|off", 1, 1, kNoRest, &fault_commands::hang,
            "accept requests and never answer them"),
    command("malformed-reply", "KIND|off", 1, 1, kNoRest, &fault_commands::malformedReply,
            "answer everything in a malformed way; kinds: see below"),
    command("normal-replies", "", 0, 0, kNoRest, &fault_commands::normalReplies,
            "take back all of the five above"),
    command("malformed-file", "NAME KIND", 2, 2, kNoRest, &fault_commands::malformedFile,
            "put a malformed file into the host cache; kinds: see below"),
    command("raw-file", "NAME DATA", 2, 2, 1, &fault_commands::rawFile,
            "write exactly these bytes to a host-cache file"),
    command("release-name", "", 0, 0, kNoRest, &setting_commands::releaseName,
            "give the name on the bus away"),
    command("take-name", "", 0, 0, kNoRest, &setting_commands::takeName,
            "own the name on the bus (as at the start); answers when it does, at most 60 s later"),
    command("wait", "SECONDS", 1, 1, kNoRest, &setting_commands::wait, "do nothing for a while"),
    command("help", "", 0, 0, kNoRest, &setting_commands::help, "print this list"),
    command("quit", "", 0, 0, kNoRest, &setting_commands::quit, "end the agent"),
};
// clang-format on

} // namespace

std::span<const Command> commands() {
    return kCommands;
}

const Command* findCommand(const QString& name) {
    for (const Command& known : kCommands) {
        if (known.name == name) {
            return &known;
        }
    }
    return nullptr;
}

QString commandHelp() {
    QString text = QStringLiteral(
        "Commands, one a line, on standard input and in scenario files. Each is answered with one\n"
        "line, \"ok ...\" or \"error ...\", when it has taken effect. A '#' begins a comment "
        "line.\n"
        "An argument with blanks stands in double quotes (\\\" \\\\ \\n \\t inside); the last "
        "argument\n"
        "of commands that take one text or path may have blanks without quotes.\n\n");
    for (const Command& known : kCommands) {
        text += QStringLiteral("  %1 %2\n      %3\n").arg(known.name, known.arguments, known.help);
    }
    text += QStringLiteral("\nKinds of malformed replies: %1\nKinds of malformed files: %2\n")
                .arg(faultyReplyKinds().join(u' '), faultyFileKinds().join(u' '));
    return text;
}

} // namespace korvale::sim
