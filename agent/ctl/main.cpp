#include "agent/ctl/AgentCall.h"
#include "agent/ctl/Session.h"

#include <QCoreApplication>

#include <chrono>
#include <thread>

int main(int argc, char* argv[]) {
    // Before the toolkit looks at them: file names are bytes.
    const std::vector<std::string> words(argv + 1, argv + argc);
    const QCoreApplication application(argc, argv);
    korvale::agent::Session session(
        korvale::agent::callAgent,
        [] { std::this_thread::sleep_for(std::chrono::milliseconds(500)); }, stdin, stdout, stderr);
    return session.run(words);
}
