// velloria-jet: reads a diary of the older programs for the one that starts it. Its answers are those of
// store/jet_record.h.
//
//     velloria-jet version FILE
//     velloria-jet table FILE NAME COLUMN...
#include "store/jet/jet_error.h"
#include "store/jet/jet_reader.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>

#include <sys/prctl.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

constexpr int kWrongCall = 2;
constexpr int kNoMemory = 3;

void limit(int resource, rlim_t most) {
    const rlimit both{most, most};
    ::setrlimit(static_cast<__rlimit_resource_t>(resource), &both);
}

/// A damaged file may lead the library anywhere: not into all memory, nor past the end of the diary.
void restrictSelf() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CORE, 0);
#ifndef VELLORIA_SANITIZE // its shadow takes more, and its reports must be seen
    limit(RLIMIT_AS, 512UL * 1024 * 1024);
    if (!std::freopen("/dev/null", "w", stderr))
        std::exit(EXIT_FAILURE);
#endif
}

/// What the library takes its settings from. Names of tables and columns go through its own conversion.
void settleEnvironment() {
    ::setenv("MDB_JET3_CHARSET", "CP932", 1);
    for (const char* name : {"MDBICONV", "MDBOPTS", "MDBPATH"})
        ::unsetenv(name);
}

int run(const QStringList& arguments) {
    JetOutput output;
    try {
        if (arguments.size() == 2 && arguments[0] == u"version"_s)
            tellVersion(arguments[1], output);
        else if (arguments.size() >= 3 && arguments[0] == u"table"_s)
            tellTable(arguments[1], arguments[2], arguments.sliced(3), output);
        else
            return kWrongCall;
    } catch (const JetError& error) {
        output.write(Error{error.fault(), error.reason(), error.read, error.expected});
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    }
    return output.finish() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace velloria::store::jet

int main(int argc, char** argv) {
    velloria::store::jet::restrictSelf();
    velloria::store::jet::settleEnvironment();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    return velloria::store::jet::run(arguments);
}
