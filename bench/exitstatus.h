#ifndef EXITSTATUS_H
#define EXITSTATUS_H

/// What qzaudio-bench ends with; Command::exitStatuses() says when.
enum ExitStatus : int {
    Success = 0,
    Failed = 1,
    UsageError = 2,
    ServiceUnreachable = 3,
};

#endif
