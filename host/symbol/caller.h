// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SYMBOL_CALLER_H
#define CPP2C_HOST_SYMBOL_CALLER_H

namespace host {

// The place in the service's code from which the context has been called: the innermost one on this thread
// that is neither in the context nor in the library. Null if there is none.
const void* callerOfTheContext();

}  // namespace host

#endif
