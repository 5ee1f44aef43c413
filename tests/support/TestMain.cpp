// Every suite runs inside a QCoreApplication, as the programs do: the crawler relays its
// callbacks to the thread of the Qt event loop.
#include <QCoreApplication>

#include <gtest/gtest.h>

#include "store/Localization.h"

int main(int argc, char** argv)
{
    qputenv("QUILLMERE_TRACE", "0");
    QCoreApplication app(argc, argv);
    Localization::install();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
