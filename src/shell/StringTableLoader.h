#pragma once

#include <QString>
#include <QXmlStreamAttributes>
#include <QXmlStreamReader>

#include <map>
#include <optional>

namespace korvale {

/// Reads a table of texts: a root with elements <data name="key"><value>text</value></data>; the
/// last of equal names counts. Dormant: the program's texts come from Translations.
class StringTableLoader {
public:
    /// Reads as far as the document is well-formed.
    void load(QXmlStreamReader& document);

    void didStartElement(QStringView name, const QXmlStreamAttributes& attributes);
    void foundCharacters(QStringView characters);
    void didEndElement(QStringView name);

    [[nodiscard]] const std::map<QString, QString>& strings() const { return m_strings; }

private:
    std::map<QString, QString> m_strings;
    std::optional<QString> m_currentKey; ///< kept until the next "data"
    std::optional<QString> m_currentValue;
};

} // namespace korvale
