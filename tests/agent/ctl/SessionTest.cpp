#include "agent/ctl/Session.h"

#include "agent/ctl/Rendering.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>
#include <memory>

namespace korvale::agent {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

QJsonObject json(const char* text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    EXPECT_TRUE(document.isObject()) << text;
    return document.object();
}

class SessionTest : public ::testing::Test {
protected:
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

    int run(const std::vector<std::string>& words, const std::string& typed = {}) {
        m_output = File(std::tmpfile(), &std::fclose);
        m_errors = File(std::tmpfile(), &std::fclose);
        const File input(std::tmpfile(), &std::fclose);
        std::fwrite(typed.data(), 1, typed.size(), input.get());
        std::rewind(input.get());
        Session session(
            [this](const QString& method, const QJsonObject& arguments) {
                m_methods += method;
                m_arguments = arguments;
                const CallResult result = m_results.front();
                if (m_results.size() > 1) {
                    m_results.erase(m_results.begin());
                }
                return result;
            },
            [] {}, input.get(), m_output.get(), m_errors.get());
        return session.run(words);
    }
    void answer(const char* text) {
        m_results.push_back({CallResult::Kind::Answered, json(text), {}});
    }

    static std::string read(const File& file) {
        std::rewind(file.get());
        std::string text(65536, '\0');
        text.resize(std::fread(text.data(), 1, text.size(), file.get()));
        return text;
    }
    [[nodiscard]] std::string output() const { return read(m_output); }
    [[nodiscard]] std::string errors() const { return read(m_errors); }

    File m_output{nullptr, &std::fclose};
    File m_errors{nullptr, &std::fclose};
    std::vector<CallResult> m_results;
    QStringList m_methods;
    QJsonObject m_arguments;
};

TEST_F(SessionTest, PrintsTheAnswerAsItIsWhenAskedForJson) {
    answer(R"({"ok": true, "threats": [], "new member": 5})");
    EXPECT_EQ(run({"threats", "--json"}), Session::Done);
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(output())).object(),
              m_results.front().answer);
    EXPECT_EQ(errors(), "");
}

TEST_F(SessionTest, ShowsThreatsOneALineWithHarmlessNames) {
    answer(R"({"ok": true, "threats": [{"number": 7, "id": "275a021bbfb6489e54d4", "state":
        "quarantined", "kind": "unsafe", "name": "Bad\nName", "last_seen": 1763700000,
        "path": "shown", "uri": "file:///home/a%0A%1B[2Jb"}]})");
    EXPECT_EQ(run({"threats"}), Session::Done);
    EXPECT_THAT(output(), HasSubstr("/home/a\\x0a\\x1b[2Jb\n"));
    EXPECT_THAT(output(), HasSubstr("7  275a021bbfb6489e  quarantined  unsafe"));
    EXPECT_EQ(output().find('\n'), output().size() - 1);
    EXPECT_THAT(output(), Not(HasSubstr("\x1b")));
}

TEST_F(SessionTest, TellsByItsStatusWhatKeptItFromBeingDone) {
    answer(R"({"ok": false, "code": "refused", "error": "No consent.\u001b[2J"})");
    EXPECT_EQ(run({"quarantine", "7"}), Session::Refused);
    EXPECT_EQ(errors(), "korvale-agentctl: No consent.\\x1b[2J\n");
    m_results.clear();
    answer(R"({"ok": false, "code": "failed", "error": "Not all.", "results": [
        {"uri": "file:///a", "outcome": "taken"},
        {"uri": "file:///b", "outcome": "gone", "reason": "There is no such file."}]})");
    EXPECT_EQ(run({"quarantine", "7"}), Session::NotDone);
    EXPECT_EQ(output(), "taken: /a\ngone: /b (There is no such file.)\n");
    m_results = {{CallResult::Kind::NoAgent, {}, QStringLiteral("It does not run.")}};
    EXPECT_EQ(run({"status"}), Session::NoAgent);
    EXPECT_THAT(errors(), HasSubstr("It does not run."));
    m_results = {{CallResult::Kind::Failed, {}, QStringLiteral("Odd.")}};
    EXPECT_EQ(run({"status"}), Session::NotDone);
    m_methods.clear();
    EXPECT_EQ(run({"bad\x1b"}), Session::Misused);
    EXPECT_THAT(errors(), HasSubstr("bad\\x1b"));
    EXPECT_TRUE(m_methods.isEmpty());
}

TEST_F(SessionTest, AsksBeforeItDeletes) {
    answer(R"({"ok": true, "results": []})");
    EXPECT_EQ(run({"delete", "7"}, "n\n"), Session::NotDone);
    EXPECT_EQ(run({"delete", "7"}), Session::NotDone); // nobody there
    EXPECT_TRUE(m_methods.isEmpty());
    EXPECT_EQ(run({"delete", "7"}, "y\n"), Session::Done);
    EXPECT_EQ(run({"delete", "--yes", "7"}), Session::Done);
    EXPECT_EQ(m_methods.size(), 2);
}

