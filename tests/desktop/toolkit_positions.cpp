// Shows that the positions that the toolkit reports to screen readers know nothing of its own
// scaling: run with QT_SCALE_FACTOR=2, the button's middle is said to be where it is without.
#include <QApplication>
#include <QPushButton>
int main(int count, char** values) {
    QApplication application(count, values);
    QPushButton button(QStringLiteral("probe"));
    button.setGeometry(100, 100, 200, 100);
    button.show();
    return QApplication::exec();
}
