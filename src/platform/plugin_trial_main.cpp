// velloria-plugin FILE: loads a plug-in as the diary is going to, and writes a byte when that has ended well. What a
// bad one does while it is loaded ends this program alone.
#include "velloria_plugin.h"

#include <csignal>
#include <cstdlib>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// One that can't be loaded at all, or throws, does no harm: the diary hears of that by itself.
void load(const char* file) {
    try {
        void* library = ::dlopen(file, RTLD_NOW | RTLD_LOCAL);
        void* function = library ? ::dlsym(library, "velloria_plugin_get") : nullptr;
        if (function)
            reinterpret_cast<velloria_plugin_get_function>(function)(VELLORIA_PLUGIN_INTERFACE);
    } catch (...) {
        return;
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return EXIT_FAILURE;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // What the plug-in prints is no answer.
    const int answer = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (answer < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return EXIT_FAILURE;
    load(argv[1]);
    const bool isTold = ::write(answer, "", 1) == 1;
    ::_exit(isTold ? EXIT_SUCCESS : EXIT_FAILURE); // a loaded plug-in expects no end as yet
}
