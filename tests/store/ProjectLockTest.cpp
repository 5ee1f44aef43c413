#include "store/ProjectLock.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace {

TEST(ProjectLock, TheLockFileLiesBesideTheDatabase)
{
    EXPECT_EQ(ProjectLock::lockFilePathForDatabase("/data/site.sqlite"), "/data/site.lock");
    EXPECT_EQ(ProjectLock::lockFilePathForDatabase("/data/odd"), "/data/odd.lock");
}

TEST(ProjectLock, ASecondHolderIsRefusedAndToldWhoHoldsIt)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/site.lock";
    ProjectLock first(path);
    ASSERT_EQ(first.tryLock("quillmere crawl"), ProjectLock::Result::Locked);
    EXPECT_TRUE(first.isLocked());
    EXPECT_TRUE(QFileInfo::exists(path));

    // A second open of the file conflicts, in this process as in another one.
    ProjectLock second(path);
    EXPECT_EQ(second.tryLock("quillmere vacuum"), ProjectLock::Result::Busy);
    EXPECT_FALSE(second.isLocked());
    EXPECT_EQ(second.ownerProcessId(), qint64(getpid()));
    EXPECT_EQ(second.ownerPurpose(), "quillmere crawl");

    qint64 owner = 0;
    QString purpose;
    EXPECT_TRUE(ProjectLock::isHeld(path, &owner, &purpose));
    EXPECT_EQ(owner, qint64(getpid()));
    EXPECT_EQ(purpose, "quillmere crawl");

    // Letting go removes the file; the next one takes it afresh.
    first.release();
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_FALSE(ProjectLock::isHeld(path));
    EXPECT_EQ(second.tryLock("quillmere vacuum"), ProjectLock::Result::Locked);
}

TEST(ProjectLock, TestingALockDoesNotTakeItNorMakeTheFile)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/site.lock";
    EXPECT_FALSE(ProjectLock::isHeld(path));
    EXPECT_FALSE(QFileInfo::exists(path));
    {
        QFile stale(path);
        ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
        stale.write("999999\nquillmere crawl\n");
    }
    EXPECT_FALSE(ProjectLock::isHeld(path));  // a file nobody holds is no lock
    ProjectLock lock(path);
    EXPECT_EQ(lock.tryLock("quillmere delete"), ProjectLock::Result::Locked);
}

TEST(ProjectLock, AKilledHolderLetsItGo)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/site.lock";
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ProjectLock lock(path);
        const char answer = lock.tryLock("quillmere crawl") == ProjectLock::Result::Locked ? 'y' : 'n';
        (void)!write(ready[1], &answer, 1);
        pause();
        _exit(0);
    }
    char answer = 0;
    ASSERT_EQ(read(ready[0], &answer, 1), 1);
    ASSERT_EQ(answer, 'y');
    ProjectLock lock(path);
    EXPECT_EQ(lock.tryLock("quillmere crawl"), ProjectLock::Result::Busy);
    EXPECT_EQ(lock.ownerProcessId(), qint64(child));

    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(QFileInfo::exists(path));  // left behind, but no longer held
    EXPECT_FALSE(ProjectLock::isHeld(path));
    EXPECT_EQ(lock.tryLock("quillmere crawl"), ProjectLock::Result::Locked);
    close(ready[0]);
    close(ready[1]);
}

TEST(ProjectLock, AnUnwritableDirectoryFails)
{
    ProjectLock lock("/nonexistent-directory/site.lock");
    EXPECT_EQ(lock.tryLock("quillmere crawl"), ProjectLock::Result::Failed);
    EXPECT_FALSE(lock.errorString().isEmpty());
}

} // namespace
