#ifndef EXITSTATUS_H
#define EXITSTATUS_H

/// What qzaudio-bench ends with; the same in every command and in the help.
enum ExitStatus : int {
    Success = 0,
    Failed = 1, ///< an expectation, a script or a request did not succeed
    UsageError = 2, ///< the command line or a file named on it
    ServiceUnreachable = 3, ///< the audio service does not answer
};

#endif
