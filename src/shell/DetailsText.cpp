#include "shell/DetailsText.h"

#include "platform/Texts.h"
#include "tables/Frame.h"
#include "tables/KeyEvents.h"
#include "tables/WindowLook.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>

#include <algorithm>

namespace korvale {
namespace {

/// A line with its label in front; where the text is long, it goes on below itself. From right to
/// left it goes on below its label, as the toolkit takes an indent into the margin for more width.
QTextBlockFormat lineFormat(int labelWidth, Qt::LayoutDirection direction) {
    const bool isMirrored = direction == Qt::RightToLeft;
    QTextBlockFormat format;
    if (!isMirrored) {
        format.setLeftMargin(labelWidth);
        format.setTextIndent(-labelWidth);
    }
    // The toolkit names the tabs of such lines the other way round.
    format.setTabPositions(
        {QTextOption::Tab(labelWidth, isMirrored ? QTextOption::RightTab : QTextOption::LeftTab)});
    format.setBottomMargin(look::detailsSpacing);
    format.setLayoutDirection(direction); // whatever script a path begins with
    return format;
}

constexpr char16_t leftToRightIsolate = 0x2066;
constexpr char16_t firstStrongIsolate = 0x2068;
constexpr char16_t popIsolate = 0x2069;

/// The text, so that in lines from right to left it does not fall apart: a path reads on from its
/// first slash in any language. What the agent sent has none of these characters any more.
QString isolated(const RowDetails::Line& line) {
    return QChar(line.path.isEmpty() ? firstStrongIsolate : leftToRightIsolate) + line.text +
           QChar(popIsolate);
}

} // namespace

DetailsText::DetailsText(QWidget* parent) : QTextEdit(parent) {
    setObjectName(QStringLiteral("detailsText"));
    setAccessibleName(localizedText("HPS_ColDetails"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setFrameShape(NoFrame);
    document()->setDocumentMargin(look::linkPadding); // below the buttons' texts
    setMinimumHeight(fontMetrics().lineSpacing() + 2 * look::linkPadding); // in small windows
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    connect(this, &QTextEdit::cursorPositionChanged, this, &DetailsText::lookAtCursor);
}

void DetailsText::setDetails(const RowDetails& details) {
    if (m_details != details) {
        m_details = details;
        write();
    }
}

void DetailsText::write() {
    m_isWriting = true;
    clear();
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    QTextCharFormat label;
    label.setForeground(palette().color(QPalette::PlaceholderText));
    QTextCharFormat strong;
    strong.setFontWeight(QFont::DemiBold);
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    cursor.setBlockFormat(lineFormat(labelWidth(), layoutDirection()));
    for (const RowDetails::Line& line : m_details.lines) {
        const bool isFirst = &line == &m_details.lines.front();
        if (!isFirst) {
            cursor.insertBlock();
        }
        cursor.insertText(line.label + u'\t', label);
        cursor.insertText(isMirrored ? isolated(line) : line.text,
                          isFirst ? strong : QTextCharFormat());
    }
    cursor.endEditBlock();
    m_isWriting = false;
    moveCursor(QTextCursor::Start);
    verticalScrollBar()->setValue(0);
    lookAtCursor();
}

int DetailsText::labelWidth() const {
    int widest = 0;
    for (const RowDetails::Line& line : m_details.lines) {
        widest = std::max(widest, fontMetrics().horizontalAdvance(line.label));
    }
    return widest + look::detailsColumnSpacing;
}

QString DetailsText::currentPath() const {
    const auto line = static_cast<std::size_t>(textCursor().blockNumber());
    const QString path = line < m_details.lines.size() ? m_details.lines[line].path : QString();
    return path.isEmpty() ? m_details.firstPath() : path;
}

void DetailsText::lookAtCursor() {
    if (m_isWriting) {
        return;
    }
    const QString path = currentPath();
    if (path != m_currentPath) {
        m_currentPath = path;
        Q_EMIT currentPathChanged();
    }
}

QMimeData* DetailsText::createMimeDataFromSelection() const {
    auto* plain = new QMimeData; // the caller's
    QString text = textCursor().selection().toPlainText();
    for (const char16_t isolate : {leftToRightIsolate, firstStrongIsolate, popIsolate}) {
        text.remove(QChar(isolate));
    }
    plain->setText(text);
    return plain;
}

void DetailsText::keyPressEvent(QKeyEvent* event) {
    if (isContextMenuKey(*event)) {
        showContextMenuAtCursor();
    } else if (event->matches(QKeySequence::Copy) && !textCursor().hasSelection()) {
        Q_EMIT copyWanted();
    } else {
        QTextEdit::keyPressEvent(event);
    }
}

void DetailsText::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) {
        showContextMenuAtCursor();
    } else {
        Q_EMIT contextMenuWanted(event->globalPos());
    }
}

void DetailsText::showContextMenuAtCursor() {
    ensureCursorVisible();
    Q_EMIT contextMenuWanted(viewport()->mapToGlobal(cursorRect().bottomLeft()));
}

void DetailsText::changeEvent(QEvent* event) {
    QTextEdit::changeEvent(event);
    // Colours and widths stand in the document.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::LayoutDirectionChange) {
        write();
    }
}

void DetailsText::focusInEvent(QFocusEvent* event) {
    QTextEdit::focusInEvent(event);
    viewport()->update();
}

void DetailsText::focusOutEvent(QFocusEvent* event) {
    QTextEdit::focusOutEvent(event);
    viewport()->update();
}

void DetailsText::paintEvent(QPaintEvent* event) {
    QTextEdit::paintEvent(event);
    if (hasFocus()) {
        QPainter painter(viewport());
        paintFrame(painter, viewport()->rect(), palette().color(QPalette::Link));
    }
}

} // namespace korvale
