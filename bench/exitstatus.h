#ifndef EXITSTATUS_H
#define EXITSTATUS_H

/// What qzaudio-bench ends with; HelpText::endings() says when.
enum ExitStatus : int {
    Success = 0,
    Failed = 1,
    UsageError = 2,
    ServiceUnreachable = 3,
    NothingFound = 3,
    Interrupted = 130, ///< by Ctrl+C, as shells report it
};

#endif
