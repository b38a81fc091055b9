#include "pages.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("torvixtarget"));
    MainWindow window;
    window.show();
    return QApplication::exec();
}
