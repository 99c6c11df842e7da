#include "shell/AboutPanel.h"

#include "core/base/TextFormat.h"
#include "platform/SafeText.h"
#include "platform/Texts.h"
#include "tables/KvImageView.h"
#include "tables/WindowLook.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QVBoxLayout>

namespace korvale {
namespace {

QLabel* plainLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setText(text);
    return label;
}

/// A text field without a frame, on the window's own background. It stays quick, and inside the
/// panel, however long the texts are that the agent sent.
QPlainTextEdit* creditsField(QWidget* parent) {
    auto* field = new QPlainTextEdit(parent);
    field->setReadOnly(true);
    field->setFrameShape(QFrame::NoFrame);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    field->setTabChangesFocus(true);
    field->setCursorWidth(0);
    QTextOption centered = field->document()->defaultTextOption();
    centered.setAlignment(Qt::AlignHCenter);
    centered.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    field->document()->setDefaultTextOption(centered);
    field->viewport()->setAutoFillBackground(false);
    field->setAccessibleName(localizedText("HPS_Credits"));
    field->setFixedHeight(field->fontMetrics().lineSpacing() * look::aboutCreditsLines);
    return field;
}

} // namespace

AboutPanel::AboutPanel(const QIcon& icon, const QString& displayName, const QString& shortVersion,
                       QWidget* parent)
    : QWidget(parent, Qt::Dialog) {
    setWindowTitle(localizedText("About")); // the window list tells it from the details window
    setWindowIcon(icon);
    setAttribute(Qt::WA_QuitOnClose, false);

    auto* picture = new KvImageView(this);
    picture->setImageSize({look::aboutIconSide, look::aboutIconSide});
    picture->setImage(icon);
    picture->setAlignment(Qt::AlignCenter);
    picture->setAccessibleName(displayName);
    QLabel* name = plainLabel(displayName, this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * look::aboutNameScale);
    large.setWeight(QFont::DemiBold);
    name->setFont(large);
    QLabel* version = plainLabel(formatText(localizedText("AboutVersion"), {shortVersion}), this);
    version->setForegroundRole(QPalette::PlaceholderText);
    m_credits = creditsField(this);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(look::aboutMargin, look::aboutMargin, look::aboutMargin,
                               look::aboutMargin);
    layout->setSpacing(look::aboutSpacing);
    layout->addWidget(picture);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(m_credits);
    setFixedWidth(look::aboutWidth);
    setDark(false);

    for (const QKeySequence& key :
         {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)}) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
    }
    m_credits->setFocus();
}

void AboutPanel::setCredits(const QString& credits) {
    const QString shown = severalLinesText(credits);
    if (m_credits->toPlainText() != shown) {
        m_credits->setPlainText(shown);
    }
}

void AboutPanel::setDark(bool dark, bool highContrast) {
    setPalette(windowPalette(dark, highContrast));
}

} // namespace korvale
