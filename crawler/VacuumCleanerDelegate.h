#pragma once

#include "store/QuillmerePage.h"

// What the vacuum cleaner reports; every call arrives on the main thread while the
// cleaner's thread waits.
class VacuumCleanerDelegate {
public:
    virtual ~VacuumCleanerDelegate() = default;

    virtual void vacuumCleanerDidStart() = 0;
    virtual void vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex) = 0;  // ...withMax:
    virtual void vacuumingPage(const QuillmerePagePtr& page) = 0;
    virtual void vacuumCleanerDidEnd() = 0;
};
