#include "agent/app/Reload.h"

#include "agent/engine/BuiltInEngine.h"
#include "agent/engine/ClamdConfiguration.h"

#include <memory>

namespace korvale::agent {

Reload::Reload(std::string file, BuiltInEngine& builtIn, QObject* parent)
    : QObject(parent), m_file(std::move(file)), m_builtIn(builtIn) {
    m_disk.setMaxThreadCount(1);
}

Reload::~Reload() {
    m_disk.waitForDone();
}

void Reload::ask(Then then) {
    m_waiting.push_back(std::move(then));
    if (!m_reading) {
        begin();
    }
}

void Reload::begin() {
    m_reading = true;
    const auto asked = std::make_shared<std::vector<Then>>(std::move(m_waiting));
    m_waiting.clear();
    m_disk.start([this, asked] {
        Read read{loadConfiguration(m_file), {}};
        if (const auto* good = std::get_if<Configuration>(&read.configuration)) {
            m_builtIn.use(good->hashLists);
            read.signatures = readClamdConfiguration(good->engineConfiguration).databaseFolder;
        }
        // The destructor waits for this thread: the object is there.
        QMetaObject::invokeMethod(
            this,
            [this, asked, read] {
                m_reading = false;
                for (const Then& then : *asked) {
                    then(read);
                }
                if (!m_waiting.empty() && !m_reading) {
                    begin();
                }
            },
            Qt::QueuedConnection);
    });
}

} // namespace korvale::agent
