#include "shell/DetailsText.h"

#include "platform/Texts.h"
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

/// A line with its label in front; where the text is long, it goes on below itself.
QTextBlockFormat lineFormat(int labelWidth) {
    QTextBlockFormat format;
    format.setLeftMargin(labelWidth);
    format.setTextIndent(-labelWidth);
    format.setTabPositions({QTextOption::Tab(labelWidth, QTextOption::LeftTab)});
    format.setBottomMargin(look::detailsSpacing);
    format.setLayoutDirection(Qt::LeftToRight); // whatever script a path begins with
    return format;
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
    cursor.setBlockFormat(lineFormat(labelWidth()));
    for (const RowDetails::Line& line : m_details.lines) {
        const bool isFirst = &line == &m_details.lines.front();
        if (!isFirst) {
            cursor.insertBlock();
        }
        cursor.insertText(line.label + u'\t', label);
        cursor.insertText(line.text, isFirst ? strong : QTextCharFormat());
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
    plain->setText(textCursor().selection().toPlainText());
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
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
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
        painter.setPen(palette().color(QPalette::Link));
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

} // namespace korvale
