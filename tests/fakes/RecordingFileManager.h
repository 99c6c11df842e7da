#pragma once

#include "platform/FileManager.h"

#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

namespace korvale::fakes {

/// Keeps what it is asked; answers when the test says so, of the files in `there`.
class RecordingFileManager final : public FileManager {
public:
    void lookFor(const QString& path, QObject* /*context*/, Answer answer) override {
        lookedFor.append(path);
        m_answers.emplace_back(path, std::move(answer));
    }
    void show(const QString& path, QObject* /*context*/, Answer answer) override {
        shown.append(path);
        m_answers.emplace_back(path, std::move(answer));
    }

    void answerAll() {
        for (const auto& [path, answer] : std::exchange(m_answers, {})) {
            answer(there.contains(path));
        }
    }

    QStringList there;
    QStringList lookedFor;
    QStringList shown;

private:
    std::vector<std::pair<QString, Answer>> m_answers;
};

} // namespace korvale::fakes
