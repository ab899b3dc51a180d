#include "request_handler.h"

#include <vector>

#include "messages.h"

namespace torvane::link {

bool AnswerRequest(DeviceCalls& device, TlmStatus& status, const Frame& request,
                   PayloadWriter& answer) {
    PayloadReader in(request.payload);
    PayloadWriter outputs;
    std::int32_t result = 0;
    switch (request.kind) {
    case MessageKind::Reset:
        if (!GetAll(in)) {
            return false;
        }
        result = device.Reset(status);
        break;
    case MessageKind::GetStatus:
        if (!GetAll(in)) {
            return false;
        }
        result = device.GetStatus(status);
        break;
    case MessageKind::FileCount:
        if (!GetAll(in)) {
            return false;
        }
        result = device.FileCount(status);
        break;
    case MessageKind::DownloadList: {
        std::int16_t count = 0;
        if (!GetAll(in, count) || count < 0) {
            return false;
        }
        std::vector<TlmDownloadEntry> entries(static_cast<std::size_t>(count));
        result = device.DownloadList(status, entries);
        outputs.Put(static_cast<std::uint16_t>(count));
        for (const TlmDownloadEntry& entry : entries) {
            PutAll(outputs, entry);
        }
        break;
    }
    case MessageKind::TransferStart: {
        TlmDownloadEntry entry{};
        if (!GetAll(in, entry)) {
            return false;
        }
        TlmTransferBlock block{};
        result = device.StartTransfer(status, entry, block);
        PutAll(outputs, block);
        break;
    }
    case MessageKind::TransferRead: {
        TlmTransferBlock block{};
        if (!GetAll(in, block)) {
            return false;
        }
        std::vector<std::uint8_t> bytes;
        result = device.ReadTransfer(status, block, bytes);
        if (bytes.size() > kMaxTransferBlock) {
            // The device's block is its own choice, but it must fit in a frame.
            result = TLM_ERR_PROTOCOL;
            bytes.clear();
        }
        PutAll(outputs, block, static_cast<std::uint32_t>(bytes.size()));
        outputs.PutBytes(bytes);
        break;
    }
    case MessageKind::TransferEnd: {
        TlmTransferBlock block{};
        if (!GetAll(in, block)) {
            return false;
        }
        result = device.EndTransfer(status, block);
        PutAll(outputs, block);
        break;
    }
    case MessageKind::ClearFiles:
        if (!GetAll(in)) {
            return false;
        }
        result = device.ClearFiles(status);
        break;
    case MessageKind::DetonationMap: {
        if (!GetAll(in)) {
            return false;
        }
        TlmDetonationMap map{};
        result = device.DetonationMap(status, map);
        PutAll(outputs, map);
        break;
    }
    case MessageKind::InitializeSensor: {
        std::int16_t kind = 0;
        if (!GetAll(in, kind)) {
            return false;
        }
        result = device.InitializeSensor(status, kind);
        break;
    }
    case MessageKind::InitData: {
        std::int32_t index = 0;
        if (!GetAll(in, index)) {
            return false;
        }
        TlmInitData data{};
        result = device.InitData(status, index, data);
        PutAll(outputs, data);
        break;
    }
    case MessageKind::SendSetting: {
        TlmSettingData setting{};
        if (!GetAll(in, setting)) {
            return false;
        }
        result = device.SendSetting(status, setting);
        break;
    }
    case MessageKind::ReadSetting: {
        if (!GetAll(in)) {
            return false;
        }
        TlmSettingData setting{};
        result = device.ReadSetting(status, setting);
        PutAll(outputs, setting);
        break;
    }
    case MessageKind::SignalCondition: {
        if (!GetAll(in)) {
            return false;
        }
        TlmSignalCondition signal{};
        result = device.SignalCondition(status, signal);
        PutAll(outputs, signal);
        break;
    }
    case MessageKind::SpecialData: {
        if (!GetAll(in)) {
            return false;
        }
        TlmSpecialData special{};
        result = device.SpecialData(status, special);
        PutAll(outputs, special);
        break;
    }
    case MessageKind::ErrorInfo: {
        if (!GetAll(in)) {
            return false;
        }
        std::vector<std::uint8_t> buffer(TLM_ERROR_INFO_SIZE);
        result = device.ErrorInfo(status, buffer);
        outputs.PutBytes(buffer);
        break;
    }
    case MessageKind::LoggingControl: {
        std::int32_t value = 0;
        if (!GetAll(in, value)) {
            return false;
        }
        result = device.LoggingControl(status, value);
        break;
    }
    case MessageKind::ServiceMode: {
        std::int16_t code = 0;
        if (!GetAll(in, code)) {
            return false;
        }
        result = device.ServiceMode(status, code);
        break;
    }
    case MessageKind::Hello:
    case MessageKind::Close:
        return false;
    }
    PutAll(answer, result, status);
    answer.PutBytes(outputs.Bytes());
    return true;
}

} // namespace torvane::link
