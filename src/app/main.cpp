// Entry point: the command line, then one run of the player.
#include "app/options.h"
#include "app/player.h"
#include "foundation/log.h"
#include "platform/files.h"
#include "platform/output.h"

#include <cstdio>

int main(int argc, char** argv) {
    openStandardStreams();
    acceptMissingMedia();
    Options options;
    std::string error;
    if (!parseOptions(argc - 1, argv + 1, options, error)) {
        printError("quillon-player: %s\n", error.c_str());
        return 1;
    }
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (options.version) {
        std::printf("quillon-player %s\n", QUILLON_VERSION);
        return 0;
    }
    return runPlayer(options);
}
