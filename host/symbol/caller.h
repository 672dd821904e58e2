// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SYMBOL_CALLER_H
#define CPP2C_HOST_SYMBOL_CALLER_H

namespace host {

// The address in the service's code from which this thread called the context: that of the innermost frame
// outside the context and the library. Null if there is none.
const void* callerOfTheContext();

}  // namespace host

#endif
