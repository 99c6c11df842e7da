#pragma once

#include "agent_sim/Outcome.h"

/// What the commands of the table do. The number of arguments was checked before.
namespace korvale::sim {

class Agent;

namespace message_commands { // signals and messages
Outcome start(Agent& agent, const QStringList& arguments);
Outcome stop(Agent& agent, const QStringList& arguments);
Outcome running(Agent& agent, const QStringList& arguments);
Outcome halyx(Agent& agent, const QStringList& arguments);
Outcome quillmar(Agent& agent, const QStringList& arguments);
Outcome driver(Agent& agent, const QStringList& arguments);
Outcome exeBlocked(Agent& agent, const QStringList& arguments);
Outcome processTerminated(Agent& agent, const QStringList& arguments);
Outcome processBlocked(Agent& agent, const QStringList& arguments);
Outcome consumerNotification(Agent& agent, const QStringList& arguments);
Outcome analyzer(Agent& agent, const QStringList& arguments);
Outcome sondar(Agent& agent, const QStringList& arguments);
Outcome message(Agent& agent, const QStringList& arguments);
Outcome post(Agent& agent, const QStringList& arguments);
Outcome updateStatus(Agent& agent, const QStringList& arguments);
Outcome updateStatusAs(Agent& agent, const QStringList& arguments);
} // namespace message_commands

namespace setting_commands { // what replies say, and the name on the bus
Outcome policy(Agent& agent, const QStringList& arguments);
Outcome set(Agent& agent, const QStringList& arguments);
Outcome settings(Agent& agent, const QStringList& arguments);
Outcome requests(Agent& agent, const QStringList& arguments);
Outcome waitRequest(Agent& agent, const QStringList& arguments);
Outcome takeName(Agent& agent, const QStringList& arguments);
Outcome releaseName(Agent& agent, const QStringList& arguments);
Outcome wait(Agent& agent, const QStringList& arguments);
Outcome help(Agent& agent, const QStringList& arguments);
Outcome quit(Agent& agent, const QStringList& arguments);
} // namespace setting_commands

namespace list_commands { // records and batches
Outcome threat(Agent& agent, const QStringList& arguments);
Outcome exploit(Agent& agent, const QStringList& arguments);
Outcome event(Agent& agent, const QStringList& arguments);
Outcome device(Agent& agent, const QStringList& arguments);
Outcome analysed(Agent& agent, const QStringList& arguments);
Outcome synthetic(Agent& agent, const QStringList& arguments);
Outcome clear(Agent& agent, const QStringList& arguments);
Outcome batch(Agent& agent, const QStringList& arguments);
Outcome publish(Agent& agent, const QStringList& arguments);
} // namespace list_commands

namespace scan_commands { // scans and files
Outcome scan(Agent& agent, const QStringList& arguments);
Outcome backgroundScan(Agent& agent, const QStringList& arguments);
Outcome stopScan(Agent& agent, const QStringList& arguments);
Outcome waitScan(Agent& agent, const QStringList& arguments);
Outcome scanPace(Agent& agent, const QStringList& arguments);
Outcome quarantine(Agent& agent, const QStringList& arguments);
Outcome waive(Agent& agent, const QStringList& arguments);
Outcome writeTestFile(Agent& agent, const QStringList& arguments);
Outcome writeAbnormalFile(Agent& agent, const QStringList& arguments);
} // namespace scan_commands

namespace fault_commands { // misbehaviour
Outcome hang(Agent& agent, const QStringList& arguments);
Outcome replyDelay(Agent& agent, const QStringList& arguments);
Outcome setReply(Agent& agent, const QStringList& arguments);
Outcome rawReply(Agent& agent, const QStringList& arguments);
Outcome malformedReply(Agent& agent, const QStringList& arguments);
Outcome normalReplies(Agent& agent, const QStringList& arguments);
Outcome malformedFile(Agent& agent, const QStringList& arguments);
Outcome rawFile(Agent& agent, const QStringList& arguments);
} // namespace fault_commands

} // namespace korvale::sim
