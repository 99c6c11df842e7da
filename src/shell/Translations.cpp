#include "shell/Translations.h"

#include "platform/UserLanguages.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QResource>

#include <algorithm>
#include <array>

// Outside any namespace, as the macro demands: the texts are in a static library.
static void registerTexts() {
    Q_INIT_RESOURCE(texts);
}

namespace korvale {
namespace {

constexpr std::array translatedLanguages{u"de", u"en", u"es", u"fr", u"ja"};

/// "de" of "de_AT@euro".
QString primarySubtag(const QByteArray& language) {
    const auto* const end = std::find_if_not(language.begin(), language.end(),
                                             [](char c) { return c >= 'a' && c <= 'z'; });
    return QString::fromLatin1(language.first(end - language.begin()));
}

} // namespace

Translations::Translations() : Translations(userLanguages()) {}

Translations::Translations(const std::vector<QByteArray>& languages) {
    registerTexts();
    install(QStringLiteral("en"));
    for (const QByteArray& language : languages) {
        const QString wanted = primarySubtag(language);
        const bool isThere =
            std::any_of(translatedLanguages.begin(), translatedLanguages.end(),
                        [&wanted](const char16_t* known) { return wanted == QStringView(known); });
        if (isThere) {
            if (wanted != QLatin1String("en")) {
                installToolkits(wanted);
                install(wanted);
            }
            return;
        }
    }
}

void Translations::install(const QString& language) {
    // Uncompressed, so that the translator works on the compiled-in bytes themselves.
    const QResource texts(QStringLiteral(":/texts/") + language + QStringLiteral(".qm"));
    auto translator = std::make_unique<QTranslator>();
    if (texts.isValid() && translator->load(texts.data(), static_cast<int>(texts.size()))) {
        add(std::move(translator));
    }
}

/// Buttons and dialogs of the toolkit's own. Where its catalogues are not installed these are
/// English.
void Translations::installToolkits(const QString& language) {
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(QStringLiteral("qtbase_") + language,
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        add(std::move(translator));
    }
}

void Translations::add(std::unique_ptr<QTranslator> translator) {
    QCoreApplication::installTranslator(translator.get());
    m_translators.push_back(std::move(translator));
}

} // namespace korvale
