#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace korvale {

/// A folder for one test.
class TestFolder {
public:
    [[nodiscard]] QString path(const QString& name = QString()) const {
        return name.isEmpty() ? m_folder.path() : m_folder.filePath(name);
    }

    void write(const QString& name, const QByteArray& content) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    [[nodiscard]] QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QJsonObject readJson(const QString& name) const {
        return QJsonDocument::fromJson(read(name)).object();
    }

    [[nodiscard]] QStringList names() const {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private:
    QTemporaryDir m_folder;
};

} // namespace korvale
