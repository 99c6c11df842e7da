#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QString>
#include <QTranslator>

#include <initializer_list>
#include <utility>

namespace korvale {

/// Texts for localizedText while it lives; every other key stays its own text. Needs a
/// QCoreApplication.
class FakeTexts final : public QTranslator {
public:
    FakeTexts(std::initializer_list<std::pair<const char*, QString>> texts) {
        for (const auto& [key, text] : texts) {
            m_texts.insert(QByteArray(key), text);
        }
        QCoreApplication::installTranslator(this);
    }
    FakeTexts(const FakeTexts&) = delete;
    FakeTexts& operator=(const FakeTexts&) = delete;
    ~FakeTexts() override { QCoreApplication::removeTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* /*context*/, const char* key,
                                    const char* /*disambiguation*/, int /*n*/) const override {
        return m_texts.value(QByteArray(key));
    }

private:
    QHash<QByteArray, QString> m_texts;
};

} // namespace korvale
