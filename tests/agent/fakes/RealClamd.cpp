#include "agent/fakes/RealClamd.h"

#include "agent/engine/ClamdCommand.h"
#include "agent/fakes/EicarText.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace korvale::agent {
namespace {

std::string hexOf(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += digits[static_cast<unsigned char>(byte) >> 4];
        text += digits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

std::string signatureLine(const std::string& name, std::string_view content) {
    return name + ":0:*:" + hexOf(content) + '\n';
}

} // namespace

RealClamd::RealClamd(const std::string& options) {
    std::filesystem::create_directory(signatures());
    writeFile(signatures() + "/korvale.ndb",
              signatureLine("Korvale.Test.Eicar", eicarText()) +
                  signatureLine("Korvale.Test.Bad", badMarker) +
                  signatureLine("Heuristics.Korvale.Test", heuristicMarker) +
                  signatureLine("PUA.Korvale.Test", unwantedMarker));
    writeFile(configuration(), "LocalSocket " + socket() + "\nDatabaseDirectory " + signatures() +
                                   "\nForeground yes\nUser root\nDetectPUA yes\n" + options);
    start();
}

void RealClamd::start() {
    m_pid = ::fork();
    if (m_pid == 0) {
        const int null = ::open("/dev/null", O_RDWR);
        ::dup2(null, STDOUT_FILENO);
        ::dup2(null, STDERR_FILENO);
        ::execl(program, program, "-c", configuration().c_str(), nullptr);
        ::_exit(127);
    }
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    std::string error;
    while (!askClamd(socket(), "PING", std::chrono::seconds(2), error)) {
        ASSERT_LT(std::chrono::steady_clock::now(), limit) << error;
        ASSERT_EQ(::waitpid(m_pid, nullptr, WNOHANG), 0) << "clamd ended at its start";
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

void RealClamd::kill() {
    signal(SIGKILL);
    ::waitpid(m_pid, nullptr, 0);
    m_pid = -1;
}

void RealClamd::end() {
    if (m_pid > 0) {
        kill(); // nobody misses what it would tidy up
    }
}

void RealClamd::signal(int number) const {
    ::kill(m_pid, number);
}

} // namespace korvale::agent
