#include "cli/Interruption.h"

#include "common/Clock.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <poll.h>
#include <unistd.h>

namespace ztm::cli {
namespace {

constexpr int exitBySignal = 128;
/// A signal that comes between the look at it and the sleep is seen after that time.
constexpr double longestSleepSeconds = 0.25;

/// A closing terminal, and whatever passes signals on, can send one twice.
constexpr double longestEchoSeconds = 0.1;

volatile std::sig_atomic_t signalThatCame = 0;
double timeOfSignal = 0; // written and read only while a signal is handled
bool isEnding = false;
bool isOutputWatched = true;

void Note(int signal) {
    const double now = EvenSeconds(); // a call that a signal handler may make
    if (signalThatCame == 0) {
        timeOfSignal = now;
        signalThatCame = signal;
    } else if (now - timeOfSignal > longestEchoSeconds) {
        _exit(exitBySignal + signal);
    }
}

timespec Duration(double seconds) {
    const auto whole = static_cast<time_t>(seconds);
    return {whole, static_cast<long>((seconds - static_cast<double>(whole)) * 1e9)};
}

} // namespace

void CatchSignals() {
    struct sigaction action {};
    action.sa_handler = Note;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&action.sa_mask, signal); // one at a time
    }
    sigaction(SIGINT, &action, nullptr); // also where a shell ignores it, in the background
    sigaction(SIGTERM, &action, nullptr);
    struct sigaction before {};
    sigaction(SIGHUP, nullptr, &before);
    if (before.sa_handler != SIG_IGN) { // as it is under nohup
        sigaction(SIGHUP, &action, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

void CheckInterruption() {
    if (signalThatCame != 0 && !isEnding) {
        throw Interrupted{signalThatCame};
    }
}

void SleepInterruptibly(double seconds) {
    CheckInterruption();
    const timespec duration = Duration(std::min(seconds, longestSleepSeconds));
    pollfd output{isOutputWatched && !isEnding ? STDOUT_FILENO : -1, 0, 0};
    if (ppoll(&output, 1, &duration, nullptr) > 0) {
        if ((output.revents & POLLERR) != 0) {
            throw OutputClosed{};
        }
        isOutputWatched = false; // it has never been open
    }
    CheckInterruption();
}

void BeginEnding() {
    isEnding = true;
}

void ForgetSignal() {
    signalThatCame = 0;
}

} // namespace ztm::cli
