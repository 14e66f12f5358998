// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelConcurrent.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QList>
#include <QThread>

#include <cstring>

/// Races on purpose, each where something could hide it from ThreadSanitizer: in pieces of parallel work, and in our
/// code where Qt is above it on the stack, whose own reports are suppressed. Ends as if nothing had happened when the
/// sanitizer does not see the race.

namespace
{

int shared = 0;

/// Every piece counts; nobody keeps them apart.
void inPiecesOfWork()
{
    KelConcurrent::blockingMap(QList<int>{1, 2, 3, 4, 5, 6, 7, 8}, [](int number) {
        for (int i = 0; i < 1000; ++i)
            shared += number;
    });
}

class CountingThread : public QThread
{
protected:
    void run() override
    {
        for (int i = 0; i < 1000; ++i)
            ++shared;
    }
};

void inThreadsOfQt()
{
    CountingThread first;
    CountingThread second;
    first.start();
    second.start();
    first.wait();
    second.wait();
}

void count(void *)
{
    for (int i = 0; i < 1000; ++i)
        ++shared;
}

/// Qt calls it when it is done with the pixels.
void calledByPictures()
{
    KelConcurrent::blockingMap(QList<int>{1, 2, 3, 4}, [](int) {
        static uchar pixels[16] = {};
        const QImage image(pixels, 2, 2, 8, QImage::Format_RGB32, &count);
        static_cast<void>(image.pixel(0, 0));
    });
}

} // namespace

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const char *const where = argc > 1 ? argv[1] : "";
    if (std::strcmp(where, "pieces") == 0)
        inPiecesOfWork();
    else if (std::strcmp(where, "threads") == 0)
        inThreadsOfQt();
    else if (std::strcmp(where, "pictures") == 0)
        calledByPictures();
    else
        return 2;
    return shared > 0 ? 0 : 1;
}
