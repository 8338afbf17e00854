// Another program's window with a line to type into. Its title tells the text,
// so that a script can see what arrived.
#include <QApplication>
#include <QLineEdit>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QLineEdit line;
    const auto showText = [&line] { line.setWindowTitle(QStringLiteral("entry:") + line.text()); };
    QObject::connect(&line, &QLineEdit::textChanged, &line, showText);
    showText();
    line.resize(400, 40);
    line.show();
    return QApplication::exec();
}
