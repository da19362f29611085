#pragma once

#include <QProcess>

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace ztm::test {

/// What a run of a program came to.
struct Ending {
    std::string said; ///< by the user in its windows
    int exitCode;

    bool operator==(const Ending &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const Ending &ending) {
    return out << "exit code " << ending.exitCode << " after:\n" << ending.said;
}

inline const Ending wholeSession{"register written\nclosed\n", EXIT_SUCCESS};
inline const Ending nothingFound{"nothing found\n", EXIT_SUCCESS};
inline const Ending failure{"message: Communication Failure - Check USB connections\n",
                            EXIT_FAILURE};

/// A test of a program as it ships, in a process of its own on a virtual bus.
class ShippedProgram : public testing::Test {
protected:
    /// Starts the program with the user in it and waits for its end.
    Ending Run(const char *program) {
        constexpr int longestRunMs = 60'000;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LD_PRELOAD", "libumockdev-preload.so.0:" ZTM_USER);
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("QT_LOGGING_RULES", "*.warning=false"); // about the platform
        // What is preloaded stands before the run-time of the sanitizer, whose exit code must not
        // pass for one of the program.
        environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:exitcode=99");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, QStringList());
        if (!process.waitForFinished(longestRunMs)) {
            process.kill();
            process.waitForFinished();
            ADD_FAILURE() << "the program did not end";
        }
        errors = process.readAllStandardError().toStdString();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << errors;
        return {process.readAllStandardOutput().toStdString(), process.exitCode()};
    }

    std::string errors; ///< what the last run wrote to standard error
};

} // namespace ztm::test
