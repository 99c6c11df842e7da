#include "core/TerminalCommand.h"

#include "core/FolderToScan.h"
#include "core/ScanWait.h"
#include "core/TerminalOutput.h"
#include "core/UpdaterWait.h"
#include "core/base/TextFormat.h"
#include "platform/LastNotification.h"
#include "platform/Termination.h"
#include "platform/Texts.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <array>
#include <utility>

namespace korvale {
namespace {

/// One thing to ask for.
struct Verb {
    TerminalVerb verb;
    ServiceCommand command;
    const char* begunKey; ///< what is said once the agent has said yes
    const char* nameKey;  ///< as menus call it
};
constexpr std::array verbs{
    Verb{TerminalVerb::CheckUpdates, ServiceCommand::CheckUpdates, "HPS_TermUpdates",
         "CheckForUpdates"},
    Verb{TerminalVerb::Scan, ServiceCommand::ForwardFolderScan, "HPS_TermScan", "HPS_TermScanName"},
    Verb{TerminalVerb::StartBackgroundScan, ServiceCommand::ScanBackground, "HPS_TermBackground",
         "TM_Background"},
    Verb{TerminalVerb::StopScans, ServiceCommand::StopScan, "HPS_TermStop", "TM_Stop"},
};

const Verb& verbOf(TerminalVerb verb) {
    return *std::find_if(verbs.begin(), verbs.end(),
                         [verb](const Verb& known) { return known.verb == verb; });
}

/// What is said of an answer that is no yes.
struct Failure {
    RequestOutcome outcome;
    const char* key;
    int status;
};
constexpr std::array failures{
    Failure{RequestOutcome::Refused, "HPS_TermRefused", TerminalStatus::refused},
    Failure{RequestOutcome::NoAgent, "HPS_TermNoAgent", TerminalStatus::noAgent},
    Failure{RequestOutcome::NoAnswer, "HPS_TermNoAnswer", TerminalStatus::noAnswer},
    Failure{RequestOutcome::NotUnderstood, "HPS_TermNotUnderstood", TerminalStatus::noAnswer},
};

/// No value, and the complaint printed, when one of them cannot be scanned.
std::optional<QStringList> checkedFolders(const TerminalOptions& options, TerminalOutput& output) {
    QStringList folders;
    for (const QByteArray& argument : options.folders) {
        const FolderToScan folder = FolderToScan::named(argument);
        if (folder.path.isEmpty()) {
            output.complain(folder.refusal);
            return std::nullopt;
        }
        folders += folder.path;
    }
    return folders;
}

int obey(const TerminalOptions& options, TerminalOutput& output,
         TerminationSignals& signalsOfTheSystem) {
    const auto folders = checkedFolders(options, output);
    if (!folders) {
        return TerminalStatus::refused;
    }
    TerminalCommand command(options, *folders, output);
    QObject::connect(&command, &TerminalCommand::ended, &command,
                     [](int status) { QCoreApplication::exit(status); });
    QObject::connect(&signalsOfTheSystem, &TerminationSignals::requested, &command, [&command] {
        command.interrupt();
        QCoreApplication::exit(TerminalStatus::interrupted + TerminationSignals::received());
    });
    QMetaObject::invokeMethod(&command, &TerminalCommand::begin, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

/// For whoever clicked, and has no terminal to read it in. An answer to a click: whether the user
/// wants to be notified of what happens by itself does not matter.
void tellOnScreen(TerminalVerb verb, QStringList complaints,
                  const TerminationSignals& signalsOfTheSystem) {
    complaints.removeDuplicates(); // of several folders
    LastNotification notification({.title = localizedText("ProductEP"),
                                   .subtitle = localizedText(verbOf(verb).nameKey),
                                   .message = complaints.join(u'\n'),
                                   .picture = {},
                                   .link = {}});
    QEventLoop loop;
    QObject::connect(&notification, &LastNotification::ended, &loop, &QEventLoop::quit);
    QObject::connect(&signalsOfTheSystem, &TerminationSignals::requested, &loop, &QEventLoop::quit);
    notification.send();
    loop.exec();
}

} // namespace

TerminalCommand::TerminalCommand(TerminalOptions options, QStringList folders,
                                 TerminalOutput& output, std::chrono::milliseconds answerLimit)
    : m_options(std::move(options)),
      m_folders(std::move(folders)),
      m_output(output),
      m_talk(answerLimit) {
    connect(&m_talk, &AgentTalk::told, this, [this](AgentNotification what) {
        if (m_wait) {
            m_wait->told(what);
        }
    });
    connect(&m_talk, &AgentTalk::left, this, [this] {
        if (m_wait) {
            m_wait->agentLeft();
        }
    });
}

TerminalCommand::~TerminalCommand() = default;

void TerminalCommand::begin() {
    sendNext();
}

void TerminalCommand::interrupt() {
    const bool isScan =
        m_options.verb == TerminalVerb::Scan || m_options.verb == TerminalVerb::StartBackgroundScan;
    if (m_isWaiting && isScan) {
        m_output.complain(localizedText("HPS_TermGoesOn"));
    }
}

void TerminalCommand::sendNext() {
    m_folder = m_folders.isEmpty() ? QString() : m_folders.takeFirst();
    prepareWait();
    m_talk.request(
        verbOf(m_options.verb).command, m_folder,
        [this](RequestOutcome outcome, const QString& text) { answered(outcome, text); });
}

/// Before the request: what it changes shows only to those who know how things were.
void TerminalCommand::prepareWait() {
    if (!m_options.waits) {
        return;
    }
    switch (m_options.verb) {
    case TerminalVerb::CheckUpdates:
        m_wait = std::make_unique<UpdaterWait>(m_output);
        break;
    case TerminalVerb::Scan:
    case TerminalVerb::StartBackgroundScan:
        m_wait = std::make_unique<ScanWait>(ScanWait::For::Findings, m_folder, m_output);
        break;
    case TerminalVerb::StopScans:
        m_wait = std::make_unique<ScanWait>(ScanWait::For::Quiet, m_folder, m_output);
        break;
    }
    connect(m_wait.get(), &TerminalWait::ended, this, &TerminalCommand::waited,
            Qt::QueuedConnection); // it is the one that speaks
}

void TerminalCommand::answered(RequestOutcome outcome, const QString& text) {
    const auto* const failure =
        std::find_if(failures.begin(), failures.end(),
                     [outcome](const Failure& known) { return known.outcome == outcome; });
    if (failure != failures.end()) {
        m_output.complain(formatText(localizedText(failure->key), {text}));
        m_status = std::max(m_status, failure->status);
        goOn();
        return;
    }
    m_output.say(formatText(localizedText(verbOf(m_options.verb).begunKey), {m_folder}));
    if (m_wait) {
        m_isWaiting = true;
        m_wait->begin();
    } else {
        goOn();
    }
}

void TerminalCommand::waited(int status, const char* complaint) {
    m_isWaiting = false;
    if (complaint != nullptr) {
        m_output.complain(localizedText(complaint));
    }
    m_status = std::max(m_status, status);
    goOn();
}

/// One folder that is refused keeps nobody from the next; an agent that is away does.
void TerminalCommand::goOn() {
    m_wait.reset();
    if (m_folders.isEmpty() || m_status > TerminalStatus::refused) {
        Q_EMIT ended(m_status);
    } else {
        sendNext();
    }
}

int runTerminalCommand(const std::vector<QByteArray>& arguments,
                       TerminationSignals& signalsOfTheSystem) {
    TerminalOutput output;
    const auto options = parseTerminalOptions(arguments);
    if (!options) {
        output.complain(localizedText("HPS_TermUsage"));
        return TerminalStatus::refused;
    }
    signalsOfTheSystem.watch();
    const int status = obey(*options, output, signalsOfTheSystem);
    if (options->notifies && !output.complaints().isEmpty() &&
        status < TerminalStatus::interrupted) {
        tellOnScreen(options->verb, output.complaints(), signalsOfTheSystem);
    }
    return status;
}

} // namespace korvale
