#ifndef FUZZAPPLICATION_H
#define FUZZAPPLICATION_H

/// The application that a fuzzer's targets need: on virtual time, and silent but for what ends it.
void startFuzzApplication(int &argc, char **argv);

#endif
