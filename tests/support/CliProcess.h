#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <csignal>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

// The quillmere program run as a child process that a test can signal or kill, and whose
// peak memory and running time are measured. The peak is the program's own high-water mark
// (VmHWM in /proc/PID/status, read every few milliseconds while it runs): the kernel's
// maximum resident size of a child also counts the test process it was spawned from.
// Standard output and error go to files, read once it has ended.
class CliProcess {
public:
    CliProcess(const QStringList& arguments, const QString& dataDir)
    {
        std::vector<std::string> args{QUILLMERE_CLI_PATH, "--data-dir", dataDir.toStdString()};
        for (const QString& a : arguments)
            args.push_back(a.toStdString());
        std::vector<char*> argv;
        for (auto& a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);

        std::vector<std::string> env{"QUILLMERE_TRACE=0"};
        for (char** e = environ; *e; ++e)
            if (std::strncmp(*e, "QUILLMERE_TRACE=", 16) != 0)
                env.emplace_back(*e);
        std::vector<char*> envp;
        for (auto& e : env)
            envp.push_back(e.data());
        envp.push_back(nullptr);

        const std::string outPath = QDir(files_.path()).filePath("out").toStdString();
        const std::string errPath = QDir(files_.path()).filePath("err").toStdString();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        started_ = std::chrono::steady_clock::now();
        if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), envp.data()) != 0)
            pid_ = -1;
        posix_spawn_file_actions_destroy(&actions);
    }

    ~CliProcess()
    {
        if (running()) {
            ::kill(pid_, SIGKILL);
            wait(10000);
        }
    }

    CliProcess(const CliProcess&) = delete;
    CliProcess& operator=(const CliProcess&) = delete;

    bool started() const { return pid_ > 0; }
    bool running() const { return pid_ > 0 && !ended_; }
    pid_t pid() const { return pid_; }
    void signal(int number) const
    {
        if (running())
            ::kill(pid_, number);
    }

    // Waits until the process has ended or the time has run out; answers whether it ended.
    bool wait(int timeoutMs)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        while (running()) {
            sampleHighWaterMark();
            int status = 0;
            rusage usage{};
            const pid_t done = ::wait4(pid_, &status, WNOHANG, &usage);
            if (done == pid_) {
                ended_ = true;
                elapsedMs_ = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now()
                                                                                   - started_)
                                 .count();
                exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
                termSignal_ = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
                break;
            }
            if (done < 0 || std::chrono::steady_clock::now() >= deadline)
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return ended_;
    }

    // After the end: the exit status (-1 when killed by a signal), the signal, the running
    // time from the start, the peak resident memory in kilobytes, what it printed.
    int exitCode() const { return exitCode_; }
    int termSignal() const { return termSignal_; }
    long long elapsedMs() const { return elapsedMs_; }
    long maxRssKb() const { return maxRssKb_; }
    QString out() const { return read("out"); }
    QString err() const { return read("err"); }

private:
    void sampleHighWaterMark()
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(pid_));
        if (!status.open(QIODevice::ReadOnly))
            return;
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:")) {
                const long kb = line.mid(6).trimmed().split(' ').value(0).toLong();
                if (kb > maxRssKb_)
                    maxRssKb_ = kb;
            }
        }
    }

    QString read(const char* name) const
    {
        QFile file(QDir(files_.path()).filePath(QString::fromLatin1(name)));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QTemporaryDir files_;
    pid_t pid_ = -1;
    bool ended_ = false;
    std::chrono::steady_clock::time_point started_;
    long long elapsedMs_ = -1;
    long maxRssKb_ = -1;
    int exitCode_ = -1;
    int termSignal_ = 0;
};
