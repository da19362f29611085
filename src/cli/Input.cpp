#include "cli/Input.h"

#include "cli/ExitCodes.h"
#include "cli/Interruption.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <readline/history.h>
#include <readline/readline.h>
#include <unistd.h>

namespace ztm::cli {
namespace {

/// Waits for input for a short time, at most until a signal. False if there is none yet.
bool HasInput() {
    constexpr timespec shortTime{0, 250'000'000};
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return ppoll(&input, 1, &shortTime, nullptr) > 0;
}

// The line editor calls back.
bool isTyped = false;
std::optional<std::string> typed;

void TakeTyped(char *line) {
    typed = line != nullptr ? std::optional<std::string>(line) : std::nullopt;
    std::free(line); // NOLINT(cppcoreguidelines-no-malloc): as the line editor made it
    isTyped = true;
    rl_callback_handler_remove(); // the terminal as commands know it
}

void GiveUpLine() {
    rl_callback_sigcleanup();
    rl_free_line_state();
    rl_crlf();
    rl_callback_handler_remove();
}

} // namespace

std::optional<std::string> PipedInput::Next(bool /*isWithinBlock*/) {
    std::array<char, 4096> piece;
    size_t end = bytes.find('\n');
    while (end == std::string::npos && !isAtEnd) {
        CheckInterruption();
        if (!HasInput()) {
            continue;
        }
        const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
        if (count > 0) {
            bytes.append(piece.data(), static_cast<size_t>(count));
            end = bytes.find('\n');
        } else if (count == 0) {
            isAtEnd = true;
        } else if (errno != EINTR && errno != EAGAIN) {
            throw Failure(FileFailed, std::string("standard input: ") + std::strerror(errno));
        }
    }
    if (bytes.empty()) {
        return std::nullopt;
    }
    std::string line = bytes.substr(0, end);
    bytes.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

TypedInput::TypedInput() {
    rl_catch_signals = 0;
    rl_readline_name = "ztm";
    rl_outstream = isatty(STDOUT_FILENO) != 0 ? stdout : stderr;
    using_history();
}

std::optional<std::string> TypedInput::Next(bool isWithinBlock) {
    isTyped = false;
    rl_callback_handler_install(isWithinBlock ? "...> " : "ztm> ", TakeTyped);
    while (!isTyped) {
        try {
            CheckInterruption();
            if (HasInput()) {
                rl_callback_read_char();
            }
        } catch (const Interrupted &interruption) {
            GiveUpLine();
            throw Interrupted{interruption.signal, interruption.signal == SIGINT};
        }
    }
    if (typed && !typed->empty()) {
        add_history(typed->c_str());
    } else if (!typed && isatty(STDIN_FILENO) == 0) {
        throw Interrupted{SIGHUP};
    } else if (!typed) {
        rl_crlf(); // after Ctrl-D
    }
    return typed;
}

} // namespace ztm::cli
