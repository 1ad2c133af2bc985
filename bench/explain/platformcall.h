#ifndef PLATFORMCALL_H
#define PLATFORMCALL_H

#include "loggedrequest.h"

#include "journalentry.h"

/// A logged call on the simulated platform.
namespace PlatformCall
{

/// Hands it to the chip, unless it was refused or is not known whole. Gives what the journal has to say of it, its time excepted.
simulator::JournalEntry make(const LoggedCall &call);

} // namespace PlatformCall

#endif
