// picture_sheet FILE: draws every state of the shield, in both icon sets, as light and dark panels
// show it, at the sizes that trays, tool bars and notifications use, and once without colour; then
// the program's own picture, which has no state.
#include "shell/Pictures.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>

#include <array>
#include <cstdio>
#include <span>

namespace korvale {
namespace {

constexpr std::array sizes{16, 20, 22, 24, 32, 48, 64, 96};

struct State {
    const char* word;
    const char* plain;    ///< picture on light panels
    const char* inverted; ///< picture on dark panels
};
using Set = std::span<const State>;

constexpr std::array standardSet{
    State{"green: nothing new", "Agent-Icon-Normal", "Agent-Icon-Inverted-Normal"},
    State{"yellow: cannot be told", "Agent-Icon-Offline", "Agent-Icon-Inverted-Offline"},
    State{"red: threat or no driver", "Agent-Icon-Threat", "Agent-Icon-Inverted-Threat"}};
constexpr std::array otherSet{
    State{"green: nothing new", "icon_20X20", "icon_20X20_Inverted"},
    State{"yellow: cannot be told", "icon_yellow_20X20", "icon_yellow_20X20_Inverted"},
    State{"red: threat or no driver", "icon_red_20X20", "icon_red_20X20_Inverted"}};
constexpr std::array programSet{
    State{"standard set", "com.korvale.ui", "com.korvale.ui"},
    State{"other set", "logo_sentrawardnet_clr@4x.png", "logo_sentrawardnet_clr@4x.png"}};

enum class Panel { Light, Dark, NoColor };

constexpr int margin = 24;
constexpr int labelWidth = 190;
constexpr int gap = 22;
constexpr int rowHeight = 112;
constexpr int titleHeight = 44;

int panelHeight(Set set) {
    return titleHeight + static_cast<int>(set.size()) * rowHeight;
}

int sheetWidth() {
    int width = 2 * margin + labelWidth;
    for (const int size : sizes) {
        width += size + gap;
    }
    return width;
}

QImage withoutColor(const QImage& picture) {
    QImage grey = picture.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < grey.height(); ++y) {
        for (int x = 0; x < grey.width(); ++x) {
            const QRgb pixel = grey.pixel(x, y);
            const int level = qGray(pixel);
            grey.setPixel(x, y, qRgba(level, level, level, qAlpha(pixel)));
        }
    }
    return grey;
}

void drawPanel(QPainter& painter, int top, const QString& title, Set set, Panel panel) {
    const bool isDark = panel == Panel::Dark;
    painter.fillRect(0, top, sheetWidth(), panelHeight(set),
                     QColor(isDark ? 0xff24292f : 0xfff2f4f7));
    painter.setPen(QColor(isDark ? 0xffe6eaf0 : 0xff1c2430));
    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRect(margin, top, sheetWidth(), titleHeight), Qt::AlignVCenter, title);
    font.setBold(false);
    painter.setFont(font);
    int y = top + titleHeight;
    for (const State& state : set) {
        painter.drawText(QRect(margin, y, labelWidth, rowHeight), Qt::AlignVCenter,
                         QString::fromLatin1(state.word));
        int x = margin + labelWidth;
        for (const int size : sizes) {
            const QIcon icon = pictureNamed(isDark ? state.inverted : state.plain);
            QImage picture = icon.pixmap(QSize(size, size), 1.0).toImage();
            if (panel == Panel::NoColor) {
                picture = withoutColor(picture);
            }
            painter.drawImage(x, y + (rowHeight - size) / 2, picture);
            x += size + gap;
        }
        y += rowHeight;
    }
}

bool drawSheet(const QString& file) {
    const std::array panels{
        std::tuple{QStringLiteral("Standard set, light panel"), Set(standardSet), Panel::Light},
        std::tuple{QStringLiteral("Standard set, dark panel"), Set(standardSet), Panel::Dark},
        std::tuple{QStringLiteral("Standard set, without colour"), Set(standardSet),
                   Panel::NoColor},
        std::tuple{QStringLiteral("Other set, light panel"), Set(otherSet), Panel::Light},
        std::tuple{QStringLiteral("Other set, dark panel"), Set(otherSet), Panel::Dark},
        std::tuple{QStringLiteral("Other set, without colour"), Set(otherSet), Panel::NoColor},
        std::tuple{QStringLiteral("The program itself, light"), Set(programSet), Panel::Light},
        std::tuple{QStringLiteral("The program itself, dark"), Set(programSet), Panel::Dark}};
    int height = 0;
    for (const auto& [title, set, panel] : panels) {
        height += panelHeight(set);
    }
    QImage sheet(sheetWidth(), height, QImage::Format_RGB32);
    QPainter painter(&sheet);
    int top = 0;
    for (const auto& [title, set, panel] : panels) {
        drawPanel(painter, top, title, set, panel);
        top += panelHeight(set);
    }
    painter.end();
    return sheet.save(file);
}

} // namespace
} // namespace korvale

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    if (argc != 2 || !korvale::drawSheet(QString::fromLocal8Bit(argv[1]))) {
        std::fputs("usage: picture_sheet FILE\n", stderr);
        return 2;
    }
    return 0;
}
