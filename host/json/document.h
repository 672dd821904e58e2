// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_JSON_DOCUMENT_H
#define CPP2C_HOST_JSON_DOCUMENT_H

#include <functional>
#include <string>

#include "host/json/item.h"

// Parses a text and calls `read` with the document, which lasts no longer than the call. Throws StartError
// for the first mistake, be it found in the text or by `read`; `source` names the text in its message.
void readDocument(const std::string& text, const std::string& source,
                  const std::function<void(const Item& document)>& read);

#endif
