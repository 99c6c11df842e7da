#include "model/FoundThreats.h"

#include "fakes/MemoryUserDefaults.h"
#include "model/HostCache.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

namespace korvale {

void PrintTo(const FoundThreat& threat, std::ostream* stream) {
    *stream << threat.path.toStdString() << ": " << threat.state;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FoundThreatsTest : public testing::Test {
protected:
    void write(const char* name, const QByteArray& content) const {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void files(const QByteArray& list) const { write("file_states.log", list); }
    void events(const QByteArray& list) const { write("file_process_events.log", list); }
    static FoundThreat threat(const char* path, std::uint32_t state) {
        return {QString::fromUtf8(path), state};
    }

    QTemporaryDir m_folder;
    fakes::MemoryUserDefaults m_defaults;
    HostCache m_hostCache{m_defaults, m_folder.path()};
    const QString m_scanned = QStringLiteral("/a");
};

TEST_F(FoundThreatsTest, AreWhatIsNewBelowTheFolder) {
    files(R"({"/a/old":{"State":9,"ID":"1"}})");
    const FoundThreats threats(m_hostCache);
    files(R"({"/a/old":{"State":9,"ID":"1"},"/a/x":{"State":1},"/a/b/y":{"State":10},
              "/ab/z":{"State":1},"/a":{"State":1},"/b/x":{"State":1}})");
    EXPECT_THAT(threats.below(m_scanned), ElementsAre(threat("/a/x", 1), threat("/a/b/y", 10)));
}

TEST_F(FoundThreatsTest, EverywhereMeansEveryPath) {
    const FoundThreats threats(m_hostCache);
    files(R"({"/a/x":{"State":1},"y":{"State":2}})");
    for (const char* everywhere : {"", "/"}) {
        EXPECT_THAT(threats.below(QString::fromLatin1(everywhere)),
                    ElementsAre(threat("/a/x", 1), threat("y", 2)));
    }
}

TEST_F(FoundThreatsTest, WhatWasKnownAndNotDealtWithIsFoundAgain) {
    const QByteArray list = R"({"/a/open":{"State":1},"/a/taken":{"State":9},"/a/fine":{"State":5},
                                "/a/none":{"State":0}})";
    files(list);
    const FoundThreats threats(m_hostCache);
    EXPECT_THAT(threats.below(m_scanned), ElementsAre(threat("/a/open", 1)));
}

TEST_F(FoundThreatsTest, WaivedFilesAreNone) {
    const FoundThreats threats(m_hostCache);
    files(R"({"/a/fine":{"State":5}})");
    events(R"({"/a/fine":{"Category":"Threat","Event":1,"Path":"/a/fine","State":5,"When":"1"}})");
    EXPECT_THAT(threats.below(m_scanned), IsEmpty());
}

TEST_F(FoundThreatsTest, AnotherContentAtATakenPathIsNew) {
    files(R"({"/a/x":{"State":9,"ID":"1"}})");
    const FoundThreats threats(m_hostCache);
    files(R"({"/a/x":{"State":9,"ID":"2"}})");
    EXPECT_THAT(threats.below(m_scanned), ElementsAre(threat("/a/x", 9)));
}

TEST_F(FoundThreatsTest, TheSameContentTakenOnceMoreIsKnownByItsEvent) {
    files(R"({"/a/x":{"State":9,"ID":"1"}})");
    events(R"({"/a/x":{"Category":"Threat","Event":2,"Path":"/a/x","State":9,"When":"1"}})");
    const FoundThreats threats(m_hostCache);
    EXPECT_THAT(threats.below(m_scanned), IsEmpty());
    events(R"({"/a/x":{"Category":"Threat","Event":2,"Path":"/a/x","State":9,"When":"2"},
               "/a/y":{"Category":"Threat","Event":8,"Path":"/a/y","State":1,"When":"2"},
               "e":{"Category":"Exploit","Event":1,"Path":"/a/z","State":1,"When":"2"}})");
    EXPECT_THAT(threats.below(m_scanned), ElementsAre(threat("/a/x", 9)));
}

TEST_F(FoundThreatsTest, ListsOfAnyShapeDoNoHarm) {
    const FoundThreats threats(m_hostCache);
    for (const char* list : {"[]", "[1]", "{}", "{\"/a/x\":1}", "{\"/a/x\":[]}", "nonsense", "",
                             R"({"/a/x":{"State":[1]}})", R"({"/a/x":{"State":{"a":1}}})"}) {
        files(list);
        events(list);
        EXPECT_THAT(threats.below(m_scanned), IsEmpty()) << list;
    }
}

} // namespace
} // namespace korvale