TEST_F(SessionTest, WaitsForTheEndOfAScan) {
    answer(R"({"ok": true, "scan": 3})");
    answer(R"({"ok": true, "scans": [{"running": true, "number": 3}]})");
    answer(R"({"ok": true, "scans": [{"running": true, "number": 3}],
               "ended_scans": [{"number": 2, "found": 9}]})");
    answer(R"({"ok": true, "ended_scans": [{"number": 3, "kind": "folder", "uri": "file:///a",
               "analysed": 12, "found": 1, "not_scanned": 2, "ended": 1763700000}]})");
    EXPECT_EQ(run({"scan", "--wait", "/a"}), Session::ThreatsFound);
    EXPECT_THAT(output(), HasSubstr("folder /a, 12 files, 1 bad, 2 not scanned, ended 20"));
    EXPECT_EQ(m_methods.size(), 4);

    m_results.clear();
    answer(R"({"ok": true, "scan": 4})");
    answer(R"({"ok": true, "ended_scans": [{"number": 4, "found": 0}]})");
    EXPECT_EQ(run({"scan", "--wait", "/a"}), Session::Done);

    m_results.clear();
    answer(R"({"ok": true, "scan": 5})");
    answer(R"({"ok": true, "scans": [], "ended_scans": [{"number": 4, "found": 0}]})");
    EXPECT_EQ(run({"scan", "--wait", "/a"}), Session::NotDone); // the agent began anew
}

TEST_F(SessionTest, WaitsForItsOwnScanWhileOthersEnd) {
    answer(R"({"ok": true, "scan": 3})");
    // A later one, of the other kind, ends sooner.
    answer(R"({"ok": true, "scans": [{"number": 3}], "ended_scans": [{"number": 4, "found": 2}]})");
    answer(R"({"ok": true, "ended_scans": [{"number": 4, "found": 2}, {"number": 3, "found": 0},
               {"number": 5, "found": 1}]})");
    EXPECT_EQ(run({"scan", "--wait", "/a"}), Session::Done);
    EXPECT_EQ(m_methods.size(), 3);
}

TEST(RenderingTest, SaysHowTheAgentIs) {
    const std::string text = renderAnswer(QStringLiteral("Status"), json(R"({"ok": true,
        "version": "1.0.0", "engine": {"reachable": true, "version": "ClamAV 1.4.6",
        "signatures": 1763600000, "fresh": false},
        "threats": {"detected": 1, "quarantined": 2, "waived": 3},
        "watch": [{"path": "/", "mode": "notify", "problem": ""}],
        "update": {"outcome": "Signatures are up to date."},
        "problems": ["The disk is full."]})"));
    EXPECT_THAT(text, HasSubstr("ClamAV 1.4.6, signatures of 2025-11-2"));
    EXPECT_THAT(text, HasSubstr("(too old)"));
    EXPECT_THAT(text, HasSubstr("1 detected, 2 in quarantine, 3 waived"));
    EXPECT_THAT(text, HasSubstr("/: notify"));
    EXPECT_THAT(text, HasSubstr("Signatures are up to date."));
    EXPECT_THAT(text, HasSubstr("The disk is full."));
}

TEST(RenderingTest, BearsAnswersOfAnyShape) {
    for (const char* const method :
         {"Status", "Threats", "Devices", "Policy", "Why", "Scan", "StopScan", "LastScan"}) {
        for (
            const char* const text :
            {"{}", R"({"threats": 5, "engine": [], "scan": true, "last_scan": "", "watch": {},
                 "problems": [{}], "devices": [1, null], "policy": [], "update": 1})",
             R"({"threats": [5, {}], "scan": {}, "last_scan": {}, "watch": [5], "results": {}})"}) {
            EXPECT_THAT(renderAnswer(QString::fromLatin1(method), json(text)),
                        Not(HasSubstr("\x1b")));
        }
    }
    EXPECT_EQ(renderAnswer(QStringLiteral("Scan"), json(R"({"scan": 3})")),
              "Scan 3 has been asked for.\n");
    EXPECT_THAT(renderAnswer(QStringLiteral("Policy"),
                             json(R"({"policy": {"exclude": ["/a"]}, "problem": "line 3"})")),
                HasSubstr("exclude = [\"/a\"]\nProblem:      line 3"));
    EXPECT_THAT(renderAnswer(QStringLiteral("Why"), json(R"({"uri": "file:///x", "watched": false,
                    "rule": "nothing", "verdict": "unknown"})")),
                HasSubstr("no (nothing)"));
}

} // namespace
} // namespace korvale::agent
