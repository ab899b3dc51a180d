#include "logger/command_policy.h"

#include "tlm.h"

namespace torvane::sim {

bool StateAccepts(std::uint8_t state, Command command) {
    switch (command) {
    case Command::Reset:
    case Command::GetStatus:
    case Command::SpecialData:
    case Command::ErrorInfo:
        return true;
    default:
        break;
    }
    switch (state) {
    case TLM_STATE_IDLE:
    case TLM_STATE_READY:
        return command != Command::TransferRead && command != Command::TransferEnd;
    case TLM_STATE_ACQUIRING:
        return command == Command::SignalCondition || command == Command::FileCount ||
               command == Command::DownloadList || command == Command::ReadSetting ||
               command == Command::DetonationMap || command == Command::InitData ||
               command == Command::LoggingControl;
    case TLM_STATE_SENDING:
        return command == Command::SignalCondition || command == Command::FileCount ||
               command == Command::DownloadList || command == Command::ReadSetting ||
               command == Command::TransferRead || command == Command::TransferEnd;
    case TLM_STATE_THROTTLE_INIT:
    case TLM_STATE_SUSPENSION_INIT:
        return command == Command::SignalCondition || command == Command::FileCount ||
               command == Command::DownloadList || command == Command::ReadSetting ||
               command == Command::DetonationMap || command == Command::InitData ||
               command == Command::InitializeSensor;
    case TLM_STATE_SERVICE:
        return command == Command::SignalCondition;
    default:
        return false;
    }
}

bool MakesLoggerAct(Command command) {
    switch (command) {
    case Command::SendSetting:
    case Command::TransferStart:
    case Command::ClearFiles:
    case Command::ServiceMode:
    case Command::InitializeSensor:
        return true;
    default:
        return false;
    }
}

} // namespace torvane::sim
