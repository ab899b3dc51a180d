#pragma once
// The logger's side of one request: decodes the inputs, calls the device and encodes the answer.

#include "device_calls.h"
#include "wire.h"

namespace torvane::link {

// Fills answer with the payload for request (not Hello, not Close). status is the link's status
// record, which the device updates. False, with the device not called, when the request's
// payload does not fit its kind.
bool AnswerRequest(DeviceCalls& device, TlmStatus& status, const Frame& request,
                   PayloadWriter& answer);

} // namespace torvane::link
