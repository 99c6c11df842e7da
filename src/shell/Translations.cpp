#include "shell/Translations.h"

#include <QCoreApplication>
#include <QLocale>
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

QString primarySubtag(const QString& language) {
    return language.section(u'-', 0, 0);
}

} // namespace

Translations::Translations() : Translations(QLocale::system().uiLanguages()) {}

Translations::Translations(const QStringList& languages) {
    registerTexts();
    install(QStringLiteral("en"));
    for (const QString& language : languages) {
        const QString wanted = primarySubtag(language);
        const bool isThere =
            std::any_of(translatedLanguages.begin(), translatedLanguages.end(),
                        [&wanted](const char16_t* known) { return wanted == QStringView(known); });
        if (isThere) {
            if (wanted != QLatin1String("en")) {
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
        QCoreApplication::installTranslator(translator.get());
        m_translators.push_back(std::move(translator));
    }
}

} // namespace korvale
