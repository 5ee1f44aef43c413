#include <QCoreApplication>
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    return 0;
}
