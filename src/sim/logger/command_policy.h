#pragma once
// Which command a logger takes in which state. A command that its state refuses is answered
// with result 0 and a sense code, as the real logger answers, and changes nothing.
//
//                      0    1    2    3    4   5/6   7   208  240
//   Reset              x    x    x    x    x    x    x    x    x
//   GetStatus          x    x    x    x    x    x    x    x    x
//   SpecialData        x    x    x    x    x    x    x    x    x
//   ErrorInfo          x    x    x    x    x    x    x    x    x
//   SignalCondition         x    x    x         x    x    x
//   FileCount               x    x    x         x    x
//   DownloadList            x    x    x         x    x
//   ReadSetting             x    x    x         x    x
//   DetonationMap           x    x              x    x
//   InitData                x    x              x    x
//   InitializeSensor        x                   x    x
//   LoggingControl          x    x                   x
//   SendSetting             x                        x
//   TransferStart           x                        x
//   ClearFiles              x                        x
//   ServiceMode             x                        x
//   TransferRead                      x
//   TransferEnd                       x
//
// 0 initialising, 1 idle, 2 acquiring, 3 sending a file, 4 writing flash, 5/6 throttle and
// suspension initialisation, 7 just stopped (idle-like), 208 service function, 240 broken.
// Acquisition must be stopped (LoggingControl 1) before anything that changes the logger's
// memory or setting. The sensor states take the next sensor command and the throttle points'
// read-back at once, because the setting window sends them without waiting in between. A logger
// that has stopped on an error (bytError) refuses in addition everything that would make it act:
// SendSetting, TransferStart, ClearFiles, ServiceMode, InitializeSensor and LoggingControl 0.

#include "link/operations.h"
#include "tlm.h"

#include <cstdint>

namespace torvane::sim {

// A command is the message kind of its request.
using Command = link::MessageKind;

bool StateAccepts(std::uint8_t state, Command command);

// Commands that a logger stopped on an error refuses whatever its state.
bool MakesLoggerAct(Command command);

// Sense codes of a refusal, as tlm.h names them.
inline constexpr std::uint8_t SenseNotInThisState = TLM_SENSE_NOT_IN_THIS_STATE;
inline constexpr std::uint8_t SenseBadArgument = TLM_SENSE_BAD_ARGUMENT;
inline constexpr std::uint8_t SenseStoppedOnError = TLM_SENSE_STOPPED_ON_ERROR;

} // namespace torvane::sim
