// Cost of one blocking hand-over to the main thread, as the crawler makes ~40 a page.
#include "crawler/MainThread.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>
#include <thread>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int calls = argc > 1 ? std::atoi(argv[1]) : 100000;
    long counter = 0;
    QTimer::singleShot(0, [&] {
        std::thread worker([&] {
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < calls; ++i)
                MainThread::performAndWait([&] { ++counter; });
            const double us = double(timer.nsecsElapsed()) / 1000.0 / calls;
            std::printf("%d relays, %.2f us each (counter %ld)\n", calls, us, counter);
            MainThread::post([] { QCoreApplication::quit(); });
        });
        worker.detach();
    });
    return app.exec();
}
