#include "cli/StopSignal.h"

#include <csignal>
#include <cstring>

#include <unistd.h>

namespace StopSignal {

namespace {
std::atomic<std::atomic<bool>*> g_flag{nullptr};
std::atomic<int> g_count{0};

void handler(int)
{
    const int count = ++g_count;
    if (count >= 2) {
        static const char quit[] = "\nquillmere: interrupted again, quitting now\n";
        (void)!write(STDERR_FILENO, quit, sizeof quit - 1);
        _exit(130);
    }
    if (std::atomic<bool>* flag = g_flag.load())
        flag->store(false);
    static const char text[] =
        "\nquillmere: stopping; a page still downloading stays in the queue for --continue (Ctrl-C again to quit at once)\n";
    (void)!write(STDERR_FILENO, text, sizeof text - 1);
}
} // namespace

void install(std::atomic<bool>* canContinue)
{
    static_assert(std::atomic<bool>::is_always_lock_free);
    g_flag.store(canContinue);
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

void uninstall()
{
    g_flag.store(nullptr);
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool received()
{
    return g_count.load() > 0;
}

} // namespace StopSignal
