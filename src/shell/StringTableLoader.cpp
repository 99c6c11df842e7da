#include "shell/StringTableLoader.h"

namespace korvale {

void StringTableLoader::load(QXmlStreamReader& document) {
    while (!document.atEnd()) {
        switch (document.readNext()) {
        case QXmlStreamReader::StartElement:
            didStartElement(document.qualifiedName(), document.attributes());
            break;
        case QXmlStreamReader::Characters:
            foundCharacters(document.text());
            break;
        case QXmlStreamReader::EndElement:
            didEndElement(document.qualifiedName());
            break;
        default:
            break;
        }
    }
}

void StringTableLoader::didStartElement(QStringView name, const QXmlStreamAttributes& attributes) {
    if (name == QLatin1String("data")) {
        const QString nameAttribute = QStringLiteral("name");
        m_currentKey = attributes.hasAttribute(nameAttribute)
                           ? std::optional(attributes.value(nameAttribute).toString())
                           : std::nullopt;
    } else if (name == QLatin1String("value")) {
        m_currentValue = QString();
    }
}

void StringTableLoader::foundCharacters(QStringView characters) {
    if (m_currentValue) {
        m_currentValue->append(characters);
    }
}

void StringTableLoader::didEndElement(QStringView name) {
    if (name != QLatin1String("data")) {
        return;
    }
    if (m_currentKey && m_currentValue) {
        m_strings[*m_currentKey] = *m_currentValue;
    } else if (m_currentKey) {
        m_strings.erase(*m_currentKey);
    }
    m_currentValue.reset();
}

} // namespace korvale
