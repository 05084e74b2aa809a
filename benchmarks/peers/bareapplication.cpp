#include <QApplication>

/// The least that a program with Qt widgets does.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    return 0;
}
