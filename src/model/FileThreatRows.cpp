#include "model/FileThreatRows.h"

#include "model/FileThreatFolder.h"
#include "model/Paths.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"
#include "platform/SafeText.h"
#include "platform/Texts.h"

#include <limits>
#include <utility>

namespace korvale {
namespace {

// Between two paths.
constexpr QLatin1String emptyLine{"\n\n"};
constexpr QLatin1String nul{"\0", 1};
constexpr qsizetype everything = std::numeric_limits<qsizetype>::max();

QString asItIs(const QString& path) {
    return path;
}

} // namespace

FileThreatRows::FileThreatRows(Storage storage) : m_storage(std::move(storage)) {
    if (m_storage.rows.empty()) {
        m_storage = {}; // no need to keep a file of which nothing is shown
    }
}

std::optional<QString> FileThreatRows::text(std::size_t index, RowKey key) const {
    const Row& row = m_storage.rows[index];
    switch (key) {
    case RowKey::File:
        return lastPathComponent(pathText(row.firstPath)).toLower();
    case RowKey::FileToolTip:
        // Of many only the first are ever seen, and this is asked for with each cell.
        return joinedPaths(index, emptyLine, asItIs, longestShownText);
    case RowKey::EveryPath:
        return joinedPaths(index, emptyLine, unbrokenText, everything);
    case RowKey::ExactPaths:
        return joinedPaths(index, nul, asItIs, everything);
    case RowKey::Category:
        return stateStringFromValue(row.state);
    case RowKey::CategoryToolTip:
        return localizedText("CategoryTooltip");
    case RowKey::Found:
        return QString::number(row.count);
    case RowKey::FoundToolTip:
        return localizedText("FoundTooltip");
    case RowKey::Id:
    case RowKey::IdToolTip:
        return valueOf(row.id);
    case RowKey::Score:
        return valueOf(row.score);
    case RowKey::Path:
        return pathText(row.firstPath);
    case RowKey::Meaning:
        return QString::fromLatin1(stateKeyFromValue(row.state));
    default:
        return std::nullopt;
    }
}

std::unique_ptr<RowFolder> FileThreatRows::folder() const {
    return std::make_unique<FileThreatFolder>(*this);
}

void FileThreatRows::visitPaths(std::size_t index, const PathVisitor& visit) const {
    std::uint32_t path = m_storage.rows[index].firstPath;
    while (path != none && visit(pathText(path))) {
        path = m_storage.paths[path].next;
    }
}

std::size_t FileThreatRows::pathCount(std::size_t index) const {
    return m_storage.rows[index].count;
}

std::optional<RowIdentity> FileThreatRows::identity(std::size_t index) const {
    const Row& row = m_storage.rows[index];
    const QByteArray name = bytesOf(row.id);
    return RowIdentity{row.state, QByteArray(name.constData(), name.size()),
                       pathBytes(row.firstPath).toByteArray()};
}

std::optional<std::size_t> FileThreatRows::find(const RowIdentity& identity) const {
    std::optional<std::size_t> inAnotherState;
    for (std::size_t index = 0; index < m_storage.rows.size(); ++index) {
        const Row& row = m_storage.rows[index];
        if (bytesOf(row.id) != identity.name) {
            continue;
        }
        if (row.state == identity.state) {
            return index;
        }
        if (!inAnotherState && pathBytes(row.firstPath) == identity.path) {
            inAnotherState = index;
        }
    }
    return inAnotherState;
}

QByteArray FileThreatRows::bytesOf(JsonNode node) const {
    if (node.kind == JsonKind::Null) {
        return {};
    }
    if (node.isContainer()) {
        return m_storage.texts[node.offset].toUtf8();
    }
    return QByteArray::fromRawData(m_storage.bytes.get() + node.offset, node.extent);
}

QByteArrayView FileThreatRows::pathBytes(std::uint32_t path) const {
    const Path& place = m_storage.paths[path];
    return {m_storage.bytes.get() + place.offset, static_cast<qsizetype>(place.length)};
}

QString FileThreatRows::pathText(std::uint32_t path) const {
    const Path& place = m_storage.paths[path];
    return utf8Text({m_storage.bytes.get() + place.offset, place.length});
}

QString FileThreatRows::joinedPaths(std::size_t index, QLatin1String separator, Spelling spelling,
                                    qsizetype enough) const {
    QString paths;
    bool isFirst = true;
    visitPaths(index, [&](const QString& path) {
        if (!std::exchange(isFirst, false)) {
            paths += separator;
        }
        paths += spelling(path);
        return paths.size() <= enough;
    });
    return paths;
}

std::optional<QString> FileThreatRows::valueOf(JsonNode node) const {
    if (node.kind == JsonKind::Null) {
        return std::nullopt;
    }
    if (node.isContainer()) {
        return m_storage.texts[node.offset];
    }
    return scalarText(node.kind, {m_storage.bytes.get() + node.offset, node.extent});
}

} // namespace korvale
