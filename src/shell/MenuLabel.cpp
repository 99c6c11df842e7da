#include "shell/MenuLabel.h"

namespace korvale {

QString menuLabel(const QString& text, MenuRenderer renderer) {
    QString label = text;
    if (renderer == MenuRenderer::Toolkit) {
        return label.replace(u'&', QLatin1String("&&"));
    }
    label.replace(u'_', QLatin1String("__"));
    // On the way to the panel the toolkit turns the first ampersand into a mnemonic's underscore,
    // unless it is the last character: one more in front is sacrificed.
    const qsizetype ampersand = label.indexOf(u'&');
    if (ampersand >= 0 && ampersand < label.size() - 1) {
        label.prepend(u'&');
    }
    return label;
}

} // namespace korvale
